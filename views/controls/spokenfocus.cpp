#include "views/controls/spokenfocus.h"

#include <QAccessible>

void SpokenFocus::setIsHere(bool isHere)
{
    if (m_isHere == isHere)
        return;
    m_isHere = isHere;
    Q_EMIT isHereChanged();
    if (isHere && parent()) {
        QAccessibleEvent event(parent(), QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}
