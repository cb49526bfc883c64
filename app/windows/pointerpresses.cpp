#include "app/windows/pointerpresses.h"

#if TIMETRACKER_XCB
#include "app/windows/x11.h"

#include <QCoreApplication>

#include <xcb/xinput.h>

#include <utility>

namespace
{

/// Asks the X server for the events of @p mask, whichever window they belong to. One that lacks the
/// extension refuses, and then there are none.
void selectRawEvents(xcb_connection_t *connection, uint32_t mask)
{
    const struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, mask};
    const auto cookie =
        xcb_input_xi_select_events_checked(connection, x11::root(connection), 1, &selection.head);
    x11::owned(xcb_request_check(connection, cookie));
}

bool isWheel(uint32_t button)
{
    constexpr uint32_t first = 4;
    constexpr uint32_t last = 7;
    return button >= first && button <= last;
}

} // namespace

PointerPresses::~PointerPresses()
{
    stop();
}

void PointerPresses::listenOutside(const QWindow &window)
{
    stop();
    xcb_connection_t *const connection = x11::connection();
    if (!connection)
        return;
    m_window = window.winId();
    m_isInside = false;
    selectRawEvents(connection, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                                    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

void PointerPresses::stop()
{
    if (std::exchange(m_window, 0) == 0)
        return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    selectRawEvents(x11::connection(), 0);
}

bool PointerPresses::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    // Where the pointer is now may not be where it was when the button was pressed, but its ways
    // into the window and out of it are told in their order.
    constexpr uint8_t isSent = 0x80;
    switch (static_cast<const xcb_generic_event_t *>(message)->response_type & ~isSent) {
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY: {
        const auto *const crossing = static_cast<const xcb_enter_notify_event_t *>(message);
        if (crossing->event == m_window)
            m_isInside = crossing->response_type == XCB_ENTER_NOTIFY;
        break;
    }
    case XCB_GE_GENERIC: {
        const auto *const raw = static_cast<const xcb_input_raw_button_press_event_t *>(message);
        const auto *const input = xcb_get_extension_data(x11::connection(), &xcb_input_id);
        if (raw->extension != input->major_opcode || isWheel(raw->detail))
            break;
        if (raw->event_type == XCB_INPUT_RAW_BUTTON_PRESS && !m_isInside)
            Q_EMIT pressed();
        else if (raw->event_type == XCB_INPUT_RAW_BUTTON_RELEASE)
            Q_EMIT released();
        break;
    }
    default:
        break;
    }
    return false;
}
#else
PointerPresses::~PointerPresses() = default;

void PointerPresses::listenOutside(const QWindow &) {}

void PointerPresses::stop() {}

bool PointerPresses::nativeEventFilter(const QByteArray &, void *, qintptr *)
{
    return false;
}
#endif
