#pragma once

#include <QGuiApplication>

/// Whether the program's windows are shown by a Wayland compositor, which tells no places and
/// decides by itself which window gets the keyboard.
inline bool isWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}
