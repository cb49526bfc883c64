#include "app/timetrackerapp.h"

#include "app/unixsignals.h"
#include "model/fatalerror.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

TimeTrackerApp::TimeTrackerApp()
    : m_sharedModelContainer(openStore(m_clock))
    , m_timerManager(m_clock)
{
    ModelContext &context = m_sharedModelContainer->mainContext();
    connect(qApp, &QCoreApplication::aboutToQuit, &context, &ModelContext::save);
    connect(qApp, &QGuiApplication::commitDataRequest, &context, &ModelContext::save);
    quitOnUnixSignals(this);
}

void TimeTrackerApp::show()
{
    m_engine.addImportPath(u"qrc:/qt/qml"_s);
    m_engine.setInitialProperties(
        {{u"clock"_s, QVariant::fromValue(&m_clock)},
         {u"timerManager"_s, QVariant::fromValue(&m_timerManager)},
         {u"modelContext"_s, QVariant::fromValue(&m_sharedModelContainer->mainContext())}});
    m_engine.load(u"qrc:/qt/qml/TimeTracker/App/MainWindow.qml"_s);
    if (m_engine.rootObjects().isEmpty())
        fatalError("The main window could not be made");
}

std::unique_ptr<ModelContainer> TimeTrackerApp::openStore(const Clock &clock)
{
    try {
        return std::make_unique<ModelContainer>(ModelContainer::defaultPath(), clock);
    } catch (const StoreError &error) {
        fatalError((std::string("Could not create ModelContainer: ") + error.what()).c_str());
    }
}
