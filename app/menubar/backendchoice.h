#pragma once

/// How the menu-bar item gets onto the desktop.
enum class Backend {
    /// Nothing yet, as something better than what is there may still come.
    None,
    /// An item in the desktop's bar, with icon, label, tooltip and menu.
    StatusNotifier,
    /// An icon in an X11 tray.
    XEmbed,
    /// A small window with the clock.
    ClockWindow,
};

/// What the desktop offers at the moment.
struct DesktopTrays {
    bool hasStatusNotifierHost = false;
    /// The host has not read the item for so long that nobody can be showing it.
    bool isItemUnread = false;
    bool hasXEmbedTray = false;
    /// It has been like this for long enough: nothing else is on its way.
    bool isSettled = false;
};

Backend chooseBackend(const DesktopTrays &trays);
