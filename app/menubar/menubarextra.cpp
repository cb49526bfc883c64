#include "app/menubar/menubarextra.h"

#include "app/windows/bringforward.h"
#include "app/windows/platform.h"
#include "app/windows/x11requests.h"

#include <utility>

using namespace Qt::StringLiterals;

MenuBarExtra::MenuBarExtra(const QDBusConnection &connection, QQmlEngine &engine,
                           TimerManager &timerManager, ModelContext &modelContext,
                           std::chrono::milliseconds settling, std::chrono::milliseconds reading)
    : m_connection(connection)
    , m_engine(engine)
    , m_timerManager(timerManager)
    , m_modelContext(modelContext)
    , m_label(timerManager, modelContext)
    , m_panel(engine, timerManager, modelContext)
{
    connect(&m_label, &MenuBarLabelViewModel::displayTextChanged, this, &MenuBarExtra::showLabel);
    connect(&m_panel, &MenuBarPanel::openMainWindow, this, [this] {
        m_panel.close();
        requestMainWindow();
    });
    connect(&m_panel, &MenuBarPanel::quit, this, &MenuBarExtra::quit);
    connect(&m_panel, &MenuBarPanel::isOpenChanged, this, &MenuBarExtra::showLabel);

    m_settlingTimer.setSingleShot(true);
    m_settlingTimer.setInterval(settling);
    connect(&m_settlingTimer, &QTimer::timeout, this, &MenuBarExtra::choose);
    m_readingTimer.setSingleShot(true);
    m_readingTimer.setInterval(reading);
    connect(&m_readingTimer, &QTimer::timeout, this, [this] {
        m_isItemUnread = true;
        choose();
    });
    connect(&m_xembedTray, &XEmbedTray::changed, this, &MenuBarExtra::onTraysChanged);
    if (m_connection.isConnected()) {
        m_statusNotifierLink = std::make_unique<StatusNotifierLink>(m_connection);
        connect(m_statusNotifierLink.get(), &StatusNotifierLink::changed, this,
                &MenuBarExtra::onHostChanged);
    }
    onTraysChanged();
}

void MenuBarExtra::setIsMainWindowOpen(bool isOpen)
{
    m_isMainWindowOpen = isOpen;
    if (!isOpen && m_clockWindow)
        m_clockWindow->show();
}

void MenuBarExtra::onTraysChanged()
{
    // A desktop's bar may be on its way, at login or after a crash.
    m_settlingTimer.start();
    choose();
}

void MenuBarExtra::onHostChanged()
{
    if (!m_statusNotifierLink->hasHost()) {
        m_readingTimer.stop();
        m_isItemRead = false;
        m_isItemUnread = false;
    }
    onTraysChanged();
}

void MenuBarExtra::onItemRead()
{
    m_isItemRead = true;
    m_readingTimer.stop();
    if (std::exchange(m_isItemUnread, false))
        choose();
}

void MenuBarExtra::choose()
{
    const Backend backend = chooseBackend(
        {.hasStatusNotifierHost = m_statusNotifierLink && m_statusNotifierLink->hasHost(),
         .isItemUnread = m_isItemUnread,
         .hasXEmbedTray = m_xembedTray.isThere(),
         .isSettled = !m_settlingTimer.isActive()});
    // What shows the item now stays until there is something better.
    const bool isStillTheBest =
        backend == Backend::None && (m_backend == Backend::ClockWindow ||
                                     (m_backend == Backend::XEmbed && m_xembedTray.isThere()));
    if (backend == m_backend || isStillTheBest)
        return;
    m_panel.close();
    m_backend = backend;
    m_trayIcon.reset();
    m_clockWindow.reset();
    switch (backend) {
    case Backend::None:
        break;
    case Backend::StatusNotifier:
        makeStatusNotifierItem();
        break;
    case Backend::XEmbed:
        makeTrayIcon();
        break;
    case Backend::ClockWindow:
        makeClockWindow();
        break;
    }
    showLabel();
    Q_EMIT backendChanged();
}

