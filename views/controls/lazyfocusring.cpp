#include "views/controls/lazyfocusring.h"

#include <QQmlComponent>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

void LazyFocusRing::componentComplete()
{
    m_item = qobject_cast<QQuickItem *>(parent());
    if (!m_item)
        return;
    const QMetaObject *const type = m_item->metaObject();
    const int visualFocus = type->indexOfProperty("visualFocus");
    m_focus = type->property(visualFocus >= 0 ? visualFocus : type->indexOfProperty("activeFocus"));
    connect(m_item, m_focus.notifySignal(), this,
            metaObject()->method(metaObject()->indexOfSlot("follow()")));
}

void LazyFocusRing::follow()
{
    const bool isShown = m_focus.read(m_item).toBool();
    if (m_ring) {
        m_ring->setVisible(isShown);
    } else if (isShown) {
        QQmlComponent component(qmlEngine(this),
                                QUrl(u"qrc:/qt/qml/TimeTracker/Views/Controls/FocusRing.qml"_s));
        m_ring = qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{u"parent"_s, QVariant::fromValue(m_item.data())},
             {u"contentRadius"_s, m_item->property("radius")}},
            qmlContext(this)));
        m_ring->setParent(this);
    }
}
