#include "views/controls/focusreveal.h"

#include <QQuickWindow>

#include <algorithm>

namespace
{

/// Pixels above and below that come into sight, too: a list's own margin, and a part of the next
/// entry.
constexpr qreal Margin = 12;

/// The entry of @p content that @p item is in; @p item itself if the entry is higher than @p
/// height.
const QQuickItem *entryAround(const QQuickItem *item, const QQuickItem *content, qreal height)
{
    const QQuickItem *entry = item;
    while (entry->parentItem() != content)
        entry = entry->parentItem();
    return entry->height() <= height ? entry : item;
}

/// If @p item is not wholly in sight, moves the content of @p flickable as little as it takes to
/// show it and the entry that it is in.
void scrollTo(QQuickItem *flickable, const QQuickItem *item)
{
    const auto *const content = flickable->property("contentItem").value<QQuickItem *>();
    const auto placeOf = [content](const QQuickItem *shown) {
        return shown->mapRectToItem(content, QRectF(0, 0, shown->width(), shown->height()));
    };
    const qreal before = flickable->property("contentY").toReal();
    const qreal height = flickable->height();
    const QRectF place = placeOf(item);
    if (place.top() >= before && place.bottom() <= before + height)
        return;
    const QRectF entry = placeOf(entryAround(item, content, height));
    const qreal margin = std::clamp((height - entry.height()) / 2, 0.0, Margin);
    qreal y = std::max(before, entry.bottom() + margin - height);
    y = std::min(y, entry.top() - margin);
    const qreal origin = flickable->property("originY").toReal();
    const qreal first = origin - flickable->property("topMargin").toReal();
    const qreal last = origin + flickable->property("contentHeight").toReal() +
                       flickable->property("bottomMargin").toReal() - height;
    flickable->setProperty("contentY", std::clamp(y, first, std::max(first, last)));
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
        connect(window, &QQuickWindow::activeFocusItemChanged, this, &FocusReveal::follow);
}

void FocusReveal::follow()
{
    disconnect(m_cursorMove);
    const QQuickItem *const focus = m_window->activeFocusItem();
    if (!focus || focus->isFocusScope() || !m_area->isAncestorOf(focus))
        return;
    // What is typed, by keys or an input method, moves the cursor.
    if (focus->inherits("QQuickTextInput"))
        m_cursorMove = connect(focus, SIGNAL(cursorRectangleChanged()), this, SLOT(reveal()));
    reveal();
}

void FocusReveal::reveal()
{
    const QQuickItem *const focus = m_window->activeFocusItem();
    if (!focus || !m_area->isAncestorOf(focus))
        return;
    // Inner ones come first, as what they scroll moves the control in the outer ones.
    QQuickItem *ancestor = focus->parentItem();
    for (; ancestor != m_area->parentItem(); ancestor = ancestor->parentItem()) {
        if (ancestor->inherits("QQuickFlickable"))
            scrollTo(ancestor, focus);
    }
}
