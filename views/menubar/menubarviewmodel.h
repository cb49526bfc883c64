#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/controls/objectlistmodel.h"
#include "views/menubar/menubartaskrowviewmodel.h"

#include <QHash>
#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

/// The panel's tasks: always those of the real today, whatever day the main window shows.
class MenuBarViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the panel or the menu")
    Q_PROPERTY(ObjectListModel *rows READ rows CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY todaysTasksChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY totalTextChanged)

public:
    /// Both outlive it.
    MenuBarViewModel(TimerManager &timerManager, ModelContext &modelContext);

    /// Stops @p task if it runs; else starts it and stops the active one, of whichever day.
    void toggleTask(Task *task);
    /// The same for a row's task.
    Q_INVOKABLE void toggle(MenuBarTaskRowViewModel *row);

    /// By sortOrder.
    const QList<Task *> &todaysTasks() const { return m_todaysTasks.sortedTasks(); }
    /// todaysTasks() for a view.
    ObjectListModel *rows() { return &m_rows; }
    /// Whether today is known to have no tasks.
    bool isEmpty() const { return m_todaysTasks.isEmpty(); }
    /// The plain hours of all of today's tasks, never rounded to billable ones.
    double totalTodayHours() const;
    /// totalTodayHours() as of the last tick or change: "7.25 t".
    const QString &totalText() const { return m_totalText; }

Q_SIGNALS:
    /// Tasks have come or gone, or one of them has changed.
    void todaysTasksChanged();
    void totalTextChanged();

private:
    void updateTasks();
    void updateTimes();
    void updateTotal();

    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    AllTasks m_allTasks;
    DayTasks m_todaysTasks;
    QHash<Task *, std::shared_ptr<MenuBarTaskRowViewModel>> m_rowOf;
    ObjectListModel m_rows;
    QString m_totalText;
};
