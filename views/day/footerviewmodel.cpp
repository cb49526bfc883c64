#include "views/day/footerviewmodel.h"

#include "model/arithmetic.h"
#include "model/durations.h"

using namespace Qt::StringLiterals;

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
        seconds = checkedSum(seconds, taskSeconds);
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
