#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QObject>
#include <QStringList>
#include <QTest>
#include <QTimer>

/// Lets the timers of no time run out that have been started.
inline void settle()
{
    // Timers that are due at the same time are served in the order of their starts.
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(0);
    if (!QTest::qWaitFor([&timer] { return !timer.isActive(); }, 30'000))
        QTest::qFail("the event loop does not run", __FILE__, __LINE__);
}

/// A second party on the session bus, as a desktop's bar is one. Its calls let the event loop
/// run, as the other side lives in the same thread.
class Peer : public QObject
{
    Q_OBJECT

public:
    explicit Peer(const QString &name)
        : m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
        , m_name(name)
    {
        if (!m_connection.isConnected())
            QTest::qFail("there is no session bus", __FILE__, __LINE__);
    }
    ~Peer() override { QDBusConnection::disconnectFromBus(m_name); }

    QDBusConnection &connection() { return m_connection; }

    QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                      const QString &method, const QVariantList &arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        // Longer than Qt's own 25 seconds: a large answer is slow under valgrind on a busy machine.
        constexpr int patience = 120'000;
        const QDBusPendingCallWatcher watcher(m_connection.asyncCall(message, patience));
        // The watcher's signal waits its turn behind the signals that came before the answer, which
        // another thread reads from the bus. isFinished() would be true before those are delivered.
        bool isDelivered = false;
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, this,
                         [&isDelivered] { isDelivered = true; });
        if (!QTest::qWaitFor([&isDelivered] { return isDelivered; }, 2 * patience))
            QTest::qFail("no answer", __FILE__, __LINE__);
        return watcher.reply();
    }
    QVariant property(const QString &service, const QString &path, const QString &interface,
                      const QString &property)
    {
        const QDBusMessage reply =
            call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                 QStringLiteral("Get"), {interface, property});
        return reply.type() == QDBusMessage::ReplyMessage
                   ? reply.arguments().value(0).value<QDBusVariant>().variant()
                   : QVariant();
    }

    /// Writes down from now on every signal of an item and its menu that @p service sends.
    void listenTo(const QString &service)
    {
        for (const char *interface : {"org.kde.StatusNotifierItem", "com.canonical.dbusmenu",
                                      "org.freedesktop.DBus.Properties"}) {
            if (!m_connection.connect(service, {}, QString::fromLatin1(interface), {}, this,
                                      SLOT(note(QDBusMessage))))
                QTest::qFail("cannot listen", __FILE__, __LINE__);
        }
        // Once there is an answer, the bus knows of it, and nothing older is under way any more.
        ping(service);
        m_heard.clear();
    }
    /// Returns once everything has been delivered that this party and @p service had sent to each
    /// other before.
    void ping(const QString &service)
    {
        call(service, QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus.Peer"),
             QStringLiteral("Ping"));
    }
    /// The names of the signals since the last call; those sent before this call are among them.
    QStringList heard(const QString &service)
    {
        QStringList names;
        for (const QDBusMessage &message : heardMessages(service))
            names << message.member();
        return names;
    }
    QList<QDBusMessage> heardMessages(const QString &service)
    {
        settle();
        ping(service);
        return std::exchange(m_heard, {});
    }

private Q_SLOTS:
    void note(const QDBusMessage &message) { m_heard.append(message); }

private:
    QDBusConnection m_connection;
    QString m_name;
    QList<QDBusMessage> m_heard;
};

/// The name that this process, and so a bar in it, bears for the system while this lives.
class ProcessName
{
public:
    explicit ProcessName(const QByteArray &name)
        : m_before(set(name))
    {
    }
    ~ProcessName() { set(m_before); }
    Q_DISABLE_COPY_MOVE(ProcessName)

private:
    static QByteArray set(const QByteArray &name)
    {
        QFile file(QStringLiteral("/proc/self/comm"));
        if (!file.open(QIODevice::ReadOnly))
            QTest::qFail("this process has no name", __FILE__, __LINE__);
        QByteArray before = file.readAll().trimmed();
        file.close();
        if (!file.open(QIODevice::WriteOnly) || file.write(name) != name.size())
            QTest::qFail("this process cannot be named", __FILE__, __LINE__);
        return before;
    }

    QByteArray m_before;
};

/// The desktop's watcher of status notifier items, with or without a host.
class Watcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    explicit Watcher(bool hasHost = true)
        : m_hasHost(hasHost)
    {
        m_peer.connection().registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                           QDBusConnection::ExportAllProperties |
                                               QDBusConnection::ExportScriptableSlots |
                                               QDBusConnection::ExportScriptableSignals);
        if (!m_peer.connection().registerService(QStringLiteral("org.kde.StatusNotifierWatcher")))
            QTest::qFail("there is a watcher already", __FILE__, __LINE__);
    }

    bool hasHost() const { return m_hasHost; }
    void registerHost()
    {
        m_hasHost = true;
        Q_EMIT StatusNotifierHostRegistered();
    }
    void unregisterHost()
    {
        m_hasHost = false;
        Q_EMIT StatusNotifierHostUnregistered();
    }
    /// The items in the order of their registrations.
    const QStringList &items() const { return m_items; }
    /// Refuses registrations from now on.
    void refuse(bool refuses) { m_refuses = refuses; }
    Peer &peer() { return m_peer; }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &service)
    {
        m_items << service;
        if (m_refuses)
            sendErrorReply(QDBusError::Failed);
        else
            Q_EMIT StatusNotifierItemRegistered(service);
    }

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString &service);
    Q_SCRIPTABLE void StatusNotifierItemUnregistered(const QString &service);
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

private:
    Peer m_peer{QStringLiteral("watcher")};
    bool m_hasHost;
    bool m_refuses = false;
    QStringList m_items;
};
