#include "views/controls/symbolimage.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <memory>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace
{

/// The symbol's drawing, parsed at its first use and shared by all; null if there is none.
QSvgRenderer *drawing(const QString &name)
{
    static std::unordered_map<QString, std::unique_ptr<QSvgRenderer>> drawings;
    const auto [entry, isNew] = drawings.try_emplace(name);
    if (isNew) {
        const QString path = u":/timetracker/symbols/"_s + name + u".svg"_s;
        if (QFile::exists(path))
            entry->second = std::make_unique<QSvgRenderer>(path);
        else
            qWarning("SymbolImage: no symbol \"%s\"", qPrintable(name));
    }
    return entry->second.get();
}

} // namespace

SymbolImage::SymbolImage(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &SymbolImage::changed, this, &SymbolImage::follow);
    follow();
}

void SymbolImage::paint(QPainter *painter)
{
    QSvgRenderer *svg = m_name.isEmpty() ? nullptr : drawing(m_name);
    if (!svg)
        return;
    const qreal side = boxSide();
    const QPointF corner(std::floor((width() - side) / 2), std::floor((height() - side) / 2));
    painter->setRenderHint(QPainter::Antialiasing);
    svg->render(painter, QRectF(corner, QSizeF(side, side)));
    painter->setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter->fillRect(boundingRect(), m_color);
    if (m_circleColor.alpha() > 0) {
        painter->setCompositionMode(QPainter::CompositionMode_DestinationOver);
        painter->setPen(Qt::NoPen);
        painter->setBrush(m_circleColor);
        painter->drawEllipse(boundingRect());
    }
}

void SymbolImage::follow()
{
    setImplicitSize(boxSide(), boxSide());
    update();
}

qreal SymbolImage::boxSide() const
{
    return 2 * std::ceil(m_fontSize * 1.25 / 2);
}
