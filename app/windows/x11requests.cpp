#include "app/windows/x11requests.h"

#include <QWindow>

#if TIMETRACKER_XCB
#include "app/windows/x11.h"

#include <array>
#include <optional>

namespace
{

std::optional<uint32_t> desktopOf(xcb_connection_t *connection, xcb_window_t window)
{
    const auto cookie = xcb_get_property(
        connection, 0, window, x11::atom(connection, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 0, 1);
    const auto reply = x11::owned(xcb_get_property_reply(connection, cookie, nullptr));
    uint32_t desktop = 0;
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof desktop)
        return std::nullopt;
    std::memcpy(&desktop, xcb_get_property_value(reply.get()), sizeof desktop);
    constexpr uint32_t All = 0xffffffff;
    return desktop == All ? std::nullopt : std::optional(desktop);
}

/// Asks the window manager, with the one number that the request needs.
void request(xcb_connection_t *connection, const char *what, xcb_window_t window, uint32_t number)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = x11::atom(connection, what);
    message.data.data32[0] = number;
    xcb_send_event(connection, 0, x11::root(connection),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
}

} // namespace

void activateOnX11(const QWindow &window)
{
    xcb_connection_t *const connection = x11::connection();
    if (!connection)
        return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (const auto desktop = desktopOf(connection, id))
        request(connection, "_NET_CURRENT_DESKTOP", x11::root(connection), *desktop);
    // The request says that it is made on behalf of the user, who has just asked for it.
    constexpr uint32_t UsersWish = 2;
    request(connection, "_NET_ACTIVE_WINDOW", id, UsersWish);
    xcb_flush(connection);
}

void keepOutOfTaskBarsOnX11(QWindow &window)
{
    xcb_connection_t *const connection = x11::connection();
    if (!connection)
        return;
    // Qt leaves states alone that it does not know.
    const std::array states{x11::atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                            x11::atom(connection, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window.winId()),
                        x11::atom(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        static_cast<uint32_t>(states.size()), states.data());
}
#else
void activateOnX11(const QWindow &) {}

void keepOutOfTaskBarsOnX11(QWindow &) {}
#endif
