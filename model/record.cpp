#include "model/record.h"

Record::Record(RecordType type, const QUuid &id, qint64 sortOrder, Instant createdAt)
    : m_type(type)
    , m_id(id)
    , m_sortOrder(sortOrder)
    , m_createdAt(createdAt)
{
}

Record::~Record() = default;

void Record::setSortOrder(qint64 sortOrder)
{
    if (m_sortOrder == sortOrder)
        return;
    m_sortOrder = sortOrder;
    Q_EMIT sortOrderChanged();
    Q_EMIT changed();
}
