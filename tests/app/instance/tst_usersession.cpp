#include "app/instance/starttokens.h"
#include "app/instance/usersession.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

class TestUserSession : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void init()
    {
        QVERIFY(QFile::setPermissions(m_folder.path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
        qputenv("TMPDIR", m_folder.path().toUtf8());
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void shouldUseTheSessionsRuntimeFolder() { QCOMPARE(userRuntimeFolder(), m_folder.path()); }

    void shouldFindAnotherFolderWhereTheSessionHasNone_data()
    {
        QTest::addColumn<QByteArray>("given");
        QTest::newRow("not set") << QByteArray();
        QTest::newRow("not there") << QByteArray("/does/not/exist");
        QTest::newRow("relative") << QByteArray(".");
    }
    void shouldFindAnotherFolderWhereTheSessionHasNone()
    {
        QFETCH(QByteArray, given);
        qputenv("XDG_RUNTIME_DIR", given);

        const QString folder = userRuntimeFolder();
        QVERIFY(folder.startsWith(u'/'));
        QVERIFY(isPrivateFolder(folder));
        QCOMPARE(userRuntimeFolder(), folder);
    }

    void shouldNotTrustAFolderInWhichOthersWrite()
    {
        QVERIFY(isPrivateFolder(m_folder.path()));

        const auto permissions = QFile::permissions(m_folder.path());
        QVERIFY(QFile::setPermissions(m_folder.path(), permissions | QFile::WriteOther));
        QVERIFY(!isPrivateFolder(m_folder.path()));
        QVERIFY(userRuntimeFolder() != m_folder.path());
        QVERIFY(QFile::setPermissions(m_folder.path(), permissions | QFile::WriteGroup));
        QVERIFY(!isPrivateFolder(m_folder.path()));
    }

    void shouldNotTrustALink()
    {
        const QString link = m_folder.filePath(u"link"_s);
        QVERIFY(QFile::link(m_folder.path(), link));
        QVERIFY(!isPrivateFolder(link));
    }

    void shouldNotTrustAnotherUsersFolder()
    {
        if (::geteuid() == 0) {
            constexpr uid_t nobody = 65534;
            const QTemporaryDir theirs;
            QCOMPARE(::chown(theirs.path().toUtf8().constData(), nobody, nobody), 0);
            QVERIFY(!isPrivateFolder(theirs.path()));
        } else {
            QVERIFY(!isPrivateFolder(u"/usr"_s));
        }
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
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        // What is named like the bus, but is none.
        QFile file(m_folder.filePath(u"bus"_s));
        QVERIFY(file.open(QFile::WriteOnly));

        neverStartABus();
        const QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(!bus.isConnected());
        QCOMPARE(bus.lastError().name(), u"org.freedesktop.DBus.Error.BadAddress"_s);
        QVERIFY(file.remove());
    }

    void shouldLeaveTheBusThatIsPromised()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/there");
        neverStartABus();
        QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), "unix:path=/there");
    }

    void shouldReadTheTokensAndLeaveThem()
    {
        qputenv("XDG_ACTIVATION_TOKEN", "token");
        qputenv("DESKTOP_STARTUP_ID", "id");
        const StartTokens tokens = StartTokens::fromEnvironment();
        QCOMPARE(tokens.activationToken, u"token"_s);
        QCOMPARE(tokens.startupId, u"id"_s);
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
        QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), "id");
    }
};

QTEST_GUILESS_MAIN(TestUserSession)
#include "tst_usersession.moc"
