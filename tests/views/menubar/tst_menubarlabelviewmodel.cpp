#include "tests/support/teststore.h"
#include "views/menubar/menubarlabelviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What the menu-bar item says.
class TestMenuBarLabelViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
        {
        }

        Task *insert(const QString &name, qint64 seconds)
        {
            Task *const task = store.insertTask(name);
            task->setAccumulatedSeconds(seconds);
            return task;
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        AllTasks allTasks{store.context()};
    };

private Q_SLOTS:
    void shouldSayNothingWhileNoTaskRuns()
    {
        // given
        Fixture f;
        f.insert(u"A"_s, 3725);
        const MenuBarLabelViewModel label(f.timer, f.store.context());

        // then
        QCOMPARE(label.displayText(), QString());
        QCOMPARE(label.runningTask(), nullptr);
    }

    void shouldShowTheRunningTasksClockAndCountUpWithTheTick()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.insert(u"A"_s, 3725);
        const MenuBarLabelViewModel label(f.timer, f.store.context());

        // when
        f.timer.startTask(task, f.allTasks, f.store.context());

        // then
        QCOMPARE(label.displayText(), u"01:02:05"_s);

        // when
        f.clock.advance(1);

        // then
        QTRY_COMPARE(label.displayText(), u"01:02:06"_s);

        // when
        f.clock.advance(1);

        // then
        QTRY_COMPARE(label.displayText(), u"01:02:07"_s);

        // when
        f.timer.stopTask(task, f.store.context());

        // then
        QCOMPARE(label.displayText(), QString());
    }

    void shouldFindATaskThatWasLeftRunningAtOnce()
    {
        // given
        Fixture f;
        f.insert(u"A"_s, 3725)->start();
        f.store.reopen();

        // when
        const MenuBarLabelViewModel label(f.timer, f.store.context());

        // then
        QCOMPARE(label.displayText(), u"01:02:05"_s);
    }

    void shouldStandStillWhileTheTimerIsIdle()
    {
        // given
        Fixture f;
        f.insert(u"A"_s, 3725)->start();
        const MenuBarLabelViewModel label(f.timer, f.store.context());
        QSignalSpy changes(&label, &MenuBarLabelViewModel::displayTextChanged);

        // when
        f.clock.advance(60);
        QCoreApplication::processEvents();

        // then
        QVERIFY(!f.timer.isTicking());
        QCOMPARE(label.displayText(), u"01:02:05"_s);
        QCOMPARE(changes.size(), 0);
    }

    void shouldShowATaskOfAnotherDayThanTheSelectedOne()
    {
        // given
        Fixture f;
        f.store.insert<Task>(u"Gammel"_s, f.clock.at(u"2026-11-18T12:00:00"_s), std::nullopt)
            ->start();
        f.timer.navigateToDate(f.clock.at(u"2026-11-25T12:00:00"_s));

        // when
        const MenuBarLabelViewModel label(f.timer, f.store.context());

        // then
        QCOMPARE(label.displayText(), u"00:00:00"_s);
        QCOMPARE(label.runningTask()->name(), u"Gammel"_s);
    }

    void shouldTellOfAChangeOnlyWhenTheTextDiffers()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.insert(u"A"_s, 0);
        const MenuBarLabelViewModel label(f.timer, f.store.context());
        QSignalSpy changes(&label, &MenuBarLabelViewModel::displayTextChanged);

        // when
        f.timer.startTask(task, f.allTasks, f.store.context());
        QTRY_VERIFY(f.timer.tick() > 5);

        // then
        QCOMPARE(changes.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestMenuBarLabelViewModel)
#include "tst_menubarlabelviewmodel.moc"
