#include "app/menubar/clockwindow.h"

#include "app/windows/makewindow.h"
#include "app/windows/platform.h"
#include "app/windows/x11requests.h"
#include "model/modelcontext.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

ClockWindow::ClockWindow(QQmlEngine &engine, TimerManager &timerManager, ModelContext &modelContext,
                         std::optional<std::chrono::milliseconds> quiet)
    : m_timerManager(timerManager)
    , m_modelContext(modelContext)
    , m_viewModel(timerManager, modelContext)
{
    m_window = makeWindow(engine, QUrl(u"qrc:/qt/qml/TimeTracker/App/MenuBar/ClockWindow.qml"_s),
                          {{u"viewModel"_s, QVariant::fromValue(&m_viewModel)}});
    connect(m_window.get(), SIGNAL(activated()), this, SIGNAL(activated()));
    connect(m_window.get(), SIGNAL(openMainWindow()), this, SLOT(closePanel()));
    connect(m_window.get(), SIGNAL(openMainWindow()), this, SIGNAL(openMainWindow()));
    connect(m_window.get(), SIGNAL(quit()), this, SIGNAL(quit()));
    connect(m_window.get(), SIGNAL(closePanel()), this, SLOT(closePanel()));
    connect(m_window.get(), &QWindow::activeChanged, this, [this] {
        if (!m_window->isActive())
            closePanel();
    });
    m_window->installEventFilter(this);
    // It opens by itself, maybe while the user types into another window.
    m_window->setProperty("_q_showWithoutActivating", true);

    QList<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append(screen->geometry());
    m_window->setPosition(clockWindowPosition(m_window->size(), m_place.read(), screens,
                                              m_window->screen()->availableGeometry()));
    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(500ms);
    connect(&m_restTimer, &QTimer::timeout, this, [this] { m_place.keep(m_window->position()); });
    connect(m_window.get(), &QWindow::xChanged, this, &ClockWindow::onMoved);
    connect(m_window.get(), &QWindow::yChanged, this, &ClockWindow::onMoved);

    if (!quiet)
        return;
    m_pauseTimer.setSingleShot(true);
    m_pauseTimer.setInterval(200ms);
    connect(&m_pauseTimer, &QTimer::timeout, m_window.get(), &QWindow::hide);
    m_quietMoment = std::make_unique<QuietMoment>(*quiet);
    connect(m_quietMoment.get(), &QuietMoment::came, this, &ClockWindow::borrowKeyboard);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            &ClockWindow::onFocusWindowChanged);
}

ClockWindow::~ClockWindow()
{
    qGuiApp->disconnect(this);
    m_window->disconnect(this);
    closePanel();
    if (m_restTimer.isActive())
        m_place.keep(m_window->position());
}

std::optional<std::chrono::milliseconds> ClockWindow::quietTime()
{
    return isWayland() ? std::optional(5s) : std::nullopt;
}

void ClockWindow::showBeside()
{
    if (m_quietMoment)
        m_quietMoment->await();
    else
        appear();
}

void ClockWindow::show()
{
    if (m_quietMoment)
        m_quietMoment->stop();
    m_pauseTimer.stop();
    m_lender = nullptr;
    appear();
}

void ClockWindow::togglePanel()
{
    if (m_panelViewModel) {
        closePanel();
        return;
    }
    m_panelViewModel = std::make_unique<MenuBarViewModel>(m_timerManager, m_modelContext);
    m_window->setProperty("panelViewModel", QVariant::fromValue(m_panelViewModel.get()));
    m_window->setProperty("isPanelOpen", true);
}

void ClockWindow::closePanel()
{
    if (!m_panelViewModel)
        return;
    m_window->setProperty("isPanelOpen", false);
    // The panel itself goes later, too, as one of its buttons may have been pressed.
    m_panelViewModel.release()->deleteLater();
}

bool ClockWindow::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Close:
        Q_EMIT closed();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        if (m_typed.empty())
            m_lender = nullptr;
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (!m_lender)
            break;
        passOn(*event);
        return true;
    default:
        break;
    }
    return false;
}

void ClockWindow::appear()
{
    if (!m_window->isVisible())
        keepOutOfTaskBarsOnX11(*m_window);
    m_window->show();
}

/// Shows the window although it gets the keyboard.
void ClockWindow::borrowKeyboard()
{
    m_lender = QGuiApplication::focusWindow();
    m_hasBorrowed = false;
    appear();
}

/// Keeps @p key until the lender has the keyboard. That of a window that goes falls to the one that
/// had it before, on each desktop; not each one gives it back for the asking. It goes in a pause of
/// the typing, as Qt drops the keys that the compositor sends before it knows that the window is
/// gone.
void ClockWindow::passOn(const QEvent &key)
{
    m_typed.emplace_back(key.clone());
    m_pauseTimer.start();
}

void ClockWindow::onFocusWindowChanged(QWindow *focus)
{
    if (!m_lender)
        return;
    if (focus == m_window.get()) {
        m_hasBorrowed = true;
        m_lender->requestActivate();
    } else if (m_hasBorrowed && focus == m_lender) {
        m_pauseTimer.stop();
        const QPointer<QWindow> lender = std::exchange(m_lender, nullptr);
        for (const auto &key : std::exchange(m_typed, {})) {
            if (lender)
                QCoreApplication::sendEvent(lender, key.get());
        }
        if (!m_window->isVisible())
            m_quietMoment->await();
    } else if (m_hasBorrowed && m_typed.empty()) {
        m_lender = nullptr;
    }
}

/// Keeps where the user has put it. On Wayland nobody knows where a window stands.
void ClockWindow::onMoved()
{
    if (m_window->isVisible() && !isWayland())
        m_restTimer.start();
}
