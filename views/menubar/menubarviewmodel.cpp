#include "views/menubar/menubarviewmodel.h"

#include "model/clock.h"
#include "model/durations.h"

#include <numeric>

using namespace Qt::StringLiterals;

MenuBarViewModel::MenuBarViewModel(QObject *parent)
    : QObject(parent)
{
}

MenuBarViewModel::MenuBarViewModel(TimerManager &timerManager, ModelContext &modelContext)
    : m_timerManager(&timerManager)
    , m_modelContext(&modelContext)
{
    begin();
}

void MenuBarViewModel::toggleTask(Task *task)
{
    if (task && m_allTasks)
        m_timerManager->toggleTask(task, *m_allTasks, *m_modelContext);
}

void MenuBarViewModel::setTimerManager(TimerManager *timerManager)
{
    if (m_timerManager == timerManager)
        return;
    m_timerManager = timerManager;
    Q_EMIT timerManagerChanged();
}

void MenuBarViewModel::setModelContext(ModelContext *modelContext)
{
    if (m_modelContext == modelContext)
        return;
    m_modelContext = modelContext;
    Q_EMIT modelContextChanged();
}

QList<Task *> MenuBarViewModel::todaysTasks() const
{
    return m_todaysTasks ? m_todaysTasks->sortedTasks() : QList<Task *>();
}

double MenuBarViewModel::totalTodayHours() const
{
    const QList<Task *> tasks = todaysTasks();
    return std::accumulate(tasks.cbegin(), tasks.cend(), 0.0, [](double hours, const Task *task) {
        return hours + task->decimalHours();
    });
}

void MenuBarViewModel::begin()
{
    if (!m_timerManager || !m_modelContext)
        return;
    const Clock &clock = m_timerManager->clock();
    const auto today = [&clock] { return clock.calendar().dayInterval(clock.now()); };
    m_allTasks = std::make_unique<AllTasks>(*m_modelContext);
    m_todaysTasks = std::make_unique<DayTasks>(*m_modelContext, today());
    connect(m_todaysTasks.get(), &DayTasks::changed, this, &MenuBarViewModel::updateTasks);
    connect(&clock, &Clock::calendarChanged, this,
            [this, today] { m_todaysTasks->setDay(today()); });
    connect(m_timerManager, &TimerManager::tickChanged, this, &MenuBarViewModel::updateTotal);
    updateTasks();
}

void MenuBarViewModel::updateTasks()
{
    const QList<Task *> tasks = todaysTasks();
    m_rows.setObjects({tasks.cbegin(), tasks.cend()});
    Q_EMIT todaysTasksChanged();
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
