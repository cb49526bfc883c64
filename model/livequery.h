#pragma once

#include "model/modelcontext.h"

/// The order in which a live query yields its records.
enum class QueryOrder {
    /// In which they were inserted.
    Store,
    /// By sortOrder, ascending; equal ones in the store's order.
    SortOrder,
};

/// What LiveQuery does for every record type.
class RecordQuery : public QObject
{
    Q_OBJECT

public:
    RecordQuery(ModelContext &context, RecordType type, RecordFilter filter, QueryOrder order);

    /// Asks for other records from now on.
    void setFilter(RecordFilter filter);

    /// The records that match now. If the store cannot be read: those of the last answer, or, where
    /// there was none, those in memory. The next call tries again; so that there is one, changed()
    /// is sent after a while.
    const QList<Record *> &records();
    /// Whether records() is the store's answer and not a makeshift: an empty list is then empty
    /// indeed.
    bool isAnswered();

Q_SIGNALS:
    /// A matching record was inserted, removed or edited, the filter has changed, or the store,
    /// which could not be read, is worth another question.
    void changed();

private:
    void evaluate();
    void sort();
    void onInserted(Record *record);
    void onRemoved(Record *record);
    void onChanged(Record *record);

    ModelContext &m_context;
    RecordType m_type;
    RecordFilter m_filter;
    QueryOrder m_order;
    QList<Record *> m_records;
    bool m_isStale = true;
    bool m_hasAnswer = false;
    QTimer m_retry;
};

/// All records of type T that match a filter, kept up to date. Reads the store when it is first
/// asked and after that only when it has to. The context outlives it.
template<class T>
class LiveQuery : public RecordQuery
{
public:
    LiveQuery(ModelContext &context, RecordFilter filter, QueryOrder order)
        : RecordQuery(context, T::type, std::move(filter), order)
    {
    }

    /// The matching records, owned by the context.
    QList<T *> results()
    {
        QList<T *> results;
        results.reserve(records().size());
        for (Record *record : records())
            results.append(static_cast<T *>(record));
        return results;
    }
};
