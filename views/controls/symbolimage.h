#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

/// A symbol in one colour, like a letter of a font. It is decoration: assistive technology does not
/// see it.
class SymbolImage : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT

    /// Name of a symbol, e.g. "play.fill". An unknown one draws nothing and warns once.
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed)
    /// Size in pixels of the text that the symbol goes with. The symbol's square box, which is the
    /// item's implicit size, is 1.25 times as large, rounded up to an even number so that it is
    /// centred in an even frame on whole pixels. In a larger item the box is centred.
    Q_PROPERTY(qreal fontSize MEMBER m_fontSize NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    /// The colour of a circle behind the symbol that fills the item; transparent for none.
    Q_PROPERTY(QColor circleColor MEMBER m_circleColor NOTIFY changed)

public:
    explicit SymbolImage(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    void follow();
    qreal boxSide() const;

    QString m_name;
    qreal m_fontSize = 13;
    QColor m_color = Qt::black;
    QColor m_circleColor = Qt::transparent;
};
