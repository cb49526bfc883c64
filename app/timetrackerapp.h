#pragma once

#include "app/menubar/menubarextra.h"
#include "app/windows/mainwindow.h"
#include "model/modelcontainer.h"
#include "model/systemclock.h"
#include "timer/timermanager.h"

/// The application: makes the store, the timer manager, the main window and the menu-bar extra, and
/// wires them together. They live as long as it does.
class TimeTrackerApp : public QObject
{
    Q_OBJECT

public:
    /// Opens the user's store; if that fails the program ends with a message. @p engine makes the
    /// windows and outlives it; @p connection is the session bus, or one that is not connected.
    TimeTrackerApp(QQmlEngine &engine, const QDBusConnection &connection, SaveDelays delays = {});

    /// The one context of the store.
    const ModelContext &context() const { return m_sharedModelContainer->mainContext(); }

    /// Opens the main window, or brings the open one forward. @p activationToken is what the
    /// desktop gave to who asked for it, or empty.
    void openMainWindow(const QString &activationToken = {});

    /// At the end: writes what is unsaved, and then makes the day's backup. False if something
    /// could not be written; standard error then names it.
    bool finish();

private:
    static std::unique_ptr<ModelContainer> openStore(const Clock &clock, SaveDelays delays);

    SystemClock m_clock;
    std::unique_ptr<ModelContainer> m_sharedModelContainer;
    TimerManager m_timerManager;
    // The windows are destroyed before what they show.
    MainWindow m_mainWindow;
    MenuBarExtra m_menuBarExtra;
};
