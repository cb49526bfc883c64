#pragma once

#include <QPointer>
#include <QQmlComponent>
#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

/// The place of something that exists only while it is needed: a field, a form or a popup. As high
/// as that, which takes its width from here. When it goes, the keyboard focus that was inside it
/// returns to what had it before, if that is still there; if not, it is left to FocusFallback.
class OnDemand : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_CLASSINFO("DefaultProperty", "component")
    /// Whether it is needed.
    Q_PROPERTY(bool active MEMBER m_isActive NOTIFY activeChanged)
    /// Has to be set before the place is complete; a later change takes effect the next time.
    Q_PROPERTY(QQmlComponent *component MEMBER m_component NOTIFY componentChanged)
    /// What is there now, or null.
    Q_PROPERTY(QObject *item READ item NOTIFY itemChanged)

public:
    explicit OnDemand(QQuickItem *parent = nullptr);

    QObject *item() const { return m_item; }

Q_SIGNALS:
    void activeChanged();
    void componentChanged();
    void itemChanged();

protected:
    void componentComplete() override;

private:
    void follow();
    void make();
    void drop();
    QQuickItem *focusItem() const;

    bool m_isActive = false;
    QQmlComponent *m_component = nullptr;
    QPointer<QObject> m_item;
    QPointer<QQuickItem> m_focusBefore;
    /// Why the focus had come there: a control that Tab has reached shows it.
    Qt::FocusReason m_reasonBefore = Qt::OtherFocusReason;
};
