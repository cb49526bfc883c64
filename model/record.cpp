#include "model/record.h"

#include "model/clock.h"

Record::Record(RecordType type)
    : m_type(type)
{
}

Record::~Record() = default;

Record::Values Record::newValues(const Clock &clock, qint64 sortOrder)
{
    return {QUuid::createUuid(), sortOrder, clock.now()};
}

QString Record::quotedName(const QString &name)
{
    constexpr qsizetype longest = 60;
    QString plain = name.simplified().left(longest);
    plain.removeIf([](QChar character) { return character.category() == QChar::Other_Control; });
    return u'"' + plain + u'"';
}

void Record::setSortOrder(qint64 sortOrder)
{
    if (values().sortOrder == sortOrder)
        return;
    values().sortOrder = sortOrder;
    Q_EMIT sortOrderChanged();
    Q_EMIT changed();
}
