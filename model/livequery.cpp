#include "model/livequery.h"

#include <algorithm>
#include <utility>

RecordQuery::RecordQuery(ModelContext &context, RecordType type, RecordFilter filter,
                         QueryOrder order)
    : m_context(context)
    , m_type(type)
    , m_filter(std::move(filter))
    , m_order(order)
{
    connect(&context, &ModelContext::inserted, this, &RecordQuery::onInserted);
    connect(&context, &ModelContext::removed, this, &RecordQuery::onRemoved);
    connect(&context, &ModelContext::changed, this, &RecordQuery::onChanged);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &RecordQuery::changed);
}

void RecordQuery::setFilter(RecordFilter filter)
{
    m_filter = std::move(filter);
    m_records.clear();
    m_isStale = true;
    m_hasAnswer = false;
    Q_EMIT changed();
}

const QList<Record *> &RecordQuery::records()
{
    if (m_isStale)
        evaluate();
    return m_records;
}

bool RecordQuery::isAnswered()
{
    if (m_isStale)
        evaluate();
    return m_hasAnswer;
}

void RecordQuery::evaluate()
{
    try {
        m_records = m_context.fetch(m_type, m_filter);
        m_isStale = false;
        m_hasAnswer = true;
        m_retry.stop();
    } catch (const StoreError &) {
        if (!m_hasAnswer)
            m_records = m_context.inMemory(m_type, m_filter);
        if (!m_retry.isActive())
            m_retry.start(m_context.delays().retry);
    }
    sort();
}

void RecordQuery::sort()
{
    if (m_order != QueryOrder::SortOrder)
        return;
    std::stable_sort(m_records.begin(), m_records.end(), [](const Record *a, const Record *b) {
        return a->sortOrder() < b->sortOrder();
    });
}

void RecordQuery::onInserted(Record *record)
{
    if (record->recordType() != m_type || !m_filter.matches(*record))
        return;
    m_records.append(record);
    sort();
    Q_EMIT changed();
}

void RecordQuery::onRemoved(Record *record)
{
    if (record->recordType() != m_type)
        return;
    if (m_records.removeOne(record) || (m_isStale && m_filter.matches(*record)))
        Q_EMIT changed();
}

void RecordQuery::onChanged(Record *record)
{
    if (record->recordType() != m_type)
        return;
    const bool was = m_records.contains(record);
    const bool is = m_filter.matches(*record);
    if (!was && !is)
        return;
    if (!is)
        m_records.removeOne(record);
    if (!was) {
        m_records.append(record);
        m_isStale = true; // Only the store knows the record's place in its order.
    }
    sort();
    Q_EMIT changed();
}