void MenuBarExtra::makeStatusNotifierItem()
{
    if (!m_isItemRead)
        m_readingTimer.start();
    const QString process = m_statusNotifierLink->process();
    const ItemIcon icon = itemicon::forBar(process);
    m_isIconAll = itemicon::isAllOfItem(process);
    m_clockInIcon.clear();
    if (m_item) {
        m_item->setIcon(icon);
        return;
    }
    m_item = std::make_unique<StatusNotifierItem>(m_connection, icon);
    // Later, as nothing is to change while the item answers.
    connect(m_item.get(), &StatusNotifierItem::iconRead, this, &MenuBarExtra::onItemRead,
            Qt::QueuedConnection);
    connect(m_item.get(), &StatusNotifierItem::activated, this, [this](const QPoint &position) {
        useActivationToken(std::exchange(m_activationToken, {}));
        m_panel.toggle(position);
    });
    connect(m_item.get(), &StatusNotifierItem::activationTokenProvided, this,
            [this](const QString &token) { m_activationToken = token; });
    m_menu = std::make_unique<MenuBarMenu>(m_connection, m_timerManager, m_modelContext);
    connect(m_menu.get(), &MenuBarMenu::openMainWindow, this, &MenuBarExtra::requestMainWindow);
    // No window answers these, so the desktop is told itself.
    connect(m_menu.get(), &MenuBarMenu::taskChosen, this,
            [this] { endStartOnX11(std::exchange(m_activationToken, {})); });
    connect(m_menu.get(), &MenuBarMenu::quit, this, [this] {
        endStartOnX11(std::exchange(m_activationToken, {}));
        Q_EMIT quit();
    });
    m_statusNotifierLink->keepRegistered();
}

void MenuBarExtra::makeTrayIcon()
{
    m_trayIcon = std::make_unique<QSystemTrayIcon>(itemicon::icon());
    connect(m_trayIcon.get(), &QSystemTrayIcon::activated, this, [this] {
        if (const QRect place = m_trayIcon->geometry(); place.isValid())
            m_panel.toggleAt(place);
        else
            m_panel.toggle();
    });
    m_trayIcon->show();
}

void MenuBarExtra::makeClockWindow()
{
    m_clockWindow = std::make_unique<ClockWindow>(m_engine, m_timerManager, m_modelContext);
    connect(m_clockWindow.get(), &ClockWindow::activated, this, [this] {
        QWindow &window = *m_clockWindow->window();
        if (isWayland())
            m_clockWindow->togglePanel();
        else
            m_panel.toggleAt(window.geometry(), &window);
    });
    connect(m_clockWindow.get(), &ClockWindow::openMainWindow, this,
            &MenuBarExtra::requestMainWindow);
    connect(m_clockWindow.get(), &ClockWindow::quit, this, &MenuBarExtra::quit);
    connect(m_clockWindow.get(), &ClockWindow::closed, this, [this] {
        if (!m_isMainWindowOpen)
            Q_EMIT quit();
    });
    if (m_isMainWindowOpen)
        m_clockWindow->showBeside();
    else
        m_clockWindow->show();
}

void MenuBarExtra::showLabel()
{
    if (m_backend == Backend::StatusNotifier) {
        m_item->setLabel(m_label.displayText());
        m_item->setHasToolTip(!m_panel.isOpen());
        if (m_isIconAll)
            showClockInIcon();
    }
    if (m_backend == Backend::XEmbed) {
        const QString clock = m_label.displayText();
        m_trayIcon->setToolTip(m_panel.isOpen()
                                   ? QString()
                                   : u"TULO Time Tracker"_s +
                                         (clock.isEmpty() ? QString() : u"\n"_s + clock));
    }
}

/// Draws and sends a new icon once a minute only.
void MenuBarExtra::showClockInIcon()
{
    const QString clock = m_label.displayText().section(u':', 0, 1);
    if (std::exchange(m_clockInIcon, clock) == clock)
        return;
    m_item->setIcon(clock.isEmpty()
                        ? itemicon::forBar({})
                        : itemicon::clock(clock.section(u':', 0, 0), clock.section(u':', 1)));
}

void MenuBarExtra::requestMainWindow()
{
    Q_EMIT openMainWindow(std::exchange(m_activationToken, {}));
}
