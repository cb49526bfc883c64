#pragma once

#include <QList>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// One screen, in logical pixels. With scaling, its corner keeps its physical coordinates.
struct PanelScreen {
    QRect geometry;
    /// What the desktop's own bars leave free.
    QRect available;
    /// Physical pixels for each logical one.
    double scale = 1;
    /// How far a bar may reach beyond the room that it takes.
    int overhang = 0;
};

/// Where the item was clicked, as far as it is known.
struct PanelClick {
    /// What the desktop's bar says, in physical pixels: (0, 0) if it does not know. Some name a
    /// point inside of their own window.
    QPoint reported;
    /// Where the pointer is, in logical pixels.
    std::optional<QPoint> pointer;
};

/// The place of the item, as well as it can be told, in logical pixels: the pointer, if it is where
/// desktops have their bars; else what was reported; else the first screen's top right corner.
/// @p screens is not empty; the first one is the primary one.
QRect panelAnchor(const PanelClick &click, const QList<PanelScreen> &screens);

/// Where the top left corner of a panel of @p size goes that belongs to @p anchor: below it in the
/// upper half of its screen, above it in the lower one, and inside what is available there.
QPoint panelPosition(const QSize &size, const QRect &anchor, const QList<PanelScreen> &screens);

/// Where a panel stands that the compositor places by the edges of a screen.
struct PanelEdges {
    /// Its index.
    qsizetype screen = 0;
    /// A horizontal and a vertical one.
    Qt::Edges edges;
    /// How far it is from these two, in logical pixels; the other two are 0.
    QMargins margins;
    /// Whether that is measured from the desktop's own bars, or from the screen's own edges.
    bool isBesideBars = true;
};

/// What a desktop's bar counts in.
enum class Pixels { Logical, Physical };

/// The place of the item, in logical pixels, by what the desktop's bar says alone: on Wayland a
/// program does not know where the pointer is. Bars say it in pixels of either kind. Where bars are
/// comes before elsewhere on a screen, then the pixels that are @p expected before the others; what
/// leads nowhere is taken for the first screen's top right corner.
QRect reportedAnchor(const QPoint &reported, const QList<PanelScreen> &screens, Pixels expected);

/// Where a panel of @p size stands that belongs to @p anchor: beside the bar at the edge that the
/// anchor is near to, else below or above the anchor itself; always inside of its screen.
PanelEdges panelEdges(const QSize &size, const QRect &anchor, const QList<PanelScreen> &screens);
