#include "timer/timermanager.h"

#include "model/arithmetic.h"
#include "model/clock.h"
#include "model/modelcontext.h"
#include "model/tasklist.h"

TimerManager::TimerManager(const Clock &clock, std::chrono::milliseconds beat)
    : m_clock(clock)
    , m_beat(beat)
    , m_selectedDate(clock.today())
{
}

void TimerManager::startTask(Task *task, const TaskList &allTasks, ModelContext &modelContext)
{
    if (m_activeTaskID) {
        if (Task *const active = allTasks.withID(*m_activeTaskID))
            active->stop();
    }
    task->start();
    setActiveTaskID(task->id());
    startTimer();
    modelContext.save();
}

void TimerManager::stopTask(Task *task, ModelContext &modelContext)
{
    task->stop();
    if (m_activeTaskID == task->id()) {
        setActiveTaskID(std::nullopt);
        stopTimer();
    }
    modelContext.save();
}

void TimerManager::toggleTask(Task *task, const TaskList &allTasks, ModelContext &modelContext)
{
    if (task->isRunning())
        stopTask(task, modelContext);
    else
        startTask(task, allTasks, modelContext);
}

void TimerManager::stopAllTasks(const TaskList &tasks, ModelContext &modelContext)
{
    const QList<Task *> running = tasks.running();
    for (Task *task : running)
        task->stop();
    setActiveTaskID(std::nullopt);
    stopTimer();
    modelContext.save();
}

void TimerManager::syncActiveTask(const TaskList &tasks)
{
    if (const Task *const running = tasks.running().value(0)) {
        setActiveTaskID(running->id());
        startTimer();
    } else {
        setActiveTaskID(std::nullopt);
        stopTimer();
    }
}

void TimerManager::navigateToDate(double date)
{
    setSelectedDate(m_clock.calendar().startOfDay(date));
}

void TimerManager::goToPreviousDay()
{
    moveSelectedDate(-1);
}

void TimerManager::goToNextDay()
{
    moveSelectedDate(1);
}

void TimerManager::goToToday()
{
    setSelectedDate(m_clock.today());
}

void TimerManager::setShowBillableTime(bool showBillableTime)
{
    if (m_showBillableTime == showBillableTime)
        return;
    m_showBillableTime = showBillableTime;
    Q_EMIT showBillableTimeChanged();
}

void TimerManager::setIsEditing(bool isEditing)
{
    if (m_isEditing == isEditing)
        return;
    m_isEditing = isEditing;
    Q_EMIT isEditingChanged();
}

bool TimerManager::isToday() const
{
    return m_clock.calendar().isSameDay(m_selectedDate, m_clock.now());
}

void TimerManager::startTimer()
{
    stopTimer();
    m_timer = std::make_unique<QTimer>();
    // A coarse timer may tick late, and would then show one second twice and leave out the next.
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer.get(), &QTimer::timeout, this, &TimerManager::advance);
    m_timer->start(m_beat);
}

void TimerManager::stopTimer()
{
    // The timer must not be deleted now, as its own tick may have led here.
    if (m_timer) {
        m_timer->stop();
        m_timer.release()->deleteLater();
    }
}

void TimerManager::advance()
{
    m_tick = checkedSum(m_tick, 1);
    Q_EMIT tickChanged();
}

void TimerManager::moveSelectedDate(int days)
{
    if (const auto date = m_clock.calendar().addingDays(m_selectedDate, days))
        setSelectedDate(*date);
}

void TimerManager::setSelectedDate(Instant date)
{
    if (m_selectedDate == date)
        return;
    m_selectedDate = date;
    Q_EMIT selectedDateChanged();
}

void TimerManager::setActiveTaskID(const std::optional<QUuid> &id)
{
    if (m_activeTaskID == id)
        return;
    m_activeTaskID = id;
    Q_EMIT activeTaskIDChanged();
}
