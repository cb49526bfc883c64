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
        // given
        const FakeClock clock;
        const Task task(clock, u"Møde"_s, clock.now(), std::nullopt);

        // then
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
        // given
        const FakeClock clock;
        const Task task(clock, u"  Møde\n"_s, clock.now(), u""_s, 7);

        // then
        QCOMPARE(task.name(), u"  Møde\n"_s);
        QCOMPARE(task.sortOrder(), 7);
        QVERIFY(task.projectCode());
        QVERIFY(task.projectCode()->isEmpty());
    }

    void shouldHaveAnIdOfItsOwn()
    {
        // given
        const FakeClock clock;
        const Task one(clock, u""_s, clock.now(), std::nullopt);
        const Task other(clock, u""_s, clock.now(), std::nullopt);

        // then
        QVERIFY(one.id() != other.id());
    }

    void shouldStoreTheStartOfTheGivenDay()
    {
        // given
        const FakeClock clock;
        Task task(clock, u""_s, clock.at(u"2026-11-20T14:35:00"_s), std::nullopt);

        // then
        QCOMPARE(task.date(), clock.at(u"2026-11-20T00:00:00"_s));

        // when
        task.setDate(clock.at(u"2026-11-22T23:59:59"_s));

        // then
        QCOMPARE(task.date(), clock.at(u"2026-11-22T00:00:00"_s));
    }

    void shouldKeepTheFirstStartWhenStartedTwice()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        const Instant first = clock.now();

        // when
        task.start();
        clock.advance(10);
        task.start();

        // then
        QCOMPARE(task.lastStartTime().value(), first);
    }

    void shouldBankOnceWhenStoppedTwice()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();
        clock.advance(10);

        // when
        task.stop();
        clock.advance(10);
        task.stop();

        // then
        QVERIFY(!task.isRunning());
        QCOMPARE(task.accumulatedSeconds(), 10);
    }

    void shouldDropTheFractionOfARun()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();

        // when
        clock.advance(2.9);

        // then
        QCOMPARE(task.currentTotalSeconds(), 2);

        // when
        task.stop();

        // then
        QCOMPARE(task.accumulatedSeconds(), 2);
    }

    void shouldDropTheFractionOfEachRunByItself()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);

        // when
        for (int run = 0; run < 3; ++run) {
            task.start();
            clock.advance(1.9);
            task.stop();
        }

        // then
        QCOMPARE(task.accumulatedSeconds(), 3);
    }

    void shouldLoseTimeWhenTheClockIsSetBack()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(100);
        task.start();

        // when
        clock.advance(-40.5);

        // then
        QCOMPARE(task.currentTotalSeconds(), 60);

        // when
        task.stop();

        // then
        QCOMPARE(task.accumulatedSeconds(), 60);
    }

    void shouldNotCountHalfASecondBack()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();

        // when
        clock.advance(-0.5);

        // then
        QCOMPARE(task.currentTotalSeconds(), 0);
    }

    void shouldShowNegativeTimeWithNegativeParts()
    {
        // given
        const FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(-3661);

        // then
        QCOMPARE(task.formattedTime(), u"-1:-1:-1"_s);
        QCOMPARE(task.roundedDecimalHours(), 0.0);
    }

    void shouldDeriveAllFiguresFromTheSameTotal()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(3600);
        task.start();

        // when
        clock.advance(360);

        // then
        QCOMPARE(task.formattedTime(), u"01:06:00"_s);
        QCOMPARE(task.decimalHours(), 1.1);
        QCOMPARE(task.roundedDecimalHours(), 1.25);
    }

    void shouldTellOfEachChangeOnce()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        QSignalSpy changed(&task, &Record::changed);
        QSignalSpy name(&task, &Task::nameChanged);

        // when
        task.setName(u"Møde"_s);
        task.setName(u"Møde"_s);

        // then
        QCOMPARE(name.count(), 1);
        QCOMPARE(changed.count(), 1);

        // when
        task.start();
        task.start();
        task.stop();
        task.stop();

        // then
        QCOMPARE(changed.count(), 3);

        // when
        task.setProjectCode(u""_s);
        task.setProjectCode(std::nullopt);
        task.setProjectCode(std::nullopt);

        // then
        QCOMPARE(changed.count(), 5);

        // when
        task.setAccumulatedSeconds(90);
        task.setAccumulatedSeconds(90);
        task.setDate(clock.now() + 86400);
        task.setDate(clock.now() + 86401);

        // then
        QCOMPARE(changed.count(), 7);
    }

    void shouldAdviseNothingAboutAStoreThatItIsNotIn()
    {
        // given
        const FakeClock clock;
        const Task task(clock, u"Møde"_s, clock.now(), std::nullopt);

        // when
        const QString advice = QString::fromStdString(task.repairAdvice());

        // then
        QVERIFY2(advice.contains(u"\"Møde\" of 2026-11-20"_s), qPrintable(advice));
        QVERIFY2(!advice.contains(u"store"_s), qPrintable(advice));
    }

    void shouldBeStoppedWithItsRunBankedWhenObserversHearOfIt()
    {
        // given
        FakeClock clock;
        Task task(clock, u""_s, clock.now(), std::nullopt);
        task.start();
        clock.advance(5);
        QList<qint64> seen;
        connect(&task, &Task::accumulatedSecondsChanged, &task,
                [&] { seen << task.currentTotalSeconds(); });
        connect(&task, &Task::lastStartTimeChanged, &task,
                [&] { seen << task.currentTotalSeconds(); });

        // when
        task.stop();

        // then
        QCOMPARE(seen, (QList<qint64>{5, 5}));
    }
};

QTEST_GUILESS_MAIN(TestTask)
#include "tst_task.moc"
