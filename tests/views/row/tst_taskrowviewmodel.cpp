#include "../../support/teststore.h"
#include "model/tasklist.h"
#include "timer/timermanager.h"
#include "views/row/taskrowviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestTaskRowViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
        {
            // As its list does.
            connect(&timer, &TimerManager::tickChanged, &row, &TaskRowViewModel::update);
            connect(&timer, &TimerManager::showBillableTimeChanged, &row,
                    &TaskRowViewModel::update);
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        Task *task = store.insertTask(u"Møde"_s);
        ProjectCodeMenuModel codeMenu{store.context()};
        TaskRowViewModel row{*task, timer, codeMenu};
    };

private Q_SLOTS:
    void shouldShowOnlyTheBeginningOfAnEndlessName()
    {
        // given
        Fixture f;
        const QString longest = u"x"_s.repeated(10'000);

        // when
        f.task->setName(longest);

        // then
        QCOMPARE(f.row.shownName(), longest);

        // when
        f.task->setName(longest + u'x');

        // then
        QCOMPARE(f.row.shownName(), longest + u'\u2026');

        // when
        f.task->setName(longest.chopped(1) + u"\U0001F600x"_s);

        // then no half of a character is shown either
        QCOMPARE(f.row.shownName(), longest.chopped(1) + u'\u2026');

        // when
        f.row.startNameEditing();

        // then all of it is edited
        QCOMPARE(f.row.editedName(), f.task->name());
    }

    void shouldShowWhatStandsForAnEmptyName()
    {
        // given
        Fixture f;
        QCOMPARE(f.row.shownName(), u"Møde"_s);
        QVERIFY(f.row.isNamed());

        // when
        f.task->setName({});

        // then
        QCOMPARE(f.row.shownName(), u"Unavngivet opgave"_s);
        QVERIFY(!f.row.isNamed());
    }

    void shouldFollowTheTickWithOneChangePerSecond()
    {
        // given
        Fixture f(1ms);
        f.task->start();
        f.timer.syncActiveTask(
            DayTasks(f.store.context(), f.clock.calendar().dayInterval(f.clock.now())));
        QCOMPARE(f.row.displayedTime(), u"00:00:00"_s);
        QSignalSpy changed(&f.row, &TaskRowViewModel::displayedTimeChanged);

        // when
        f.clock.advance(1);

        // then
        QTRY_COMPARE(f.row.displayedTime(), u"00:00:01"_s);

        // when more ticks come within that second
        const qint64 tick = f.timer.tick();
        QTRY_VERIFY(f.timer.tick() > tick + 2);

        // then
        QCOMPARE(changed.count(), 1);
    }

    void shouldShowBillableOrPlainHours()
    {
        // given
        Fixture f;

        // when
        f.task->setAccumulatedSeconds(3960);

        // then
        QCOMPARE(f.row.displayedHours(), u"1.25"_s);

        // when
        f.timer.setShowBillableTime(false);

        // then
        QCOMPARE(f.row.displayedHours(), u"1.10"_s);
        QCOMPARE(f.row.displayedTime(), u"01:06:00"_s);
    }

    void shouldStoreANameTrimmedOfBlanksAndLineBreaks()
    {
        // given
        Fixture f;

        // when
        f.row.startNameEditing();

        // then
        QVERIFY(f.row.isEditingName());
        QVERIFY(f.timer.isEditing());
        QCOMPARE(f.row.editedName(), u"Møde"_s);

        // when
        f.row.setEditedName(u" \n\u00a0Frokost med Åse\t\u2029"_s);
        f.row.commitNameEdit();

        // then
        QCOMPARE(f.task->name(), u"Frokost med Åse"_s);
        QVERIFY(!f.row.isEditingName());
        QVERIFY(!f.timer.isEditing());
    }

    void shouldStoreANameOfSpacesAsEmpty()
    {
        // given
        Fixture f;
        f.row.startNameEditing();

        // when
        f.row.setEditedName(u"   "_s);
        f.row.commitNameEdit();

        // then
        QCOMPARE(f.task->name(), QString());
        QCOMPARE(f.row.shownName(), u"Unavngivet opgave"_s);
    }

    void shouldStopARunningTaskWhenItsTimeIsClickedAndNotRestartIt()
    {
        // given
        Fixture f;
        const AllTasks all(f.store.context());
        f.timer.startTask(f.task, all, f.store.context());
        f.clock.advance(65);

        // when
        f.row.startTimeEditing();

        // then
        QVERIFY(!f.task->isRunning());
        QCOMPARE(f.task->accumulatedSeconds(), 65);
        QCOMPARE(f.row.editedTime(), u"00:01:05"_s);
        // the timer manager has not been asked
        QCOMPARE(f.timer.activeTaskID().value(), f.task->id());
        QVERIFY(f.timer.isTicking());
        QVERIFY(f.timer.isEditing());

        // when
        f.row.setEditedTime(u"1:30"_s);
        f.row.commitTimeEdit();

        // then
        QCOMPARE(f.task->accumulatedSeconds(), 5400);
        QVERIFY(!f.task->isRunning());
        QVERIFY(!f.row.isEditingTime());
        QVERIFY(!f.timer.isEditing());
    }

    void shouldSetTheTimeToZeroForWhatCannotBeRead()
    {
        for (const QString &entry : {u""_s, u"abc"_s, u"1:2:3:4"_s, u"1.5"_s}) {
            // given
            Fixture f;
            f.task->setAccumulatedSeconds(100);
            f.row.startTimeEditing();

            // when
            f.row.setEditedTime(entry);
            f.row.commitTimeEdit();

            // then
            QCOMPARE(f.task->accumulatedSeconds(), 0);
        }
    }

    void shouldLeaveTheTimeAloneForANegativeEntry()
    {
        for (const QString &entry : {u"-10"_s, u"0:-10"_s, u"-5"_s}) {
            // given
            Fixture f;
            f.task->setAccumulatedSeconds(100);
            f.row.startTimeEditing();

            // when
            f.row.setEditedTime(entry);
            f.row.commitTimeEdit();

            // then
            QCOMPARE(f.task->accumulatedSeconds(), 100);
            QVERIFY(!f.row.isEditingTime());
        }
    }

    void shouldEditNameAndTimeAtOnceAndClearTheFlagWithEachCommit()
    {
        // given
        Fixture f;

        // when
        f.row.startNameEditing();
        f.row.startTimeEditing();

        // then
        QVERIFY(f.row.isEditingName());
        QVERIFY(f.row.isEditingTime());

        // when
        f.row.commitTimeEdit();

        // then
        QVERIFY(!f.timer.isEditing());
        QVERIFY(f.row.isEditingName());

        // when
        f.row.commitNameEdit();

        // then
        QVERIFY(!f.timer.isEditing());
    }

    void shouldKeepItsTextsWhenTheTaskGoes()
    {
        // given
        Fixture f;
        f.task->setAccumulatedSeconds(60);
        f.task->setProjectCode(u"4711"_s);
        QCOMPARE(f.row.displayedTime(), u"00:01:00"_s);

        // when
        f.store.context().remove(f.task);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        // then
        QTRY_VERIFY(!f.row.task());
        QCOMPARE(f.row.shownName(), u"Møde"_s);
        QCOMPARE(f.row.projectCode().toString(), u"4711"_s);
        QCOMPARE(f.row.displayedTime(), u"00:01:00"_s);

        // when
        f.timer.setShowBillableTime(false);
        f.row.commitTimeEdit();

        // then
        QCOMPARE(f.row.displayedTime(), u"00:01:00"_s);
    }
};

QTEST_GUILESS_MAIN(TestTaskRowViewModel)
#include "tst_taskrowviewmodel.moc"
