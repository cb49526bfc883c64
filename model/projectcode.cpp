#include "model/projectcode.h"

using namespace Qt::StringLiterals;

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
    return name().isEmpty() ? code() : code() + u" \u2013 "_s + name();
}

QString ProjectCode::description() const
{
    return u"project code "_s + quotedName(displayName());
}
