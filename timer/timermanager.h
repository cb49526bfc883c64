#pragma once

#include "model/calendar.h"

#include <QObject>
#include <QTimer>
#include <QUuid>

#include <chrono>
#include <memory>
#include <optional>

class Clock;
class ModelContext;
class Task;
class TaskList;

/// Decides which task runs, beats once a second while one does, and holds what all views share:
/// the selected day and two display flags. It never counts time: that is derived from the records
/// and the clock.
///
/// It stops only the task named by activeTaskID, and looks it up in the list that it is given. A
/// running task that is not in that list is left alone.
class TimerManager : public QObject
{
    Q_OBJECT

public:
    /// @p clock outlives the manager. @p beat is the time between two ticks.
    explicit TimerManager(const Clock &clock,
                          std::chrono::milliseconds beat = std::chrono::seconds(1));

    /// Stops the active task if it is in @p allTasks, starts @p task, makes it the active one and
    /// saves. Starting the running active task banks its run and begins a new one.
    void startTask(Task *task, const TaskList &allTasks, ModelContext &modelContext);
    /// Stops @p task and saves; the manager falls idle if it was the active one.
    void stopTask(Task *task, ModelContext &modelContext);
    /// Stops @p task if it runs, else starts it.
    void toggleTask(Task *task, const TaskList &allTasks, ModelContext &modelContext);
    /// Stops every running task of @p tasks, falls idle and saves.
    void stopAllTasks(const TaskList &tasks, ModelContext &modelContext);
    /// Takes up the first running task of @p tasks; falls idle if there is none.
    void syncActiveTask(const TaskList &tasks);

    /// Selects the day that @p date lies in.
    void navigateToDate(Instant date);
    void goToPreviousDay();
    void goToNextDay();
    void goToToday();

    const Clock &clock() const { return m_clock; }
    /// The day that the main window shows: a moment of it, normally its start.
    Instant selectedDate() const { return m_selectedDate; }
    /// The task that the manager regards as running.
    const std::optional<QUuid> &activeTaskID() const { return m_activeTaskID; }
    /// Grows by one each second while the manager is not idle.
    qint64 tick() const { return m_tick; }
    /// Whether hours are shown as billable ones.
    bool showBillableTime() const { return m_showBillableTime; }
    void setShowBillableTime(bool showBillableTime);
    /// Whether a row's name or time is being edited; the views' flag, without effect on timing.
    bool isEditing() const { return m_isEditing; }
    void setIsEditing(bool isEditing);
    bool isAnyTaskRunning() const { return m_activeTaskID.has_value(); }
    bool isToday() const;
    /// Whether the one-second timer runs.
    bool isTicking() const { return m_timer != nullptr; }

Q_SIGNALS:
    void selectedDateChanged();
    void activeTaskIDChanged();
    void tickChanged();
    void showBillableTimeChanged();
    void isEditingChanged();

private:
    void startTimer();
    void stopTimer();
    void advance();
    void moveSelectedDate(int days);
    void setSelectedDate(Instant date);
    void setActiveTaskID(const std::optional<QUuid> &id);

    const Clock &m_clock;
    std::chrono::milliseconds m_beat;
    Instant m_selectedDate;
    std::optional<QUuid> m_activeTaskID;
    std::unique_ptr<QTimer> m_timer;
    qint64 m_tick = 0;
    bool m_showBillableTime = true;
    bool m_isEditing = false;
};
