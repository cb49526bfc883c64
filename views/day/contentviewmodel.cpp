#include "views/day/contentviewmodel.h"

#include "model/clock.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// The selected day in the calendar of now.
DayInterval dayOf(const TimerManager &timerManager)
{
    return timerManager.clock().calendar().dayInterval(timerManager.selectedDate());
}

} // namespace

ContentViewModel::ContentViewModel(TimerManager &timerManager, ModelContext &modelContext)
    : m_timerManager(timerManager)
    , m_modelContext(modelContext)
    , m_allTasks(modelContext)
    , m_tasks(modelContext, dayOf(timerManager))
    , m_unsyncedDate(timerManager.selectedDate())
    , m_header(timerManager, m_tasks)
    , m_list(m_tasks, timerManager, modelContext)
    , m_footer(timerManager, m_tasks)
    , m_calendar(timerManager.clock(), timerManager.selectedDate())
    , m_templates(modelContext)
    , m_projectCodes(modelContext)
{
    connect(&timerManager, &TimerManager::selectedDateChanged, this,
            &ContentViewModel::onSelectedDateChanged);
    connect(&timerManager.clock(), &Clock::calendarChanged, this, &ContentViewModel::updateDay);
    connect(&m_tasks, &DayTasks::changed, this, &ContentViewModel::tasksChanged);

    connect(&m_header, &HeaderViewModel::stopAll, this, &ContentViewModel::stopAll);
    connect(&m_header, &HeaderViewModel::startFirst, this, &ContentViewModel::startFirst);
    connect(&m_list, &TaskListViewModel::deleteRequested, this,
            [this](const TaskRowViewModel *row) { confirmDelete(row->task()); });
    connect(&m_list, &TaskListViewModel::selectTask, this, &ContentViewModel::selectTask);
    connect(&m_footer, &FooterViewModel::addTask, this, &ContentViewModel::addTask);
    connect(&m_calendar, &CalendarViewModel::dateSelected, &timerManager,
            &TimerManager::navigateToDate);
    connect(&m_templates, &TemplateListViewModel::addTask, this,
            &ContentViewModel::addTaskFromTemplate);

    connect(&m_tasks, &DayTasks::changed, this, &ContentViewModel::syncActiveTask);
    // A task that is started or stopped before that decides which one is active.
    connect(&timerManager, &TimerManager::activeTaskIDChanged, this,
            [this] { m_unsyncedDate.reset(); });
    syncActiveTask();
}

void ContentViewModel::addTask()
{
    addTaskFromTemplate({});
}

void ContentViewModel::addTaskFromTemplate(const QString &name)
{
    setIsAnimated(true);
    // The number of tasks and not the largest sortOrder: after a deletion two may be equal.
    auto made = std::make_unique<Task>(m_timerManager.clock(), name, m_timerManager.selectedDate(),
                                       std::nullopt, m_tasks.tasks().size());
    Task *const task = made.get();
    m_modelContext.insert(std::move(made));
    Q_EMIT taskAdded(static_cast<int>(m_tasks.sortedTasks().indexOf(task)));
}

void ContentViewModel::confirmDelete(Task *task)
{
    if (!task || m_showDeleteConfirmation)
        return;
    setTaskToDelete(task);
    setShowDeleteConfirmation(true);
}

void ContentViewModel::cancelDelete()
{
    setTaskToDelete(nullptr);
    setShowDeleteConfirmation(false);
}

void ContentViewModel::performDelete()
{
    if (m_taskToDelete)
        deleteTask(m_taskToDelete);
    cancelDelete();
}

void ContentViewModel::stopAll()
{
    m_timerManager.stopAllTasks(m_allTasks, m_modelContext);
}

void ContentViewModel::startFirst()
{
    if (!m_tasks.sortedTasks().isEmpty())
        m_timerManager.startTask(m_tasks.sortedTasks().constFirst(), m_allTasks, m_modelContext);
}

void ContentViewModel::selectTask(int index)
{
    if (index < 0)
        return;
    setSelectedTaskIndex(index);
    // An open field keeps the keyboard, and the day takes no keys meanwhile.
    if (!m_timerManager.isEditing())
        Q_EMIT keyboardWanted();
}

