#include "app/menubar/itemicon.h"

#include "resources/brandcolors.h"

#include <QBuffer>
#include <QDir>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QSvgRenderer>

#include <algorithm>

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

/// Two lines, as large as they fit.
QImage clockPicture(int side, const QString &hours, const QString &minutes)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QFont font(u"monospace"_s);
    font.setBold(true);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    // What is drawn counts, as digits are lower than a font's line.
    font.setPixelSize(side);
    const QFontMetricsF metrics(font);
    const qreal height = metrics.tightBoundingRect(u"0"_s).height();
    const qreal width =
        std::max(metrics.horizontalAdvance(hours), metrics.horizontalAdvance(minutes));
    constexpr int Gap = 1;
    const int lineHeight = (side - Gap) / 2;
    const qreal scale = std::min(lineHeight / height, side / width);
    font.setPixelSize(static_cast<int>(side * scale));

    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(QColor(BrandAccent.dark));
    const auto draw = [&](const QString &line, int bottom) {
        const qreal left = (side - QFontMetricsF(font).horizontalAdvance(line)) / 2;
        painter.drawText(QPointF(left, bottom), line);
    };
    draw(hours, lineHeight);
    draw(minutes, side);
    return image;
}

/// A picture in all sizes; @p draw makes it, given its side.
template<class Draw>
QList<IconPixmap> pixmaps(const Draw &draw)
{
    QList<IconPixmap> pixmaps;
    for (const int side : Sizes) {
        const QImage image = draw(side);
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
    // Xfce's has the plugin's name up to 4.18, of which the system keeps 15 characters, and the
    // name of its wrapper later.
    static const QRegularExpression recolouring(
        u"^(gnome-shell|plasmashell|kded[56]|xfce4-panel|panel-[0-9]+-systr.*|wrapper-2\\.0)$"_s);
    return recolouring.match(process).hasMatch();
}

bool itemicon::isAllOfItem(const QString &process)
{
    return process == u"swaybar"_s;
}

QIcon itemicon::icon()
{
    QIcon icon;
    for (const int side : Sizes)
        icon.addPixmap(QPixmap::fromImage(picture(side)));
    return icon;
}

ItemIcon itemicon::forBar(const QString &process)
{
    if (const QString name = symbolicName(); isRecolouredBy(process) && !name.isEmpty())
        return {name, {}};
    const QString path = picturePath();
    // Cinnamon's reads all of the item each second.
    if (process == u"xapp-sn-watcher"_s && !path.isEmpty())
        return {path, {}};
    return {path, pixmaps(picture)};
}

ItemIcon itemicon::clock(const QString &hours, const QString &minutes)
{
    return {{}, pixmaps([&](int side) { return clockPicture(side, hours, minutes); })};
}
