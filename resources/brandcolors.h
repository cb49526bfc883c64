#pragma once

#include <QColor>

/// One named colour in its two appearances.
struct BrandColor {
    QRgb light;
    QRgb dark;

    constexpr QRgb value(bool isDark) const { return isDark ? dark : light; }
};

/// Petrol: buttons, highlights, selection. The light value is readable under white text and as text
/// on light grey (4.5:1); the dark one as text on grey up to #2d2d2d (4.5:1) and under white (3:1).
inline constexpr BrandColor BrandAccent{qRgb(0x0a, 0x5c, 0x62), qRgb(0x27, 0xa4, 0xa8)};

/// Copper: the start/pause buttons while a task runs. Same contrasts as BrandAccent.
inline constexpr BrandColor BrandBackground{qRgb(0x87, 0x43, 0x10), qRgb(0xd3, 0x80, 0x41)};
