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

bool isWhereBarsAre(const QPoint &point, const PanelScreen &screen)
{
    const QRect inner = screen.geometry.adjusted(PanelDepth, PanelDepth, -PanelDepth, -PanelDepth);
    return screen.geometry.contains(point) &&
           (!screen.available.contains(point) || !inner.contains(point));
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
            if (screen.geometry.contains(logical))
                return point(logical);
        }
    }
    return point(screens.constFirst().available.topRight());
}

QPoint panelPosition(const QSize &size, const QRect &anchor, const QList<PanelScreen> &screens)
{
    const auto holds = [&anchor](const PanelScreen &screen) {
        return screen.geometry.contains(anchor.center());
    };
    const auto found = std::find_if(screens.cbegin(), screens.cend(), holds);
    const PanelScreen &screen = found != screens.cend() ? *found : screens.constFirst();

    const QRect &room = screen.available;
    const bool isDownward = anchor.center().y() <= screen.geometry.center().y();
    const QPoint wanted(anchor.center().x() - size.width() / 2,
                        isDownward ? anchor.bottom() + 1 : anchor.top() - size.height());
    // Where the panel does not fit, its upper left part is seen.
    const auto within = [](int place, int length, int from, int roomLength) {
        return std::max(from, std::min(place, from + roomLength - length));
    };
    return {within(wanted.x(), size.width(), room.left(), room.width()),
            within(wanted.y(), size.height(), room.top(), room.height())};
}
