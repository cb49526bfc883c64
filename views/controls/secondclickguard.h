#pragma once

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

class QQuickWindow;

/// Swallows presses of a mouse on the item that it is declared in that may be meant for what was
/// there before: those that come while the item has only just moved under a resting pointer, less
/// than the desktop's double-click time after the pointer's last event. The pointer rests as long
/// as it stays within the distance that the desktop allows for a double click.
class SecondClickGuard : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    using QObject::QObject;

    void classBegin() override {}
    void componentComplete() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(QQuickWindow *window);
    bool hasJustCome(const QPointF &point, quint64 time) const;
    bool isResting(const QPointF &point) const;
    void note(const QPointF &point, quint64 time);

    QPointer<QQuickItem> m_item;
    QPointer<QQuickWindow> m_window;
    /// Where the pointer has last been, and the item then, in the window.
    QPointF m_point;
    QRectF m_place;
    /// Time stamp of the pointer's last event, in milliseconds.
    quint64 m_time = 0;
    bool m_isSwallowing = false;
};
