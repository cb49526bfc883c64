#pragma once

#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QQuickWindow;

/// Scrolls the item that it is declared in, and whatever scrolls inside it, to the control that
/// gets the keyboard focus: Tab does not stop at what is in sight.
class FocusReveal : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    using QObject::QObject;

    void classBegin() override {}
    void componentComplete() override;

private:
    void watch(QQuickWindow *window);
    void reveal();

    QPointer<QQuickItem> m_area;
    QPointer<QQuickWindow> m_window;
};
