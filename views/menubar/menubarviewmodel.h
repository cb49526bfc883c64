#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/controls/objectlistmodel.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

#include <memory>

/// The panel's tasks: always those of the real today, whatever day the main window shows.
class MenuBarViewModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(TimerManager *timerManager READ timerManager WRITE setTimerManager NOTIFY
                   timerManagerChanged REQUIRED)
    Q_PROPERTY(ModelContext *modelContext READ modelContext WRITE setModelContext NOTIFY
                   modelContextChanged REQUIRED)

    Q_PROPERTY(ObjectListModel *rows READ rows CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY todaysTasksChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY totalTextChanged)

public:
    explicit MenuBarViewModel(QObject *parent = nullptr);
    /// A complete one, for use without a view. Both collaborators outlive it.
    MenuBarViewModel(TimerManager &timerManager, ModelContext &modelContext);

    /// Stops @p task if it runs; else starts it and stops the active one, of whichever day.
    Q_INVOKABLE void toggleTask(Task *task);

    TimerManager *timerManager() const { return m_timerManager; }
    void setTimerManager(TimerManager *timerManager);
    ModelContext *modelContext() const { return m_modelContext; }
    void setModelContext(ModelContext *modelContext);
    /// By sortOrder.
    QList<Task *> todaysTasks() const;
    /// todaysTasks() for a view.
    ObjectListModel *rows() { return &m_rows; }
    /// Whether today is known to have no tasks.
    bool isEmpty() const { return m_todaysTasks && m_todaysTasks->isEmpty(); }
    /// The plain hours of all of today's tasks, never rounded to billable ones.
    double totalTodayHours() const;
    /// totalTodayHours() as of the last tick or change: "7.25 t".
    QString totalText() const { return m_totalText; }

    void classBegin() override {}
    void componentComplete() override { begin(); }

Q_SIGNALS:
    void timerManagerChanged();
    void modelContextChanged();
    /// Tasks have come or gone, or one of them has changed.
    void todaysTasksChanged();
    void totalTextChanged();

private:
    void begin();
    void updateTasks();
    void updateTotal();

    QPointer<TimerManager> m_timerManager;
    QPointer<ModelContext> m_modelContext;
    std::unique_ptr<AllTasks> m_allTasks;
    std::unique_ptr<DayTasks> m_todaysTasks;
    ObjectListModel m_rows;
    QString m_totalText;
};
