#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

/// What the menu-bar item says: the clock of the task that runs, whichever day it belongs to.
class MenuBarLabelViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to what shows the item")
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)

public:
    /// Both outlive it.
    MenuBarLabelViewModel(const TimerManager &timerManager, ModelContext &modelContext);

    /// The first running task of all, or null.
    Task *runningTask() const;
    /// The running task's clock, "01:02:05"; empty while none runs. It advances with the timer
    /// manager's tick alone: while that is idle it stands still.
    QString displayText() const { return m_displayText; }

Q_SIGNALS:
    void displayTextChanged();

private:
    void update();

    AllTasks m_allTasks;
    QString m_displayText;
};
