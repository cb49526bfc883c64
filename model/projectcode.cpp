#include "model/projectcode.h"

ProjectCode::ProjectCode(const Clock &clock, const QString &code, const QString &name,
                         qint64 sortOrder)
    : ProjectCode(Values{newValues(clock, sortOrder), code, name})
{
}

ProjectCode::ProjectCode(const Values &values)
    : Record(type)
    , m_values(values)
{
}

QString ProjectCode::displayName() const
{
    return name().isEmpty() ? code() : code() + QStringLiteral(" \u2013 ") + name();
}
