#include "app/timetrackerapp.h"

#include <QApplication>
#include <QQuickWindow>

int main(int argc, char *argv[])
{
    // A program that waits all day holds no graphics context.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // With widgets only for the trays that need them.
    const QApplication application(argc, argv);
    // Also the name of the data directory.
    QApplication::setApplicationName(QStringLiteral("dk.tulo.TimeTracker"));
    QApplication::setApplicationDisplayName(QStringLiteral("TULO Time Tracker"));
    QApplication::setDesktopFileName(QStringLiteral("dk.tulo.TimeTracker"));

    TimeTrackerApp app(QDBusConnection::sessionBus());
    app.openMainWindow();
    return QApplication::exec();
}
