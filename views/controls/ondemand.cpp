#include "views/controls/ondemand.h"

#include <QQmlEngine>
#include <QQmlInfo>
#include <QQuickWindow>

#include <utility>

OnDemand::OnDemand(QQuickItem *parent)
    : QQuickItem(parent)
{
    connect(this, &OnDemand::activeChanged, this, &OnDemand::follow);
}

void OnDemand::componentComplete()
{
    QQuickItem::componentComplete();
    follow();
}

void OnDemand::follow()
{
    if (!isComponentComplete())
        return;
    if (m_isActive && !m_item)
        make();
    else if (!m_isActive && m_item)
        drop();
}

void OnDemand::make()
{
    m_focusBefore = focusItem();
    const QVariant reason = m_focusBefore ? m_focusBefore->property("focusReason") : QVariant();
    m_reasonBefore = reason.isValid() ? reason.value<Qt::FocusReason>() : Qt::OtherFocusReason;
    if (!m_component)
        return;
    m_item = m_component->beginCreate(m_component->creationContext());
    if (!m_item) {
        qmlWarning(this) << m_component->errorString();
        return;
    }
    m_item->setParent(this);
    if (auto *item = qobject_cast<QQuickItem *>(m_item)) {
        item->setParentItem(this);
        connect(item, &QQuickItem::implicitHeightChanged, this,
                [this, item] { setImplicitHeight(item->implicitHeight()); });
    }
    m_component->completeCreate();
    Q_EMIT itemChanged();
}

void OnDemand::drop()
{
    QObject *const gone = std::exchange(m_item, nullptr);
    const auto *const item = qobject_cast<QQuickItem *>(gone);
    const QQuickItem *const focus = focusItem();
    // An open popup has the focus, and a closed one has let go of it by itself.
    const bool hadFocus = !item || item == focus || item->isAncestorOf(focus);
    gone->disconnect(this);
    gone->setProperty("parent", QVariant::fromValue<QQuickItem *>(nullptr));
    gone->deleteLater();
    setImplicitHeight(0);
    // The signal comes first, so that what was disabled meanwhile can take the focus again.
    Q_EMIT itemChanged();
    if (hadFocus && m_focusBefore && m_focusBefore->window() == window() &&
        m_focusBefore->isEnabled())
        m_focusBefore->forceActiveFocus(m_reasonBefore);
}

/// The item that has the focus, or will have it once the window is active and the item is shown.
QQuickItem *OnDemand::focusItem() const
{
    QQuickItem *focus = window() ? window()->contentItem() : nullptr;
    while (focus && focus->isFocusScope() && focus->scopedFocusItem())
        focus = focus->scopedFocusItem();
    return focus;
}
