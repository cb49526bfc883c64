#include "views/day/footerviewmodel.h"

#include "model/arithmetic.h"
#include "model/durations.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// What to do about a sum that does not fit: the task with the most time is the one to look at.
std::string adviceOn(const QList<Task *> &tasks)
{
    const auto size = [](const Task *task) {
        const auto seconds = static_cast<quint64>(task->currentTotalSeconds());
        return task->currentTotalSeconds() < 0 ? 0 - seconds : seconds;
    };
    return (*std::max_element(tasks.cbegin(), tasks.cend(),
                              [&](const Task *a, const Task *b) { return size(a) < size(b); }))
        ->repairAdvice();
}
} // namespace

FooterViewModel::FooterViewModel(const TimerManager &timerManager, const DayTasks &tasks)
    : m_timerManager(timerManager)
    , m_tasks(tasks)
{
    connect(&tasks, &DayTasks::changed, this, &FooterViewModel::update);
    connect(&timerManager, &TimerManager::tickChanged, this, &FooterViewModel::update);
    connect(&timerManager, &TimerManager::showBillableTimeChanged, this, &FooterViewModel::update);
    update();
}

void FooterViewModel::update()
{
    qint64 seconds = 0;
    double hours = 0.0;
    const bool isBillable = m_timerManager.showBillableTime();
    const QList<Task *> &tasks = m_tasks.tasks();
    for (const Task *task : tasks) {
        const qint64 taskSeconds = task->currentTotalSeconds();
        seconds = checkedSum(seconds, taskSeconds, [&tasks] { return adviceOn(tasks); });
        // Each task is rounded by itself, so that the sum is that of the rows.
        hours += isBillable ? roundedDecimalHours(taskSeconds) : decimalHours(taskSeconds);
    }

    const QString time = clockText(seconds);
    const QString hoursWithUnit = hoursText(hours) + u" t"_s;
    if (time == m_totalFormattedTime && hoursWithUnit == m_totalHoursText)
        return;
    m_totalFormattedTime = time;
    m_totalHoursText = hoursWithUnit;
    Q_EMIT totalsChanged();
}
