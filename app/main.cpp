#include "app/timetrackerapp.h"

#include <QGuiApplication>
#include <QQuickWindow>

int main(int argc, char *argv[])
{
    // A program that waits all day holds no graphics context.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    // Also the name of the data directory.
    QGuiApplication::setApplicationName(QStringLiteral("dk.tulo.TimeTracker"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("TULO Time Tracker"));
    QGuiApplication::setDesktopFileName(QStringLiteral("dk.tulo.TimeTracker"));

    TimeTrackerApp app;
    app.show();
    return QGuiApplication::exec();
}
