#pragma once

#include "app/menubar/dbusmenu.h"
#include "views/menubar/menubarviewmodel.h"

#include <QHash>
#include <QTimer>
#include <QUuid>

/// The panel's content as a menu, for desktops that open only menus. Of many tasks it bears some,
/// and a line that leads to the others in the main window.
class MenuBarMenu : public QObject
{
    Q_OBJECT

public:
    /// Both collaborators outlive it.
    MenuBarMenu(const QDBusConnection &connection, TimerManager &timerManager,
                ModelContext &modelContext);

Q_SIGNALS:
    /// A task is about to be started or stopped.
    void taskChosen();
    void openMainWindow();
    void quit();

private:
    void update();
    void choose(int id);
    int idOf(const Task &task);

    TimerManager &m_timerManager;
    MenuBarViewModel m_viewModel;
    DBusMenu m_menu;
    // Joins several changes at once into one signal.
    QTimer m_updateTimer;
    QHash<QUuid, int> m_taskIDs;
    // The ids up to this one are left to the lines that are always there.
    int m_lastTaskID = 100;
};
