#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/day/datefit.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

/// What the header shows: the date, and what its start/pause button does.
class HeaderViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the day")
    /// The font that the date has where there is room.
    Q_PROPERTY(QFont dateFont MEMBER m_dateFont NOTIFY dateRoomChanged)
    /// Pixels for the date and the four gaps beside the flexible spacers.
    Q_PROPERTY(qreal dateRoom MEMBER m_dateRoom NOTIFY dateRoomChanged)

    Q_PROPERTY(QString dateText READ dateText NOTIFY dateChanged)
    Q_PROPERTY(QString shownDate READ shownDate NOTIFY dateChanged)
    Q_PROPERTY(qreal dateGap READ dateGap NOTIFY dateChanged)
    Q_PROPERTY(qreal dateWidth READ dateWidth NOTIFY dateChanged)
    Q_PROPERTY(int datePixelSize READ datePixelSize NOTIFY dateChanged)
    Q_PROPERTY(bool isAnyTaskRunning READ isAnyTaskRunning NOTIFY buttonChanged)
    Q_PROPERTY(bool isButtonEnabled READ isButtonEnabled NOTIFY buttonChanged)
    Q_PROPERTY(QString helpText READ helpText NOTIFY buttonChanged)
    Q_PROPERTY(bool showBillableTime READ showBillableTime WRITE setShowBillableTime NOTIFY
                   showBillableTimeChanged)

public:
    /// Both outlive it.
    HeaderViewModel(TimerManager &timerManager, const DayTasks &tasks);

    /// The start/pause button: pauses if a task runs now, else starts.
    Q_INVOKABLE void startOrPause();
    Q_INVOKABLE void goToPreviousDay();
    Q_INVOKABLE void goToNextDay();

    /// The selected day: "mandag 3. marts 2025".
    QString dateText() const { return m_dateText; }
    /// The same as it is shown: in little room it breaks after the weekday.
    QString shownDate() const { return m_dateFit.text; }
    qreal dateGap() const { return m_dateFit.gap; }
    qreal dateWidth() const { return m_dateFit.textWidth; }
    int datePixelSize() const { return m_dateFit.pixelSize; }
    bool isAnyTaskRunning() const;
    bool isButtonEnabled() const;
    /// What the start/pause button would do.
    QString helpText() const;
    bool showBillableTime() const;
    void setShowBillableTime(bool showBillableTime);

Q_SIGNALS:
    void dateRoomChanged();
    void dateChanged();
    void buttonChanged();
    void showBillableTimeChanged();
    void stopAll();
    void startFirst();

private:
    void updateDate();
    bool hasTasks() const;

    TimerManager &m_timerManager;
    const DayTasks &m_tasks;
    QFont m_dateFont;
    qreal m_dateRoom = 0;
    QString m_dateText;
    DateFit m_dateFit{{}, 0, 0, 1};
};
