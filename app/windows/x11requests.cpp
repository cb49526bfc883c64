#include "app/windows/x11requests.h"

#include <QRegularExpression>
#include <QWindow>

using namespace Qt::StringLiterals;

#if TIMETRACKER_XCB
#include "app/windows/x11.h"

#include <algorithm>
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

struct Disconnect {
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

/// The X server's time of now, or XCB_CURRENT_TIME if it cannot be had. It comes with every change
/// of a property. This is done on a connection of its own, so that no event of Qt's waits for it.
xcb_timestamp_t serverTime()
{
    const std::unique_ptr<xcb_connection_t, Disconnect> owner(xcb_connect(nullptr, nullptr));
    xcb_connection_t *const connection = owner.get();
    if (xcb_connection_has_error(connection) != 0)
        return XCB_CURRENT_TIME;
    const xcb_window_t window = xcb_generate_id(connection);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection, 0, window, x11::root(connection), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                        8, 0, nullptr);
    xcb_flush(connection);
    while (const auto event = x11::owned(xcb_wait_for_event(connection))) {
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time;
    }
    return XCB_CURRENT_TIME;
}

/// The time of the click that the desktop gave @p activationToken for; without one, that of now.
xcb_timestamp_t timeOfClick(const QString &activationToken)
{
    static const QRegularExpression time(u"_TIME([0-9]+)$"_s);
    const uint told = time.match(activationToken).captured(1).toUInt();
    return told != 0 ? told : serverTime();
}

/// Sends a message of the desktop's to the root window.
void send(xcb_connection_t *connection, const xcb_client_message_event_t &message,
          xcb_event_mask_t mask)
{
    xcb_send_event(connection, 0, x11::root(connection), mask,
                   reinterpret_cast<const char *>(&message));
}

/// Asks the window manager, with the numbers that the request needs.
void request(xcb_connection_t *connection, const char *what, xcb_window_t window, uint32_t first,
             uint32_t second = 0)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = x11::atom(connection, what);
    message.data.data32[0] = first;
    message.data.data32[1] = second;
    send(connection, message,
         static_cast<xcb_event_mask_t>(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT));
}

} // namespace

void activateOnX11(const QWindow &window, const QString &activationToken)
{
    xcb_connection_t *const connection = x11::connection();
    if (!connection)
        return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (const auto desktop = desktopOf(connection, id))
        request(connection, "_NET_CURRENT_DESKTOP", x11::root(connection), *desktop);
    // The request says that it is made on behalf of the user, who has just asked for it.
    constexpr uint32_t UsersWish = 2;
    request(connection, "_NET_ACTIVE_WINDOW", id, UsersWish, timeOfClick(activationToken));
    xcb_flush(connection);
}

void endStartOnX11(const QString &activationToken)
{
    xcb_connection_t *const connection = x11::connection();
    if (!connection || activationToken.isEmpty())
        return;
    QByteArray id = activationToken.toUtf8();
    for (const char *const special : {"\\", "\"", " "})
        id.replace(special, QByteArray("\\") + special);
    // With the null at its end, in as many messages as it takes.
    const QByteArray text = "remove: ID=" + id;
    const qsizetype length = text.size() + 1;

    // The window tells the messages of one text from those of another.
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, 0, sender, x11::root(connection), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = sender;
    message.type = x11::atom(connection, "_NET_STARTUP_INFO_BEGIN");
    constexpr qsizetype Room = sizeof message.data.data8;
    for (qsizetype sent = 0; sent < length; sent += Room) {
        std::memset(message.data.data8, 0, Room);
        std::memcpy(message.data.data8, text.constData() + sent, std::min(Room, length - sent));
        send(connection, message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        message.type = x11::atom(connection, "_NET_STARTUP_INFO");
    }
    xcb_destroy_window(connection, sender);
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

bool hasKeyboardOnX11(const QWindow &window)
{
    xcb_connection_t *const connection = x11::connection();
    if (!connection)
        return false;
    const auto reply =
        x11::owned(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply && reply->focus == static_cast<xcb_window_t>(window.winId());
}
#else
void activateOnX11(const QWindow &, const QString &) {}

void endStartOnX11(const QString &) {}

void keepOutOfTaskBarsOnX11(QWindow &) {}

bool hasKeyboardOnX11(const QWindow &)
{
    return false;
}
#endif
