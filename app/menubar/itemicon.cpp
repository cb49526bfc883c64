#include "app/menubar/itemicon.h"

#include "resources/brandcolors.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace
{

constexpr int Sizes[] = {16, 22, 24, 32, 48};

QImage picture(int side)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(u":/timetracker/symbols/timer.svg"_s).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), QColor(BrandAccent.dark));
    return image;
}

QList<IconPixmap> pixmaps()
{
    QList<IconPixmap> pixmaps;
    for (const int side : Sizes) {
        const QImage image = picture(side);
        QByteArray pixels;
        pixels.reserve(image.sizeInBytes());
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const QRgb pixel = image.pixel(x, y);
                for (const int channel : {qAlpha(pixel), qRed(pixel), qGreen(pixel), qBlue(pixel)})
                    pixels.append(static_cast<char>(channel));
            }
        }
        pixmaps.append({side, side, pixels});
    }
    return pixmaps;
}

/// The symbolic icon's name, or empty where it is not installed.
QString symbolicName()
{
    // The file is looked for, because asking the icon theme would read all of the theme.
    QString name = u"dk.tulo.TimeTracker-symbolic"_s;
    if (QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                               u"icons/hicolor/symbolic/apps/"_s + name + u".svg"_s)
            .isEmpty())
        return {};
    return name;
}

/// The path of the picture in the user's cache, where it is written unless it is there.
QString picturePath()
{
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    picture(48).save(&buffer, "PNG");

    const QDir cache(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
    QString path = cache.filePath(u"panel-icon.png"_s);
    QFile present(path);
    if (present.open(QIODevice::ReadOnly) && present.readAll() == content)
        return path;
    QSaveFile file(path);
    if (!cache.mkpath(u"."_s) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size() || !file.commit())
        return {};
    return path;
}

} // namespace

bool itemicon::isRecolouredBy(const QString &process)
{
    // The system cuts names after 15 characters, which is why Xfce's may lack its last letters.
    static const QRegularExpression recolouring(
        u"^(gnome-shell|plasmashell|kded[56]|xfce4-panel|panel-[0-9]+-systr.*)$"_s);
    return recolouring.match(process).hasMatch();
}

QIcon itemicon::icon()
{
    QIcon icon;
    for (const int side : Sizes)
        icon.addPixmap(QPixmap::fromImage(picture(side)));
    return icon;
}

ItemIcon itemicon::forBar(bool isRecoloured)
{
    if (const QString name = symbolicName(); isRecoloured && !name.isEmpty())
        return {name, {}};
    return {picturePath(), pixmaps()};
}
