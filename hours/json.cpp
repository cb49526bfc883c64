#include "hours/json.h"

#include "model/durations.h"

using namespace Qt::StringLiterals;

namespace
{

QString inQuotes(const QString &text)
{
    constexpr char16_t firstPlain = 0x20;
    QString content = u"\""_s;
    for (const QChar character : text) {
        if (character == u'"' || character == u'\\')
            content += u'\\' + QString(character);
        else if (character < QChar(firstPlain))
            content += QString::asprintf("\\u%04x", character.unicode());
        else
            content += character;
    }
    return content + u'"';
}

QString inQuotes(QDate day)
{
    return u'"' + day.toString(Qt::ISODate) + u'"';
}

/// The members of an object that every row has, and the total.
QString membersOf(const Sums &sums)
{
    // As Qt's own JSON writes a number, 7.50 would be 7.5.
    return u"\"seconds\": "_s + QString::number(sums.seconds) + u", \"hours\": "_s +
           hoursText(sums.hours) + u", \"billableHours\": "_s + hoursText(sums.billableHours);
}

QString memberOf(const RowKey &row, Key key)
{
    switch (key) {
    case Key::Day:
        return u"\"day\": "_s + inQuotes(row.day);
    case Key::ProjectCode:
        return u"\"projectCode\": "_s + (row.projectCode ? inQuotes(*row.projectCode) : u"null"_s);
    case Key::Task:
        break;
    }
    return u"\"name\": "_s + inQuotes(row.name);
}

} // namespace

void writeJson(const Report &report, const Period &period, TextWriter &writer)
{
    writer.write(u"{\"from\": "_s + inQuotes(period.first) + u", \"to\": "_s +
                 inQuotes(period.last) + u", \"rows\": ["_s);
    QString separator = u"\n"_s;
    for (const Report::Row *const row : report.rows()) {
        QString line = separator + u"  {"_s;
        // Always in one order, whatever that of the rows is.
        for (const Key key : {Key::Day, Key::ProjectCode, Key::Task}) {
            if (report.keys().contains(key))
                line += memberOf(row->first, key) + u", "_s;
        }
        writer.write(line + membersOf(row->second) + u'}');
        separator = u",\n"_s;
    }
    if (separator != u"\n"_s)
        writer.write(u"\n"_s);
    writer.write(u"], \"total\": {"_s + membersOf(report.total()) + u"}}\n"_s);
}
