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

    bool operator==(const IconPixmap &) const = default;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.width, self.height, self.pixels);
    }
};

/// An icon as the bus carries it. Bars read the picture anew again and again, so none goes with a
/// name from the icon theme.
struct ItemIcon {
    /// A name from the icon theme, or a picture's path.
    QString name;
    QList<IconPixmap> pixmaps;

    bool operator==(const ItemIcon &) const = default;
};

/// The menu-bar item's symbol "timer" in the forms that desktops ask for.
namespace itemicon
{

/// Whether bars of @p process, as the system names it, give symbolic icons the colour of their
/// text. Others draw them in the dark grey that the file has, which cannot be seen on dark bars.
bool isRecolouredBy(const QString &process);

/// Whether bars of @p process show an item's icon alone, and neither its label nor its tooltip.
bool isAllOfItem(const QString &process);

/// The pictures in all sizes that bars use. Their colour can be seen on light and on dark bars.
QIcon icon();
/// For bars of a @p process that recolours icons the installed symbolic icon's name. For others,
/// and where that is not installed, the path of a picture that is written to the user's cache, and,
/// unless bars of that process are known to take the path, the picture in all sizes. The path is
/// empty if it cannot be written.
ItemIcon forBar(const QString &process);
/// @p hours above @p minutes, in all sizes and in the picture's colour.
ItemIcon clock(const QString &hours, const QString &minutes);

} // namespace itemicon
