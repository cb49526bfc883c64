#include "model/taskreading.h"

#include "model/recordtable.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <algorithm>
#include <cmath>

namespace
{

/// Yields what the Task table's select does, by the index of the dates, which holds the tasks in
/// the order of their dates and then of their rows.
std::string tasksByDate(const char *condition)
{
    return recordTable(RecordType::Task).select + " INDEXED BY TaskByDate WHERE " + condition;
}

} // namespace

TaskReading::TaskReading(SQLite::Database &database, const DayInterval &period)
    : m_restOfDate(database, tasksByDate("date = ? AND rowid > ? ORDER BY rowid"))
    , m_laterDates(database, tasksByDate("date > ? AND date < ? ORDER BY date, rowid"))
    , m_place(std::nextafter(period.start, -std::numeric_limits<Instant>::infinity()),
              std::numeric_limits<qint64>::max())
{
    m_laterDates.bind(2, period.end);
}

bool TaskReading::goOn(std::chrono::nanoseconds time,
                       const std::function<void(StoredTask &&)> &take)
{
    const Moment end = std::chrono::steady_clock::now() + time;
    // SQLite cannot go straight to a place in an index by date and row together.
    m_restOfDate.bind(1, m_place.first);
    m_restOfDate.bind(2, static_cast<int64_t>(m_place.second));
    if (!read(m_restOfDate, end, take))
        return false;
    m_laterDates.bind(1, m_place.first);
    return read(m_laterDates, end, take);
}

bool TaskReading::read(SQLite::Statement &rows, Moment end,
                       const std::function<void(StoredTask &&)> &take)
{
    while (rows.executeStep()) {
        StoredTask task{rows.getColumn(0).getInt64(), taskValues(rows)};
        const std::pair place(task.values.date, task.rowid);
        // Pages that refer to each other in a circle yield their rows again and again.
        if (!(m_place < place))
            throw SQLite::Exception("The rows of the index TaskByDate are not in order",
                                    SQLITE_CORRUPT);
        m_place = place;
        take(std::move(task));
        if (std::chrono::steady_clock::now() >= end) {
            // No read is left open while control is elsewhere.
            rows.reset();
            return false;
        }
    }
    rows.reset();
    return true;
}

RecordedDays::RecordedDays(const Calendar &calendar, Instant now, TaskReceiver receive,
                           FaultReceiver fail)
    : m_calendar(calendar)
    , m_now(now)
    , m_receive(std::move(receive))
    , m_fail(std::move(fail))
{
}

void RecordedDays::take(StoredTask &&task)
{
    const Instant date = task.values.date;
    if (m_tasks.empty() || !m_day.contains(date)) {
        deliverDay();
        m_day = m_calendar.dayInterval(date);
        // Where the clock is set back over midnight, the day begins at one of the two, which Qt's
        // versions choose; what has the day's date on the other side is the neighbour's.
        if (date < m_day.start)
            m_day = m_calendar.dayInterval(m_day.start - 1);
        else if (date >= m_day.end && m_day.end > m_day.start)
            m_day = m_calendar.dayInterval(m_day.end);
        // Beyond the calendar there are no days, only moments.
        if (!m_day.contains(date))
            m_day = {date, std::nextafter(date, std::numeric_limits<double>::max())};
    }
    m_tasks.push_back(std::move(task));
}

void RecordedDays::finish()
{
    deliverDay();
}

void RecordedDays::deliverDay()
{
    std::stable_sort(m_tasks.begin(), m_tasks.end(),
                     [](const StoredTask &a, const StoredTask &b) { return a.rowid < b.rowid; });
    RecordedTask task;
    task.day = m_calendar.dayOf(m_day.start);
    for (const StoredTask &stored : m_tasks) {
        const Task::Values &values = stored.values;
        if (const char *const fault = Task::faultOfTotal(values, m_now)) {
            m_fail(fault, values);
            continue;
        }
        task.projectCode.reset();
        if (values.projectCode)
            task.projectCode = tellable(*values.projectCode);
        task.name = tellable(values.name);
        task.seconds = Task::totalSeconds(values, m_now, {});
        m_receive(task);
    }
    m_tasks.clear();
}

QString tellable(const QString &text)
{
    if (text.isValidUtf16() && !text.contains(QChar::Null))
        return text;
    return QString::fromUtf8(text.toUtf8()).replace(QChar::Null, QChar::ReplacementCharacter);
}
