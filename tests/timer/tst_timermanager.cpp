#include "../support/teststore.h"
#include "model/tasklist.h"
#include "timer/timermanager.h"

#include <SQLiteCpp/Database.h>

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// Just these tasks.
class ListedTasks : public TaskList
{
public:
    explicit ListedTasks(QList<Task *> tasks)
        : m_tasks(std::move(tasks))
    {
    }

    Task *withID(const QUuid &id) const override
    {
        const auto found = std::find_if(m_tasks.cbegin(), m_tasks.cend(),
                                        [&](const Task *task) { return task->id() == id; });
        return found != m_tasks.cend() ? *found : nullptr;
    }

    QList<Task *> running() const override
    {
        QList<Task *> running;
        std::copy_if(m_tasks.cbegin(), m_tasks.cend(), std::back_inserter(running),
                     [](const Task *task) { return task->isRunning(); });
        return running;
    }

private:
    QList<Task *> m_tasks;
};

} // namespace

class TestTimerManager : public QObject
{
    Q_OBJECT

private:
    /// A store with a manager whose beat never comes unless the test asks for it.
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
        {
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        AllTasks all{store.context()};
        ModelContext &context = store.context();
    };

private Q_SLOTS:
    void shouldBeginIdleOnTodayWithBillableTime()
    {
        // given
        const FakeClock clock(u"2026-11-20T14:35:00"_s);
        const TimerManager timer(clock);

        // then
        QCOMPARE(timer.selectedDate(), clock.at(u"2026-11-20T00:00:00"_s));
        QVERIFY(!timer.activeTaskID());
        QVERIFY(!timer.isAnyTaskRunning());
        QVERIFY(!timer.isTicking());
        QCOMPARE(timer.tick(), 0);
        QVERIFY(timer.showBillableTime());
        QVERIFY(!timer.isEditing());
        QVERIFY(timer.isToday());
    }

    void shouldStopTheActiveTaskWhenAnotherStarts()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        Task *const b = f.store.insertTask(u"b"_s);
        f.timer.startTask(a, f.all, f.context);
        f.clock.advance(90.5);

        // when
        f.timer.startTask(b, f.all, f.context);

