#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/controls/objectlistmodel.h"
#include "views/row/rowedits.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

/// The rows of the day's task list.
class TaskListViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(DayTasks *tasks READ tasks WRITE setTasks NOTIFY tasksChanged REQUIRED)
    Q_PROPERTY(TimerManager *timerManager READ timerManager WRITE setTimerManager NOTIFY
                   timerManagerChanged REQUIRED)
    Q_PROPERTY(ModelContext *modelContext READ modelContext WRITE setModelContext NOTIFY
                   modelContextChanged REQUIRED)

    Q_PROPERTY(ObjectListModel *rows READ rows CONSTANT)
    Q_PROPERTY(RowEdits *edits READ edits CONSTANT)

public:
    explicit TaskListViewModel(QObject *parent = nullptr);

    /// Starts or stops @p task. The timer manager is given this day's tasks alone: a running task
    /// of another day goes on.
    Q_INVOKABLE void toggle(Task *task);

    DayTasks *tasks() const { return m_tasks; }
    void setTasks(DayTasks *tasks);
    TimerManager *timerManager() const { return m_timerManager; }
    void setTimerManager(TimerManager *timerManager);
    ModelContext *modelContext() const { return m_modelContext; }
    void setModelContext(ModelContext *modelContext);
    /// The day's tasks in the order in which they are shown.
    ObjectListModel *rows() { return &m_rows; }
    /// What is being entered in the rows.
    RowEdits *edits() { return &m_edits; }

Q_SIGNALS:
    void tasksChanged();
    void timerManagerChanged();
    void modelContextChanged();

private:
    void update();

    QPointer<DayTasks> m_tasks;
    QPointer<TimerManager> m_timerManager;
    QPointer<ModelContext> m_modelContext;
    ObjectListModel m_rows;
    RowEdits m_edits;
};
