#include "app/instance/instancesocket.h"
#include "app/instance/userlock.h"

#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestInstanceSocket : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString path() const { return m_folder.filePath(u"socket"_s); }

    /// What is answered to @p bytes, once the connection is closed.
    QByteArray answerTo(const QByteArray &bytes)
    {
        QLocalSocket client;
        client.connectToServer(path());
        client.write(bytes);
        QByteArray answer;
        const bool isClosed = QTest::qWaitFor(
            [&] {
                answer += client.readAll();
                return client.state() == QLocalSocket::UnconnectedState;
            },
            30'000);
        return isClosed ? answer : "is still open";
    }

private Q_SLOTS:
    void shouldTakeTokens_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QString>("token");

        QTest::newRow("both") << QByteArray("token\0id\0", 9) << u"token"_s;
        QTest::newRow("startup id only") << QByteArray("\0id\0", 4) << u"id"_s;
        QTest::newRow("none") << QByteArray("\0\0", 2) << QString();
        QTest::newRow("not only ASCII") << QByteArray("\xc3\xa6\0\0", 4) << u"æ"_s;
        QTest::newRow("no text at all") << QByteArray("\xff\0\0", 3) << u"\ufffd"_s;
        QTest::newRow("more than asked for") << QByteArray("token\0\0more", 11) << u"token"_s;
        const QByteArray longest(InstanceSocket::LongestMessage - 2, 'x');
        QTest::newRow("as long as may be")
            << longest + QByteArray(2, '\0') << QString::fromLatin1(longest);
    }
    void shouldTakeTokens()
    {
        QFETCH(QByteArray, message);
        QFETCH(QString, token);
        InstanceSocket socket;
        QVERIFY(socket.listen(path()));
        const QSignalSpy activated(&socket, &InstanceSocket::activated);

        QCOMPARE(answerTo(message), "+");
        QCOMPARE(activated, QList<QVariantList>{{token}});
    }

    void shouldTakeAMessageInPieces()
    {
        InstanceSocket socket;
        QVERIFY(socket.listen(path()));
        const QSignalSpy activated(&socket, &InstanceSocket::activated);

        QLocalSocket client;
        client.connectToServer(path());
        for (const char byte : QByteArray("ab\0c\0", 5)) {
            QCOMPARE(activated.size(), 0);
            client.putChar(byte);
            QVERIFY(client.flush());
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(activated, QList<QVariantList>{{u"ab"_s}});
    }

    void shouldHangUpOnEndlessInput()
    {
        InstanceSocket socket(std::chrono::hours(1));
        QVERIFY(socket.listen(path()));
        const QSignalSpy activated(&socket, &InstanceSocket::activated);

        QCOMPARE(answerTo(QByteArray(10'000'000, 'x')), "");
        QCOMPARE(answerTo(QByteArray(InstanceSocket::LongestMessage + 1, 'x')), "");
        QCOMPARE(activated.size(), 0);

        QCOMPARE(answerTo(QByteArray(2, '\0')), "+");
        QCOMPARE(activated.size(), 1);
    }

    void shouldHangUpOnSilence()
    {
        InstanceSocket socket(std::chrono::milliseconds(1));
        QVERIFY(socket.listen(path()));
        const QSignalSpy activated(&socket, &InstanceSocket::activated);

        QCOMPARE(answerTo({}), "");
        QCOMPARE(answerTo("tok"), "");
        QCOMPARE(activated.size(), 0);
    }

    void shouldLetOnlyItsUserIn()
    {
        InstanceSocket socket;
        QVERIFY(socket.listen(path()));

        QCOMPARE(QFile::permissions(path()) &
                     (QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                      QFile::WriteOther | QFile::ExeOther),
                 QFile::Permissions());
    }

    void shouldReplaceASocketThatWasLeft()
    {
        InstanceSocket former;
        QVERIFY(former.listen(path()));
        InstanceSocket socket;
        const QSignalSpy activated(&socket, &InstanceSocket::activated);

        QVERIFY(socket.listen(path()));
        QCOMPARE(answerTo(QByteArray(2, '\0')), "+");
        QCOMPARE(activated.size(), 1);
    }

    void shouldNotWaitForNobody()
    {
        QVERIFY(!InstanceSocket::send(m_folder.filePath(u"nobody"_s), {}, QDeadlineTimer(60'000)));
    }

    void shouldLockOnce()
    {
        const QString file = m_folder.filePath(u"lock"_s);
        {
            UserLock first;
            QCOMPARE(first.take(file), UserLock::Result::Taken);
            QCOMPARE(first.take(file), UserLock::Result::Taken);
            UserLock second;
            QCOMPARE(second.take(file), UserLock::Result::HeldByAnother);
        }
        UserLock third;
        QCOMPARE(third.take(file), UserLock::Result::Taken);
    }

    void shouldNotLockWhereItCannot_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("no folder") << m_folder.filePath(u"missing/lock"_s);
        QTest::newRow("a folder") << m_folder.path();
        const QString link = m_folder.filePath(u"link"_s);
        QVERIFY(QFile::link(m_folder.filePath(u"elsewhere"_s), link));
        QTest::newRow("a link") << link;
    }
    void shouldNotLockWhereItCannot()
    {
        QFETCH(QString, file);
        UserLock lock;
        QCOMPARE(lock.take(file), UserLock::Result::NotPossible);
        QVERIFY(!QFile::exists(m_folder.filePath(u"elsewhere"_s)));
    }
};

QTEST_GUILESS_MAIN(TestInstanceSocket)
#include "tst_instancesocket.moc"
