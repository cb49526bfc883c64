#include "views/controls/lazypart.h"

#include <QQmlComponent>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

LazyPart::LazyPart(const QString &file, QObject *parent)
    : QObject(parent)
    , m_file(file)
{
    connect(this, &LazyPart::changed, this, &LazyPart::follow);
}

void LazyPart::follow()
{
    if (m_part && m_isNeeded) {
        const QVariantMap now = properties();
        for (auto entry = now.cbegin(); entry != now.cend(); ++entry)
            m_part->setProperty(entry.key().toUtf8(), entry.value());
    } else if (m_part) {
        // It must not be deleted now, as its own events may have led here.
        m_part->setProperty("visible", false);
        m_part->deleteLater();
        m_part.clear();
    } else if (m_isNeeded) {
        QQmlComponent component(qmlEngine(this),
                                QUrl(u"qrc:/qt/qml/TimeTracker/Views/Controls/"_s + m_file));
        QVariantMap initial = properties();
        initial.insert(u"parent"_s, QVariant::fromValue(parent()));
        m_part = component.createWithInitialProperties(initial, qmlContext(this));
        m_part->setParent(this);
    }
}

LazyHelpTip::LazyHelpTip(QObject *parent)
    : LazyPart(u"HelpTip.qml"_s, parent)
{
}

QVariantMap LazyHelpTip::properties() const
{
    return {{u"text"_s, m_text}};
}

LazyFocusRing::LazyFocusRing(QObject *parent)
    : LazyPart(u"FocusRing.qml"_s, parent)
{
}

QVariantMap LazyFocusRing::properties() const
{
    return {{u"contentRadius"_s, m_radius}};
}
