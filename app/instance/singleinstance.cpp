#include "app/instance/singleinstance.h"

#include <QDBusMessage>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Of the bus's own interface.
constexpr uint DoNotQueue = 4;
constexpr uint PrimaryOwner = 1;
constexpr uint Exists = 3;
constexpr uint AlreadyOwner = 4;

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
    // Zero would mean no limit, or the usual one.
    return std::max(1, static_cast<int>(deadline.remainingTime()));
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection &bus, const QString &folder,
                               const QString &service)
    : m_bus(bus)
    , m_folder(folder)
    , m_service(service)
    , m_objectPath(u'/' + QString(service).replace(u'.', u'/'))
{
    connect(&m_object, &ApplicationObject::activated, this, &SingleInstance::activated);
    connect(&m_object, &ApplicationObject::quitRequested, this, &SingleInstance::quitRequested);
    connect(&m_socket, &InstanceSocket::activated, this, &SingleInstance::activated);
}

SingleInstance::Claim SingleInstance::claim(const StartTokens &tokens,
                                            std::chrono::milliseconds patience)
{
    // Also while another one ends: once it has gone this process is the first.
    const QDeadlineTimer deadline(patience);
    do {
        // All take the two in this order, so that no two wait for each other.
        Attempt attempt = claimBus(tokens, deadline);
        if (attempt == Attempt::Succeeded)
            attempt = claimFolder(tokens, deadline);
        if (attempt != Attempt::Failed)
            return attempt == Attempt::Succeeded ? Claim::First : Claim::HandedOver;
        QThread::msleep(PauseMilliseconds);
    } while (!deadline.hasExpired());
    return Claim::Unanswered;
}

SingleInstance::Attempt SingleInstance::claimBus(const StartTokens &tokens, QDeadlineTimer deadline)
{
    if (!m_bus.isConnected())
        return Attempt::Succeeded;
    // Before the name is ours: a call can arrive with it.
    m_bus.registerObject(m_objectPath, &m_object, QDBusConnection::ExportAllSlots);
    const QDBusMessage reply = m_bus.call(callToBus(u"RequestName"_s, {m_service, DoNotQueue}),
                                          QDBus::Block, left(deadline));
    const uint result =
        reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toUInt() : 0;
    if (result == PrimaryOwner || result == AlreadyOwner)
        return Attempt::Succeeded;
    if (result != Exists)
        // A bus that gives no names is as good as none.
        return deadline.hasExpired() ? Attempt::Failed : Attempt::Succeeded;

    QVariantMap platformData;
    if (!tokens.activationToken.isEmpty())
        platformData[u"activation-token"_s] = tokens.activationToken;
    if (!tokens.startupId.isEmpty())
        platformData[u"desktop-startup-id"_s] = tokens.startupId;
    QDBusMessage activation = QDBusMessage::createMethodCall(
        m_service, m_objectPath, u"org.freedesktop.Application"_s, u"Activate"_s);
    activation.setArguments({platformData});
    // If the owner has gone, the bus is not to start another one: that is this process.
    activation.setAutoStartService(false);
    const QDBusMessage answer = m_bus.call(activation, QDBus::Block, left(deadline));
    return answer.type() == QDBusMessage::ReplyMessage ? Attempt::HandedOver : Attempt::Failed;
}

SingleInstance::Attempt SingleInstance::claimFolder(const StartTokens &tokens,
                                                    QDeadlineTimer deadline)
{
    if (m_folder.isEmpty())
        return Attempt::Succeeded;
    const QString path = m_folder + u'/' + m_service;
    const QString socket = path + ".socket"_L1;
    switch (m_lock.take(path + ".lock"_L1)) {
    case UserLock::Result::Taken:
        // If that fails, a later process learns at least that this one is there.
        m_socket.listen(socket);
        return Attempt::Succeeded;
    case UserLock::Result::NotPossible:
        return Attempt::Succeeded;
    case UserLock::Result::HeldByAnother:
        break;
    }
    return InstanceSocket::send(socket, tokens, deadline) ? Attempt::HandedOver : Attempt::Failed;
}
