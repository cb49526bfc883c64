#include "app/menubar/menubarpanel.h"

#include "app/windows/fixedsize.h"
#include "app/windows/makewindow.h"
#include "app/windows/platform.h"
#include "app/windows/x11requests.h"
#include "model/modelcontext.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

bool isPlasma6()
{
    return qEnvironmentVariableIntValue("KDE_SESSION_VERSION") >= 6;
}

QList<PanelScreen> panelScreens()
{
    // Plasma's bars float, and take the room that they would if they did not.
    const int overhang = isPlasma6() ? 8 : 0;
    QList<PanelScreen> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append({screen->geometry(), screen->availableGeometry(), screen->devicePixelRatio(),
                        overhang});
    return screens;
}

QRect clickedAnchor(const QPoint &reported)
{
    if (!isWayland())
        return panelAnchor({reported, QCursor::pos()}, panelScreens());
    return reportedAnchor(reported, panelScreens(),
                          isPlasma6() ? Pixels::Physical : Pixels::Logical);
}

} // namespace

MenuBarPanel::MenuBarPanel(QQmlEngine &engine, TimerManager &timerManager,
                           ModelContext &modelContext, std::chrono::milliseconds sameClick)
    : m_engine(engine)
    , m_timerManager(timerManager)
    , m_modelContext(modelContext)
    , m_sameClick(sameClick)
{
    // A window that belongs to another one is not told of losing the keyboard to it.
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            &MenuBarPanel::onFocusWindowChanged);
    // A press on the wallpaper, or on the bar, takes the keyboard from nobody.
    connect(&m_presses, &PointerPresses::pressed, this, &MenuBarPanel::onPressed);
    connect(&m_presses, &PointerPresses::released, this, &MenuBarPanel::onReleased);
}

MenuBarPanel::~MenuBarPanel()
{
    // The window's end is no closing that anybody is to hear of.
    if (m_window)
        m_window->disconnect(this);
    qGuiApp->disconnect(this);
}

void MenuBarPanel::toggle(const QPoint &reported)
{
    if (closesInstead())
        return;
    open(clickedAnchor(reported), nullptr);
}

void MenuBarPanel::toggleAt(const QRect &anchor, QWindow *item)
{
    if (!closesInstead())
        open(anchor, item);
}

void MenuBarPanel::close()
{
    if (m_window)
        m_window->close();
}

/// Whether a click on the item is meant to close the panel, which may have closed already.
bool MenuBarPanel::closesInstead()
{
    if (isOpen()) {
        close();
        return true;
    }
    const bool isSameClick = m_isPressHeld || (m_sinceClosing.isValid() &&
                                               !m_sinceClosing.hasExpired(m_sameClick.count()));
    m_isPressHeld = false;
    m_sinceClosing.invalidate();
    return isSameClick;
}

void MenuBarPanel::open(const QRect &anchor, QWindow *item)
{
    m_viewModel = std::make_unique<MenuBarViewModel>(m_timerManager, m_modelContext);
    m_window = makeWindow(m_engine, QUrl(u"qrc:/qt/qml/TimeTracker/App/MenuBar/PanelWindow.qml"_s),
                          {{u"viewModel"_s, QVariant::fromValue(m_viewModel.get())}});

    // No popup: on X11 it would get no keyboard and learn of no click elsewhere, on Wayland not
    // every compositor gives it the keyboard, and assistive technology does not find it.
    m_window->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_window->setTransientParent(item);
    m_anchor = anchor;
    m_hadFocus = false;
    if (!item && LayerSurface::isPossible()) {
        m_layerSurface = new LayerSurface(*m_window, edges());
        connect(m_layerSurface, &LayerSurface::keyboardLeft, this, &MenuBarPanel::closeForAnother);
    }

    connect(m_window.get(), SIGNAL(openMainWindow()), this, SIGNAL(openMainWindow()));
    connect(m_window.get(), SIGNAL(quit()), this, SIGNAL(quit()));
    connect(m_window.get(), SIGNAL(contentSizeChanged()), this, SLOT(place()));
    connect(m_window.get(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            drop();
    });
    place();
    keepOutOfTaskBarsOnX11(*m_window);
    m_presses.listenOutside(*m_window);
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
    Q_EMIT isOpenChanged();
}

void MenuBarPanel::place()
{
    const QSize size = contentSize();
    limitSize(*m_window, size);
    if (m_layerSurface) {
        m_window->resize(size);
        m_layerSurface->move(edges());
        return;
    }
    // Both in one request: some window managers answer a place alone with the size that was before.
    m_window->setGeometry({panelPosition(size, m_anchor, panelScreens()), size});
}

QSize MenuBarPanel::contentSize() const
{
    return m_window->property("contentSize").toSizeF().toSize();
}

PanelEdges MenuBarPanel::edges() const
{
    return panelEdges(contentSize(), m_anchor, panelScreens());
}

void MenuBarPanel::onFocusWindowChanged(QWindow *focus)
{
    // Of a layer surface, Qt knows less than the compositor tells: its own windows' states come
    // late.
    if (!m_window || m_layerSurface)
        return;
    // Qt tells a while later that a window has lost the keyboard to none of the program's. If that
    // was the panel that has just been closed, this one has it by now.
    if (!focus && hasKeyboardOnX11(*m_window))
        return;
    if (focus == m_window.get()) {
        m_hadFocus = true;
    } else if (m_hadFocus) {
        m_hadFocus = false;
        closeForAnother();
    }
}

void MenuBarPanel::closeForAnother()
{
    m_sinceClosing.start();
    m_window->close();
}

void MenuBarPanel::onPressed()
{
    if (!m_window)
        return;
    m_isPressHeld = true;
    m_window->close();
}

void MenuBarPanel::onReleased()
{
    if (std::exchange(m_isPressHeld, false))
        m_sinceClosing.start();
    if (!isOpen())
        m_presses.stop();
}

void MenuBarPanel::drop()
{
    m_window->disconnect(this);
    if (m_layerSurface)
        std::exchange(m_layerSurface, nullptr)->disconnect(this);
    // This may be a part of the window's own closing. Its view-model lives as long as it.
    m_viewModel.release()->setParent(m_window.get());
    m_window.release()->deleteLater();
    // A press is heard to its end, as desktops tell of a click on the item only then.
    if (!m_isPressHeld)
        m_presses.stop();
    Q_EMIT isOpenChanged();
}
