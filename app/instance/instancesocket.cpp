#include "app/instance/instancesocket.h"

#include <QLocalSocket>
#include <QTimer>

namespace
{

constexpr char Taken = '+';

/// Two texts, each ended by a zero, which no environment variable can contain.
QByteArray message(const StartTokens &tokens)
{
    QByteArray bytes;
    for (const QString &text : {tokens.activationToken, tokens.startupId})
        bytes += text.toUtf8() + '\0';
    // A token cut short would be worth as little as none.
    return bytes.size() <= InstanceSocket::LongestMessage ? bytes : QByteArray(2, '\0');
}

int left(QDeadlineTimer deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

InstanceSocket::InstanceSocket(std::chrono::milliseconds patience)
    : m_patience(patience)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &InstanceSocket::accept);
}

bool InstanceSocket::listen(const QString &path)
{
    QLocalServer::removeServer(path);
    return m_server.listen(path);
}

bool InstanceSocket::send(const QString &path, const StartTokens &tokens, QDeadlineTimer deadline)
{
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(left(deadline)))
        return false;
    socket.write(message(tokens));
    char answer = 0;
    return socket.waitForReadyRead(left(deadline)) && socket.getChar(&answer) && answer == Taken;
}

void InstanceSocket::accept()
{
    while (QLocalSocket *const connection = m_server.nextPendingConnection()) {
        connection->setReadBufferSize(LongestMessage + 1);
        connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
        connect(connection, &QLocalSocket::readyRead, this,
                [this, connection] { read(*connection); });
        QTimer::singleShot(m_patience, connection, &QLocalSocket::abort);
    }
}

void InstanceSocket::read(QLocalSocket &connection)
{
    const QByteArray bytes = connection.peek(LongestMessage + 1);
    const qsizetype first = bytes.indexOf('\0');
    const qsizetype second = first < 0 ? -1 : bytes.indexOf('\0', first + 1);
    if (second < 0) {
        if (bytes.size() > LongestMessage)
            connection.abort();
        return;
    }
    connection.readAll();
    // One message each.
    disconnect(&connection, &QLocalSocket::readyRead, this, nullptr);
    const StartTokens tokens{QString::fromUtf8(bytes.first(first)),
                             QString::fromUtf8(bytes.sliced(first + 1, second - first - 1))};
    connection.write(&Taken, 1);
    connection.disconnectFromServer();
    Q_EMIT activated(tokens.preferred());
}
