#include "app/instance/singleinstance.h"

#include <QDBusMessage>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A flag and answers that the bus's own interface defines.
constexpr uint DoNotQueue = 4;
constexpr uint Exists = 3;

/// Between two attempts, while another process starts or ends.
constexpr unsigned long PauseMilliseconds = 20;

QDBusMessage callToBus(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    message.setArguments(arguments);
    return message;
}

int left(QDeadlineTimer deadline)
{
    // A time-out of zero would mean no limit, or the usual one.
    return std::max(1, static_cast<int>(deadline.remainingTime()));
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection &bus, const QString &service)
    : m_bus(bus)
    , m_service(service)
    , m_objectPath(u'/' + QString(service).replace(u'.', u'/'))
    , m_tasks(new TasksInterface(bus, &m_object))
{
    connect(&m_object, &ApplicationObject::activated, this, &SingleInstance::activated);
    connect(&m_object, &ApplicationObject::quitRequested, this, &SingleInstance::quitRequested);
}

SingleInstance::Claim SingleInstance::claim(const StartTokens &tokens,
                                            std::chrono::milliseconds patience)
{
    if (!m_bus.isConnected())
        return Claim::First;
    // The object is exported before the name is ours, as a call can arrive together with the name.
    m_bus.registerObject(m_objectPath, &m_object,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAdaptors);
    // This is tried while another process ends, too: once that has gone, this one is the first.
    const QDeadlineTimer deadline(patience);
    do {
        if (!isNameAnothers(deadline))
            return Claim::First;
        if (handOver(tokens, deadline))
            return Claim::HandedOver;
        QThread::msleep(PauseMilliseconds);
    } while (!deadline.hasExpired());
    return Claim::Unanswered;
}

/// Asks for the name. A bus that gives no names is as good as none.
bool SingleInstance::isNameAnothers(QDeadlineTimer deadline)
{
    const QDBusMessage reply = m_bus.call(callToBus(u"RequestName"_s, {m_service, DoNotQueue}),
                                          QDBus::Block, left(deadline));
    return reply.type() == QDBusMessage::ReplyMessage &&
           reply.arguments().value(0).toUInt() == Exists;
}

/// Asks the name's owner to bring its window forward. False if it does not answer in time.
bool SingleInstance::handOver(const StartTokens &tokens, QDeadlineTimer deadline)
{
    QVariantMap platformData;
    if (!tokens.activationToken.isEmpty())
        platformData[u"activation-token"_s] = tokens.activationToken;
    if (!tokens.startupId.isEmpty())
        platformData[u"desktop-startup-id"_s] = tokens.startupId;
    QDBusMessage activation = QDBusMessage::createMethodCall(
        m_service, m_objectPath, u"org.freedesktop.Application"_s, u"Activate"_s);
    activation.setArguments({platformData});
    // If the owner has gone, the bus must not start another process: this one takes over.
    activation.setAutoStartService(false);
    const QDBusMessage answer = m_bus.call(activation, QDBus::Block, left(deadline));
    return answer.type() == QDBusMessage::ReplyMessage;
}
