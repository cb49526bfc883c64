#pragma once

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

/// What is needed to speak to the X server beside Qt.
namespace x11
{

/// Qt's own connection; null on other platforms.
inline xcb_connection_t *connection()
{
    const auto *const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return application ? application->connection() : nullptr;
}

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};

/// A reply of the server's, freed with this; null if there was none.
template<class Type>
using Reply = std::unique_ptr<Type, Free>;

template<class Type>
Reply<Type> owned(Type *reply)
{
    return Reply<Type>(reply);
}

inline xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const auto length = static_cast<uint16_t>(std::strlen(name));
    const auto reply = owned(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, length, name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The display's default screen, as the environment names it.
inline int defaultScreen()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    return screen;
}

/// The default screen's root window.
inline xcb_window_t root(xcb_connection_t *connection)
{
    int screen = defaultScreen();
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0 && screens.rem > 1; --screen)
        xcb_screen_next(&screens);
    return screens.data->root;
}

} // namespace x11
