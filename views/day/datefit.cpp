#include "views/day/datefit.h"

#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace
{

qreal width(const QString &text, const QFont &font)
{
    // A laid out text is as wide as the next whole pixel.
    return std::ceil(QFontMetricsF(font).horizontalAdvance(text));
}

qreal longestOf(const QStringList &texts, const QFont &font)
{
    qreal longest = 0;
    for (const QString &text : texts)
        longest = std::max(longest, width(text, font));
    return longest;
}

/// The largest size from @p font's own down to @p smallest, or smallest itself, in which all
/// @p texts are at most @p room wide.
int fittingSize(const QStringList &texts, QFont font, int smallest, qreal room)
{
    while (font.pixelSize() > smallest && longestOf(texts, font) > room)
        font.setPixelSize(font.pixelSize() - 1);
    return font.pixelSize();
}

} // namespace

DateFit fitDate(const QString &date, const QFont &font, qreal room)
{
    constexpr qreal gaps = 4;
    constexpr qreal widestGap = 16;
    constexpr qreal narrowestGap = 4;
    constexpr int smallestInTwoLines = 12;
    constexpr int smallest = 9;

    // While the header has no width yet, any size would be too large: none is tried.
    if (room <= 0)
        return {date, narrowestGap, 0, font.pixelSize()};

    const qreal whole = width(date, font);
    const qreal gap = std::clamp((room - whole) / gaps, narrowestGap, widestGap);
    const qreal textRoom = std::max(room - gaps * gap, 0.0);
    if (whole <= textRoom)
        return {date, gap, whole, font.pixelSize()};

    const QStringList lines{date.section(u' ', 0, 0), date.section(u' ', 1)};
    QFont fitting = font;
    fitting.setPixelSize(fittingSize(lines, font, smallestInTwoLines, textRoom));
    if (longestOf(lines, fitting) <= textRoom)
        return {lines.join(u'\n'), gap, textRoom, fitting.pixelSize()};

    return {date, gap, textRoom, fittingSize(date.split(u' '), font, smallest, textRoom)};
}
