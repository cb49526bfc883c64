#include "app/menubar/clockwindow.h"

#include "app/windows/makewindow.h"
#include "model/modelcontext.h"

#include <QScreen>

using namespace Qt::StringLiterals;

ClockWindow::ClockWindow(QQmlEngine &engine, const TimerManager &timerManager,
                         ModelContext &modelContext)
    : m_viewModel(timerManager, modelContext)
{
    m_window = makeWindow(engine, QUrl(u"qrc:/qt/qml/TimeTracker/App/MenuBar/ClockWindow.qml"_s),
                          {{u"viewModel"_s, QVariant::fromValue(&m_viewModel)}});
    connect(m_window.get(), SIGNAL(activated()), this, SIGNAL(activated()));
    m_window->installEventFilter(this);
    // It opens by itself, maybe while the user types into another window.
    m_window->setProperty("_q_showWithoutActivating", true);
    const QRect room = m_window->screen()->availableGeometry();
    m_window->setPosition(room.right() + 1 - m_window->width(), room.top());
    show();
}

ClockWindow::~ClockWindow() = default;

void ClockWindow::show()
{
    m_window->show();
}

bool ClockWindow::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Close)
        Q_EMIT closed();
    return false;
}
