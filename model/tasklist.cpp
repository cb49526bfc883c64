#include "model/tasklist.h"

#include <algorithm>
#include <utility>

AllTasks::AllTasks(ModelContext &context, QObject *parent)
    : QObject(parent)
    , m_context(context)
    , m_running(context, runningTasks(), QueryOrder::Store)
{
    connect(&m_running, &RecordQuery::changed, this, &AllTasks::runningChanged);
}

Task *AllTasks::withID(const QUuid &id) const
{
    return LiveQuery<Task>(m_context, tasksWithID(id), QueryOrder::Store).results().value(0);
}

QList<Task *> AllTasks::running() const
{
    return m_running.results();
}

DayTasks::DayTasks(ModelContext &context, const DayInterval &day, QObject *parent)
    : QObject(parent)
    , m_day(day)
    , m_query(context, tasksOnDay(day), QueryOrder::Store)
{
    connect(&m_query, &RecordQuery::changed, this, &DayTasks::update);
    update();
}

void DayTasks::setDay(const DayInterval &day)
{
    if (m_day == day)
        return;
    m_day = day;
    m_query.setFilter(tasksOnDay(day));
}

Task *DayTasks::withID(const QUuid &id) const
{
    const auto found = std::find_if(m_tasks.cbegin(), m_tasks.cend(),
                                    [&](const Task *task) { return task->id() == id; });
    return found != m_tasks.cend() ? *found : nullptr;
}

QList<Task *> DayTasks::running() const
{
    QList<Task *> running;
    std::copy_if(m_tasks.cbegin(), m_tasks.cend(), std::back_inserter(running),
                 [](const Task *task) { return task->isRunning(); });
    return running;
}

void DayTasks::update()
{
    m_tasks = m_query.results();
    m_sortedTasks = m_tasks;
    std::stable_sort(m_sortedTasks.begin(), m_sortedTasks.end(),
                     [](const Task *a, const Task *b) { return a->sortOrder() < b->sortOrder(); });
    m_isKnown = m_query.isAnswered();
    Q_EMIT changed();
}
