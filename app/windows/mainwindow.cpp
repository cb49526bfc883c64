#include "app/windows/mainwindow.h"

#include "app/windows/bringforward.h"
#include "app/windows/makewindow.h"
#include "model/clock.h"
#include "model/modelcontext.h"

#include <QEvent>

using namespace Qt::StringLiterals;

MainWindow::MainWindow(QQmlEngine &engine, const Clock &clock, TimerManager &timerManager,
                       ModelContext &modelContext)
    : m_engine(engine)
    , m_clock(clock)
    , m_timerManager(timerManager)
    , m_modelContext(modelContext)
{
}

MainWindow::~MainWindow() = default;

QUrl MainWindow::source()
{
    return QUrl(u"qrc:/qt/qml/TimeTracker/App/Windows/MainWindow.qml"_s);
}

void MainWindow::open(const QString &activationToken)
{
    if (!m_window) {
        m_window = makeWindow(m_engine, source(),
                              {{u"clock"_s, QVariant::fromValue(&m_clock)},
                               {u"timerManager"_s, QVariant::fromValue(&m_timerManager)},
                               {u"modelContext"_s, QVariant::fromValue(&m_modelContext)}});
        m_window->installEventFilter(this);
        Q_EMIT isOpenChanged();
    }
    bringForward(*m_window, activationToken);
}

bool MainWindow::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        // Later: the window is still in the middle of it.
        m_window->removeEventFilter(this);
        m_window.release()->deleteLater();
        Q_EMIT isOpenChanged();
    }
    return false;
}
