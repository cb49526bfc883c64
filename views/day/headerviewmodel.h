#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/day/datefit.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

/// What the header shows: the date, and what its start/pause button does.
class HeaderViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(TimerManager *timerManager READ timerManager WRITE setTimerManager NOTIFY
                   timerManagerChanged REQUIRED)
    Q_PROPERTY(DayTasks *tasks READ tasks WRITE setTasks NOTIFY tasksChanged REQUIRED)

    Q_PROPERTY(QFont dateFont READ dateFont WRITE setDateFont NOTIFY dateFontChanged REQUIRED)
    Q_PROPERTY(qreal dateRoom READ dateRoom WRITE setDateRoom NOTIFY dateRoomChanged REQUIRED)

    Q_PROPERTY(QString dateText READ dateText NOTIFY dateChanged)
    Q_PROPERTY(QString shownDate READ shownDate NOTIFY dateChanged)
    Q_PROPERTY(qreal dateGap READ dateGap NOTIFY dateChanged)
    Q_PROPERTY(qreal dateWidth READ dateWidth NOTIFY dateChanged)
    Q_PROPERTY(int datePixelSize READ datePixelSize NOTIFY dateChanged)
    Q_PROPERTY(bool isButtonEnabled READ isButtonEnabled NOTIFY buttonChanged)
    Q_PROPERTY(QString helpText READ helpText NOTIFY buttonChanged)

public:
    explicit HeaderViewModel(QObject *parent = nullptr);

    /// The start/pause button: pauses if a task runs now, else starts.
    Q_INVOKABLE void startOrPause();

    TimerManager *timerManager() const { return m_timerManager; }
    void setTimerManager(TimerManager *timerManager);
    DayTasks *tasks() const { return m_tasks; }
    void setTasks(DayTasks *tasks);
    /// The font that the date has where there is room.
    QFont dateFont() const { return m_dateFont; }
    void setDateFont(const QFont &font);
    /// Pixels for the date and the four gaps beside the flexible spacers.
    qreal dateRoom() const { return m_dateRoom; }
    void setDateRoom(qreal room);
    /// The selected day: "mandag 3. marts 2025".
    QString dateText() const { return m_dateText; }
    /// The same as it is shown: in little room it breaks after the weekday.
    QString shownDate() const { return m_dateFit.text; }
    qreal dateGap() const { return m_dateFit.gap; }
    qreal dateWidth() const { return m_dateFit.textWidth; }
    int datePixelSize() const { return m_dateFit.pixelSize; }
    bool isButtonEnabled() const;
    /// What the start/pause button would do.
    QString helpText() const;

Q_SIGNALS:
    void timerManagerChanged();
    void tasksChanged();
    void dateFontChanged();
    void dateRoomChanged();
    void dateChanged();
    void buttonChanged();
    void stopAll();
    void startFirst();

private:
    void updateDate();
    bool hasTasks() const;
    bool isAnyTaskRunning() const;

    QPointer<TimerManager> m_timerManager;
    QPointer<DayTasks> m_tasks;
    QFont m_dateFont;
    qreal m_dateRoom = 0;
    QString m_dateText;
    DateFit m_dateFit{{}, 0, 0, 1};
};
