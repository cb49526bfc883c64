#include "app/menubar/menubarmenu.h"

#include "app/menubar/statusnotifieritem.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

enum FixedLine {
    TotalLine = 1,
    TasksSeparator,
    NoTasksLine,
    MoreTasksLine,
    CommandsSeparator,
    OpenLine,
    QuitLine
};

/// As many as leave room for the commands on a small screen.
constexpr qsizetype MostTasks = 10;

/// Those of @p todays that the menu bears: all of them in their order, or, if they are too many,
/// the running ones and then the latest, the last one first.
QList<Task *> tasksToShow(const QList<Task *> &todays)
{
    if (todays.size() <= MostTasks)
        return todays;
    QList<Task *> tasks(todays.crbegin(), todays.crend());
    std::stable_partition(tasks.begin(), tasks.end(),
                          [](const Task *task) { return task->isRunning(); });
    return tasks.first(MostTasks);
}

/// A name that does not make the menu wider than the screen, on one line.
QString shortName(const Task &task)
{
    constexpr qsizetype Longest = 60;
    QString name = task.name().isEmpty() ? u"Unavngivet"_s : task.name().simplified();
    if (name.size() <= Longest)
        return name;
    const qsizetype end = name[Longest - 2].isHighSurrogate() ? Longest - 2 : Longest - 1;
    return name.first(end) + u'…';
}

/// A task's line. The clock comes first: it advances while the menu is open, and the name does not
/// move with it.
QString labelOf(const Task &task)
{
    QString label = task.formattedTime() + u"   "_s + shortName(task);
    if (task.projectCode())
        label += u" ("_s + task.projectCode()->simplified() + u')';
    return label;
}

} // namespace

MenuBarMenu::MenuBarMenu(const QDBusConnection &connection, TimerManager &timerManager,
                         ModelContext &modelContext)
    : m_timerManager(timerManager)
    , m_viewModel(timerManager, modelContext)
    , m_menu(connection, StatusNotifierItem::menuPath())
{
    m_updateTimer.setSingleShot(true);
    connect(&m_updateTimer, &QTimer::timeout, this, &MenuBarMenu::update);
    connect(&m_viewModel, &MenuBarViewModel::todaysTasksChanged, &m_updateTimer,
            qOverload<>(&QTimer::start));
    // Changes that only the clock makes are told while the menu is open.
    connect(&timerManager, &TimerManager::tickChanged, this, [this] {
        if (m_menu.isOpen())
            update();
    });
    connect(&m_menu, &DBusMenu::aboutToShow, this, &MenuBarMenu::update);
    connect(&m_menu, &DBusMenu::chosen, this, &MenuBarMenu::choose);
    update();
}

void MenuBarMenu::update()
{
    QList<MenuLine> lines;
    lines.append(
        {.id = TotalLine, .label = u"I dag "_s + m_viewModel.totalText(), .isEnabled = false});
    lines.append({.id = TasksSeparator, .isSeparator = true});
    if (m_viewModel.isEmpty())
        lines.append({.id = NoTasksLine, .label = u"Ingen opgaver i dag"_s, .isEnabled = false});
    const QList<Task *> tasks = tasksToShow(m_viewModel.todaysTasks());
    for (const Task *task : tasks)
        lines.append({.id = idOf(*task), .label = labelOf(*task), .isChecked = task->isRunning()});
    if (const qsizetype more = m_viewModel.todaysTasks().size() - tasks.size(); more > 0)
        lines.append({.id = MoreTasksLine, .label = u"… og %1 mere"_s.arg(more)});
    lines.append({.id = CommandsSeparator, .isSeparator = true});
    lines.append({.id = OpenLine, .label = u"Åbn Time Tracker"_s});
    lines.append({.id = QuitLine, .label = u"Afslut"_s});
    m_menu.setLines(lines);
}

void MenuBarMenu::choose(int id)
{
    // The tasks that were left out are today's, and the main window may show another day.
    if (id == MoreTasksLine)
        m_timerManager.goToToday();
    if (id == OpenLine || id == MoreTasksLine)
        Q_EMIT openMainWindow();
    if (id == QuitLine)
        Q_EMIT quit();
    const QList<Task *> tasks = m_viewModel.todaysTasks();
    for (Task *task : tasks) {
        if (idOf(*task) == id) {
            Q_EMIT taskChosen();
            m_viewModel.toggleTask(task);
            return;
        }
    }
}

int MenuBarMenu::idOf(const Task &task)
{
    int &id = m_taskIDs[task.id()];
    if (id == 0)
        id = ++m_lastTaskID;
    return id;
}
