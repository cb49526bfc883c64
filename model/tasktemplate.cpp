#include "model/tasktemplate.h"

#include "model/clock.h"

TaskTemplate::TaskTemplate(const Clock &clock, const QString &name, qint64 sortOrder)
    : Record(type, QUuid::createUuid(), sortOrder, clock.now())
    , m_name(name)
{
}

TaskTemplate::TaskTemplate(const Values &values)
    : Record(type, values.id, values.sortOrder, values.createdAt)
    , m_name(values.name)
{
}
