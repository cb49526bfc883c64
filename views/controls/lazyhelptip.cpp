#include "views/controls/lazyhelptip.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QUrl>

using namespace Qt::StringLiterals;

void LazyHelpTip::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    follow();
    Q_EMIT textChanged();
}

void LazyHelpTip::setIsNeeded(bool isNeeded)
{
    if (m_isNeeded == isNeeded)
        return;
    m_isNeeded = isNeeded;
    follow();
    Q_EMIT isNeededChanged();
}

void LazyHelpTip::componentComplete()
{
    m_isComplete = true;
    follow();
}

void LazyHelpTip::follow()
{
    const bool isWanted = m_isComplete && m_isNeeded && !m_text.isEmpty();
    if (m_tip && isWanted) {
        m_tip->setProperty("text", m_text);
    } else if (m_tip) {
        m_tip->setProperty("visible", false);
        m_tip->deleteLater();
        m_tip.clear();
    } else if (isWanted) {
        QQmlComponent component(qmlEngine(this),
                                QUrl(u"qrc:/qt/qml/TimeTracker/Views/Controls/HelpTip.qml"_s));
        if (!component.isReady()) {
            qWarning("%s", qPrintable(component.errorString()));
            return;
        }
        m_tip = component.createWithInitialProperties(
            {{u"parent"_s, QVariant::fromValue(parent())}, {u"text"_s, m_text}}, qmlContext(this));
        m_tip->setParent(this);
    }
}
