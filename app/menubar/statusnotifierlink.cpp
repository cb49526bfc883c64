#include "app/menubar/statusnotifierlink.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto Service = "org.kde.StatusNotifierWatcher"_L1;
constexpr auto Path = "/StatusNotifierWatcher"_L1;
constexpr auto Interface = Service;
constexpr std::chrono::minutes LongestRetry(1);

/// A call to the watcher that does not have the bus start one.
QDBusMessage call(const QString &interface, const QString &method, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(QString(Service), QString(Path), interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

} // namespace

StatusNotifierLink::StatusNotifierLink(const QDBusConnection &connection,
                                       std::chrono::milliseconds retry)
    : m_connection(connection)
    , m_serviceWatcher(QString(Service), connection, QDBusServiceWatcher::WatchForOwnerChange)
    , m_firstRetry(retry)
    , m_nextRetry(retry)
{
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, &StatusNotifierLink::registerItem);
    connect(
        &m_serviceWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &owner) { onOwnerChanged(owner); });
    const auto listen = [this](const QString &signal, const char *slot) {
        m_connection.connect(QString(Service), QString(Path), QString(Interface), signal, this,
                             slot);
    };
    listen(u"StatusNotifierHostRegistered"_s, SLOT(onHostRegistered()));
    listen(u"StatusNotifierHostUnregistered"_s, SLOT(onHostUnregistered()));
    listen(u"StatusNotifierItemUnregistered"_s, SLOT(onItemUnregistered(QString)));
    m_connection.connect(QString(), u"/org/freedesktop/DBus/Local"_s,
                         u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                         SLOT(onDisconnected()));
    askForHost();
}

void StatusNotifierLink::keepRegistered()
{
    if (m_keepsRegistered)
        return;
    m_keepsRegistered = true;
    registerItem();
}

void StatusNotifierLink::onHostRegistered()
{
    if (m_hasHost)
        registerItem();
    else
        askForProcess();
}

void StatusNotifierLink::onHostUnregistered()
{
    // The watcher may know other hosts.
    askForHost();
}

void StatusNotifierLink::onItemUnregistered(const QString &item)
{
    // Watchers name an item by its bus name, with or without its path.
    const QString name = m_connection.baseService();
    if (item == name || item.startsWith(name + u'/'))
        registerItemLater();
}

void StatusNotifierLink::onDisconnected()
{
    onOwnerChanged({});
}

void StatusNotifierLink::onOwnerChanged(const QString &owner)
{
    m_retryTimer.stop();
    m_nextRetry = m_firstRetry;
    m_hasHost = false;
    ++m_owners;
    m_hasWatcher = !owner.isEmpty();
    Q_EMIT changed();
    if (m_hasWatcher)
        askForHost();
}

void StatusNotifierLink::askForHost()
{
    const QDBusMessage question = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                       {QString(Interface), u"IsStatusNotifierHostRegistered"_s});
    auto *const reply = new QDBusPendingCallWatcher(m_connection.asyncCall(question), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        reply->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *reply;
        // A watcher that does not answer is taken for none.
        if (m_hasWatcher == answer.isError()) {
            m_hasWatcher = !answer.isError();
            Q_EMIT changed();
        }
        if (!m_hasWatcher || !answer.value().variant().toBool())
            setHasHost(false);
        else if (!m_hasHost)
            askForProcess();
    });
}

void StatusNotifierLink::askForProcess()
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
    question.setArguments({QString(Service)});
    auto *const reply = new QDBusPendingCallWatcher(m_connection.asyncCall(question), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, owners = m_owners] {
        reply->deleteLater();
        if (owners != m_owners)
            return;
        const QDBusPendingReply<uint> id = *reply;
        QFile name(u"/proc/%1/comm"_s.arg(id.isError() ? 0 : id.value()));
        m_process = name.open(QIODevice::ReadOnly) ? QString::fromUtf8(name.readAll()).trimmed()
                                                   : QString();
        setHasHost(true);
    });
}

void StatusNotifierLink::setHasHost(bool hasHost)
{
    if (m_hasHost == hasHost)
        return;
    m_hasHost = hasHost;
    m_hasWatcher |= hasHost;
    // A slot that hears of the host may ask for the registration itself; then it is made only once.
    const bool wasKeptRegistered = m_keepsRegistered;
    Q_EMIT changed();
    if (wasKeptRegistered)
        registerItem();
}

void StatusNotifierLink::registerItem()
{
    if (!m_keepsRegistered || !m_hasHost)
        return;
    // The unique name is used, as one host sometimes loses items that register under another.
    const QDBusMessage registration =
        call(QString(Interface), u"RegisterStatusNotifierItem"_s, {m_connection.baseService()});
    auto *const reply = new QDBusPendingCallWatcher(m_connection.asyncCall(registration), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        reply->deleteLater();
        if (reply->isError())
            registerItemLater();
    });
}

void StatusNotifierLink::registerItemLater()
{
    if (!m_keepsRegistered || !m_hasHost || m_retryTimer.isActive())
        return;
    m_retryTimer.start(m_nextRetry);
    m_nextRetry = std::min<std::chrono::milliseconds>(2 * m_nextRetry, LongestRetry);
}
