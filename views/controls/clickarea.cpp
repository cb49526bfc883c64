#include "views/controls/clickarea.h"

#include <QQuickItem>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr qreal LeastSide = 20;

bool isControl(const QQuickItem &item)
{
    return item.inherits("QQuickAbstractButton") || item.inherits("QQuickTextInput");
}

/// How far @p point lies outside of @p item: nothing if it is inside, infinity if it is farther
/// away than the item lacks to the least size.
qreal distance(const QQuickItem &item, const QPointF &point)
{
    // The right and bottom edges lie outside of the item.
    const qreal right = std::nextafter(item.width(), 0);
    const qreal bottom = std::nextafter(item.height(), 0);
    const qreal x = std::max({-point.x(), point.x() - right, 0.0});
    const qreal y = std::max({-point.y(), point.y() - bottom, 0.0});
    const bool isInReach = x <= std::max(LeastSide - item.width(), 0.0) &&
                           y <= std::max(LeastSide - item.height(), 0.0);
    return isInReach ? std::hypot(x, y) : std::numeric_limits<qreal>::infinity();
}

/// Whether a control at or below @p root is nearer to @p point, of the window, than @p limit.
bool isControlNearer(const QQuickItem &root, const QPointF &point, qreal limit)
{
    if (!root.isVisible())
        return false;
    if (isControl(root) && distance(root, root.mapFromScene(point)) < limit)
        return true;
    const QList<QQuickItem *> children = root.childItems();
    return std::any_of(children.cbegin(), children.cend(), [&](const QQuickItem *child) {
        return isControlNearer(*child, point, limit);
    });
}

} // namespace

bool ClickArea::contains(const QPointF &point) const
{
    const auto *const item = qobject_cast<const QQuickItem *>(parent());
    if (!m_isOpen || !item)
        return false;
    const qreal own = distance(*item, point);
    if (own == 0 || std::isinf(own))
        return own == 0;
    // Controls stand beside each other in a group, and groups beside other controls.
    const QQuickItem *neighbours = item->parentItem();
    if (neighbours && neighbours->parentItem())
        neighbours = neighbours->parentItem();
    return !neighbours || !isControlNearer(*neighbours, item->mapToScene(point), own);
}
