#include "hours/csv.h"

#include "hours/text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// @p text as one cell that is a text, whatever it begins with.
QString textCell(QString text)
{
    if (!text.isEmpty() && u"=+-@\t"_s.contains(text.front()))
        text.prepend(u'\'');
    // Commas and tabs are no separators here, but some spreadsheets take them for such.
    const bool needsQuotes = std::any_of(text.cbegin(), text.cend(), [](QChar character) {
        return u";,\t\"\r\n"_s.contains(character);
    });
    if (!needsQuotes)
        return text;
    return u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

/// In quotes for the decimal comma's sake: otherwise a spreadsheet that takes commas for
/// separators, too, as some do unless they are told otherwise, would make two cells of it.
QString figureCell(double hours)
{
    return u'"' + danishHours(hours) + u'"';
}

QString figureCells(const Sums &sums)
{
    return figureCell(sums.hours) + u';' + figureCell(sums.billableHours) + u"\r\n"_s;
}

} // namespace

void writeCsv(const Report &report, TextWriter &writer)
{
    QString line = QChar(QChar::ByteOrderMark);
    for (const Key key : report.keys())
        line += titleOf(key) + u';';
    writer.write(line + hoursTitle + u';' + billableHoursTitle + u"\r\n"_s);
    for (const Report::Row *const row : report.rows()) {
        line.clear();
        for (const Key key : report.keys())
            line += textCell(textOf(row->first, key)) + u';';
        writer.write(line + figureCells(row->second));
    }
    writer.write(totalTitle + QString(report.keys().size(), u';') + figureCells(report.total()));
}
