#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

#include <memory>

/// What the menu-bar item says: the clock of the task that runs, whichever day it belongs to.
class MenuBarLabelViewModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(TimerManager *timerManager READ timerManager WRITE setTimerManager NOTIFY
                   timerManagerChanged REQUIRED)
    Q_PROPERTY(ModelContext *modelContext READ modelContext WRITE setModelContext NOTIFY
                   modelContextChanged REQUIRED)

    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)

public:
    explicit MenuBarLabelViewModel(QObject *parent = nullptr);
    /// A complete one, for use without a view. Both collaborators outlive it.
    MenuBarLabelViewModel(TimerManager &timerManager, ModelContext &modelContext);

    TimerManager *timerManager() const { return m_timerManager; }
    void setTimerManager(TimerManager *timerManager);
    ModelContext *modelContext() const { return m_modelContext; }
    void setModelContext(ModelContext *modelContext);
    /// The first running task of all, or null.
    Task *runningTask() const;
    /// The running task's clock, "01:02:05"; empty while none runs. It advances with the timer
    /// manager's tick alone: while that is idle it stands still.
    QString displayText() const { return m_displayText; }

    void classBegin() override {}
    void componentComplete() override { begin(); }

Q_SIGNALS:
    void timerManagerChanged();
    void modelContextChanged();
    void displayTextChanged();

private:
    void begin();
    void update();

    QPointer<TimerManager> m_timerManager;
    QPointer<ModelContext> m_modelContext;
    std::unique_ptr<AllTasks> m_allTasks;
    QString m_displayText;
};
