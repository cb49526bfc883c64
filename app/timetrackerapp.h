#pragma once

#include "model/modelcontainer.h"
#include "model/systemclock.h"
#include "timer/timermanager.h"

#include <QQmlApplicationEngine>

/// The application: makes the store, the timer manager and the main window, and wires them
/// together. They live as long as it does.
class TimeTrackerApp : public QObject
{
    Q_OBJECT

public:
    /// Opens the user's store; if that fails the program ends with a message.
    TimeTrackerApp();

    /// Shows the main window.
    void show();

private:
    static std::unique_ptr<ModelContainer> openStore(const Clock &clock);

    SystemClock m_clock;
    std::unique_ptr<ModelContainer> m_sharedModelContainer;
    TimerManager m_timerManager;
    // Last: the window goes before what it shows.
    QQmlApplicationEngine m_engine;
};