        // then
        QVERIFY(!a->isRunning());
        QCOMPARE(a->accumulatedSeconds(), 90);
        QVERIFY(b->isRunning());
        QCOMPARE(f.timer.activeTaskID().value(), b->id());
        QVERIFY(f.timer.isTicking());
        QVERIFY(!f.context.hasChanges());
    }

    void shouldBankAndGoOnWhenTheActiveTaskIsStartedAgain()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.startTask(a, f.all, f.context);
        f.clock.advance(10.75);

        // then
        QCOMPARE(a->currentTotalSeconds(), 10);

        // when
        f.timer.startTask(a, f.all, f.context);

        // then
        QVERIFY(a->isRunning());
        QCOMPARE(a->accumulatedSeconds(), 10);
        QCOMPARE(a->lastStartTime().value(), f.clock.now());
        QCOMPARE(a->currentTotalSeconds(), 10);
    }

    void shouldGoOnTickingWhenAnotherThanTheActiveTaskStops()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        Task *const b = f.store.insertTask(u"b"_s);
        b->start();
        f.timer.startTask(a, f.all, f.context);
        QVERIFY(b->isRunning());

        // when
        f.timer.stopTask(b, f.context);

        // then
        QVERIFY(!b->isRunning());
        QVERIFY(a->isRunning());
        QCOMPARE(f.timer.activeTaskID().value(), a->id());
        QVERIFY(f.timer.isTicking());
    }

    void shouldFallIdleAndSaveWhenAStoppedActiveTaskIsStopped()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.startTask(a, f.all, f.context);
        a->stop();
        QVERIFY(f.context.hasChanges());

        // when
        f.timer.stopTask(a, f.context);

        // then
        QVERIFY(!f.timer.activeTaskID());
        QVERIFY(!f.timer.isTicking());
        QVERIFY(!f.context.hasChanges());
    }

    void shouldFallIdleAndSaveWhenAllAreStoppedThoughNoneRuns()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.startTask(a, f.all, f.context);
        a->stop();

        // when
        f.timer.stopAllTasks(f.all, f.context);

        // then
        QVERIFY(!f.timer.activeTaskID());
        QVERIFY(!f.timer.isTicking());
        QVERIFY(!f.context.hasChanges());
    }

    void shouldStopTheRunningTasksOfTheListAlone()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        Task *const b = f.store.insertTask(u"b"_s);
        Task *const other = f.store.insertTask(u"c"_s);
        for (Task *task : {a, b, other})
            task->start();
        f.clock.advance(5);

        // when
        f.timer.stopAllTasks(ListedTasks({a, b}), f.context);

        // then
        QVERIFY(!a->isRunning());
        QVERIFY(!b->isRunning());
        QVERIFY(other->isRunning());
        QCOMPARE(a->accumulatedSeconds(), 5);
    }

    void shouldStopEveryTaskOfEveryDayGivenAllTasks()
    {
        // given
        Fixture f;
        Task *const today = f.store.insertTask(u"i dag"_s);
        Task *const yesterday =
            f.store.insert<Task>(u"i går"_s, f.clock.now() - 86400, std::nullopt);
        today->start();
        yesterday->start();

        // when
        f.timer.stopAllTasks(f.all, f.context);

        // then
        QVERIFY(!today->isRunning());
        QVERIFY(!yesterday->isRunning());
    }

    void shouldDecideByTheTasksOwnStateWhenToggling()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);

        // when
        f.timer.toggleTask(a, f.all, f.context);

        // then
        QVERIFY(a->isRunning());

        // when
        f.timer.toggleTask(a, f.all, f.context);

        // then
        QVERIFY(!a->isRunning());
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldStartATaskThatWasStoppedBehindItsBack()
    {
        // given an active task that its row has stopped in order to edit the time
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.startTask(a, f.all, f.context);
        f.clock.advance(5);
        a->stop();
        QCOMPARE(f.timer.activeTaskID().value(), a->id());
        QVERIFY(f.timer.isTicking());

        // when
        f.timer.toggleTask(a, f.all, f.context);

        // then it starts, and nothing is banked twice
        QVERIFY(a->isRunning());
        QCOMPARE(a->accumulatedSeconds(), 5);
        QCOMPARE(f.timer.activeTaskID().value(), a->id());
    }

    void shouldStartATaskThoughTheActiveOneIsGone()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        Task *const b = f.store.insertTask(u"b"_s);
        f.timer.startTask(a, f.all, f.context);
        f.context.remove(a);

        // when
        f.timer.startTask(b, f.all, f.context);

        // then
        QVERIFY(b->isRunning());
        QCOMPARE(f.timer.activeTaskID().value(), b->id());
    }

    void shouldLeaveATaskAloneThatIsNotInTheGivenList()
    {
        // given
        Fixture f;
        Task *const yesterday =
            f.store.insert<Task>(u"i går"_s, f.clock.now() - 86400, std::nullopt);
        Task *const today = f.store.insertTask(u"i dag"_s);
        f.timer.startTask(yesterday, f.all, f.context);

        // when
        f.timer.startTask(today, ListedTasks({today}), f.context);

        // then
        QVERIFY(yesterday->isRunning());
        QVERIFY(today->isRunning());
        QCOMPARE(f.timer.activeTaskID().value(), today->id());
    }

    void shouldTakeUpTodaysRunningTaskAfterARestart()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        a->start();

        // when
        f.timer.syncActiveTask(ListedTasks({f.store.insertTask(u"b"_s), a}));

        // then
        QCOMPARE(f.timer.activeTaskID().value(), a->id());
        QVERIFY(f.timer.isTicking());
    }

    void shouldTakeUpTheFirstOfTwoRunningTasks()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        Task *const b = f.store.insertTask(u"b"_s);
        a->start();
        b->start();

        // when
        f.timer.syncActiveTask(ListedTasks({b, a}));

        // then
        QCOMPARE(f.timer.activeTaskID().value(), b->id());
        QVERIFY(a->isRunning());
    }

    void shouldNotTakeUpATaskOfAnotherDay()
    {
        // given
        Fixture f;
        Task *const yesterday =
            f.store.insert<Task>(u"i går"_s, f.clock.now() - 86400, std::nullopt);
        yesterday->start();
        Task *const today = f.store.insertTask(u"i dag"_s);

        // when
        f.timer.syncActiveTask(ListedTasks({today}));

        // then
        QVERIFY(!f.timer.activeTaskID());
        QVERIFY(!f.timer.isTicking());
        QVERIFY(yesterday->isRunning());

        // when another starts
        f.timer.startTask(today, f.all, f.context);

        // then yesterday's goes on: two run at once
        QVERIFY(yesterday->isRunning());
        QVERIFY(today->isRunning());
    }

    void shouldFallIdleWhenNoneOfTheGivenTasksRuns()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.startTask(a, f.all, f.context);

        // when
        f.timer.syncActiveTask(ListedTasks({}));

        // then
        QVERIFY(!f.timer.activeTaskID());
        QVERIFY(!f.timer.isTicking());
        QVERIFY(a->isRunning());
    }

    void shouldTickWhileATaskRunsAndNeverGoBackToZero()
    {
        // given
        Fixture f(1ms);
        Task *const a = f.store.insertTask(u"a"_s);
        QSignalSpy ticks(&f.timer, &TimerManager::tickChanged);

        // when
        f.timer.startTask(a, f.all, f.context);

        // then
        QCOMPARE(f.timer.tick(), 0);
        QTRY_VERIFY(f.timer.tick() >= 3);

        // when
        f.timer.stopTask(a, f.context);
        const qint64 stopped = f.timer.tick();

        // then
        QCOMPARE(ticks.count(), stopped);

        // when
        f.timer.startTask(a, f.all, f.context);

        // then
        QCOMPARE(f.timer.tick(), stopped);
        QTRY_VERIFY(f.timer.tick() > stopped);
    }

    void shouldTickOnceASecondAndNotBeforeTheFirstOne()
    {
        // given the program's own beat
        FakeClock clock;
        TestStore store(clock, {1h, 1h});
        TimerManager timer(clock);

        Task *const task = store.insertTask(u"a"_s);
        // Timers are due between its ticks. However late they all are, they go off in the order in
        // which they are due. They begin with it, as the save that follows may take long.
        QList<qint64> ticks;
        connect(&timer, &TimerManager::activeTaskIDChanged, this, [&] {
            for (const auto due : {900ms, 1900ms, 2900ms})
                QTimer::singleShot(due, Qt::PreciseTimer, this, [&] { ticks << timer.tick(); });
        });

        // when
        timer.startTask(task, AllTasks(store.context()), store.context());

        // then
        QTRY_COMPARE(ticks.size(), 3);
        QCOMPARE(ticks.at(0), 0);
        QCOMPARE(ticks.at(1), 1);
        QVERIFY(ticks.at(2) <= 2);
        QTRY_VERIFY(timer.tick() >= 3);
    }

    void shouldGoOnWhenASaveFails()
    {
        // given a store that cannot be written
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        const FakeClock clock;
        std::make_unique<ModelContainer>(path, clock).reset();
        SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
        ModelContext context(database, clock, {1h, 1h});
        const AllTasks all(context);
        QVERIFY(all.running().isEmpty());
        database.exec("ALTER TABLE Task RENAME TO Hidden");
        TimerManager timer(clock, 1h);
        auto made = std::make_unique<Task>(clock, u"a"_s, clock.now(), std::nullopt);
        Task *const task = made.get();
        context.insert(std::move(made));

        // when
        timer.startTask(task, all, context);

        // then
        QVERIFY(task->isRunning());
        QCOMPARE(timer.activeTaskID().value(), task->id());
        QVERIFY(timer.isTicking());
        QVERIFY(context.hasChanges());

        // when
        timer.stopTask(task, context);

        // then
        QVERIFY(!timer.isTicking());

        // when
        timer.toggleTask(task, all, context);
        timer.stopAllTasks(all, context);

        // then
        QVERIFY(!task->isRunning());
        QVERIFY(context.hasChanges());

        // when it can be written
        database.exec("ALTER TABLE Hidden RENAME TO Task");
        timer.startTask(task, all, context);

        // then nothing is lost
        QVERIFY(!context.hasChanges());
    }

    void shouldHaveOneTimerHoweverOftenItStarts()
    {
        // given
        Fixture f(1ms);
        Task *const a = f.store.insertTask(u"a"_s);

        // when
        for (int i = 0; i < 5; ++i)
            f.timer.startTask(a, f.all, f.context);
        f.timer.stopTask(a, f.context);

        // then no timer is left over that ticks on
        QSignalSpy ticks(&f.timer, &TimerManager::tickChanged);
        int beats = 0;
        QTimer beat;
        connect(&beat, &QTimer::timeout, this, [&] { ++beats; });
        beat.start(1ms);
        QTRY_VERIFY(beats >= 5);
        QCOMPARE(ticks.count(), 0);
    }

    void shouldBehaveTheSameWhileARowIsEdited()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.setIsEditing(true);

        // when
        f.timer.startTask(a, f.all, f.context);

        // then
        QVERIFY(a->isRunning());

        // when
        f.timer.stopAllTasks(f.all, f.context);

        // then
        QVERIFY(!a->isRunning());
        QVERIFY(f.timer.isEditing());
    }

    void shouldSelectTheStartOfTheDayNavigatedTo()
    {
        // given
        FakeClock clock;
        TimerManager timer(clock);

        // when
        timer.navigateToDate(clock.at(u"2026-12-24T18:30:00"_s));

        // then
        QCOMPARE(timer.selectedDate(), clock.at(u"2026-12-24T00:00:00"_s));
        QVERIFY(!timer.isToday());

        // when
        timer.goToToday();

        // then
        QCOMPARE(timer.selectedDate(), clock.at(u"2026-11-20T00:00:00"_s));
        QVERIFY(timer.isToday());
    }

    void shouldStepDaysByTheCalendar_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("previous");
        QTest::addColumn<QString>("next");
        QTest::newRow("first of a month")
            << u"2026-11-01T00:00:00"_s << u"2026-10-31T00:00:00"_s << u"2026-11-02T00:00:00"_s;
        QTest::newRow("clocks go forward")
            << u"2026-03-29T00:00:00"_s << u"2026-03-28T00:00:00"_s << u"2026-03-30T00:00:00"_s;
        QTest::newRow("clocks go back")
            << u"2026-10-25T00:00:00"_s << u"2026-10-24T00:00:00"_s << u"2026-10-26T00:00:00"_s;
    }
    void shouldStepDaysByTheCalendar()
    {
        QFETCH(QString, from);
        QFETCH(QString, previous);
        QFETCH(QString, next);

        // given
        FakeClock clock;
        TimerManager timer(clock);
        timer.navigateToDate(clock.at(from));

        // when
        timer.goToPreviousDay();

        // then
        QCOMPARE(timer.selectedDate(), clock.at(previous));

        // when
        timer.navigateToDate(clock.at(from));
        timer.goToNextDay();

        // then
        QCOMPARE(timer.selectedDate(), clock.at(next));
    }

    void shouldKeepTheTimeOfDayInAStep()
    {
        // given a day that begins at one o'clock
        const FakeClock clock(u"2018-11-04T12:00:00"_s, "America/Sao_Paulo");
        TimerManager timer(clock);
        QCOMPARE(timer.selectedDate(), clock.at(u"2018-11-04T01:00:00"_s));

        // when
        timer.goToNextDay();

        // then
        QCOMPARE(timer.selectedDate(), clock.at(u"2018-11-05T01:00:00"_s));

        // when
        timer.goToPreviousDay();
        timer.goToPreviousDay();

        // then
        QCOMPARE(timer.selectedDate(), clock.at(u"2018-11-03T01:00:00"_s));
    }

    void shouldStayWhereTheCalendarEnds()
    {
        // given
        FakeClock clock;
        TimerManager timer(clock);
        constexpr Instant beyond = 1e14;
        timer.navigateToDate(beyond);

        // when
        timer.goToNextDay();

        // then
        QCOMPARE(timer.selectedDate(), beyond);
    }

    void shouldLeaveRunningTasksAloneWhenTheDayChanges()
    {
        // given
        Fixture f;
        Task *const a = f.store.insertTask(u"a"_s);
        f.timer.startTask(a, f.all, f.context);

        // when
        f.timer.goToPreviousDay();

        // then
        QVERIFY(a->isRunning());
        QVERIFY(f.timer.isTicking());
        QCOMPARE(f.timer.activeTaskID().value(), a->id());
    }

    void shouldNotTellOfEqualValues()
    {
        // given
        Fixture f;
        QSignalSpy date(&f.timer, &TimerManager::selectedDateChanged);
        QSignalSpy billable(&f.timer, &TimerManager::showBillableTimeChanged);
        QSignalSpy editing(&f.timer, &TimerManager::isEditingChanged);
        QSignalSpy active(&f.timer, &TimerManager::activeTaskIDChanged);

        // when
        f.timer.goToToday();
        f.timer.setShowBillableTime(true);
        f.timer.setIsEditing(false);
        f.timer.stopAllTasks(f.all, f.context);

        // then
        QCOMPARE(date.count() + billable.count() + editing.count() + active.count(), 0);

        // when
        f.timer.setShowBillableTime(false);
        f.timer.setIsEditing(true);
        f.timer.goToNextDay();

        // then
        QCOMPARE(billable.count(), 1);
        QCOMPARE(editing.count(), 1);
        QCOMPARE(date.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestTimerManager)
#include "tst_timermanager.moc"
