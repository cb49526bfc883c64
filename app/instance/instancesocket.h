#pragma once

#include "app/instance/starttokens.h"

#include <QDeadlineTimer>
#include <QLocalServer>

#include <chrono>

/// The way to the running instance where there is no bus: a socket that only its user can reach.
class InstanceSocket : public QObject
{
    Q_OBJECT

public:
    /// What is longer is neither sent nor taken, in bytes.
    static constexpr qsizetype LongestMessage = 4096;

    /// @p patience is how long a connection may take to say what it wants.
    explicit InstanceSocket(std::chrono::milliseconds patience = std::chrono::seconds(5));

    /// Listens at @p path, in the place of whoever did so before; only for who holds the lock.
    bool listen(const QString &path);

    /// Hands @p tokens to who listens at @p path and waits until they are taken. False if nobody
    /// listens there, if they go away, or at the deadline.
    static bool send(const QString &path, const StartTokens &tokens, QDeadlineTimer deadline);

Q_SIGNALS:
    void activated(const QString &activationToken);

private:
    void accept();
    void read(QLocalSocket &connection);

    QLocalServer m_server;
    std::chrono::milliseconds m_patience;
};
