#pragma once

#include "app/menubar/backendchoice.h"
#include "app/menubar/clockwindow.h"
#include "app/menubar/menubarmenu.h"
#include "app/menubar/menubarpanel.h"
#include "app/menubar/statusnotifieritem.h"
#include "app/menubar/statusnotifierlink.h"
#include "app/menubar/xembedtray.h"
#include "views/menubar/menubarlabelviewmodel.h"

#include <QSystemTrayIcon>

/// The menu-bar extra: puts the label on the desktop, in the best way that the desktop has at the
/// moment, and opens the panel when it is clicked.
class MenuBarExtra : public QObject
{
    Q_OBJECT

public:
    /// All collaborators outlive it. @p connection may be one that is not connected. After
    /// @p settling without a tray the clock window is shown, and after @p reading with a host that
    /// has not read the item, until it does.
    MenuBarExtra(const QDBusConnection &connection, QQmlEngine &engine, TimerManager &timerManager,
                 ModelContext &modelContext,
                 std::chrono::milliseconds settling = std::chrono::seconds(4),
                 std::chrono::milliseconds reading = std::chrono::seconds(10));

    Backend backend() const { return m_backend; }
    /// Whether a host is still given time to read the item.
    bool isWaitingForReader() const { return m_readingTimer.isActive(); }
    const MenuBarPanel &panel() const { return m_panel; }

    /// Whether the main window is open. When it is not, the clock window must not be missing where
    /// it alone leads to the program, and closing it quits.
    void setIsMainWindowOpen(bool isOpen);

Q_SIGNALS:
    /// @p activationToken allows the window to come forward, if the desktop has given one.
    void openMainWindow(const QString &activationToken);
    void quit();
    void backendChanged();

private:
    void onTraysChanged();
    void onHostChanged();
    void onItemRead();
    void choose();
    void makeStatusNotifierItem();
    void makeTrayIcon();
    void makeClockWindow();
    void showLabel();
    void showClockInIcon();
    void requestMainWindow();

    QDBusConnection m_connection;
    QQmlEngine &m_engine;
    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    MenuBarLabelViewModel m_label;
    MenuBarPanel m_panel;
    Backend m_backend = Backend::None;
    bool m_isMainWindowOpen = true;
    QString m_activationToken;

    std::unique_ptr<StatusNotifierLink> m_statusNotifierLink;
    XEmbedTray m_xembedTray;
    QTimer m_settlingTimer;
    // Runs from the registration with a host until that reads the item.
    QTimer m_readingTimer;
    bool m_isItemRead = false;
    bool m_isItemUnread = false;

    // It is kept once it is made, so that a bar that comes back finds it as it was.
    std::unique_ptr<StatusNotifierItem> m_item;
    std::unique_ptr<MenuBarMenu> m_menu;
    // Where the icon is all that the bar shows: the hours and minutes that it says.
    bool m_isIconAll = false;
    QString m_clockInIcon;
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
    std::unique_ptr<ClockWindow> m_clockWindow;
};
