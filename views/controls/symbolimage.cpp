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
    setImplicitSize(boxSide(), boxSide());
}

void SymbolImage::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    update();
    Q_EMIT nameChanged();
}

void SymbolImage::setFontSize(qreal fontSize)
{
    if (m_fontSize == fontSize)
        return;
    m_fontSize = fontSize;
    setImplicitSize(boxSide(), boxSide());
    update();
    Q_EMIT fontSizeChanged();
}

void SymbolImage::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

void SymbolImage::setCircleColor(const QColor &color)
{
    if (m_circleColor == color)
        return;
    m_circleColor = color;
    update();
    Q_EMIT circleColorChanged();
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

qreal SymbolImage::boxSide() const
{
    return 2 * std::ceil(m_fontSize * 1.25 / 2);
}
