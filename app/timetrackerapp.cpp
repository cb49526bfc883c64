#include "app/timetrackerapp.h"

#include "app/unixsignals.h"
#include "model/fatalerror.h"

#include <QGuiApplication>

TimeTrackerApp::TimeTrackerApp(QQmlEngine &engine, const QDBusConnection &connection,
                               SaveDelays delays)
    : m_sharedModelContainer(openStore(m_clock, delays))
    , m_timerManager(m_clock)
    , m_mainWindow(engine, m_timerManager, m_sharedModelContainer->mainContext())
    , m_menuBarExtra(connection, engine, m_timerManager, m_sharedModelContainer->mainContext())
{
    ModelContext &context = m_sharedModelContainer->mainContext();
    connect(qApp, &QCoreApplication::aboutToQuit, &context, &ModelContext::save);
    // The session's end may leave no time for another word.
    connect(qApp, &QGuiApplication::commitDataRequest, &context, &ModelContext::saveOrTell);
    quitOnUnixSignals(this);
    m_sharedModelContainer->backups().begin();

    // The menu-bar extra keeps the program going.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    connect(&m_mainWindow, &MainWindow::isOpenChanged, &m_menuBarExtra,
            [this] { m_menuBarExtra.setIsMainWindowOpen(m_mainWindow.isOpen()); });
    connect(&m_menuBarExtra, &MenuBarExtra::openMainWindow, this, &TimeTrackerApp::openMainWindow);
    connect(&m_menuBarExtra, &MenuBarExtra::quit, qApp, &QCoreApplication::quit);
}

void TimeTrackerApp::openMainWindow(const QString &activationToken)
{
    m_mainWindow.open(activationToken);
}

bool TimeTrackerApp::finish()
{
    if (!m_sharedModelContainer->mainContext().saveOrTell())
        return false;
    m_sharedModelContainer->backups().finish();
    return true;
}

std::unique_ptr<ModelContainer> TimeTrackerApp::openStore(const Clock &clock, SaveDelays delays)
{
    try {
        return std::make_unique<ModelContainer>(ModelContainer::defaultPath(), clock, delays);
    } catch (const StoreError &error) {
        fatalError((std::string("Could not create ModelContainer: ") + error.what()).c_str());
    }
}
