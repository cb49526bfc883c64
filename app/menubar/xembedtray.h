#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

/// Knows whether there is a tray of the old kind, into which programs embed their icons' windows:
/// on X11 by whether anybody owns its selection. Elsewhere there is none.
class XEmbedTray : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    XEmbedTray();
    ~XEmbedTray() override;

    bool isThere() const { return m_isThere; }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

Q_SIGNALS:
    void changed();

private:
    bool m_isThere = false;
    quint32 m_selection = 0;
    quint8 m_selectionNotify = 0;
};