bool ContentViewModel::handleKey(const DayKey &key)
{
    if (m_timerManager.isEditing() || m_showDeleteConfirmation)
        return false;

    switch (key.key) {
    case Qt::Key_Space:
        handleSpaceKey();
        return true;
    case Qt::Key_Up:
        selectPreviousTask();
        return true;
    case Qt::Key_Down:
        selectNextTask();
        return true;
    case Qt::Key_Left:
        m_timerManager.goToPreviousDay();
        setSelectedTaskIndex(std::nullopt);
        return true;
    case Qt::Key_Right:
        m_timerManager.goToNextDay();
        setSelectedTaskIndex(std::nullopt);
        return true;
    default:
        break;
    }

    if (!key.isCommand || key.isAutoRepeat)
        return false;
    if (key.key == Qt::Key_Return || key.key == Qt::Key_Enter) {
        addTask();
        return true;
    }
    if (key.isLowerCaseT) {
        m_timerManager.goToToday();
        setSelectedTaskIndex(std::nullopt);
        return true;
    }
    return false;
}

void ContentViewModel::handleSpaceKey()
{
    const QList<Task *> tasks = m_tasks.sortedTasks();
    if (tasks.isEmpty())
        return;
    if (m_selectedTaskIndex && *m_selectedTaskIndex < tasks.size()) {
        m_timerManager.toggleTask(tasks[*m_selectedTaskIndex], m_allTasks, m_modelContext);
    } else if (m_timerManager.isAnyTaskRunning()) {
        stopAll();
    } else {
        setSelectedTaskIndex(0);
        startFirst();
    }
}

void ContentViewModel::selectPreviousTask()
{
    const auto count = static_cast<int>(m_tasks.tasks().size());
    if (count > 0)
        setSelectedTaskIndex(m_selectedTaskIndex ? std::max(*m_selectedTaskIndex - 1, 0)
                                                 : count - 1);
}

void ContentViewModel::selectNextTask()
{
    const auto count = static_cast<int>(m_tasks.tasks().size());
    if (count > 0)
        setSelectedTaskIndex(m_selectedTaskIndex ? std::min(*m_selectedTaskIndex + 1, count - 1)
                                                 : 0);
}

QString ContentViewModel::deleteMessage() const
{
    if (!m_taskToDelete)
        return {};
    const QString name =
        m_taskToDelete->name().isEmpty() ? u"Unavngivet opgave"_s : m_taskToDelete->name();
    if (m_taskToDelete->accumulatedSeconds() > 0 || m_taskToDelete->isRunning())
        return u"Denne opgave har registreret tid. Er du sikker på, at du vil slette \""_s + name +
               u"\"?"_s;
    return u"Slet \""_s + name + u"\"?"_s;
}

void ContentViewModel::syncActiveTask()
{
    if (!m_unsyncedDate || !m_tasks.isKnown() ||
        !m_timerManager.clock().calendar().isSameDay(*m_unsyncedDate,
                                                     m_timerManager.selectedDate()))
        return;
    m_unsyncedDate.reset();
    m_timerManager.syncActiveTask(m_tasks);
}

void ContentViewModel::deleteTask(Task *task)
{
    setIsAnimated(true);
    if (task->isRunning())
        m_timerManager.stopTask(task, m_modelContext);
    m_modelContext.remove(task);
}

void ContentViewModel::onSelectedDateChanged()
{
    setSelectedTaskIndex(std::nullopt);
    updateDay();
    m_calendar.setSelectedDate(m_timerManager.selectedDate());
    Q_EMIT dayChanged();
}

void ContentViewModel::updateDay()
{
    setIsAnimated(false);
    m_tasks.setDay(dayOf(m_timerManager));
}

void ContentViewModel::setSelectedTaskIndex(std::optional<int> index)
{
    if (m_selectedTaskIndex == index)
        return;
    m_selectedTaskIndex = index;
    Q_EMIT selectedTaskIndexChanged();
}

void ContentViewModel::setTaskToDelete(Task *task)
{
    if (m_taskToDelete)
        m_taskToDelete->disconnect(this);
    m_taskToDelete = task;
    if (task)
        connect(task, &Task::changed, this, &ContentViewModel::deleteMessageChanged);
    Q_EMIT deleteMessageChanged();
}

void ContentViewModel::setShowDeleteConfirmation(bool show)
{
    if (m_showDeleteConfirmation == show)
        return;
    m_showDeleteConfirmation = show;
    Q_EMIT showDeleteConfirmationChanged();
}

void ContentViewModel::setIsAnimated(bool isAnimated)
{
    if (m_isAnimated == isAnimated)
        return;
    m_isAnimated = isAnimated;
    Q_EMIT isAnimatedChanged();
}
