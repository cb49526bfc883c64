#include "views/row/namefit.h"

#include <QFontMetricsF>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

qreal widestWord(const QString &text, const QFont &font)
{
    const QFontMetricsF metrics(font);
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    qreal widest = 0;
    qsizetype begin = 0;
    for (qsizetype end = breaks.toNextBoundary(); end > 0; end = breaks.toNextBoundary()) {
        // Blanks at the end of a line take no room.
        const QString word = text.mid(begin, end - begin).trimmed();
        widest = std::max(widest, metrics.horizontalAdvance(word));
        begin = end;
    }
    // Rounded as a laid out text is.
    return std::ceil(widest);
}
