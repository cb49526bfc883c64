#include "views/day/headerviewmodel.h"

#include "model/clock.h"

#include <QLocale>

using namespace Qt::StringLiterals;

HeaderViewModel::HeaderViewModel(QObject *parent)
    : QObject(parent)
{
}

void HeaderViewModel::startOrPause()
{
    if (isAnyTaskRunning())
        Q_EMIT stopAll();
    else
        Q_EMIT startFirst();
}

void HeaderViewModel::setTimerManager(TimerManager *timerManager)
{
    if (m_timerManager == timerManager)
        return;
    if (m_timerManager) {
        m_timerManager->disconnect(this);
        m_timerManager->clock().disconnect(this);
    }
    m_timerManager = timerManager;
    if (timerManager) {
        connect(&timerManager->clock(), &Clock::calendarChanged, this,
                &HeaderViewModel::updateDate);
        connect(timerManager, &TimerManager::selectedDateChanged, this,
                &HeaderViewModel::updateDate);
        connect(timerManager, &TimerManager::activeTaskIDChanged, this,
                &HeaderViewModel::buttonChanged);
    }
    Q_EMIT timerManagerChanged();
    Q_EMIT buttonChanged();
    updateDate();
}

void HeaderViewModel::setTasks(DayTasks *tasks)
{
    if (m_tasks == tasks)
        return;
    if (m_tasks)
        m_tasks->disconnect(this);
    m_tasks = tasks;
    if (tasks)
        connect(tasks, &DayTasks::changed, this, &HeaderViewModel::buttonChanged);
    Q_EMIT tasksChanged();
    Q_EMIT buttonChanged();
}

void HeaderViewModel::setDateFont(const QFont &font)
{
    if (m_dateFont == font)
        return;
    m_dateFont = font;
    Q_EMIT dateFontChanged();
    updateDate();
}

void HeaderViewModel::setDateRoom(qreal room)
{
    if (m_dateRoom == room)
        return;
    m_dateRoom = room;
    Q_EMIT dateRoomChanged();
    updateDate();
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

void HeaderViewModel::updateDate()
{
    if (!m_timerManager)
        return;
    const QDate day = m_timerManager->clock().calendar().dayOf(m_timerManager->selectedDate());
    const QString text =
        QLocale(QLocale::Danish, QLocale::Denmark).toString(day, u"dddd d. MMMM yyyy"_s);
    const DateFit fit = fitDate(text, m_dateFont, m_dateRoom);
    if (text == m_dateText && fit == m_dateFit)
        return;
    m_dateText = text;
    m_dateFit = fit;
    Q_EMIT dateChanged();
}

bool HeaderViewModel::hasTasks() const
{
    return m_tasks && !m_tasks->tasks().isEmpty();
}

bool HeaderViewModel::isAnyTaskRunning() const
{
    return m_timerManager && m_timerManager->isAnyTaskRunning();
}
