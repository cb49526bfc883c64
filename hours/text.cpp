#include "hours/text.h"

#include "model/durations.h"

using namespace Qt::StringLiterals;

QString titleOf(Key key)
{
    switch (key) {
    case Key::Day:
        return u"Dag"_s;
    case Key::ProjectCode:
        return u"Projektkode"_s;
    case Key::Task:
        break;
    }
    return u"Opgave"_s;
}

QString textOf(const RowKey &row, Key key)
{
    switch (key) {
    case Key::Day:
        return row.day.toString(Qt::ISODate);
    case Key::ProjectCode:
        return row.projectCode.value_or(u"Uden projektkode"_s);
    case Key::Task:
        break;
    }
    return row.name.isEmpty() ? u"Unavngivet opgave"_s : row.name;
}

QString danishHours(double hours)
{
    return hoursText(hours).replace(u'.', u',');
}
