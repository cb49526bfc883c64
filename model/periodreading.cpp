#include "model/periodreading.h"

#include "model/clock.h"
#include "model/modelcontext.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>

namespace
{

/// What @p read returns, with SQLite's exceptions as the context's.
template<typename Read>
auto orStoreError(const Read &read)
{
    try {
        return read();
    } catch (const SQLite::Exception &error) {
        throw StoreError(error.what());
    }
}

} // namespace

void RecordedPeriod::deliver(const TaskReceiver &receive)
{
    RecordedDays days(m_calendar, m_now, receive,
                      [this](const char *fault, const Task::Values &values) {
                          throw StoreError(std::string(fault) + '\n' +
                                           Task::repairAdvice(values, m_calendar, m_storePath));
                      });
    std::stable_sort(
        m_current.begin(), m_current.end(),
        [](const StoredTask &a, const StoredTask &b) { return a.values.date < b.values.date; });
    auto current = m_current.begin();
    for (; !m_read.empty(); m_read.pop_front()) {
        StoredTask &read = m_read.front();
        if (m_outdated.contains(read.rowid))
            continue;
        while (current != m_current.end() && current->values.date < read.values.date)
            days.take(std::move(*current++));
        days.take(std::move(read));
    }
    while (current != m_current.end())
        days.take(std::move(*current++));
    days.finish();
}

PeriodReading::PeriodReading(const ModelContext &context, const DayInterval &period)
    : m_context(context)
    , m_period(period)
    , m_reading(orStoreError([&] { return TaskReading(context.database(), period); }))
{
    connect(&context, &ModelContext::inserted, this, &PeriodReading::onChanged);
    connect(&context, &ModelContext::changed, this, &PeriodReading::onChanged);
    connect(&context, &ModelContext::removed, this, &PeriodReading::onRemoved);
    for (Record *record : context.unsaved(Task::type))
        onChanged(record);
    for (const qint64 rowid : context.removedRows(Task::type))
        m_removed.insert(rowid);
}

bool PeriodReading::goOn()
{
    return orStoreError([this] {
        return m_reading.goOn(m_context.delays().slice, [this](StoredTask &&task) {
            m_characters += task.values.name.size();
            if (task.values.projectCode)
                m_characters += task.values.projectCode->size();
            m_read.push_back(std::move(task));
        });
    });
}

RecordedPeriod PeriodReading::take()
{
    RecordedPeriod period;
    period.m_read = std::move(m_read);
    period.m_outdated = std::move(m_removed);
    for (const Task *task : std::as_const(m_changed)) {
        StoredTask current;
        current.values = task->values();
        if (const std::optional<qint64> rowid = task->rowid()) {
            current.rowid = *rowid;
            period.m_outdated.insert(*rowid);
        }
        if (m_period.contains(current.values.date))
            period.m_current.push_back(std::move(current));
    }
    period.m_calendar = m_context.clock().calendar();
    period.m_now = m_context.clock().now();
    period.m_storePath = m_context.storePath();
    return period;
}

void PeriodReading::onChanged(Record *record)
{
    if (record->recordType() != Task::type || m_isChanged.contains(record))
        return;
    m_isChanged.insert(record);
    m_changed.append(static_cast<const Task *>(record));
}

void PeriodReading::onRemoved(Record *record)
{
    if (record->recordType() != Task::type)
        return;
    if (m_isChanged.remove(record))
        m_changed.removeOne(static_cast<const Task *>(record));
    if (record->rowid())
        m_removed.insert(*record->rowid());
}
