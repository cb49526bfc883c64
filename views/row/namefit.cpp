#include "views/row/namefit.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace
{

/// The width that @p text takes on a line. That may be more than the sum of its advances: its last
/// letter may reach beyond its own.
qreal widthOnALine(const QString &text, const QFont &font)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return layout.maximumWidth();
}

} // namespace

qreal NameFit::widestWord(const QString &text, const QFont &font)
{
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    qreal widest = 0;
    qsizetype begin = 0;
    for (qsizetype end = breaks.toNextBoundary(); end > 0; end = breaks.toNextBoundary()) {
        // Blanks at the end of a line take no room.
        const QString word = text.mid(begin, end - begin).trimmed();
        widest = std::max(widest, widthOnALine(word, font));
        begin = end;
    }
    // A laid out text is as wide as the next whole pixel.
    return std::ceil(widest);
}
