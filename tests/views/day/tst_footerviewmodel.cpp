#include "../../support/teststore.h"
#include "views/day/footerviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestFooterViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        Fixture() { timer.setShowBillableTime(false); }

        Task *addTask(qint64 seconds)
        {
            Task *const task = store.insertTask(u"a"_s);
            task->setAccumulatedSeconds(seconds);
            return task;
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        DayTasks tasks{store.context(), clock.calendar().dayInterval(clock.now())};
        FooterViewModel footer{timer, tasks};
    };

private Q_SLOTS:
    void shouldShowZeroWithoutTasks()
    {
        // given
        const Fixture f;

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"00:00:00"_s);
        QCOMPARE(f.footer.totalHoursText(), u"0.00 t"_s);
    }

    void shouldShowTheTimeOfOneTask()
    {
        // given
        Fixture f;

        // when
        f.addTask(3725);

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"01:02:05"_s);
    }

    void shouldNotWrapHoursAtADay()
    {
        // given
        Fixture f;

        // when
        f.addTask(45000);
        f.addTask(45000);

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"25:00:00"_s);
        QCOMPARE(f.footer.totalHoursText(), u"25.00 t"_s);
    }

    void shouldAddUpBillableHoursThatAreRoundedForEachTask()
    {
        // given
        Fixture f;
        f.addTask(360);
        f.addTask(360);

        // when
        f.timer.setShowBillableTime(true);

        // then
        QCOMPARE(f.footer.totalHoursText(), u"0.50 t"_s);
    }

    void shouldChangeOnlyTheHoursWithTheBillableSwitch()
    {
        // given
        Fixture f;
        f.addTask(3960);
        QCOMPARE(f.footer.totalHoursText(), u"1.10 t"_s);
        QCOMPARE(f.footer.totalFormattedTime(), u"01:06:00"_s);

        // when
        f.timer.setShowBillableTime(true);

        // then
        QCOMPARE(f.footer.totalHoursText(), u"1.25 t"_s);
        QCOMPARE(f.footer.totalFormattedTime(), u"01:06:00"_s);
    }

    void shouldMoveOnWithTheTickWhileATaskRuns()
    {
        // given
        Fixture f;
        f.addTask(10)->start();
        f.addTask(10);

        // when
        f.clock.advance(5);

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"00:00:20"_s);

        // when
        Q_EMIT f.timer.tickChanged();

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"00:00:25"_s);
    }

    void shouldTellNobodyWhenATickChangesNothing()
    {
        // given
        Fixture f;
        f.addTask(10);
        QSignalSpy changed(&f.footer, &FooterViewModel::totalsChanged);

        // when
        Q_EMIT f.timer.tickChanged();

        // then
        QCOMPARE(changed.count(), 0);
    }

    void shouldFollowTheDaysTasks()
    {
        // given
        Fixture f;
        Task *const task = f.addTask(60);
        f.addTask(60);

        // when
        f.store.context().remove(task);

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"00:01:00"_s);
    }

    void shouldShowNegativeTotalsAsTheyAre()
    {
        // given
        Fixture f;

        // when
        f.addTask(-3661);

        // then
        QCOMPARE(f.footer.totalFormattedTime(), u"-1:-1:-1"_s);
    }
};

QTEST_GUILESS_MAIN(TestFooterViewModel)
#include "tst_footerviewmodel.moc"
