#include "app/appearance/appearance.h"
#include "app/instance/sessionbus.h"
#include "app/instance/singleinstance.h"
#include "app/timetrackerapp.h"
#include "app/windows/keyrepeats.h"
#include "app/windows/mainwindow.h"
#include "model/fatalerror.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSvgRenderer>

#include <cstdlib>
#include <optional>

namespace
{

/// Drawn here and now: Qt's own way from an SVG to an icon loads a plugin and draws more sizes.
QIcon windowIcon()
{
    QSvgRenderer drawing(QStringLiteral(":/timetracker/icons/dk.tulo.TimeTracker.svg"));
    QIcon icon;
    for (const int side : {16, 32, 64}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        drawing.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

/// Qt's thread that loads QML types needs this one at times, before there is an event loop. (Its
/// requests are plain user events; should that change, they just wait for the loop.)
void answerTypeLoader()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::User);
}

} // namespace

int main(int argc, char *argv[])
{
    // Before Qt takes them.
    const StartTokens tokens = StartTokens::fromEnvironment();
    neverStartABus();
    // A program that waits all day holds no graphics context.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // With widgets only for the trays that need them.
    const QApplication application(argc, argv);
    // Of Wayland's keys, Qt itself makes the repetitions.
    std::optional<KeyRepeats> keyRepeats;
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        keyRepeats.emplace();
    // Also the name of the data directory.
    QApplication::setApplicationName(QStringLiteral("dk.tulo.TimeTracker"));
    QApplication::setApplicationDisplayName(QStringLiteral("TULO Time Tracker"));
    QApplication::setDesktopFileName(QStringLiteral("dk.tulo.TimeTracker"));

    // Qt loads the main window's types on a thread of its own. It takes as long as everything else
    // up to the window, so it begins first.
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    const QQmlComponent types(&engine, MainWindow::source(), QQmlComponent::Asynchronous);

    // Before the store is opened, and until after it is closed.
    SingleInstance instance(QDBusConnection::sessionBus(), QStringLiteral("dk.tulo.TimeTracker"));
    switch (instance.claim(tokens)) {
    case SingleInstance::Claim::First:
        break;
    case SingleInstance::Claim::HandedOver:
        return EXIT_SUCCESS;
    case SingleInstance::Claim::Unanswered:
        fatalError("TULO Time Tracker is running already, but does not answer");
    }

    // Looks for the desktop's fonts, which is the longest of what comes before the window.
    QFontInfo(QApplication::font()).family();
    answerTypeLoader();
    // For X11; on Wayland the desktop finds the icon by the name above.
    QApplication::setWindowIcon(windowIcon());
    answerTypeLoader();

    // Asks before there is a window, so that the answer is there when it is drawn.
    const Appearance appearance(QDBusConnection::sessionBus());
    TimeTrackerApp app(engine, QDBusConnection::sessionBus());
    QObject::connect(&instance, &SingleInstance::activated, &app, &TimeTrackerApp::openMainWindow);
    QObject::connect(&instance, &SingleInstance::quitRequested, &application,
                     &QCoreApplication::quit);
    app.openMainWindow();
    return QApplication::exec();
}
