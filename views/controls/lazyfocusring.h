#pragma once

#include <QMetaProperty>
#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

/// The ring around the item that it is declared in while the keyboard has brought the focus there:
/// a control's `visualFocus`, or an item's `activeFocus`. It has the item's `radius`. Like the
/// tooltip it is made when it is first needed: most controls never get the focus.
class LazyFocusRing : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    using QObject::QObject;

    void classBegin() override {}
    void componentComplete() override;

private Q_SLOTS:
    void follow();

private:
    QPointer<QQuickItem> m_item;
    QMetaProperty m_focus;
    QPointer<QQuickItem> m_ring;
};
