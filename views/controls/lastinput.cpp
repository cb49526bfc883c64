#include "views/controls/lastinput.h"

#include <QEvent>
#include <QGuiApplication>

LastInput::LastInput(QObject *parent)
    : QObject(parent)
{
    qGuiApp->installEventFilter(this);
}

void LastInput::setIsPointer(bool isPointer)
{
    if (m_isPointer == isPointer)
        return;
    m_isPointer = isPointer;
    Q_EMIT isPointerChanged();
}

bool LastInput::eventFilter(QObject *watched, QEvent *event)
{
    // This comes before the window sees the event, and thus before it hovers anything.
    if (watched->isWindowType()) {
        if (event->type() == QEvent::MouseMove)
            setIsPointer(true);
        else if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)
            // Of a key that turns out to be a shortcut, there is no press.
            setIsPointer(false);
    }
    return false;
}
