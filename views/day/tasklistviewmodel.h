#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/controls/objectlistmodel.h"
#include "views/row/taskrowviewmodel.h"

#include <QHash>
#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

/// The rows of the day's task list.
class TaskListViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the day")
    Q_PROPERTY(ObjectListModel *rows READ rows CONSTANT)

public:
    /// All of them outlive it.
    TaskListViewModel(const DayTasks &tasks, TimerManager &timerManager,
                      ModelContext &modelContext);
    /// Ends all edits, as if their tasks had left the list.
    ~TaskListViewModel() override;

    /// Starts or stops a row's task. The timer manager is given this day's tasks alone: a running
    /// task of another day goes on.
    Q_INVOKABLE void toggle(TaskRowViewModel *row);

    /// The day's rows in the order in which they are shown.
    ObjectListModel *rows() { return &m_rows; }

Q_SIGNALS:
    /// The user wants to delete a row's task.
    void deleteRequested(TaskRowViewModel *row);
    /// The user has clicked the row at @p index; of one that is on its way out that is -1.
    void selectTask(int index);

private:
    void update();
    void updateRunning();
    void updateAll();
    bool isEditing() const;

    const DayTasks &m_tasks;
    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    ProjectCodeMenuModel m_codeMenu;
    QHash<Task *, std::shared_ptr<TaskRowViewModel>> m_rowOf;
    ObjectListModel m_rows;
};
