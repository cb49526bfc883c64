#include "views/controls/secondclickguard.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QStyleHints>

#include <utility>

namespace
{

QRectF placeOf(const QQuickItem &item)
{
    return item.mapRectToScene({0, 0, item.width(), item.height()});
}

} // namespace

void SecondClickGuard::componentComplete()
{
    m_item = qobject_cast<QQuickItem *>(parent());
    if (!m_item)
        return;
    connect(m_item, &QQuickItem::windowChanged, this, &SecondClickGuard::watch);
    watch(m_item->window());
}

bool SecondClickGuard::eventFilter(QObject *, QEvent *event)
{
    if (!m_item || !event->isPointerEvent())
        return false;
    auto &pointer = *static_cast<QPointerEvent *>(event);
    if (pointer.points().isEmpty())
        return false;
    const QPointF point = pointer.point(0).scenePosition();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_isSwallowing = hasJustCome(point, pointer.timestamp());
        if (!m_isSwallowing)
            note(point, pointer.timestamp());
        return m_isSwallowing;
    case QEvent::MouseButtonRelease:
        if (!m_isSwallowing)
            note(point, pointer.timestamp());
        return std::exchange(m_isSwallowing, false);
    case QEvent::MouseMove:
        if (!isResting(point))
            note(point, pointer.timestamp());
        return false;
    case QEvent::Wheel:
        m_time = pointer.timestamp();
        return false;
    default:
        return false;
    }
}

void SecondClickGuard::watch(QQuickWindow *window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (window)
        window->installEventFilter(this);
}

bool SecondClickGuard::hasJustCome(const QPointF &point, quint64 time) const
{
    const auto interval = quint64(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    return !m_place.isNull() && !m_place.contains(point) && placeOf(*m_item).contains(point) &&
           isResting(point) && time >= m_time && time - m_time < interval;
}

bool SecondClickGuard::isResting(const QPointF &point) const
{
    return (point - m_point).manhattanLength() <=
           QGuiApplication::styleHints()->mouseDoubleClickDistance();
}

void SecondClickGuard::note(const QPointF &point, quint64 time)
{
    m_point = point;
    m_place = placeOf(*m_item);
    m_time = time;
}
