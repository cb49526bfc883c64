// rendericon SVG SIDE PNG: draws a square icon.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdlib>

int main(int argc, char *argv[])
{
    if (argc != 4)
        return EXIT_FAILURE;
    const int side = QByteArray(argv[2]).toInt();
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.render(&painter);
    painter.end();
    const bool isDrawn = icon.isValid() && !image.isNull();
    return isDrawn && image.save(QString::fromLocal8Bit(argv[3]), "PNG") ? EXIT_SUCCESS
                                                                         : EXIT_FAILURE;
}
