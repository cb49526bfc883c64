#include "app/menubar/backendchoice.h"

Backend chooseBackend(const DesktopTrays &trays)
{
    if (trays.hasStatusNotifierHost)
        return Backend::StatusNotifier;
    if (trays.hasXEmbedTray && (trays.isSettled || !trays.hasStatusNotifierWatcher))
        return Backend::XEmbed;
    return trays.isSettled ? Backend::ClockWindow : Backend::None;
}
