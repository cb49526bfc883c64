#include "app/menubar/backendchoice.h"

Backend chooseBackend(const DesktopTrays &trays)
{
    if (trays.hasStatusNotifierHost)
        return trays.isItemUnread ? Backend::ClockWindow : Backend::StatusNotifier;
    if (!trays.isSettled)
        return Backend::None;
    return trays.hasXEmbedTray ? Backend::XEmbed : Backend::ClockWindow;
}
