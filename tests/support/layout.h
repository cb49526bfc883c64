#pragma once

#include <QList>
#include <QQuickItem>
#include <QStringList>
#include <QVariant>

/// A view's layout as a table of numbers, and how a scene differs from it.
namespace layout
{

/// One line of the table.
struct Line {
    /// What is measured: "ITEM.WHAT", or "ITEM.WHAT - ITEM.WHAT" for the first less the second.
    ///
    /// ITEM is an `objectName`. Where several items have it, "name[2]" is the third of them,
    /// counted from the top to the bottom and from the left to the right. "row[1]/name" is one
    /// inside another.
    ///
    /// WHAT is left, right, top, bottom, centreX, centreY, width or height, in the window's pixels;
    /// anything else is a property of the item, such as "font.pixelSize".
    QString measure;
    /// A number, text or colour.
    QVariant expected;
};

/// The lines that do not hold for what is at or below @p root, each with what is there instead. A
/// centre may be half a pixel off.
QStringList deviations(QQuickItem *root, const QList<Line> &table);

} // namespace layout
