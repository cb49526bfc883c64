#include "app/menubar/menubarmenu.h"
#include "app/menubar/statusnotifieritem.h"
#include "tests/support/bus.h"
#include "tests/support/teststore.h"

#include <QDBusArgument>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The menu's content, as a desktop's bar reads it.
class TestMenuBarMenu : public QObject
{
    Q_OBJECT

private:
    struct Line {
        int id;
        QVariantMap properties;
    };

    struct Fixture {
        explicit Fixture(std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
        {
        }

        QDBusMessage call(const QString &method, const QVariantList &arguments)
        {
            return host.call(service, StatusNotifierItem::menuPath(), u"com.canonical.dbusmenu"_s,
                             method, arguments);
        }
        void event(int id, const QString &name)
        {
            call(u"Event"_s, {id, name, QVariant::fromValue(QDBusVariant(QString())), 0u});
        }
        QList<Line> lines()
        {
            const QDBusMessage reply = call(u"GetLayout"_s, {0, -1, QStringList()});
            const auto root =
                qdbus_cast<DBusMenuLayout>(reply.arguments().at(1).value<QDBusArgument>());
            QList<Line> lines;
            for (const QDBusVariant &child : root.children) {
                const auto line =
                    qdbus_cast<DBusMenuLayout>(child.variant().value<QDBusArgument>());
                lines.append({line.id, line.properties});
            }
            return lines;
        }
        /// The lines' labels, with a check mark's state; a separator is "-".
        QStringList labels()
        {
            QStringList labels;
            for (const Line &line : lines()) {
                QString label = line.properties.value(u"label"_s, u"-"_s).toString();
                if (line.properties.contains(u"toggle-state"_s))
                    label.prepend(line.properties.value(u"toggle-state"_s).toInt() ? u"[x] "_s
                                                                                   : u"[ ] "_s);
                labels << label;
            }
            return labels;
        }
        /// The names of the tasks that have a line.
        QStringList names()
        {
            QStringList names;
            for (const Line &line : lines()) {
                if (line.properties.contains(u"toggle-state"_s))
                    names << line.properties.value(u"label"_s).toString().section(u"   "_s, 1);
            }
            return names;
        }
        int idOf(const QString &part)
        {
            for (const Line &line : lines()) {
                if (line.properties.value(u"label"_s).toString().contains(part))
                    return line.id;
            }
            return -1;
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        QDBusConnection connection = QDBusConnection::sessionBus();
        QString service = connection.baseService();
        Peer host{u"host"_s};
        MenuBarMenu menu{connection, timer, store.context()};
    };

private Q_SLOTS:
    void shouldMirrorAnEmptyPanel()
    {
        // given
        Fixture f;

        // then
        QCOMPARE(f.labels(), QStringList({u"I dag 0.00 t"_s, u"-"_s, u"Ingen opgaver i dag"_s,
                                          u"-"_s, u"Åbn Time Tracker"_s, u"Afslut"_s}));
        QCOMPARE(f.lines().at(0).properties.value(u"enabled"_s), false);
        QCOMPARE(f.lines().at(2).properties.value(u"enabled"_s), false);
    }

    void shouldMirrorTodaysTasks()
    {
        // given
        Fixture f;

        // when
        f.store.insert<Task>(u"en_to"_s, f.clock.now(), u"K1"_s, 0)->setAccumulatedSeconds(3725);
        f.store.insertTask(QString(), 1)->start();
        f.store.insert<Task>(u"I går"_s, f.clock.now() - 86400, std::nullopt);
        settle();

        // then
        QCOMPARE(f.labels(),
                 QStringList({u"I dag 1.03 t"_s, u"-"_s, u"[ ] 01:02:05   en__to (K1)"_s,
                              u"[x] 00:00:00   Unavngivet"_s, u"-"_s, u"Åbn Time Tracker"_s,
                              u"Afslut"_s}));
    }

    void shouldMirrorTodayAsItIsInANewZone()
    {
        // given
        Fixture f;
        f.store.insertTask(u"Hjemme"_s);
        settle();
        QVERIFY(f.idOf(u"Hjemme"_s) >= 0);

        // when
        f.clock.travelTo("America/New_York");
        settle();

        // then
        QVERIFY(f.idOf(u"Ingen opgaver i dag"_s) >= 0);
        QCOMPARE(f.idOf(u"Hjemme"_s), -1);
    }

    void shouldKeepALongNameShortAndOnOneLine()
    {
        // given
        Fixture f;

        // when
        f.store.insertTask(QString(u"😀"_s).repeated(100) + u"\nmere"_s);
        settle();

        // then
        const QString label = f.labels().at(2);
        QVERIFY(label.size() < 80);
        QVERIFY(label.endsWith(u"😀…"_s));
    }

    void shouldStartAndStopATask()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        Task *const other = f.store.insertTask(u"B"_s, 1);
        settle();

        // when
        f.event(f.idOf(u"   A"_s), u"clicked"_s);

        // then
        QVERIFY(task->isRunning());

        // when
        f.event(f.idOf(u"   B"_s), u"clicked"_s);

        // then
        QVERIFY(!task->isRunning());
        QVERIFY(other->isRunning());

        // when
        f.event(f.idOf(u"   B"_s), u"clicked"_s);

        // then
        QVERIFY(!other->isRunning());
    }

