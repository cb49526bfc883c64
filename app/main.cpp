#include "app/appearance/appearance.h"
#include "app/instance/singleinstance.h"
#include "app/instance/usersession.h"
#include "app/timetrackerapp.h"
#include "model/fatalerror.h"

#include <QApplication>
#include <QQuickWindow>

#include <cstdlib>

int main(int argc, char *argv[])
{
    // Before Qt takes them.
    const StartTokens tokens = StartTokens::fromEnvironment();
    neverStartABus();
    // A program that waits all day holds no graphics context.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // With widgets only for the trays that need them.
    const QApplication application(argc, argv);
    // Also the name of the data directory.
    QApplication::setApplicationName(QStringLiteral("dk.tulo.TimeTracker"));
    QApplication::setApplicationDisplayName(QStringLiteral("TULO Time Tracker"));
    QApplication::setDesktopFileName(QStringLiteral("dk.tulo.TimeTracker"));

    // Before the store is opened, and until after it is closed.
    SingleInstance instance(QDBusConnection::sessionBus(), userRuntimeFolder(),
                            QStringLiteral("dk.tulo.TimeTracker"));
    switch (instance.claim(tokens)) {
    case SingleInstance::Claim::First:
        break;
    case SingleInstance::Claim::HandedOver:
        return EXIT_SUCCESS;
    case SingleInstance::Claim::Unanswered:
        fatalError("TULO Time Tracker is running already, but does not answer");
    }

    // Asks before there is a window, so that the answer is there when it is drawn.
    const Appearance appearance(QDBusConnection::sessionBus());
    TimeTrackerApp app(QDBusConnection::sessionBus());
    QObject::connect(&instance, &SingleInstance::activated, &app, &TimeTrackerApp::openMainWindow);
    QObject::connect(&instance, &SingleInstance::quitRequested, &application,
                     &QCoreApplication::quit);
    app.openMainWindow();
    return QApplication::exec();
}
