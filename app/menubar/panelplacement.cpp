#include "app/menubar/panelplacement.h"

#include <algorithm>

namespace
{

/// How deep a desktop's bar reaches into the screen where it does not say so.
constexpr int PanelDepth = 48;

QPoint toLogical(const QPoint &point, const PanelScreen &screen)
{
    const QPointF offset = QPointF(point - screen.geometry.topLeft()) / screen.scale;
    return screen.geometry.topLeft() +
           QPoint(static_cast<int>(offset.x()), static_cast<int>(offset.y()));
}

/// The screen that @p anchor lies on, or the first one.
qsizetype screenOf(const QRect &anchor, const QList<PanelScreen> &screens)
{
    const auto holds = [&anchor](const PanelScreen &screen) {
        return screen.geometry.contains(anchor.center());
    };
    const auto found = std::find_if(screens.cbegin(), screens.cend(), holds);
    return found != screens.cend() ? found - screens.cbegin() : 0;
}

/// Where a length that would begin at @p place begins, so that it lies within a room; its beginning
/// does if the whole does not fit.
int within(int place, int length, int from, int roomLength)
{
    return std::max(from, std::min(place, from + roomLength - length));
}

bool isOn(const QPoint &point, const PanelScreen &screen)
{
    return screen.geometry.contains(point);
}

bool isWhereBarsAre(const QPoint &point, const PanelScreen &screen)
{
    const QRect inner = screen.geometry.adjusted(PanelDepth, PanelDepth, -PanelDepth, -PanelDepth);
    return isOn(point, screen) && (!screen.available.contains(point) || !inner.contains(point));
}

/// What the bars leave free that overhang.
QRect freeRoom(const PanelScreen &screen)
{
    const QRect &whole = screen.geometry;
    const QRect &room = screen.available;
    const auto beyond = [&screen](int depth) { return depth > 0 ? screen.overhang : 0; };
    return room.adjusted(beyond(room.left() - whole.left()), beyond(room.top() - whole.top()),
                         -beyond(whole.right() - room.right()),
                         -beyond(whole.bottom() - room.bottom()));
}

} // namespace

QRect panelAnchor(const PanelClick &click, const QList<PanelScreen> &screens)
{
    const auto point = [](const QPoint &place) { return QRect(place, QSize(1, 1)); };

    if (click.pointer) {
        for (const PanelScreen &screen : screens) {
            if (isWhereBarsAre(*click.pointer, screen))
                return point(*click.pointer);
        }
    }
    if (!click.reported.isNull()) {
        for (const PanelScreen &screen : screens) {
            const QPoint logical = toLogical(click.reported, screen);
            if (isOn(logical, screen))
                return point(logical);
        }
    }
    return point(screens.constFirst().available.topRight());
}

QPoint panelPosition(const QSize &size, const QRect &anchor, const QList<PanelScreen> &screens)
{
    const PanelScreen &screen = screens.at(screenOf(anchor, screens));
    const QRect room = freeRoom(screen);
    const bool isDownward = anchor.center().y() <= screen.geometry.center().y();
    const QPoint wanted(anchor.center().x() - size.width() / 2,
                        isDownward ? anchor.bottom() + 1 : anchor.top() - size.height());
    return {within(wanted.x(), size.width(), room.left(), room.width()),
            within(wanted.y(), size.height(), room.top(), room.height())};
}

QRect reportedAnchor(const QPoint &reported, const QList<PanelScreen> &screens, Pixels expected)
{
    if (reported.isNull())
        return panelAnchor({}, screens);
    const Pixels other = expected == Pixels::Logical ? Pixels::Physical : Pixels::Logical;
    for (const auto isPossible : {isWhereBarsAre, isOn}) {
        for (const Pixels pixels : {expected, other}) {
            for (const PanelScreen &screen : screens) {
                const QPoint point =
                    pixels == Pixels::Physical ? toLogical(reported, screen) : reported;
                if (isPossible(point, screen))
                    return {point, QSize(1, 1)};
            }
        }
    }
    return panelAnchor({}, screens);
}

PanelEdges panelEdges(const QSize &size, const QRect &anchor, const QList<PanelScreen> &screens)
{
    PanelEdges found;
    found.screen = screenOf(anchor, screens);
    const PanelScreen &screen = screens.at(found.screen);
    const QRect &whole = screen.geometry;
    const QRect item = anchor.translated(-whole.topLeft());
    const QSize room = whole.size() - size;
    const bool isRight = item.center().x() > whole.width() / 2 && room.width() > 0;
    const bool isBottom = item.center().y() > whole.height() / 2 && room.height() > 0;

    const auto isNear = [](int place, int length) {
        return place < PanelDepth || place >= length - PanelDepth;
    };
    // Of two bars that meet in a corner, more are at the top and at the bottom.
    const bool isInRow = isNear(item.center().y(), whole.height());
    const bool isInColumn = !isInRow && isNear(item.center().x(), whole.width());
    found.isBesideBars = isInRow || isInColumn;

    QPoint wanted = item.center() - QPoint(size.width(), size.height()) / 2;
    if (isInColumn)
        wanted.setX(isRight ? room.width() - screen.overhang : screen.overhang);
    else if (isInRow)
        wanted.setY(isBottom ? room.height() - screen.overhang : screen.overhang);
    else
        wanted.setY(isBottom ? item.top() - size.height() : item.bottom() + 1);
    const int left = within(wanted.x(), size.width(), 0, whole.width());
    const int top = within(wanted.y(), size.height(), 0, whole.height());

    found.edges =
        (isRight ? Qt::RightEdge : Qt::LeftEdge) | (isBottom ? Qt::BottomEdge : Qt::TopEdge);
    found.margins = {isRight ? 0 : left, isBottom ? 0 : top, isRight ? room.width() - left : 0,
                     isBottom ? room.height() - top : 0};
    return found;
}