    void shouldOpenTheMainWindowAndQuit()
    {
        // given
        Fixture f;
        QSignalSpy open(&f.menu, &MenuBarMenu::openMainWindow);
        QSignalSpy quit(&f.menu, &MenuBarMenu::quit);

        // when
        f.event(f.idOf(u"Åbn"_s), u"clicked"_s);

        // then
        QCOMPARE(open.size(), 1);
        QCOMPARE(quit.size(), 0);

        // when
        f.event(f.idOf(u"Afslut"_s), u"clicked"_s);

        // then
        QCOMPARE(quit.size(), 1);
    }

    void shouldBearTenTasksInTheirOrder()
    {
        // given
        Fixture f;
        QStringList names;
        for (int i = 0; i < 10; ++i) {
            names << u"Opgave %1"_s.arg(i);
            f.store.insertTask(names.last(), i);
        }
        settle();

        // then
        QCOMPARE(f.names(), names);
        QCOMPARE(f.idOf(u" mere"_s), -1);
    }

    void shouldBearTheRunningAndTheLatestOfManyTasks()
    {
        // given
        Fixture f;
        for (int i = 0; i < 30; ++i) {
            Task *const task = f.store.insertTask(u"Opgave %1"_s.arg(i), i);
            if (i == 3 || i == 25)
                task->start();
        }
        settle();

        // then
        QStringList names;
        for (const int i : {25, 3, 29, 28, 27, 26, 24, 23, 22, 21})
            names << u"Opgave %1"_s.arg(i);
        QCOMPARE(f.names(), names);
        QCOMPARE(f.labels().at(12), u"… og 20 mere"_s);
        QCOMPARE(f.labels().at(13), u"-"_s);
    }

    void shouldBearTenTasksAtMostAlsoWhenMoreOfThemRun()
    {
        // given
        Fixture f;
        for (int i = 0; i < 11; ++i)
            f.store.insertTask(u"Opgave %1"_s.arg(i), i)->start();
        settle();

        // then
        QCOMPARE(f.names().size(), 10);
        QVERIFY(f.idOf(u"… og 1 mere"_s) >= 0);
    }

    void shouldLeadToTheTasksThatItDoesNotBear()
    {
        // given the main window at another day
        Fixture f;
        for (int i = 0; i < 11; ++i)
            f.store.insertTask(u"Opgave %1"_s.arg(i), i);
        settle();
        f.timer.goToPreviousDay();
        QSignalSpy open(&f.menu, &MenuBarMenu::openMainWindow);

        // when
        f.event(f.idOf(u"… og 1 mere"_s), u"clicked"_s);

        // then
        QCOMPARE(open.size(), 1);
        QVERIFY(f.timer.isToday());
    }

    void shouldTellOfATaskThatStartsWhileItIsOpen()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        settle();
        f.event(0, u"opened"_s);
        f.host.listenTo(f.service);

        // when
        task->start();

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"ItemsPropertiesUpdated"_s});
    }

    void shouldBeSilentOfATaskThatStartsWhileItIsClosed()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        settle();
        f.host.listenTo(f.service);

        // when
        task->start();

        // then
        QCOMPARE(f.host.heard(f.service), QStringList());
        QVERIFY(f.labels().contains(u"[x] 00:00:00   A"_s));
    }

    void shouldTellOfSeveralChangesOnce()
    {
        // given
        Fixture f;
        f.event(0, u"opened"_s);
        f.host.listenTo(f.service);

        // when
        f.store.insertTask(u"A"_s);
        f.store.insertTask(u"B"_s);

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"LayoutUpdated"_s});
    }

    void shouldFollowTheClockWhileItIsOpenAndBeSilentWhileItIsClosed()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.store.insertTask(u"A"_s);
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());
        settle();
        f.host.listenTo(f.service);
        const auto aTickWithANewSecond = [&f] {
            f.clock.advance(1);
            const qint64 tick = f.timer.tick();
            return QTest::qWaitFor([&] { return f.timer.tick() > tick; }, 30'000);
        };

        // when
        QVERIFY(aTickWithANewSecond());

        // then
        QCOMPARE(f.host.heard(f.service), QStringList());

        // when
        f.event(0, u"opened"_s);

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"ItemsPropertiesUpdated"_s});

        // when
        QVERIFY(aTickWithANewSecond());

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"ItemsPropertiesUpdated"_s});
        QVERIFY(f.labels().contains(u"[x] 00:00:02   A"_s));

        // when
        f.event(0, u"closed"_s);
        QVERIFY(aTickWithANewSecond());

        // then
        QCOMPARE(f.host.heard(f.service), QStringList());
    }

    void shouldBeUpToDateWhenItIsAboutToShow()
    {
        // given
        Fixture f;
        f.store.insertTask(u"A"_s)->start();
        settle();
        f.clock.advance(60);

        // when
        f.call(u"AboutToShow"_s, {0});

        // then
        QVERIFY(f.labels().contains(u"[x] 00:01:00   A"_s));
    }

    void shouldKeepATasksLineAsOthersComeAndGo()
    {
        // given
        Fixture f;
        Task *const first = f.store.insertTask(u"A"_s);
        f.store.insertTask(u"B"_s, 1);
        settle();
        const int id = f.idOf(u"   B"_s);

        // when
        f.store.context().remove(first);
        f.store.insertTask(u"C"_s);
        settle();

        // then
        QCOMPARE(f.idOf(u"   B"_s), id);
        QCOMPARE(f.idOf(u"   A"_s), -1);
        QVERIFY(f.idOf(u"   C"_s) > 0);
    }
};

QTEST_GUILESS_MAIN(TestMenuBarMenu)
#include "tst_menubarmenu.moc"
