#include "views/day/tasklistviewmodel.h"

#include <algorithm>
#include <utility>

TaskListViewModel::TaskListViewModel(const DayTasks &tasks, TimerManager &timerManager,
                                     ModelContext &modelContext)
    : m_tasks(tasks)
    , m_timerManager(timerManager)
    , m_modelContext(modelContext)
    , m_codeMenu(modelContext)
{
    connect(&tasks, &DayTasks::changed, this, &TaskListViewModel::update);
    connect(&timerManager, &TimerManager::tickChanged, this, &TaskListViewModel::updateRunning);
    connect(&timerManager, &TimerManager::showBillableTimeChanged, this,
            &TaskListViewModel::updateAll);
    update();
}

TaskListViewModel::~TaskListViewModel()
{
    if (isEditing())
        m_timerManager.setIsEditing(false);
}

void TaskListViewModel::toggle(TaskRowViewModel *row)
{
    if (row && row->task())
        m_timerManager.toggleTask(row->task(), m_tasks, m_modelContext);
}

void TaskListViewModel::update()
{
    const bool wasEditing = isEditing();
    setRowsOf(m_tasks.sortedTasks(), m_rowOf, m_rows, [this](Task &task) {
        return std::make_shared<TaskRowViewModel>(task, m_timerManager, m_codeMenu);
    });
    // Nobody is left to end the edit, and the day takes no keys while one is open.
    if (wasEditing && !isEditing())
        m_timerManager.setIsEditing(false);
}

void TaskListViewModel::updateRunning()
{
    const QList<Task *> running = m_tasks.running();
    for (Task *task : running)
        m_rowOf.value(task)->update();
}

void TaskListViewModel::updateAll()
{
    for (const auto &row : std::as_const(m_rowOf))
        row->update();
}

bool TaskListViewModel::isEditing() const
{
    return std::any_of(m_rowOf.cbegin(), m_rowOf.cend(),
                       [](const auto &row) { return row->isEditing(); });
}
