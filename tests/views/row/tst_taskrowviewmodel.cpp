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
        Fixture f;
        const QString longest = u"x"_s.repeated(10'000);
        f.task->setName(longest);
        QCOMPARE(f.row.shownName(), longest);
        f.task->setName(longest + u'x');
        QCOMPARE(f.row.shownName(), longest + u'\u2026');
        // and no half of a character
        f.task->setName(longest.chopped(1) + u"\U0001F600x"_s);
        QCOMPARE(f.row.shownName(), longest.chopped(1) + u'\u2026');
        // but all of it is edited
        f.row.startNameEditing();
        QCOMPARE(f.row.editedName(), f.task->name());
    }

    void shouldShowWhatStandsForAnEmptyName()
    {
        Fixture f;
        QCOMPARE(f.row.shownName(), u"Møde"_s);
        QVERIFY(f.row.isNamed());
        f.task->setName({});
        QCOMPARE(f.row.shownName(), u"Unavngivet opgave"_s);
        QVERIFY(!f.row.isNamed());
    }

    void shouldFollowTheTickWithOneChangePerSecond()
    {
        Fixture f(1ms);
        f.task->start();
        f.timer.syncActiveTask(
            DayTasks(f.store.context(), f.clock.calendar().dayInterval(f.clock.now())));
        QCOMPARE(f.row.displayedTime(), u"00:00:00"_s);
        QSignalSpy changed(&f.row, &TaskRowViewModel::displayedTimeChanged);
        f.clock.advance(1);
        QTRY_COMPARE(f.row.displayedTime(), u"00:00:01"_s);
        const qint64 tick = f.timer.tick();
        QTRY_VERIFY(f.timer.tick() > tick + 2);
        QCOMPARE(changed.count(), 1);
    }

    void shouldShowBillableOrPlainHours()
    {
        Fixture f;
        f.task->setAccumulatedSeconds(3960);
        QCOMPARE(f.row.displayedHours(), u"1.25"_s);
        f.timer.setShowBillableTime(false);
        QCOMPARE(f.row.displayedHours(), u"1.10"_s);
        QCOMPARE(f.row.displayedTime(), u"01:06:00"_s);
    }

    void shouldStoreANameTrimmedOfBlanksAndLineBreaks()
    {
        Fixture f;
        f.row.startNameEditing();
        QVERIFY(f.row.isEditingName());
        QVERIFY(f.timer.isEditing());
        QCOMPARE(f.row.editedName(), u"Møde"_s);
        f.row.setEditedName(u" \n\u00a0Frokost med Åse\t\u2029"_s);
        f.row.commitNameEdit();
        QCOMPARE(f.task->name(), u"Frokost med Åse"_s);
        QVERIFY(!f.row.isEditingName());
        QVERIFY(!f.timer.isEditing());
    }

    void shouldStoreANameOfSpacesAsEmpty()
    {
        Fixture f;
        f.row.startNameEditing();
        f.row.setEditedName(u"   "_s);
        f.row.commitNameEdit();
        QCOMPARE(f.task->name(), QString());
        QCOMPARE(f.row.shownName(), u"Unavngivet opgave"_s);
    }

    void shouldStopARunningTaskWhenItsTimeIsClickedAndNotRestartIt()
    {
        Fixture f;
        const AllTasks all(f.store.context());
        f.timer.startTask(f.task, all, f.store.context());
        f.clock.advance(65);
        f.row.startTimeEditing();
        QVERIFY(!f.task->isRunning());
        QCOMPARE(f.task->accumulatedSeconds(), 65);
        QCOMPARE(f.row.editedTime(), u"00:01:05"_s);
        // the timer manager has not been asked
        QCOMPARE(f.timer.activeTaskID().value(), f.task->id());
        QVERIFY(f.timer.isTicking());
        QVERIFY(f.timer.isEditing());

        f.row.setEditedTime(u"1:30"_s);
        f.row.commitTimeEdit();
        QCOMPARE(f.task->accumulatedSeconds(), 5400);
        QVERIFY(!f.task->isRunning());
        QVERIFY(!f.row.isEditingTime());
        QVERIFY(!f.timer.isEditing());
    }

    void shouldSetTheTimeToZeroForWhatCannotBeRead()
    {
        for (const QString &entry : {u""_s, u"abc"_s, u"1:2:3:4"_s, u"1.5"_s}) {
            Fixture f;
            f.task->setAccumulatedSeconds(100);
            f.row.startTimeEditing();
            f.row.setEditedTime(entry);
            f.row.commitTimeEdit();
            QCOMPARE(f.task->accumulatedSeconds(), 0);
        }
    }

    void shouldLeaveTheTimeAloneForANegativeEntry()
    {
        for (const QString &entry : {u"-10"_s, u"0:-10"_s, u"-5"_s}) {
            Fixture f;
            f.task->setAccumulatedSeconds(100);
            f.row.startTimeEditing();
            f.row.setEditedTime(entry);
            f.row.commitTimeEdit();
            QCOMPARE(f.task->accumulatedSeconds(), 100);
            QVERIFY(!f.row.isEditingTime());
        }
    }

    void shouldEditNameAndTimeAtOnceAndClearTheFlagWithEachCommit()
    {
        Fixture f;
        f.row.startNameEditing();
        f.row.startTimeEditing();
        QVERIFY(f.row.isEditingName());
        QVERIFY(f.row.isEditingTime());
        f.row.commitTimeEdit();
        QVERIFY(!f.timer.isEditing());
        QVERIFY(f.row.isEditingName());
        f.row.commitNameEdit();
        QVERIFY(!f.timer.isEditing());
    }

    void shouldKeepItsTextsWhenTheTaskGoes()
    {
        Fixture f;
        f.task->setAccumulatedSeconds(60);
        f.task->setProjectCode(u"4711"_s);
        QCOMPARE(f.row.displayedTime(), u"00:01:00"_s);
        f.store.context().remove(f.task);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTRY_VERIFY(!f.row.task());
        QCOMPARE(f.row.shownName(), u"Møde"_s);
        QCOMPARE(f.row.projectCode().toString(), u"4711"_s);
        QCOMPARE(f.row.displayedTime(), u"00:01:00"_s);
        f.timer.setShowBillableTime(false);
        f.row.commitTimeEdit();
        QCOMPARE(f.row.displayedTime(), u"00:01:00"_s);
    }
};

QTEST_GUILESS_MAIN(TestTaskRowViewModel)
#include "tst_taskrowviewmodel.moc"
