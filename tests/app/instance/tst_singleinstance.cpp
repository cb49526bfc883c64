#include "app/instance/singleinstance.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

/// One process that starts as the program does, and what it said.
class Probe
{
public:
    explicit Probe(const QProcessEnvironment &environment, const QStringList &arguments)
    {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(INSTANCEPROBE), arguments);
        m_process.waitForStarted();
    }
    ~Probe()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Probe)

    const QStringList &lines()
    {
        while (m_process.canReadLine())
            m_lines += QString::fromUtf8(m_process.readLine()).chopped(1);
        return m_lines;
    }
    bool isFirst() { return lines().startsWith(u"first"_s); }
    bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }
    /// Minus one for a process that still runs or was killed.
    int status() const
    {
        return hasEnded() && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode()
                                                                            : -1;
    }

    void send(int signal) { ::kill(static_cast<pid_t>(m_process.processId()), signal); }
    void letGo() { m_process.write("\n"); }

private:
    QProcess m_process;
    QStringList m_lines;
};

/// Owns the name but goes away when it is called.
class VanishingOwner : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit VanishingOwner(const QString &connection)
        : m_connection(connection)
    {
    }
    bool wasCalled() const { return m_wasCalled; }

public Q_SLOTS:
    void Activate(const QVariantMap &, const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        m_wasCalled = true;
        QDBusConnection::disconnectFromBus(m_connection);
    }

private:
    QString m_connection;
    bool m_wasCalled = false;
};

// Milliseconds that a probe gives the first process. The shorter one is longer than the bus takes
// to answer on a busy machine.
constexpr auto Patient = "60000"_L1;
constexpr auto Impatient = "500"_L1;

// Milliseconds that other processes get, several of which may start at once on a busy machine.
constexpr int deadline = 60'000;

} // namespace

