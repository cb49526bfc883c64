#include "views/controls/danishdate.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace
{

QString danish(QDate day, const QString &format)
{
    return QLocale(QLocale::Danish, QLocale::Denmark).toString(day, format);
}

} // namespace

QString danishDay(QDate day)
{
    return danish(day, u"dddd d. MMMM yyyy"_s);
}

QString danishMonth(QDate day)
{
    return danish(day, u"MMMM yyyy"_s);
}
