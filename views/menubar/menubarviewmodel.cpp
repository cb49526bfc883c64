#include "views/menubar/menubarviewmodel.h"

#include "model/clock.h"
#include "model/durations.h"
#include <numeric>

using namespace Qt::StringLiterals;

namespace
{

DayInterval today(const Clock &clock)
{
    return clock.calendar().dayInterval(clock.now());
}

} // namespace

MenuBarViewModel::MenuBarViewModel(TimerManager &timerManager, ModelContext &modelContext)
    : m_timerManager(timerManager)
    , m_modelContext(modelContext)
    , m_allTasks(modelContext)
    , m_todaysTasks(modelContext, today(timerManager.clock()))
{
    connect(&m_todaysTasks, &DayTasks::changed, this, &MenuBarViewModel::updateTasks);
    connect(&timerManager.clock(), &Clock::calendarChanged, this,
            [this] { m_todaysTasks.setDay(today(m_timerManager.clock())); });
    connect(&timerManager, &TimerManager::tickChanged, this, &MenuBarViewModel::updateTimes);
    updateTasks();
}

void MenuBarViewModel::toggleTask(Task *task)
{
    if (task)
        m_timerManager.toggleTask(task, m_allTasks, m_modelContext);
}

void MenuBarViewModel::toggle(MenuBarTaskRowViewModel *row)
{
    toggleTask(row->task());
}

double MenuBarViewModel::totalTodayHours() const
{
    const QList<Task *> &tasks = todaysTasks();
    return std::accumulate(tasks.cbegin(), tasks.cend(), 0.0, [](double hours, const Task *task) {
        return hours + task->decimalHours();
    });
}

void MenuBarViewModel::updateTasks()
{
    setRowsOf(todaysTasks(), m_rowOf, m_rows,
              [](Task &task) { return std::make_shared<MenuBarTaskRowViewModel>(task); });
    Q_EMIT todaysTasksChanged();
    updateTotal();
}

void MenuBarViewModel::updateTimes()
{
    const QList<Task *> running = m_todaysTasks.running();
    for (Task *task : running)
        m_rowOf.value(task)->updateTime();
    updateTotal();
}

void MenuBarViewModel::updateTotal()
{
    const QString text = hoursText(totalTodayHours()) + u" t"_s;
    if (text == m_totalText)
        return;
    m_totalText = text;
    Q_EMIT totalTextChanged();
}
