#include "app/menubar/xembedtray.h"

#include <QGuiApplication>

#if QT_CONFIG(xcb) && TIMETRACKER_XCB
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdlib>
#include <memory>

namespace
{

template<class Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

template<class Reply>
Answer<Reply> owned(Reply *reply)
{
    return {reply, &std::free};
}

xcb_connection_t *xConnection()
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

} // namespace

XEmbedTray::XEmbedTray()
{
    xcb_connection_t *const connection = xConnection();
    if (!connection)
        return;
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
    const auto atom = owned(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, false, static_cast<uint16_t>(name.size()), name.constData()),
        nullptr));
    const xcb_query_extension_reply_t *const xfixes =
        xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (!atom || !xfixes || !xfixes->present)
        return;
    m_selection = atom->atom;
    m_selectionNotify = static_cast<quint8>(xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);

    xcb_screen_iterator_t roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0 && roots.rem > 1; --screen)
        xcb_screen_next(&roots);
    xcb_xfixes_select_selection_input(connection, roots.data->root, m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const auto owner = owned(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, m_selection), nullptr));
    m_isThere = owner && owner->owner != XCB_NONE;
    qGuiApp->installNativeEventFilter(this);
}

bool XEmbedTray::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *const event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != m_selectionNotify)
        return false;
    const auto *const notify = static_cast<const xcb_xfixes_selection_notify_event_t *>(message);
    if (notify->selection == m_selection) {
        const bool isThere = notify->owner != XCB_NONE;
        if (isThere != m_isThere) {
            m_isThere = isThere;
            Q_EMIT changed();
        }
    }
    return false;
}
#else
XEmbedTray::XEmbedTray() = default;

bool XEmbedTray::nativeEventFilter(const QByteArray &, void *, qintptr *)
{
    return false;
}
#endif

XEmbedTray::~XEmbedTray()
{
    if (qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}
