#include "app/menubar/xembedtray.h"

#include <QGuiApplication>

#if TIMETRACKER_XCB
#include "app/windows/x11.h"

#include <xcb/xfixes.h>

XEmbedTray::XEmbedTray()
{
    xcb_connection_t *const connection = x11::connection();
    if (!connection)
        return;
    const QByteArray selection = "_NET_SYSTEM_TRAY_S" + QByteArray::number(x11::defaultScreen());
    m_selection = x11::atom(connection, selection.constData());
    const xcb_query_extension_reply_t *const xfixes =
        xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (m_selection == XCB_ATOM_NONE || !xfixes || !xfixes->present)
        return;
    m_selectionNotify = static_cast<quint8>(xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);

    xcb_xfixes_select_selection_input(connection, x11::root(connection), m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const auto owner = x11::owned(xcb_get_selection_owner_reply(
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
