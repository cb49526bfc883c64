#include "views/controls/focusreveal.h"

#include <QQuickWindow>

#include <algorithm>

namespace
{

/// Pixels around the control that come into sight with it.
constexpr qreal Margin = 6;

/// Moves the content of @p flickable as little as it takes to show @p item.
void scrollTo(QQuickItem *flickable, const QQuickItem *item)
{
    const auto *const content = flickable->property("contentItem").value<QQuickItem *>();
    const QRectF place =
        item->mapRectToItem(content, QRectF(0, -Margin, 0, item->height() + 2 * Margin));
    const qreal origin = flickable->property("originY").toReal();
    const qreal room = flickable->property("contentHeight").toReal() - flickable->height();
    qreal y = flickable->property("contentY").toReal();
    y = std::max(y, place.bottom() - flickable->height());
    y = std::min(y, place.top());
    y = std::clamp(y, origin, origin + std::max(0.0, room));
    flickable->setProperty("contentY", y);
}

} // namespace

void FocusReveal::componentComplete()
{
    m_area = qobject_cast<QQuickItem *>(parent());
    if (!m_area)
        return;
    connect(m_area, &QQuickItem::windowChanged, this, &FocusReveal::watch);
    watch(m_area->window());
}

void FocusReveal::watch(QQuickWindow *window)
{
    if (m_window)
        m_window->disconnect(this);
    m_window = window;
    if (window)
        connect(window, &QQuickWindow::activeFocusItemChanged, this, &FocusReveal::reveal);
}

void FocusReveal::reveal()
{
    const QQuickItem *const focus = m_window->activeFocusItem();
    if (!focus || !m_area->isAncestorOf(focus))
        return;
    // From the inside out: what an inner one scrolls moves the control in the outer one.
    QQuickItem *ancestor = focus->parentItem();
    for (; ancestor != m_area->parentItem(); ancestor = ancestor->parentItem()) {
        if (ancestor->inherits("QQuickFlickable"))
            scrollTo(ancestor, focus);
    }
}
