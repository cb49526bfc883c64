#include "views/day/headerviewmodel.h"

#include "model/clock.h"
#include "views/controls/danishdate.h"

using namespace Qt::StringLiterals;

HeaderViewModel::HeaderViewModel(TimerManager &timerManager, const DayTasks &tasks)
    : m_timerManager(timerManager)
    , m_tasks(tasks)
{
    connect(&timerManager.clock(), &Clock::calendarChanged, this, &HeaderViewModel::updateDate);
    connect(&timerManager, &TimerManager::selectedDateChanged, this, &HeaderViewModel::updateDate);
    connect(&timerManager, &TimerManager::activeTaskIDChanged, this,
            &HeaderViewModel::buttonChanged);
    connect(&timerManager, &TimerManager::showBillableTimeChanged, this,
            &HeaderViewModel::showBillableTimeChanged);
    connect(&tasks, &DayTasks::changed, this, &HeaderViewModel::buttonChanged);
    connect(this, &HeaderViewModel::dateRoomChanged, this, &HeaderViewModel::updateDate);
    updateDate();
}

void HeaderViewModel::startOrPause()
{
    if (isAnyTaskRunning())
        Q_EMIT stopAll();
    else
        Q_EMIT startFirst();
}

void HeaderViewModel::goToPreviousDay()
{
    m_timerManager.goToPreviousDay();
}

void HeaderViewModel::goToNextDay()
{
    m_timerManager.goToNextDay();
}

bool HeaderViewModel::isButtonEnabled() const
{
    return isAnyTaskRunning() || hasTasks();
}

QString HeaderViewModel::helpText() const
{
    if (isAnyTaskRunning())
        return u"Sæt aktiv opgave på pause"_s;
    return hasTasks() ? u"Start første opgave"_s : u"Ingen opgaver"_s;
}

bool HeaderViewModel::showBillableTime() const
{
    return m_timerManager.showBillableTime();
}

void HeaderViewModel::setShowBillableTime(bool showBillableTime)
{
    m_timerManager.setShowBillableTime(showBillableTime);
}

void HeaderViewModel::updateDate()
{
    const QDate day = m_timerManager.clock().calendar().dayOf(m_timerManager.selectedDate());
    const QString text = danishDay(day);
    const DateFit fit = fitDate(text, m_dateFont, m_dateRoom);
    if (text == m_dateText && fit == m_dateFit)
        return;
    m_dateText = text;
    m_dateFit = fit;
    Q_EMIT dateChanged();
}

bool HeaderViewModel::hasTasks() const
{
    return !m_tasks.tasks().isEmpty();
}

bool HeaderViewModel::isAnyTaskRunning() const
{
    return m_timerManager.isAnyTaskRunning();
}
