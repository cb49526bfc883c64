#pragma once

#include <QObject>
#include <QPointF>
#include <QtQmlIntegration/qqmlintegration.h>

/// The `containmentMask` of an item that is clicked: its rectangle, and around a small one as much
/// as it lacks to 20 by 20 pixels, but for what is another control's or nearer to it.
class ClickArea : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    /// Whether there is anything to be clicked. If not, clicks and touches go to what lies behind.
    Q_PROPERTY(bool isOpen MEMBER m_isOpen NOTIFY isOpenChanged)

public:
    using QObject::QObject;

    /// Asked by Qt Quick; @p point is in the item's coordinates.
    Q_INVOKABLE bool contains(const QPointF &point) const;

Q_SIGNALS:
    void isOpenChanged();

private:
    bool m_isOpen = true;
};
