#include "views/day/tasklistviewmodel.h"

TaskListViewModel::TaskListViewModel(QObject *parent)
    : QObject(parent)
{
}

void TaskListViewModel::toggle(Task *task)
{
    if (task && m_tasks && m_timerManager && m_modelContext)
        m_timerManager->toggleTask(task, *m_tasks, *m_modelContext);
}

void TaskListViewModel::setTasks(DayTasks *tasks)
{
    if (m_tasks == tasks)
        return;
    if (m_tasks)
        m_tasks->disconnect(this);
    m_tasks = tasks;
    if (tasks)
        connect(tasks, &DayTasks::changed, this, &TaskListViewModel::update);
    Q_EMIT tasksChanged();
    update();
}

void TaskListViewModel::setTimerManager(TimerManager *timerManager)
{
    if (m_timerManager == timerManager)
        return;
    m_timerManager = timerManager;
    m_edits.setTimerManager(timerManager);
    Q_EMIT timerManagerChanged();
}

void TaskListViewModel::setModelContext(ModelContext *modelContext)
{
    if (m_modelContext == modelContext)
        return;
    m_modelContext = modelContext;
    Q_EMIT modelContextChanged();
}

void TaskListViewModel::update()
{
    const QList<Task *> tasks = m_tasks ? m_tasks->sortedTasks() : QList<Task *>();
    m_edits.keepOnly(tasks);
    m_rows.setObjects({tasks.cbegin(), tasks.cend()});
}
