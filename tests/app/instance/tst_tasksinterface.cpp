#include "../../support/bus.h"
#include "../../support/teststore.h"
#include "app/instance/tasksinterface.h"

#include <SQLiteCpp/Database.h>

#include <QDBusArgument>
#include <QDBusError>
#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

const QString path = u"/dk/tulo/TimeTracker"_s;
const QString interface = u"dk.tulo.TimeTracker1"_s;

/// All slices end after one task.
SaveDelays oneByOne()
{
    SaveDelays delays;
    delays.slice = std::chrono::milliseconds(0);
    return delays;
}

/// The program's side of the bus.
struct Program {
    explicit Program(TasksInterface::Limits limits = {})
        : tasks(peer.connection(), &object, limits)
    {
        peer.connection().registerObject(path, &object, QDBusConnection::ExportAdaptors);
    }

    QString name() { return peer.connection().baseService(); }

    Peer peer{u"program"_s};
    QObject object;
    TasksInterface tasks;
};

/// The tasks of an answer, "2026-11-20 true X name 12"; the name and sentence of an error.
QStringList linesOf(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage)
        return {answer.errorName(), answer.errorMessage()};
    QStringList lines;
    const auto argument = answer.arguments().value(0).value<QDBusArgument>();
    if (answer.signature() != "a(sbssx)"_L1)
        return {answer.signature()};
    argument.beginArray();
    while (!argument.atEnd()) {
        QString day;
        bool hasCode = false;
        QString code;
        QString name;
        qlonglong seconds = 0;
        argument.beginStructure();
        argument >> day >> hasCode >> code >> name >> seconds;
        argument.endStructure();
        lines << u"%1 %2 %3 %4 %5"_s.arg(day, hasCode ? u"true"_s : u"false"_s, code, name,
                                         QString::number(seconds));
    }
    argument.endArray();
    return lines;
}

/// The methods and properties of the interface in an introspection's @p xml, in words.
QStringList membersOf(const QByteArray &xml)
{
    QStringList members;
    QXmlStreamReader reader(xml);
    bool isInside = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.name() == "interface"_L1)
            isInside = reader.isStartElement() && reader.attributes().value("name"_L1) == interface;
        else if (isInside && reader.isStartElement()) {
            QStringList words{reader.name().toString()};
            for (const QXmlStreamAttribute &attribute : reader.attributes())
                words << attribute.name().toString() + u'=' + attribute.value().toString();
            members << words.join(u' ');
        }
    }
    return members;
}

} // namespace

class TestTasksInterface : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;

    static QDBusMessage question(Program &program, const QVariantList &arguments)
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(program.name(), path, interface, u"Tasks"_s);
        message.setArguments(arguments);
        return message;
    }
    static QStringList ask(Peer &peer, Program &program, const QString &from, const QString &to)
    {
        return linesOf(peer.call(program.name(), path, interface, u"Tasks"_s, {from, to}));
    }

