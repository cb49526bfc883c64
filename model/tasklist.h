#pragma once

#include "model/livequery.h"
#include "model/task.h"

/// Tasks in a fixed order that can be asked without being walked.
class TaskList
{
public:
    virtual ~TaskList() = default;

    /// The first task with that id, or null.
    virtual Task *withID(const QUuid &id) const = 0;
    /// The running ones, in the list's order.
    virtual QList<Task *> running() const = 0;
};

/// Every task of every day, in the store's order. Asks the store for what is wanted: the history
/// is never read as a whole.
class AllTasks : public QObject, public TaskList
{
    Q_OBJECT

public:
    /// @p context outlives the list.
    explicit AllTasks(ModelContext &context, QObject *parent = nullptr);

    Task *withID(const QUuid &id) const override;
    QList<Task *> running() const override;

Q_SIGNALS:
    /// A task has started, stopped, or changed while it runs.
    void runningChanged();

private:
    ModelContext &m_context;
    // Reads the store when it is asked.
    mutable LiveQuery<Task> m_running;
};

/// The tasks of one day.
class DayTasks : public QObject, public TaskList
{
    Q_OBJECT

public:
    /// @p context outlives the list.
    DayTasks(ModelContext &context, const DayInterval &day, QObject *parent = nullptr);

    /// Does nothing if that is its day.
    void setDay(const DayInterval &day);

    /// In the store's order.
    const QList<Task *> &tasks() const { return m_tasks; }
    /// By sortOrder; equal ones in the store's order.
    const QList<Task *> &sortedTasks() const { return m_sortedTasks; }
    /// Whether the store has told the day's tasks. Of a day that could not be read, only those in
    /// memory are here.
    bool isKnown() const { return m_isKnown; }
    /// Whether the day is known to have no tasks.
    bool isEmpty() const { return m_isKnown && m_tasks.isEmpty(); }

    Task *withID(const QUuid &id) const override;
    QList<Task *> running() const override;

Q_SIGNALS:
    /// The day, its tasks or one of them has changed.
    void changed();

private:
    void update();

    DayInterval m_day;
    LiveQuery<Task> m_query;
    QList<Task *> m_tasks;
    QList<Task *> m_sortedTasks;
    bool m_isKnown = false;
};
