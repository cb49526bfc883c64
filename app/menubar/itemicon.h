#pragma once

#include "app/menubar/busstructure.h"

#include <QByteArray>
#include <QIcon>
#include <QList>
#include <QString>

/// One size of an icon as the bus carries it: ARGB32, most significant byte first.
struct IconPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.width, self.height, self.pixels);
    }
};

/// The menu-bar item's symbol "timer" in the forms that desktops ask for. Its colour can be seen on
/// light and on dark bars: of those that do not recolour it, nothing tells which they are.
namespace itemicon
{

/// In all sizes that bars use.
QIcon icon();
QList<IconPixmap> pixmaps();
/// The installed symbolic icon's name, which bars recolour; where it is not installed the path of
/// a picture, which is written to the user's cache. Empty if that fails.
QString nameOrPath();

} // namespace itemicon
