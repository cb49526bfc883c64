#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QWindow>

/// Tells of presses of the pointer's buttons outside of a window, also in those of other programs
/// and of the desktop, and takes them from nobody. The wheel is no button. Silent where this is not
/// X11.
class PointerPresses : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    PointerPresses() = default;
    ~PointerPresses() override;

    /// Begins to listen, before @p window is shown.
    void listenOutside(const QWindow &window);
    /// Ends to listen. It costs nothing then.
    void stop();

Q_SIGNALS:
    void pressed();
    /// A button has been released, inside or outside.
    void released();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    /// 0 while it does not listen.
    WId m_window = 0;
    bool m_isInside = false;
};
