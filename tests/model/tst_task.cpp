#include "../support/fakeclock.h"
#include "model/task.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestTask : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldBeginStoppedAndWithoutTime()
    {
        const FakeClock clock;
        const Task task(clock, u"Møde"_s, clock.now(), std::nullopt);

        QVERIFY(!task.id().isNull());
        QCOMPARE(task.name(), u"Møde"_s);
        QCOMPARE(task.accumulatedSeconds(), 0);
        QVERIFY(!task.isRunning());
        QCOMPARE(task.sortOrder(), 0);
        QCOMPARE(task.createdAt(), clock.now());
        QVERIFY(!task.projectCode());
        QCOMPARE(task.formattedTime(), u"00:00:00"_s);
        QCOMPARE(task.decimalHours(), 0.0);
        QCOMPARE(task.roundedDecimalHours(), 0.0);
    }

    void shouldKeepWhatItIsCreatedWithUntouched()
    {
        const FakeClock clock;
        const Task task(clock, u"  Møde\n"_s, clock.now(), u""_s, 7);

        QCOMPARE(task.name(), u"  Møde\n"_s);
        QCOMPARE(task.sortOrder(), 7);
        QVERIFY(task.projectCode());
        QVERIFY(task.projectCode()->isEmpty());
    }

    void shouldHaveAnIdOfItsOwn()
    {
        const FakeClock clock;
        const Task one(clock, u""_s, clock.now(), std::nullopt);
        const Task other(clock, u""_s, clock.now(), std::nullopt);
        QVERIFY(one.id() != other.id());
    }

    void shouldStoreTheStartOfTheGivenDay()
    {
        const FakeClock clock;
        Task task(clock, u""_s, clock.at(u"2026-11-20T14:35:00"_s), std::nullopt);
        QCOMPARE(task.date(), clock.at(u"2026-11-20T00:00:00"_s));

        task.setDate(clock.at(u"2026-11-22T23:59:59"_s));
        QCOMPARE(task.date(), clock.at(u"2026-11-22T00:00:00"_s));
    }

    void shouldKeepTheFirstStartWhenStartedTwice()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        const Instant first = clock.now();
        task.start();
        clock.advance(10);
        task.start();
        QCOMPARE(task.lastStartTime().value(), first);
    }

    void shouldBankOnceWhenStoppedTwice()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();
        clock.advance(10);
        task.stop();
        clock.advance(10);
        task.stop();
        QVERIFY(!task.isRunning());
        QCOMPARE(task.accumulatedSeconds(), 10);
    }

    void shouldDropTheFractionOfARun()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();
        clock.advance(2.9);
        QCOMPARE(task.currentTotalSeconds(), 2);
        task.stop();
        QCOMPARE(task.accumulatedSeconds(), 2);
    }

    void shouldDropTheFractionOfEachRunByItself()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        for (int run = 0; run < 3; ++run) {
            task.start();
            clock.advance(1.9);
            task.stop();
        }
        QCOMPARE(task.accumulatedSeconds(), 3);
    }

    void shouldLoseTimeWhenTheClockIsSetBack()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(100);
        task.start();
        clock.advance(-40.5);
        QCOMPARE(task.currentTotalSeconds(), 60);
        task.stop();
        QCOMPARE(task.accumulatedSeconds(), 60);
    }

    void shouldNotCountHalfASecondBack()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();
        clock.advance(-0.5);
        QCOMPARE(task.currentTotalSeconds(), 0);
    }

    void shouldShowNegativeTimeWithNegativeParts()
    {
        const FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(-3661);
        QCOMPARE(task.formattedTime(), u"-1:-1:-1"_s);
        QCOMPARE(task.roundedDecimalHours(), 0.0);
    }

    void shouldDeriveAllFiguresFromTheSameTotal()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(3600);
        task.start();
        clock.advance(360);
        QCOMPARE(task.formattedTime(), u"01:06:00"_s);
        QCOMPARE(task.decimalHours(), 1.1);
        QCOMPARE(task.roundedDecimalHours(), 1.25);
    }

    void shouldTellOfEachChangeOnce()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        QSignalSpy changed(&task, &Record::changed);
        QSignalSpy name(&task, &Task::nameChanged);

        task.setName(u"Møde"_s);
        task.setName(u"Møde"_s);
        QCOMPARE(name.count(), 1);
        QCOMPARE(changed.count(), 1);

        task.start();
        task.start();
        task.stop();
        task.stop();
        QCOMPARE(changed.count(), 3);

        task.setProjectCode(u""_s);
        task.setProjectCode(std::nullopt);
        QCOMPARE(changed.count(), 5);
    }

    void shouldBeStoppedWithItsRunBankedWhenObserversHearOfIt()
    {
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();
        clock.advance(5);
        QList<qint64> seen;
        connect(&task, &Task::accumulatedSecondsChanged, &task,
                [&] { seen << task.currentTotalSeconds(); });
        connect(&task, &Task::lastStartTimeChanged, &task,
                [&] { seen << task.currentTotalSeconds(); });
        task.stop();
        QCOMPARE(seen, (QList<qint64>{5, 5}));
    }
};

QTEST_GUILESS_MAIN(TestTask)
#include "tst_task.moc"