private Q_SLOTS:
    void init() { m_clock.set(u"2026-11-20T08:00:00"_s); }

    void shouldAnswerWithTheTasksOfThePeriod()
    {
        // given
        TestStore store(m_clock, oneByOne());
        Task *const task = store.insertTask(u"Møde på Ærø"_s);
        task->setProjectCode(u"AB-1"_s);
        task->setAccumulatedSeconds(7200);
        store.insertTask(u"in gang"_s)->start();
        store.insert<Task>(u"før"_s, m_clock.today() - 1, std::nullopt, 0);
        store.insert<Task>(u"tom kode"_s, m_clock.today() + 24 * 3600, QString(), 0);
        store.insert<Task>(u"efter"_s, m_clock.today() + 48 * 3600, std::nullopt, 0);
        store.reopen();
        store.insertTask(QString());
        m_clock.advance(61.5);
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);

        // then
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-21"_s),
                 QStringList({u"2026-11-20 true AB-1 Møde på Ærø 7200"_s,
                              u"2026-11-20 false  in gang 61"_s, u"2026-11-20 false   0"_s,
                              u"2026-11-21 true  tom kode 0"_s}));
    }

    void shouldAnswerWithNothingWhereThereIsNothing()
    {
        TestStore store(m_clock);
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);
        const QDBusMessage answer = peer.call(program.name(), path, interface, u"Tasks"_s,
                                              {u"0001-01-01"_s, u"9999-12-31"_s});
        QCOMPARE(answer.signature(), u"a(sbssx)"_s);
        QCOMPARE(linesOf(answer), QStringList());
    }

    void shouldRefuseWhatAreNoDays_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("sentence");
        const auto noDay = [](const QString &text) {
            return u"\"%1\" is no day. Write it like 2026-11-22."_s.arg(text);
        };
        QTest::newRow("empty") << QString() << u"2026-11-20"_s << noDay({});
        QTest::newRow("no such day")
            << u"2026-11-20"_s << u"2026-11-31"_s << noDay(u"2026-11-31"_s);
        QTest::newRow("time") << u"2026-11-20T10:00"_s << u"2026-11-20"_s
                              << noDay(u"2026-11-20T10:00"_s);
        QTest::newRow("blank") << u" 2026-11-20"_s << u"2026-11-20"_s << noDay(u" 2026-11-20"_s);
        QTest::newRow("slashes") << u"2026/11/20"_s << u"2026-11-20"_s << noDay(u"2026/11/20"_s);
        QTest::newRow("short") << u"2026-1-2"_s << u"2026-11-20"_s << noDay(u"2026-1-2"_s);
        QTest::newRow("Danish") << u"20-11-2026"_s << u"2026-11-20"_s << noDay(u"20-11-2026"_s);
        QTest::newRow("long") << QString(5000, u'x') << u"2026-11-20"_s
                              << noDay(QString(100, u'x'));
        QTest::newRow("in the wrong order")
            << u"2026-11-21"_s << u"2026-11-20"_s
            << u"The first day, 2026-11-21, comes after the last, 2026-11-20."_s;
    }
    void shouldRefuseWhatAreNoDays()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, sentence);

        // given
        TestStore store(m_clock);
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);

        // then
        QCOMPARE(ask(peer, program, from, to),
                 QStringList({u"org.freedesktop.DBus.Error.InvalidArgs"_s, sentence}));
    }

    void shouldRefuseOtherTypes()
    {
        TestStore store(m_clock);
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);
        for (const QVariantList &arguments :
             {QVariantList{}, QVariantList{1, 2}, QVariantList{u"2026-11-20"_s},
              QVariantList{u"2026-11-20"_s, 1}, QVariantList{1.5, u"2026-11-20"_s}})
            QCOMPARE(peer.call(program.name(), path, interface, u"Tasks"_s, arguments).errorName(),
                     u"org.freedesktop.DBus.Error.UnknownMethod"_s);
    }

    void shouldAnswerSeveralAtOnce()
    {
        // given
        TestStore store(m_clock, oneByOne());
        for (int i = 0; i < 20; ++i)
            store.insert<Task>(QString::number(i), m_clock.today() + i * 24 * 3600.0, std::nullopt,
                               0);
        store.reopen();
        Program program;
        program.tasks.answerFrom(store.context());
        Peer first(u"first"_s);
        Peer second(u"second"_s);

        // when
        std::vector<std::unique_ptr<QDBusPendingCallWatcher>> answers;
        for (int i = 0; i < 10; ++i) {
            for (Peer *peer : {&first, &second})
                answers.push_back(
                    std::make_unique<QDBusPendingCallWatcher>(peer->connection().asyncCall(
                        question(program, {u"2026-11-20"_s,
                                           QDate(2026, 11, 20 + i).toString(Qt::ISODate)}))));
        }

        // then
        for (std::size_t i = 0; i < answers.size(); ++i) {
            QVERIFY(QTest::qWaitFor([&] { return answers.at(i)->isFinished(); }, 30'000));
            QCOMPARE(linesOf(answers.at(i)->reply()).size(), static_cast<qsizetype>(i / 2 + 1));
        }
    }

    void shouldLetTheEventLoopRunBetweenTwoSlices()
    {
        // given
        TestStore store(m_clock, oneByOne());
        for (int i = 0; i < 50; ++i)
            store.insertTask(QString::number(i));
        store.reopen();
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);
        const QDBusPendingCallWatcher answer(
            peer.connection().asyncCall(question(program, {u"2026-11-20"_s, u"2026-11-20"_s})));

        // when something else happens in each turn of the event loop
        int turns = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&turns] { ++turns; });
        timer.start(0);
        QVERIFY(QTest::qWaitFor([&] { return answer.isFinished(); }, 30'000));

        // then
        QVERIFY2(turns >= 50, qPrintable(QString::number(turns)));
        QCOMPARE(linesOf(answer.reply()).size(), 50);
    }

    void shouldAnswerAsThingsAreAtTheEnd()
    {
        // given
        TestStore store(m_clock, oneByOne());
        for (const auto *name : {"a", "b", "c", "d"})
            store.insertTask(QString::fromLatin1(name));
        store.reopen();
        const QList<Record *> tasks = store.context().fetch(Task::type, allRecords());
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);

        // when the tasks change while they are read
        QTimer timer;
        int turn = 0;
        connect(&timer, &QTimer::timeout, this, [&] {
            switch (turn++) {
            case 2:
                static_cast<Task *>(tasks.at(0))->setName(u"anders"_s);
                break;
            case 3:
                store.context().remove(tasks.at(1));
                store.insertTask(u"new"_s);
                break;
            default:
                break;
            }
        });
        const QDBusPendingCallWatcher answer(
            peer.connection().asyncCall(question(program, {u"2026-11-20"_s, u"2026-11-20"_s})));
        QVERIFY(QTest::qWaitFor([&] { return program.tasks.isReading(); }, 30'000));
        timer.start(0);
        QVERIFY(QTest::qWaitFor([&] { return answer.isFinished(); }, 30'000));

        // then
        QCOMPARE(turn >= 4, true);
        QCOMPARE(linesOf(answer.reply()),
                 QStringList({u"2026-11-20 false  anders 0"_s, u"2026-11-20 false  c 0"_s,
                              u"2026-11-20 false  d 0"_s, u"2026-11-20 false  new 0"_s}));
    }

    void shouldStopWorkingForACallerThatHasGone()
    {
        // given a question without end, as its task is put behind where the reading is
        TestStore store(m_clock, oneByOne());
        store.insertTask(u"a"_s);
        store.reopen();
        Program program;
        program.tasks.answerFrom(store.context());
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&store] {
            store.context().database().exec("UPDATE Task SET date = date + 0.125");
        });
        timer.start(0);
        Peer staying(u"staying"_s);
        auto leaving = std::make_unique<Peer>(u"leaving"_s);
        for (int i = 0; i < 3; ++i)
            leaving->connection().asyncCall(question(program, {u"2026-11-20"_s, u"2026-11-20"_s}));
        QVERIFY(QTest::qWaitFor([&] { return program.tasks.isReading(); }, 30'000));
        const QDBusPendingCallWatcher answer(
            staying.connection().asyncCall(question(program, {u"2026-11-19"_s, u"2026-11-19"_s})));

        // when
        leaving.reset();

        // then
        QVERIFY(QTest::qWaitFor([&] { return answer.isFinished(); }, 30'000));
        QCOMPARE(linesOf(answer.reply()), QStringList());
        QVERIFY(QTest::qWaitFor([&] { return !program.tasks.isReading(); }, 30'000));
    }

    void shouldRefuseWhatOneAnswerDoesNotHold()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(QString(1000, u'x'));
        store.insert<Task>(QString(1000, u'ø'), m_clock.today() + 24 * 3600, std::nullopt, 0);
        Program program({.ofSeveralDays = 3000, .ofOneDay = 2047});
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);

        // then
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-21"_s),
                 QStringList({u"dk.tulo.TimeTracker1.Error.TooLarge"_s,
                              u"The tasks from 2026-11-20 to 2026-11-21 are more than one answer "
                              "holds. Ask for fewer days."_s}));
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s).size(), 1);
        // 11 and 5, aligned to 16, a bool, 5, aligned to 28, 2005, and the seconds
        QCOMPARE(ask(peer, program, u"2026-11-21"_s, u"2026-11-21"_s).value(0),
                 u"dk.tulo.TimeTracker1.Error.TooLarge"_s);
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s).size(), 1);
    }

    void shouldStopReadingWhatOneAnswerDoesNotHold()
    {
        // given a question without end
        TestStore store(m_clock, oneByOne());
        store.insertTask(QString(1000, u'x'));
        store.reopen();
        Program program({.ofSeveralDays = 3000, .ofOneDay = 3000});
        program.tasks.answerFrom(store.context());
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&store] {
            store.context().database().exec("UPDATE Task SET date = date + 0.125");
        });
        timer.start(0);
        Peer peer(u"caller"_s);

        // then
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s).value(0),
                 u"dk.tulo.TimeTracker1.Error.TooLarge"_s);
    }

    void shouldAnswerWithNearlyAsMuchAsTheBusTakes()
    {
        // given
        TestStore store(m_clock);
        constexpr int characters = 59 << 20;
        store.insertTask(QString(characters, u'x'));
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);

        // then
        const QStringList answer = ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s);
        QCOMPARE(answer.size(), 1);
        QVERIFY(answer.constFirst().size() > characters);
    }

    void shouldTellWhyTheStoreCannotBeRead()
    {
        // given
        TestStore store(m_clock);
        Task *const task = store.insertTask(u"a"_s);
        task->setAccumulatedSeconds(std::numeric_limits<qint64>::max());
        task->start();
        m_clock.advance(1);
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);

        // when
        const QStringList answer = ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s);
        task->setAccumulatedSeconds(0);

        // then
        QCOMPARE(answer.value(0), u"dk.tulo.TimeTracker1.Error.Unreadable"_s);
        QVERIFY2(answer.value(1).startsWith(u"Integer overflow"_s), qPrintable(answer.value(1)));
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s),
                 QStringList{u"2026-11-20 false  a 1"_s});
    }

    void shouldRefuseToAnswerWithoutAStore()
    {
        // given
        const QStringList noStore{u"dk.tulo.TimeTracker1.Error.NoStore"_s,
                                  u"TULO Time Tracker has no store open."_s};
        Program program;
        Peer peer(u"caller"_s);
        QCOMPARE(ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s), noStore);
        auto store = std::make_unique<TestStore>(m_clock, oneByOne());
        for (int i = 0; i < 100; ++i)
            store->insertTask(QString::number(i));
        store->reopen();
        program.tasks.answerFrom(store->context());

        // when the store is closed in the middle of an answer
        const QDBusPendingCallWatcher first(
            peer.connection().asyncCall(question(program, {u"2026-11-20"_s, u"2026-11-20"_s})));
        const QDBusPendingCallWatcher second(
            peer.connection().asyncCall(question(program, {u"2026-11-20"_s, u"2026-11-20"_s})));
        QVERIFY(QTest::qWaitFor([&] { return program.tasks.isReading(); }, 30'000));
        store.reset();

        // then
        QVERIFY(QTest::qWaitFor([&] { return first.isFinished() && second.isFinished(); }, 30'000));
        QCOMPARE(linesOf(first.reply()), noStore);
        QCOMPARE(linesOf(second.reply()), noStore);
    }

    void shouldCountChanges()
    {
        // given
        TestStore store(m_clock);
        Program program;
        program.tasks.answerFrom(store.context());
        Peer peer(u"caller"_s);
        qulonglong last = 0;
        const auto hasChanged = [&] {
            const qulonglong changes =
                peer.property(program.name(), path, interface, u"Changes"_s).toULongLong();
            return std::exchange(last, changes) != changes;
        };
        hasChanged();

        // then
        Task *const task = store.insertTask(u"a"_s);
        QVERIFY(hasChanged());
        QVERIFY(!hasChanged());
        task->setName(u"b"_s);
        QVERIFY(hasChanged());
        m_clock.travelTo("America/New_York");
        QVERIFY(hasChanged());
        m_clock.travelTo("Europe/Copenhagen");
        QVERIFY(hasChanged());
        store.context().remove(task);
        QVERIFY(hasChanged());
        ask(peer, program, u"2026-11-20"_s, u"2026-11-20"_s);
        QVERIFY(!hasChanged());
    }

    void shouldBeAsItsXmlSays()
    {
        // given
        Program program;
        Peer peer(u"caller"_s);
        QFile file(QStringLiteral(INTERFACE_XML));
        QVERIFY(file.open(QFile::ReadOnly));

        // when
        const QString exported =
            peer.call(program.name(), path, u"org.freedesktop.DBus.Introspectable"_s,
                      u"Introspect"_s)
                .arguments()
                .value(0)
                .toString();

        // then
        const QStringList members = membersOf(exported.toUtf8());
        QCOMPARE(members, membersOf(file.readAll()));
        QVERIFY(members.contains(u"method name=Tasks"_s));
    }
};

QTEST_GUILESS_MAIN(TestTasksInterface)
#include "tst_tasksinterface.moc"
