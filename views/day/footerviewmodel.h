#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

/// The day's totals.
class FooterViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the day")
    Q_PROPERTY(QString totalFormattedTime READ totalFormattedTime NOTIFY totalsChanged)
    Q_PROPERTY(QString totalHoursText READ totalHoursText NOTIFY totalsChanged)

public:
    /// Both outlive it.
    FooterViewModel(const TimerManager &timerManager, const DayTasks &tasks);

    /// The recorded time of all tasks as a clock, never rounded.
    QString totalFormattedTime() const { return m_totalFormattedTime; }
    /// The sum of the hours that the rows show: "7.25 t".
    QString totalHoursText() const { return m_totalHoursText; }

Q_SIGNALS:
    void totalsChanged();
    /// The user wants a new task.
    void addTask();

private:
    void update();

    const TimerManager &m_timerManager;
    const DayTasks &m_tasks;
    QString m_totalFormattedTime;
    QString m_totalHoursText;
};
