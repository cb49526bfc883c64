#pragma once

#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/day/footerviewmodel.h"
#include "views/day/headerviewmodel.h"
#include "views/day/tasklistviewmodel.h"
#include "views/sidebar/calendarviewmodel.h"
#include "views/sidebar/projectcodelistviewmodel.h"
#include "views/sidebar/templatelistviewmodel.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration/qqmlintegration.h>

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

/// The main window's content: the day's tasks, the row selected by key, what keys and buttons do,
/// and the view-models of all its parts.
class ContentViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the main window")
    Q_PROPERTY(HeaderViewModel *header READ header CONSTANT)
    Q_PROPERTY(TaskListViewModel *list READ list CONSTANT)
    Q_PROPERTY(FooterViewModel *footer READ footer CONSTANT)
    Q_PROPERTY(CalendarViewModel *calendar READ calendar CONSTANT)
    Q_PROPERTY(TemplateListViewModel *templates READ templates CONSTANT)
    Q_PROPERTY(ProjectCodeListViewModel *projectCodes READ projectCodes CONSTANT)

    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY tasksChanged)
    Q_PROPERTY(int selectedTaskIndex READ selectedTaskRow NOTIFY selectedTaskIndexChanged)
    Q_PROPERTY(bool showDeleteConfirmation READ showDeleteConfirmation NOTIFY
                   showDeleteConfirmationChanged)
    Q_PROPERTY(QString deleteMessage READ deleteMessage NOTIFY deleteMessageChanged)
    Q_PROPERTY(bool isAnimated READ isAnimated NOTIFY isAnimatedChanged)

public:
    /// Both outlive it. Takes up the running task of the selected day, once that day's tasks are
    /// known.
    ContentViewModel(TimerManager &timerManager, ModelContext &modelContext);

    /// Makes an empty task on the selected day.
    void addTask();
    /// Makes a task called @p name on the selected day.
    void addTaskFromTemplate(const QString &name);
    /// Asks whether @p task shall be deleted; nothing while another question is open.
    void confirmDelete(Task *task);
    /// The answer is no.
    Q_INVOKABLE void cancelDelete();
    /// The answer is yes.
    Q_INVOKABLE void performDelete();
    /// Stops every running task of every day.
    void stopAll();
    /// Starts the day's first task.
    void startFirst();
    /// Selects a row, and asks for the keyboard unless a row is being edited. Does nothing if
    /// @p index is negative, which that of a row on its way out is.
    void selectTask(int index);

    /// Does what @p key stands for. False if it stands for nothing, while a row is edited, and
    /// while it is asked whether to delete a task.
    bool handleKey(const DayKey &key);
    void handleSpaceKey();
    void selectPreviousTask();
    void selectNextTask();

    HeaderViewModel *header() { return &m_header; }
    TaskListViewModel *list() { return &m_list; }
    FooterViewModel *footer() { return &m_footer; }
    CalendarViewModel *calendar() { return &m_calendar; }
    TemplateListViewModel *templates() { return &m_templates; }
    ProjectCodeListViewModel *projectCodes() { return &m_projectCodes; }

    /// The tasks of the selected day.
    const DayTasks &tasks() const { return m_tasks; }
    /// Whether that day is known to have no tasks.
    bool isEmpty() const { return m_tasks.isEmpty(); }
    /// Place of the selected row among the sorted tasks. A position, not a task: it is not mended
    /// when tasks come and go, and may lie past the end.
    const std::optional<int> &selectedTaskIndex() const { return m_selectedTaskIndex; }
    bool showDeleteConfirmation() const { return m_showDeleteConfirmation; }
    /// What the open confirmation asks. It follows the task.
    QString deleteMessage() const;
    /// Whether the last change of the list was one task's coming or going, not another day.
    bool isAnimated() const { return m_isAnimated; }

Q_SIGNALS:
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
    void syncActiveTask();
    void deleteTask(Task *task);
    void onSelectedDateChanged();
    void updateDay();
    void setSelectedTaskIndex(std::optional<int> index);
    void setTaskToDelete(Task *task);
    void setShowDeleteConfirmation(bool show);
    void setIsAnimated(bool isAnimated);

    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    AllTasks m_allTasks;
    DayTasks m_tasks;
    /// The day that was selected at first, until its running task has been taken up.
    std::optional<Instant> m_unsyncedDate;
    std::optional<int> m_selectedTaskIndex;
    bool m_showDeleteConfirmation = false;
    QPointer<Task> m_taskToDelete;
    bool m_isAnimated = false;

    HeaderViewModel m_header;
    TaskListViewModel m_list;
    FooterViewModel m_footer;
    CalendarViewModel m_calendar;
    TemplateListViewModel m_templates;
    ProjectCodeListViewModel m_projectCodes;
};
