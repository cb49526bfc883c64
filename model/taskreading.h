#pragma once

#include "model/recordedtask.h"
#include "model/task.h"

#include <SQLiteCpp/Statement.h>

#include <chrono>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

/// A task without its object, as a row of the store or as what is to become one.
struct StoredTask {
    /// Greater than all others for a task that has not been written yet.
    qint64 rowid = std::numeric_limits<qint64>::max();
    Task::Values values;
};

/// Reads the tasks of a period from the store, a little at a time, by the index of their dates.
/// Makes no objects of them and keeps nothing but its place, so that it goes on behind it when the
/// store has been changed meanwhile.
class TaskReading
{
public:
    /// Of the tasks whose date lies in @p period, in the store that @p database has open, which
    /// outlives the reading. Throws SQLite::Exception.
    TaskReading(SQLite::Database &database, const DayInterval &period);

    /// Goes on for about @p time, and by one task at least; hands the tasks to @p take in the order
    /// of their dates, and of their rows where the dates are equal. True once there are no more.
    /// Throws SQLite::Exception.
    bool goOn(std::chrono::nanoseconds time, const std::function<void(StoredTask &&)> &take);

private:
    using Moment = std::chrono::steady_clock::time_point;
    bool read(SQLite::Statement &rows, Moment end, const std::function<void(StoredTask &&)> &take);

    SQLite::Statement m_restOfDate;
    SQLite::Statement m_laterDates;
    /// The date and the row of the last task that has been read.
    std::pair<Instant, qint64> m_place;
};

/// Makes of a period's tasks what is told of them: puts them into days as the window does, orders
/// each day's, and adds up their time. Keeps the tasks of one day.
class RecordedDays
{
public:
    /// Called for a task whose time cannot be added up, with the message of the fatal error that
    /// this is elsewhere. If it returns, the task is left out.
    using FaultReceiver = std::function<void(const char *fault, const Task::Values &values)>;

    /// Hands the tasks to @p receive, with days as in @p calendar and running tasks up to @p now.
    RecordedDays(const Calendar &calendar, Instant now, TaskReceiver receive, FaultReceiver fail);

    /// Takes one more task, in the order of their dates.
    void take(StoredTask &&task);
    /// There are no more.
    void finish();

private:
    void deliverDay();

    Calendar m_calendar;
    Instant m_now;
    TaskReceiver m_receive;
    FaultReceiver m_fail;
    DayInterval m_day{0, 0};
    std::vector<StoredTask> m_tasks;
};

/// @p text as it can be told to anybody, over the bus as well, and the same whether it comes from
/// the store or has not been written yet: a NUL becomes the replacement character, and half a
/// surrogate pair what the store makes of it.
QString tellable(const QString &text);
