#include "tests/support/teststore.h"
#include "views/menubar/menubarviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The panel's tasks, total and actions.
class TestMenuBarViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
        {
        }

        Task *yesterdays(const QString &name)
        {
            return store.insert<Task>(name, clock.now() - 86400, std::nullopt);
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        AllTasks allTasks{store.context()};
    };

    static QStringList names(const MenuBarViewModel &panel)
    {
        QStringList names;
        const QList<Task *> &tasks = panel.todaysTasks();
        for (const Task *task : tasks)
            names << task->name();
        return names;
    }

private Q_SLOTS:
    void shouldBeEmptyWithATotalOfZeroWhenNoTaskIsOfToday()
    {
        // given
        Fixture f;
        f.yesterdays(u"I går"_s);
        const MenuBarViewModel panel(f.timer, f.store.context());

        // then
        QVERIFY(panel.isEmpty());
        QCOMPARE(panel.totalText(), u"0.00 t"_s);
    }

    void shouldListTodaysTasksBySortOrder()
    {
        // given
        Fixture f;
        f.store.insertTask(u"C"_s, 3);
        f.store.insertTask(u"A"_s, 1);
        f.store.insertTask(u"B"_s, 2);
        f.yesterdays(u"I går"_s);
        MenuBarViewModel panel(f.timer, f.store.context());

        // then
        QCOMPARE(names(panel), QStringList({u"A"_s, u"B"_s, u"C"_s}));
        QCOMPARE(panel.rows()->count(), 3);
        QVERIFY(!panel.isEmpty());
    }

    void shouldShowTodayWhateverDayIsSelected()
    {
        // given
        Fixture f;
        f.store.insertTask(u"I dag"_s);
        f.yesterdays(u"I går"_s);
        const MenuBarViewModel panel(f.timer, f.store.context());

        // when
        f.timer.goToPreviousDay();

        // then
        QCOMPARE(names(panel), QStringList{u"I dag"_s});
    }

    void shouldShowTheNewDayAfterMidnight()
    {
        // given
        Fixture f;
        f.store.insertTask(u"I går"_s);
        f.store.insert<Task>(u"I dag"_s, f.clock.now() + 86400, std::nullopt);
        const MenuBarViewModel panel(f.timer, f.store.context());

        // when
        f.clock.set(u"2026-11-21T00:00:00"_s);

        // then
        QCOMPARE(names(panel), QStringList{u"I dag"_s});
    }

    void shouldShowTodayAsItIsInANewZone()
    {
        // given
        Fixture f;
        f.store.insertTask(u"Hjemme"_s);
        const MenuBarViewModel panel(f.timer, f.store.context());

        // when travelling westward: the task's day began while it was still the day before there
        f.clock.travelTo("America/New_York");

        // then
        QVERIFY(panel.isEmpty());

        // when
        f.store.insertTask(u"Ude"_s);

        // then
        QCOMPARE(names(panel), QStringList{u"Ude"_s});

        // when travelling eastward
        f.clock.travelTo("Europe/Copenhagen");

        // then
        QCOMPARE(names(panel), QStringList({u"Hjemme"_s, u"Ude"_s}));

        // when
        f.clock.travelTo("Asia/Tokyo");
        f.store.insertTask(u"Østpå"_s);

        // then
        QCOMPARE(names(panel), QStringList({u"Hjemme"_s, u"Ude"_s, u"Østpå"_s}));
    }

    void shouldAddPlainHoursWhateverTheBillableSwitch()
    {
        // given
        Fixture f;
        f.store.insertTask(u"A"_s)->setAccumulatedSeconds(3600);
        f.store.insertTask(u"B"_s)->setAccumulatedSeconds(450);
        const MenuBarViewModel panel(f.timer, f.store.context());
        QVERIFY(f.timer.showBillableTime());

        // then
        QCOMPARE(panel.totalTodayHours(), 1.125);
        QCOMPARE(panel.totalText(), u"1.12 t"_s);

        // when
        f.timer.setShowBillableTime(false);

        // then
        QCOMPARE(panel.totalText(), u"1.12 t"_s);
    }

    void shouldFollowTheTickWithItsTotal()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.store.insertTask(u"A"_s);
        MenuBarViewModel panel(f.timer, f.store.context());
        panel.toggleTask(task);

        // when
        f.clock.advance(1800);

        // then
        QTRY_COMPARE(panel.totalText(), u"0.50 t"_s);
    }

    void shouldStartATaskAndStopTheActiveOneOfAnotherDay()
    {
        // given
        Fixture f;
        Task *const old = f.yesterdays(u"I går"_s);
        Task *const task = f.store.insertTask(u"A"_s);
        f.timer.startTask(old, f.allTasks, f.store.context());
        MenuBarViewModel panel(f.timer, f.store.context());

        // when
        panel.toggleTask(task);

        // then
        QVERIFY(!old->isRunning());
        QVERIFY(task->isRunning());
        QCOMPARE(f.timer.activeTaskID(), task->id());
    }

    void shouldLeaveARunningTaskOfAnotherDayAloneThatIsNotActive()
    {
        // given
        Fixture f;
        Task *const old = f.yesterdays(u"I går"_s);
        old->start();
        Task *const task = f.store.insertTask(u"A"_s);
        MenuBarViewModel panel(f.timer, f.store.context());

        // when
        panel.toggleTask(task);

        // then
        QVERIFY(old->isRunning());
        QVERIFY(task->isRunning());
        QCOMPARE(names(panel), QStringList{u"A"_s});
    }

    void shouldStopARunningTask()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        MenuBarViewModel panel(f.timer, f.store.context());
        panel.toggleTask(task);

        // when
        panel.toggleTask(task);

        // then
        QVERIFY(!task->isRunning());
        QVERIFY(!f.timer.isTicking());
    }

    void shouldFollowTasksThatComeAndGo()
    {
        // given
        Fixture f;
        MenuBarViewModel panel(f.timer, f.store.context());
        QSignalSpy changes(&panel, &MenuBarViewModel::todaysTasksChanged);

        // when
        Task *const task = f.store.insertTask(u"A"_s);

        // then
        QCOMPARE(changes.size(), 1);
        QCOMPARE(names(panel), QStringList{u"A"_s});
        QCOMPARE(panel.rows()->count(), 1);

        // when
        f.store.context().remove(task);

        // then
        QVERIFY(panel.isEmpty());
        QCOMPARE(panel.rows()->count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestMenuBarViewModel)
#include "tst_menubarviewmodel.moc"
