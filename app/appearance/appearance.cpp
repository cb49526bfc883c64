#include "app/appearance/appearance.h"

#include "views/controls/theme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace
{

const QString Service = u"org.freedesktop.portal.Desktop"_s;
const QString Path = u"/org/freedesktop/portal/desktop"_s;
const QString Interface = u"org.freedesktop.portal.Settings"_s;
const QString Group = u"org.freedesktop.appearance"_s;
const QString Key = u"color-scheme"_s;
constexpr uint PrefersDark = 1;

} // namespace

QPalette darkPalette()
{
    QPalette palette(QColor(0x33, 0x33, 0x33), QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::Base, QColor(0x16, 0x16, 0x16));
    return palette;
}

QPalette lightPalette()
{
    return QPalette(QColor(0xef, 0xef, 0xef));
}

Appearance::Appearance(const QDBusConnection &connection)
    : m_connection(connection)
    , m_portalWatcher(Service, connection, QDBusServiceWatcher::WatchForRegistration)
{
    if (!m_connection.isConnected())
        return;
    qGuiApp->installEventFilter(this);
    connect(&m_portalWatcher, &QDBusServiceWatcher::serviceRegistered, this, &Appearance::ask);
    // Until the first message with a variant arrives, Qt does not know the slot's type by its name.
    qRegisterMetaType<QDBusVariant>();
    // The bus is asked to pass on changes of this one setting alone.
    m_connection.connect(Service, Path, Interface, u"SettingChanged"_s, {Group, Key}, u"ssv"_s,
                         this, SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    ask();
}

bool Appearance::eventFilter(QObject *watched, QEvent *event)
{
    // While the application has a palette of its own, no event tells of the platform's; but each
    // window hears that the platform's theme has changed.
    const bool isPlatformPalette =
        watched == qGuiApp && !m_hasOwnPalette && event->type() == QEvent::ApplicationPaletteChange;
    if (isPlatformPalette || event->type() == QEvent::ThemeChange)
        update();
    return false;
}

void Appearance::onSettingChanged(const QString &, const QString &, const QDBusVariant &value)
{
    setColorScheme(value.variant());
}

void Appearance::ask()
{
    QDBusMessage message = QDBusMessage::createMethodCall(Service, Path, Interface, u"Read"_s);
    message.setArguments({Group, Key});
    message.setAutoStartService(false);
    auto *call = new QDBusPendingCallWatcher(m_connection.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isValid())
            setColorScheme(reply.value().variant());
        call->deleteLater();
    });
}

void Appearance::setColorScheme(const QVariant &value)
{
    // The portal wraps its answer in another variant.
    const bool isNested = value.userType() == qMetaTypeId<QDBusVariant>();
    const QVariant scheme = isNested ? value.value<QDBusVariant>().variant() : value;
    m_wantsDark = scheme.toUInt() == PrefersDark;
    m_hasWantedDark = m_hasWantedDark || m_wantsDark;
    update();
}

void Appearance::update()
{
    // An empty palette restores the platform's own.
    if (m_hasOwnPalette)
        QGuiApplication::setPalette(QPalette());
    const bool isDark = isDarkPalette(QGuiApplication::palette());
    m_hasOwnPalette = m_wantsDark ? !isDark : isDark && m_hasWantedDark;
    if (m_hasOwnPalette)
        QGuiApplication::setPalette(m_wantsDark ? darkPalette() : lightPalette());
}
