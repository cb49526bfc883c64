#include "app/windows/mainwindow.h"

#include "app/windows/bringforward.h"
#include "app/windows/makewindow.h"

#include <QEvent>

using namespace Qt::StringLiterals;

MainWindow::MainWindow(QQmlEngine &engine, TimerManager &timerManager, ModelContext &modelContext)
    : m_engine(engine)
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
        m_viewModel = std::make_unique<ContentViewModel>(m_timerManager, m_modelContext);
        m_window = makeWindow(m_engine, source(),
                              {{u"viewModel"_s, QVariant::fromValue(m_viewModel.get())}});
        m_window->installEventFilter(this);
        Q_EMIT isOpenChanged();
    }
    bringForward(*m_window, activationToken);
}

bool MainWindow::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        m_window->removeEventFilter(this);
        // This is a part of the window's own closing. Its view-model lives as long as it.
        m_viewModel.release()->setParent(m_window.get());
        m_window.release()->deleteLater();
        Q_EMIT isOpenChanged();
    }
    return false;
}
