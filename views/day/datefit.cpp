#include "views/day/datefit.h"

#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace
{

qreal width(const QString &text, const QFont &font)
{
    // Rounded as a laid out text is.
    return std::ceil(QFontMetricsF(font).horizontalAdvance(text));
}

qreal longestWord(const QString &text, const QFont &font)
{
    qreal longest = 0;
    const QStringList words = text.split(u' ');
    for (const QString &word : words)
        longest = std::max(longest, width(word, font));
    return longest;
}

} // namespace

DateFit fitDate(const QString &text, const QFont &font, qreal room)
{
    constexpr qreal gaps = 4;
    constexpr qreal widestGap = 16;
    constexpr qreal narrowestGap = 4;
    constexpr int smallestSize = 9;

    // While the header has no width yet, any size would be too large: none is tried.
    if (room <= 0)
        return {narrowestGap, 0, font.pixelSize()};

    const qreal whole = width(text, font);
    const qreal gap = std::clamp((room - whole) / gaps, narrowestGap, widestGap);
    const qreal textRoom = std::max(room - gaps * gap, 0.0);
    if (whole <= textRoom)
        return {gap, whole, font.pixelSize()};

    QFont fitting = font;
    while (fitting.pixelSize() > smallestSize && longestWord(text, fitting) > textRoom)
        fitting.setPixelSize(fitting.pixelSize() - 1);
    return {gap, textRoom, fitting.pixelSize()};
}
