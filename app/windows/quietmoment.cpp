#include "app/windows/quietmoment.h"

#include <QGuiApplication>
#include <QInputMethodQueryEvent>

namespace
{

bool isTextEdited()
{
    QInputMethodQueryEvent query(Qt::ImEnabled);
    if (QObject *const focus = QGuiApplication::focusObject())
        QCoreApplication::sendEvent(focus, &query);
    return query.value(Qt::ImEnabled).toBool();
}

} // namespace

QuietMoment::QuietMoment(std::chrono::milliseconds quiet)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(quiet);
    connect(&m_timer, &QTimer::timeout, this, &QuietMoment::check);
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, &QuietMoment::beginAnew);
}

void QuietMoment::await()
{
    m_isAwaiting = true;
    qGuiApp->installEventFilter(this);
    beginAnew();
}

void QuietMoment::stop()
{
    m_isAwaiting = false;
    qGuiApp->removeEventFilter(this);
    m_timer.stop();
}

bool QuietMoment::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        beginAnew();
        break;
    default:
        break;
    }
    return false;
}

void QuietMoment::beginAnew()
{
    if (m_isAwaiting)
        m_timer.start();
}

/// Where it is not quiet yet, a change of the focus comes first, and that begins anew.
void QuietMoment::check()
{
    if (!QGuiApplication::focusWindow() || isTextEdited())
        return;
    stop();
    Q_EMIT came();
}
