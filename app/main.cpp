#include "app/appearance/appearance.h"
#include "app/instance/singleinstance.h"
#include "app/timetrackerapp.h"
#include "app/windows/keyrepeats.h"
#include "app/windows/mainwindow.h"
#include "model/fatalerror.h"
#include "model/sessionbus.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSvgRenderer>

#include <csignal>
#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

/// The main window's icon. It is drawn here because Qt's own way from an SVG to an icon loads a
/// plugin and draws more sizes.
QIcon windowIcon()
{
    QSvgRenderer drawing(u":/timetracker/icons/dk.tulo.TimeTracker.svg"_s);
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

/// The names that desktops know the program by; the first one is the data directory's, too.
void nameApplication()
{
    QApplication::setApplicationName(u"dk.tulo.TimeTracker"_s);
    QApplication::setApplicationDisplayName(u"TULO Time Tracker"_s);
    QApplication::setDesktopFileName(u"dk.tulo.TimeTracker"_s);
}

/// Whether this process is the first of its session. If not, the first one has been asked to show
/// its window; if that does not answer, the program ends with a message.
bool isFirst(SingleInstance &instance, const StartTokens &tokens)
{
    switch (instance.claim(tokens)) {
    case SingleInstance::Claim::First:
        return true;
    case SingleInstance::Claim::HandedOver:
        return false;
    case SingleInstance::Claim::Unanswered:
        break;
    }
    fatalError("TULO Time Tracker is running already, but does not answer");
}

/// Does what takes long and needs no QML, while Qt's own thread loads the main window's types:
/// looks for the desktop's fonts, and draws the icon. That thread asks this one for things by plain
/// user events, before there is an event loop; unanswered, it would wait until there is one.
/// performance.md tells what this gains.
void prepareWhileTypesLoad()
{
    const auto answerTypeLoader = [] { QCoreApplication::sendPostedEvents(nullptr, QEvent::User); };
    QFontInfo(QApplication::font()).family();
    answerTypeLoader();
    // For X11; on Wayland the desktop finds the icon by the program's name.
    QApplication::setWindowIcon(windowIcon());
    answerTypeLoader();
}

} // namespace

int main(int argc, char *argv[])
{
    // Read before Qt takes them out of the environment.
    const StartTokens tokens = StartTokens::fromEnvironment();
    neverStartABus();
    // A file that may not grow is a full disk, and no reason to be killed.
    std::signal(SIGXFSZ, SIG_IGN);
    // A program that waits all day holds no graphics context.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // An application with widgets, as the X11 trays need them.
    const QApplication application(argc, argv);
    nameApplication();
    // On Wayland, Qt itself makes the repetitions of a held key.
    std::optional<KeyRepeats> keyRepeats;
    if (QGuiApplication::platformName() == "xcb"_L1)
        keyRepeats.emplace();

    // Loading the types takes as long as everything else up to the window, so it begins first.
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    const QQmlComponent types(&engine, MainWindow::source(), QQmlComponent::Asynchronous);

    // Claimed before the store is opened, and given back after it is closed.
    SingleInstance instance(QDBusConnection::sessionBus(), u"dk.tulo.TimeTracker"_s);
    if (!isFirst(instance, tokens))
        return EXIT_SUCCESS;
    prepareWhileTypesLoad();

    // Asks before there is a window, so that the answer is there when it is drawn.
    const Appearance appearance(QDBusConnection::sessionBus());
    TimeTrackerApp app(engine, QDBusConnection::sessionBus());
    QObject::connect(&instance, &SingleInstance::activated, &app, &TimeTrackerApp::openMainWindow);
    QObject::connect(&instance, &SingleInstance::quitRequested, &application,
                     &QCoreApplication::quit);
    instance.tasks().answerFrom(app.context());
    app.openMainWindow();
    const int status = QApplication::exec();
    return app.finish() ? status : EXIT_FAILURE;
}
