#pragma once

#include "model/tasklist.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

/// The day's totals.
class FooterViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(DayTasks *tasks READ tasks WRITE setTasks NOTIFY tasksChanged REQUIRED)
    Q_PROPERTY(double tick READ tick WRITE setTick NOTIFY tickChanged REQUIRED)
    Q_PROPERTY(bool showBillableTime READ showBillableTime WRITE setShowBillableTime NOTIFY
                   showBillableTimeChanged REQUIRED)

    Q_PROPERTY(QString totalFormattedTime READ totalFormattedTime NOTIFY totalsChanged)
    Q_PROPERTY(QString totalHoursText READ totalHoursText NOTIFY totalsChanged)

public:
    explicit FooterViewModel(QObject *parent = nullptr);

    DayTasks *tasks() const { return m_tasks; }
    void setTasks(DayTasks *tasks);
    /// Not shown: with each new value the totals are reckoned again.
    qint64 tick() const { return m_tick; }
    void setTick(qint64 tick);
    bool showBillableTime() const { return m_showBillableTime; }
    void setShowBillableTime(bool showBillableTime);
    /// The recorded time of all tasks as a clock, never rounded.
    QString totalFormattedTime() const { return m_totalFormattedTime; }
    /// The sum of the hours that the rows show: "7.25 t".
    QString totalHoursText() const { return m_totalHoursText; }

Q_SIGNALS:
    void tasksChanged();
    void tickChanged();
    void showBillableTimeChanged();
    void totalsChanged();

private:
    void update();

    QPointer<DayTasks> m_tasks;
    qint64 m_tick = 0;
    bool m_showBillableTime = false;
    QString m_totalFormattedTime;
    QString m_totalHoursText;
};
