#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

#include <memory>
#include <optional>

/// A key press as the day view sees it.
struct DayKey {
    Qt::Key key = Qt::Key_unknown;
    /// Ctrl is held (Command on a Mac).
    bool isCommand = false;
    /// The press yields a lower-case t.
    bool isLowerCaseT = false;
    /// Not the first press but a repetition while the key is held.
    bool isAutoRepeat = false;
};

/// The main window's day: its tasks, the row selected by key, and what keys and buttons do.
class ContentViewModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(TimerManager *timerManager READ timerManager WRITE setTimerManager NOTIFY
                   timerManagerChanged REQUIRED)
    Q_PROPERTY(ModelContext *modelContext READ modelContext WRITE setModelContext NOTIFY
                   modelContextChanged REQUIRED)

    Q_PROPERTY(DayTasks *tasks READ tasks NOTIFY tasksChanged)
    Q_PROPERTY(int selectedTaskIndex READ selectedTaskRow NOTIFY selectedTaskIndexChanged)
    Q_PROPERTY(bool showDeleteConfirmation READ showDeleteConfirmation NOTIFY
                   showDeleteConfirmationChanged)
    Q_PROPERTY(QString deleteMessage READ deleteMessage NOTIFY deleteMessageChanged)
    Q_PROPERTY(bool isAnimated READ isAnimated NOTIFY isAnimatedChanged)

public:
    explicit ContentViewModel(QObject *parent = nullptr);

    /// Makes an empty task on the selected day.
    Q_INVOKABLE void addTask();
    /// Makes a task called @p name on the selected day.
    Q_INVOKABLE void addTaskFromTemplate(const QString &name);
    /// Asks whether @p task shall be deleted; nothing while another question is open.
    Q_INVOKABLE void confirmDelete(Task *task);
    /// The answer is no.
    Q_INVOKABLE void cancelDelete();
    /// The answer is yes.
    Q_INVOKABLE void performDelete();
    /// Stops every running task of every day.
    Q_INVOKABLE void stopAll();
    /// Starts the day's first task.
    Q_INVOKABLE void startFirst();
    /// Selects a row, and asks for the keyboard unless a row is being edited. Does nothing if
    /// @p index is negative, which that of a row on its way out is.
    Q_INVOKABLE void selectTask(int index);

    /// Does what @p key stands for. False if it stands for nothing, while a row is edited, and
    /// while it is asked whether to delete a task.
    bool handleKey(const DayKey &key);
    void handleSpaceKey();
    void selectPreviousTask();
    void selectNextTask();

    TimerManager *timerManager() const { return m_timerManager; }
    void setTimerManager(TimerManager *timerManager);
    ModelContext *modelContext() const { return m_modelContext; }
    void setModelContext(ModelContext *modelContext);
    /// The tasks of the selected day; null until the collaborators are there.
    DayTasks *tasks() const { return m_tasks.get(); }
    /// Place of the selected row among the sorted tasks. A position, not a task: it is not mended
    /// when tasks come and go, and may lie past the end.
    const std::optional<int> &selectedTaskIndex() const { return m_selectedTaskIndex; }
    bool showDeleteConfirmation() const { return m_showDeleteConfirmation; }
    /// What the open confirmation asks. It follows the task.
    QString deleteMessage() const;
    /// Whether the last change of the list was one task's coming or going, not another day.
    bool isAnimated() const { return m_isAnimated; }

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void timerManagerChanged();
    void modelContextChanged();
    void tasksChanged();
    void selectedTaskIndexChanged();
    void showDeleteConfirmationChanged();
    void deleteMessageChanged();
    void isAnimatedChanged();
    /// Another day is shown.
    void dayChanged();
    /// A task has been made; @p index is its row.
    void taskAdded(int index);
    /// The day's keys shall act, whatever control has the keyboard focus.
    void keyboardWanted();

private:
    int selectedTaskRow() const { return m_selectedTaskIndex.value_or(-1); }
    /// Takes up the running task of the day that was selected when the view appeared, once that
    /// day's tasks are known.
    void syncActiveTask();
    void deleteTask(Task *task);
    void onSelectedDateChanged();
    void updateDay();
    void setSelectedTaskIndex(std::optional<int> index);
    void setTaskToDelete(Task *task);
    void setShowDeleteConfirmation(bool show);
    void setIsAnimated(bool isAnimated);

    QPointer<TimerManager> m_timerManager;
    QPointer<ModelContext> m_modelContext;
    std::unique_ptr<AllTasks> m_allTasks;
    std::unique_ptr<DayTasks> m_tasks;
    std::optional<Instant> m_unsyncedDate;
    std::optional<int> m_selectedTaskIndex;
    bool m_showDeleteConfirmation = false;
    QPointer<Task> m_taskToDelete;
    bool m_isAnimated = false;
};
