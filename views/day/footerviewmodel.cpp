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

FooterViewModel::FooterViewModel(QObject *parent)
    : QObject(parent)
{
    update();
}

void FooterViewModel::setTasks(DayTasks *tasks)
{
    if (m_tasks == tasks)
        return;
    if (m_tasks)
        m_tasks->disconnect(this);
    m_tasks = tasks;
    if (tasks)
        connect(tasks, &DayTasks::changed, this, &FooterViewModel::update);
    Q_EMIT tasksChanged();
    update();
}

void FooterViewModel::setTick(qint64 tick)
{
    if (m_tick == tick)
        return;
    m_tick = tick;
    Q_EMIT tickChanged();
    update();
}

void FooterViewModel::setShowBillableTime(bool showBillableTime)
{
    if (m_showBillableTime == showBillableTime)
        return;
    m_showBillableTime = showBillableTime;
    Q_EMIT showBillableTimeChanged();
    update();
}

void FooterViewModel::update()
{
    qint64 seconds = 0;
    double hours = 0.0;
    const QList<Task *> tasks = m_tasks ? m_tasks->tasks() : QList<Task *>();
    for (const Task *task : tasks) {
        const qint64 taskSeconds = task->currentTotalSeconds();
        seconds = checkedSum(seconds, taskSeconds, [&tasks] { return adviceOn(tasks); });
        // Rounded for each task, so that the sum is that of the rows.
        hours += m_showBillableTime ? roundedDecimalHours(taskSeconds) : decimalHours(taskSeconds);
    }

    const QString time = clockText(seconds);
    const QString hoursWithUnit = hoursText(hours) + u" t"_s;
    if (time == m_totalFormattedTime && hoursWithUnit == m_totalHoursText)
        return;
    m_totalFormattedTime = time;
    m_totalHoursText = hoursWithUnit;
    Q_EMIT totalsChanged();
}
