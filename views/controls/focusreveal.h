#pragma once

#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

class QQuickWindow;

/// Scrolls the item that it is declared in, and whatever scrolls inside it, to the control that
/// gets the keyboard focus, as Tab does not stop at what is in sight; and to a text field that has
/// it when something is typed. What is wholly in sight stays where it is.
class FocusReveal : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    using QObject::QObject;

    void classBegin() override {}
    void componentComplete() override;

private Q_SLOTS:
    void reveal();

private:
    void watch(QQuickWindow *window);
    void follow();

    QPointer<QQuickItem> m_area;
    QPointer<QQuickWindow> m_window;
    QMetaObject::Connection m_cursorMove;
};
