#include "model/projectcode.h"

#include "model/clock.h"

ProjectCode::ProjectCode(const Clock &clock, const QString &code, const QString &name,
                         qint64 sortOrder)
    : Record(type, QUuid::createUuid(), sortOrder, clock.now())
    , m_code(code)
    , m_name(name)
{
}

ProjectCode::ProjectCode(const Values &values)
    : Record(type, values.id, values.sortOrder, values.createdAt)
    , m_code(values.code)
    , m_name(values.name)
{
}

QString ProjectCode::displayName() const
{
    return m_name.isEmpty() ? m_code : m_code + QStringLiteral(" \u2013 ") + m_name;
}
