#include "model/sessionbus.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

using namespace Qt::StringLiterals;

class TestSessionBus : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void init()
    {
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void shouldHaveNoBusStarted_data()
    {
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("not set") << QByteArray();
        QTest::newRow("to be started") << QByteArray("autolaunch:");
        QTest::newRow("or to be started") << QByteArray("unix:runtime=yes;autolaunch:");
    }
    void shouldHaveNoBusStarted()
    {
        QFETCH(QByteArray, address);

        // given
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        // What is named like the bus, but is none.
        QFile file(m_folder.filePath(u"bus"_s));
        QVERIFY(file.open(QFile::WriteOnly));

        // when
        neverStartABus();
        const QDBusConnection bus = QDBusConnection::sessionBus();

        // then
        QVERIFY(!bus.isConnected());
        QCOMPARE(bus.lastError().name(), u"org.freedesktop.DBus.Error.BadAddress"_s);
        QVERIFY(file.remove());
    }

    void shouldLeaveTheBusThatIsToBeFound()
    {
        // given a socket of the user's own where the library looks for a bus
        qputenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:");
        const QByteArray path = QFile::encodeName(m_folder.filePath(u"bus"_s));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        QVERIFY(static_cast<std::size_t>(path.size()) < sizeof address.sun_path);
        std::memcpy(address.sun_path, path.constData(), path.size());
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        QCOMPARE(::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);

        // when
        neverStartABus();

        // then
        QVERIFY(!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"));
        ::close(socket);
        QVERIFY(QFile::remove(m_folder.filePath(u"bus"_s)));
    }

    void shouldHaveNoBusStartedWithoutAFolderForIt()
    {
        // given
        qunsetenv("XDG_RUNTIME_DIR");

        // when
        neverStartABus();

        // then
        QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
    }

    void shouldLeaveTheBusThatIsPromised()
    {
        // given
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/there");

        // when
        neverStartABus();

        // then
        QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), "unix:path=/there");
    }
};

QTEST_GUILESS_MAIN(TestSessionBus)
#include "tst_sessionbus.moc"