class TestSingleInstance : public QObject
{
    Q_OBJECT

private:
    // Not the program's own, as that may be running.
    const QString m_service = u"dk.tulo.TimeTracker.Test"_s;
    const QString m_objectPath = u"/dk/tulo/TimeTracker/Test"_s;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_daemon;
    QString m_address;
    int m_connections = 0;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"XDG_ACTIVATION_TOKEN"_s);
        environment.remove(u"DESKTOP_STARTUP_ID"_s);
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_address);
        return environment;
    }

    std::unique_ptr<Probe> start(const QProcessEnvironment &environment,
                                 QLatin1StringView patience = Patient,
                                 const QStringList &more = {}) const
    {
        return std::make_unique<Probe>(environment,
                                       QStringList{m_service, QString(patience)} + more);
    }
    std::unique_ptr<Probe> start(QLatin1StringView patience = Patient,
                                 const QStringList &more = {}) const
    {
        return start(environment(), patience, more);
    }

    QDBusConnection connectToBus()
    {
        return QDBusConnection::connectToBus(m_address, u"test%1"_s.arg(++m_connections));
    }

    QDBusMessage call(const QString &method, const QVariantList &arguments) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_service, m_objectPath, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        return message;
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_daemon = std::make_unique<QProcess>();
        m_daemon->start(u"dbus-daemon"_s,
                        {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                         u"--address=unix:path="_s + m_folder->filePath(u"bus"_s)});
        QTRY_VERIFY_WITH_TIMEOUT(m_daemon->canReadLine(), deadline);
        m_address = QString::fromUtf8(m_daemon->readLine()).trimmed();
    }
    void cleanup()
    {
        m_daemon->kill();
        m_daemon->waitForFinished();
    }

    void shouldHandOverToTheFirst()
    {
        // given
        const auto running = start();
        QTRY_VERIFY_WITH_TIMEOUT(running->isFirst(), deadline);

        // when another comes with a token
        QProcessEnvironment withToken = environment();
        withToken.insert(u"XDG_ACTIVATION_TOKEN"_s, u"a token"_s);
        withToken.insert(u"DESKTOP_STARTUP_ID"_s, u"an id"_s);
        const auto later = start(withToken);

        // then
        QTRY_VERIFY_WITH_TIMEOUT(later->hasEnded(), deadline);
        QCOMPARE(later->status(), 0);
        QCOMPARE(later->lines(), QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(running->lines(),
                                  QStringList({u"first"_s, u"activated:a token"_s}), deadline);

        // when another comes with an id only
        QProcessEnvironment withId = environment();
        withId.insert(u"DESKTOP_STARTUP_ID"_s, u"an id"_s);
        const auto third = start(withId);

        // then
        QTRY_COMPARE_WITH_TIMEOUT(third->status(), 0, deadline);
        QTRY_COMPARE_WITH_TIMEOUT(running->lines().value(2), u"activated:an id"_s, deadline);

        // when another comes with neither
        const auto fourth = start();

        // then
        QTRY_COMPARE_WITH_TIMEOUT(fourth->status(), 0, deadline);
        QTRY_COMPARE_WITH_TIMEOUT(running->lines().value(3), u"activated:"_s, deadline);
    }

    void shouldHaveOneFirstOfMany()
    {
        // given
        std::vector<std::unique_ptr<Probe>> probes(8);

        // when
        std::generate(probes.begin(), probes.end(), [this] { return start(); });

        // then
        const auto ended = [&] {
            return std::count_if(probes.begin(), probes.end(),
                                 [](const auto &probe) { return probe->hasEnded(); });
        };
        QTRY_COMPARE_WITH_TIMEOUT(ended(), 7, deadline);
        for (const auto &probe : probes) {
            if (probe->hasEnded()) {
                QCOMPARE(probe->status(), 0);
                QCOMPARE(probe->lines(), QStringList());
            } else {
                QTRY_COMPARE_WITH_TIMEOUT(probe->lines(),
                                          QStringList(u"first"_s) + QStringList(7, u"activated:"_s),
                                          deadline);
            }
        }
    }

    void shouldSucceedOneThatWasKilled()
    {
        // given
        const auto killed = start();
        QTRY_VERIFY_WITH_TIMEOUT(killed->isFirst(), deadline);
        killed->send(SIGKILL);
        QTRY_VERIFY_WITH_TIMEOUT(killed->hasEnded(), deadline);

        // when
        const auto next = start();

        // then
        QTRY_VERIFY_WITH_TIMEOUT(next->isFirst(), deadline);

        // when
        const auto last = start();

        // then
        QTRY_COMPARE_WITH_TIMEOUT(last->status(), 0, deadline);
        QTRY_COMPARE_WITH_TIMEOUT(next->lines().size(), 2, deadline);
    }

    void shouldFailIfTheFirstIsSilent()
    {
        // given
        const auto stopped = start();
        QTRY_VERIFY_WITH_TIMEOUT(stopped->isFirst(), deadline);
        stopped->send(SIGSTOP);

        // when
        const auto later = start(Impatient);

        // then
        QTRY_VERIFY_WITH_TIMEOUT(later->hasEnded(), deadline);
        QCOMPARE(later->status(), 1);
        QCOMPARE(later->lines(), QStringList());
    }

    void shouldSucceedAnOwnerThatVanishes()
    {
        // given
        const QString connection = u"vanishing"_s;
        VanishingOwner owner(connection);
        {
            // A connection is open for as long as somebody refers to it.
            QDBusConnection bus = QDBusConnection::connectToBus(m_address, connection);
            QVERIFY(bus.registerObject(m_objectPath, &owner, QDBusConnection::ExportAllSlots));
            QVERIFY(bus.registerService(m_service));
        }

        // when
        const auto next = start();

        // then
        QTRY_VERIFY_WITH_TIMEOUT(next->isFirst(), deadline);
        QVERIFY(owner.wasCalled());
    }

    void shouldNotLoseWhatComesBeforeTheEventLoop()
    {
        // given
        const auto held = start(Patient, {u"held"_s});
        QTRY_VERIFY_WITH_TIMEOUT(held->isFirst(), deadline);
        QDBusConnection bus = connectToBus();

        // when
        const QDBusPendingCall answer =
            bus.asyncCall(call(u"Activate"_s, {QVariantMap{{u"activation-token"_s, u"early"_s}}}));
        // The bus has passed it on once it answers what came after.
        QVERIFY(bus.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
                                                        u"/org/freedesktop/DBus"_s,
                                                        u"org.freedesktop.DBus"_s, u"GetId"_s))
                    .type() == QDBusMessage::ReplyMessage);

        // then
        QVERIFY(!answer.isFinished());

        // when
        held->letGo();

        // then
        QTRY_COMPARE_WITH_TIMEOUT(held->lines(), QStringList({u"first"_s, u"activated:early"_s}),
                                  deadline);
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), deadline);
        QVERIFY(!answer.isError());
    }

    void shouldBeFirstWhereThereIsNoBus_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("none is named") << QString();
        QTest::newRow("none is there") << u"unix:path=/does/not/exist"_s;
    }
    void shouldBeFirstWhereThereIsNoBus()
    {
        QFETCH(QString, address);

        // given
        const auto withBus = start();
        QTRY_VERIFY_WITH_TIMEOUT(withBus->isFirst(), deadline);
        QProcessEnvironment withoutBus = environment();
        withoutBus.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
        withoutBus.remove(u"XDG_RUNTIME_DIR"_s);

        // when
        const auto other = start(withoutBus);

        // then
        QTRY_VERIFY_WITH_TIMEOUT(other->isFirst(), deadline);
        QCOMPARE(withBus->lines(), QStringList{u"first"_s});
    }

    void shouldFindTheBusInTheRuntimeFolder()
    {
        // given
        QProcessEnvironment withoutAddress = environment();
        withoutAddress.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        withoutAddress.insert(u"XDG_RUNTIME_DIR"_s, m_folder->path());

        // when
        const auto first = start(withoutAddress);

        // then
        QTRY_VERIFY_WITH_TIMEOUT(first->isFirst(), deadline);

        // when
        QVERIFY(connectToBus().call(call(u"Activate"_s, {QVariantMap()})).type() ==
                QDBusMessage::ReplyMessage);

        // then
        QTRY_COMPARE_WITH_TIMEOUT(first->lines().size(), 2, deadline);
    }

    void shouldDoAsTheDesktopAsks()
    {
        // given
        const auto first = start();
        QTRY_VERIFY_WITH_TIMEOUT(first->isFirst(), deadline);
        const QDBusConnection bus = connectToBus();
        const auto isAnswered = [&](const QString &method, const QVariantList &arguments) {
            return bus.call(call(method, arguments)).type() == QDBusMessage::ReplyMessage;
        };

        // when
        const QVariantMap data{{u"activation-token"_s, u"t"_s}, {u"desktop-startup-id"_s, u"i"_s}};
        QVERIFY(isAnswered(u"Activate"_s, {data}));
        QVERIFY(isAnswered(u"Open"_s, {QStringList{u"file:///x"_s}, QVariantMap()}));
        QVERIFY(isAnswered(u"ActivateAction"_s, {u"unknown"_s, QVariantList(), QVariantMap()}));

        // then
        QTRY_COMPARE_WITH_TIMEOUT(
            first->lines(), QStringList({u"first"_s, u"activated:t"_s, u"activated:"_s}), deadline);

        // when the data make no sense
        QVERIFY(isAnswered(u"Activate"_s, {QVariantMap{{u"activation-token"_s, QVariantList{7}}}}));

        // then they are no data
        QTRY_COMPARE_WITH_TIMEOUT(first->lines().value(3), u"activated:"_s, deadline);
        QVERIFY(!first->hasEnded());

        // when
        QVERIFY(isAnswered(u"ActivateAction"_s, {u"quit"_s, QVariantList(), QVariantMap()}));

        // then
        QTRY_COMPARE_WITH_TIMEOUT(first->status(), 0, deadline);
    }

    void shouldOfferWhatTheInterfaceSays()
    {
        // given
        const auto first = start();
        QTRY_VERIFY_WITH_TIMEOUT(first->isFirst(), deadline);

        // when
        const QDBusMessage reply = connectToBus().call(QDBusMessage::createMethodCall(
            m_service, m_objectPath, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s));
        QString interface = reply.arguments().value(0).toString();
        interface.remove(0,
                         interface.indexOf("<interface name=\"org.freedesktop.Application\">"_L1));
        interface.truncate(interface.indexOf("</interface>"_L1));

        // then
        QString types;
        static const QRegularExpression each(u"method name=\"(\\w+)\"|<arg.*type=\"([^\"]+)\""_s);
        for (const auto &match : each.globalMatch(interface))
            types +=
                match.captured(1).isEmpty() ? u' ' + match.captured(2) : u';' + match.captured(1);
        QCOMPARE(types, u";Activate a{sv};Open as a{sv};ActivateAction s av a{sv}"_s);
    }
};

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
