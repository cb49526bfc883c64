#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <chrono>

/// The connection to the desktop's watcher of status notifier items: knows whether it and a host
/// are there, and keeps our item registered while they are.
class StatusNotifierLink : public QObject
{
    Q_OBJECT

public:
    /// Asks at once, and answers later. @p retry is the time until a lost registration is made
    /// again; it doubles with each time, for as long as the watcher is the same.
    explicit StatusNotifierLink(const QDBusConnection &connection,
                                std::chrono::milliseconds retry = std::chrono::seconds(1));

    /// Whether there is a watcher. True until the first answer says otherwise.
    bool hasWatcher() const { return m_hasWatcher; }
    /// Whether items are shown by somebody.
    bool hasHost() const { return m_hasHost; }
    /// The name of the process that has the watcher and, on most desktops, the host, as the system
    /// cuts it; empty if it cannot be told. It is known when hasHost() becomes true.
    const QString &process() const { return m_process; }

    /// Registers the item that this process exports, and does so again whenever it has to be.
    void keepRegistered();

Q_SIGNALS:
    /// The watcher or its host has come or gone.
    void changed();

private Q_SLOTS:
    void onHostRegistered();
    void onHostUnregistered();
    void onItemUnregistered(const QString &item);
    void onDisconnected();

private:
    void onOwnerChanged(const QString &owner);
    void askForHost();
    void askForProcess();
    void setHasHost(bool hasHost);
    void registerItem();
    void registerItemLater();

    QDBusConnection m_connection;
    QDBusServiceWatcher m_serviceWatcher;
    bool m_hasWatcher = true;
    bool m_hasHost = false;
    QString m_process;
    // Grows with each owner of the watcher's name: what concerns an earlier one is past.
    int m_owners = 0;
    bool m_keepsRegistered = false;
    std::chrono::milliseconds m_firstRetry;
    std::chrono::milliseconds m_nextRetry;
    QTimer m_retryTimer;
};
