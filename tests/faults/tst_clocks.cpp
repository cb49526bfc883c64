#include "../support/teststore.h"
#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/row/taskrowviewmodel.h"

#include <QSignalSpy>
#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// A clock in the zone of the system, whatever that is.
class TravellersClock : public Clock
{
public:
    Instant now() const override { return m_now; }
    void set(Instant now) { m_now = now; }

    static void travelTo(const char *zone)
    {
        qputenv("TZ", zone);
        ::tzset();
    }

private:
    Instant m_now = 0;
};

/// A running task and the row that shows it, at a beat that tests can wait for.
struct Run {
    explicit Run(const QString &time, const QByteArray &zone = "Europe/Copenhagen")
        : clock(time, zone)
        , store(clock, {1h, 1h})
        , timer(clock, 1ms)
        , task(store.insertTask(u"Møde"_s))
        , all(store.context())
    {
        QObject::connect(&timer, &TimerManager::tickChanged, &row, &TaskRowViewModel::update);
        timer.startTask(task, all, store.context());
    }

    /// The clock's text and the hours once another tick has drawn them.
    QStringList shownAfterATick()
    {
        QSignalSpy ticks(&timer, &TimerManager::tickChanged);
        if (!ticks.wait())
            return {};
        return {row.displayedTime(), row.displayedHours()};
    }

    FakeClock clock;
    TestStore store;
    TimerManager timer;
    Task *task;
    AllTasks all;
    ProjectCodeMenuModel codeMenu{store.context()};
    TaskRowViewModel row{*task, timer, codeMenu};
};

} // namespace

class TestClocks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldFollowAClockThatIsSet_data()
    {
        QTest::addColumn<double>("by");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("plainHours");
        QTest::addColumn<QString>("billableHours");
        QTest::addColumn<qint64>("banked");

        const auto row = [](const char *name, double by, const QString &time, const QString &plain,
                            const QString &billable, qint64 banked) {
            QTest::newRow(name) << by << time << plain << billable << banked;
        };
        row("forward an hour", 3600, u"01:00:00"_s, u"1.00"_s, u"1.00"_s, 3600);
        row("forward ten years", 315'576'000, u"87660:00:00"_s, u"87660.00"_s, u"87660.00"_s,
            315'576'000);
        row("over a night in suspend", 8.25 * 3600, u"08:15:00"_s, u"8.25"_s, u"8.25"_s, 29'700);
        row("back half a second", -0.5, u"00:00:00"_s, u"0.00"_s, u"0.00"_s, 0);
        row("back a second and a half", -1.5, u"00:00:-1"_s, u"-0.00"_s, u"0.00"_s, -1);
        row("back an hour, a minute and a second", -3661, u"-1:-1:-1"_s, u"-1.02"_s, u"0.00"_s,
            -3661);
        row("back ten years", -315'576'000, u"-87660:00:00"_s, u"-87660.00"_s, u"0.00"_s,
            -315'576'000);
    }
    void shouldFollowAClockThatIsSet()
    {
        QFETCH(double, by);
        QFETCH(QString, time);
        QFETCH(QString, plainHours);
        QFETCH(QString, billableHours);

        // given
        Run run(u"2026-11-20T08:00:00"_s);

        // when
        run.clock.advance(by);

        // then
        QCOMPARE(run.shownAfterATick(), (QStringList{time, billableHours}));

        // when
        run.timer.setShowBillableTime(false);

        // then
        QCOMPARE(run.shownAfterATick(), (QStringList{time, plainHours}));

        // when
        run.clock.advance(1);

        // then the tick goes on, and so does the time from there
        QVERIFY(!run.shownAfterATick().isEmpty());
        QCOMPARE(run.task->currentTotalSeconds(), static_cast<qint64>(by + 1));

        // when
        run.clock.advance(-1);
        run.timer.stopTask(run.task, run.store.context());

        // then
        QTEST(run.task->accumulatedSeconds(), "banked");

        // when
        run.store.reopen();

        // then what was banked is what is stored
        LiveQuery<Task> tasks(run.store.context(), allRecords(), QueryOrder::Store);
        QTEST(tasks.results().constFirst()->accumulatedSeconds(), "banked");
    }

    void shouldCountWhatPassesWhenTheClocksChange_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("forward") << u"2026-03-29T01:30:00"_s << u"2026-03-29T03:30:00"_s
                                 << qint64{3600};
        QTest::newRow("back") << u"2026-10-25T01:30:00"_s << u"2026-10-25T03:30:00"_s
                              << qint64{10800};
        QTest::newRow("a day of 23 hours")
            << u"2026-03-29T00:00:00"_s << u"2026-03-30T00:00:00"_s << qint64{82800};
        QTest::newRow("a day of 25 hours")
            << u"2026-10-25T00:00:00"_s << u"2026-10-26T00:00:00"_s << qint64{90000};
    }
    void shouldCountWhatPassesWhenTheClocksChange()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(qint64, seconds);

        // given
        Run run(from);
        const Instant day = run.task->date();

        // when
        run.clock.set(to);

        // then
        QCOMPARE(run.task->currentTotalSeconds(), seconds);

        // when
        run.timer.stopTask(run.task, run.store.context());

        // then
        QCOMPARE(run.task->accumulatedSeconds(), seconds);
        QVERIFY(run.task->date() == day);
    }

    void shouldKeepATaskWhenTheZoneChangesWhileItRuns()
    {
        // given
        const QByteArray before = qgetenv("TZ");
        TravellersClock::travelTo("Europe/Copenhagen");
        TravellersClock clock;
        clock.set(1795158000); // 2026-11-20, 08:00 in Copenhagen and 02:00 in New York
        TestStore store(clock, {1h, 1h});
        Task *const task = store.insertTask(u"Rejse"_s);
        const AllTasks all(store.context());
        TimerManager timer(clock, 1h);
        timer.startTask(task, all, store.context());
        clock.set(clock.now() + 7200);
        const auto tasksOf = [&](Instant moment) {
            return DayTasks(store.context(), clock.calendar().dayInterval(moment)).tasks();
        };

        // when
        TravellersClock::travelTo("America/New_York");

        // then
        QCOMPARE(task->currentTotalSeconds(), 7200);
        // Its day began while it was still the day before there.
        QCOMPARE(tasksOf(clock.now()), QList<Task *>());
        QCOMPARE(tasksOf(clock.now() - 86400), QList<Task *>{task});

        // when
        Task *const there = store.insertTask(u"Der"_s);

        // then
        QCOMPARE(tasksOf(clock.now()), QList<Task *>{there});

        // when
        timer.startTask(there, all, store.context());

        // then
        QCOMPARE(task->accumulatedSeconds(), 7200);
        QVERIFY(!task->isRunning());

        // when
        TravellersClock::travelTo("Europe/Copenhagen");

        // then
        QCOMPARE(tasksOf(clock.now()), (QList<Task *>{task, there}));

        TravellersClock::travelTo(before.constData());
    }
};

QTEST_GUILESS_MAIN(TestClocks)
#include "tst_clocks.moc"
