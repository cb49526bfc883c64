#include "hours/storedtasks.h"

#include "model/readonlystore.h"
#include "model/recordfilter.h"
#include "model/recordtable.h"
#include "model/storechecks.h"

#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>

#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace
{

/// How long is read before it is looked whether that still makes sense.
constexpr std::chrono::milliseconds slice{5};

[[noreturn]] void failForChange()
{
    throw TasksChanged("The store has been changed while it was read");
}

class StoredTasks
{
public:
    StoredTasks(ReadOnlyStore &store, const Calendar &calendar, Instant now)
        : m_store(store)
        , m_storePath(QFile::decodeName(store.path().c_str()))
        , m_calendar(calendar)
        , m_now(now)
        , m_nextDate(*store.database(),
                     "SELECT min(date) FROM " + table().name + " WHERE date >= ? AND date < ?")
        // The window's own query: so the order of a day's tasks is the window's, too.
        , m_tasks(*store.database(), selection(table(), tasksOnDay({0, 0})))
    {
    }

    void read(const DayInterval &interval, const TaskReceiver &receive)
    {
        Instant start = interval.start;
        while (const std::optional<Instant> date = nextDate({start, interval.end})) {
            DayInterval day = m_calendar.dayInterval(*date);
            // Beyond the calendar there are no days, only moments.
            day.end = std::max(day.end, std::nextafter(*date, std::numeric_limits<double>::max()));
            readDay(day, receive);
            start = day.end;
        }
    }

private:
    static const RecordTable &table() { return recordTable(RecordType::Task); }

    /// The date of the first task in @p interval.
    std::optional<Instant> nextDate(const DayInterval &interval)
    {
        m_nextDate.reset();
        m_nextDate.bind(1, interval.start);
        m_nextDate.bind(2, interval.end);
        m_nextDate.executeStep();
        if (m_nextDate.getColumn(0).isNull())
            return std::nullopt;
        return m_nextDate.getColumn(0).getDouble();
    }

    void readDay(const DayInterval &day, const TaskReceiver &receive)
    {
        m_tasks.reset();
        m_tasks.bind(1, day.start);
        m_tasks.bind(2, day.end);
        RecordedTask task;
        task.day = m_calendar.dayOf(day.start);
        while (m_tasks.executeStep()) {
            const Task::Values values = taskValues(m_tasks);
            task.projectCode = values.projectCode;
            task.name = values.name;
            task.seconds = Task::totalSeconds(
                values, m_now, [&] { return Task::repairAdvice(values, m_calendar, m_storePath); });
            receive(task);
            lookNowAndThen();
        }
    }

    void lookNowAndThen()
    {
        const auto now = std::chrono::steady_clock::now();
        if (now < m_nextLook)
            return;
        if (m_store.hasChanged())
            failForChange();
        m_nextLook = now + slice;
    }

    ReadOnlyStore &m_store;
    QString m_storePath;
    const Calendar &m_calendar;
    Instant m_now;
    SQLite::Statement m_nextDate;
    SQLite::Statement m_tasks;
    std::chrono::steady_clock::time_point m_nextLook = std::chrono::steady_clock::now() + slice;
};

} // namespace

void readStoredTasks(const std::filesystem::path &path, const Period &period,
                     const Calendar &calendar, Instant now, const TaskReceiver &receive)
{
    ReadOnlyStore store(path);
    if (store.database() == nullptr)
        return;
    try {
        StoredTasks(store, calendar, now)
            .read(calendar.interval(period.first, period.last), receive);
    } catch (const SQLite::Exception &error) {
        // Half of an old page and half of a new one look like damage.
        if (store.hasChanged())
            failForChange();
        refuseFor(error, store.path());
    }
    if (store.hasChanged())
        failForChange();
}
