#include "model/tasktemplate.h"

using namespace Qt::StringLiterals;

TaskTemplate::TaskTemplate(const Clock &clock, const QString &name, qint64 sortOrder)
    : TaskTemplate(Values{newValues(clock, sortOrder), name})
{
}

TaskTemplate::TaskTemplate(const Values &values)
    : Record(type)
    , m_values(values)
{
}

QString TaskTemplate::description() const
{
    return u"template "_s + quotedName(m_values.name);
}
