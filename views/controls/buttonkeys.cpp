#include "views/controls/buttonkeys.h"

#include <QKeyEvent>

void ButtonKeys::componentComplete()
{
    if (parent())
        parent()->installEventFilter(this);
}

bool ButtonKeys::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    switch (key->key()) {
    case Qt::Key_Space:
        if (key->modifiers() == Qt::NoModifier) {
            key->setAccepted(true);
            return key->isAutoRepeat();
        }
        [[fallthrough]];
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
        // An ignored event that is filtered goes to the item's parents, but not to the item.
        key->ignore();
        return true;
    default:
        return false;
    }
}
