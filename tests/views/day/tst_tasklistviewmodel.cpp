#include "../../support/teststore.h"
#include "views/day/tasklistviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestTaskListViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        TaskRowViewModel *row(int index)
        {
            return static_cast<TaskRowViewModel *>(list->rows()->objects().at(index));
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        DayTasks tasks{store.context(), clock.calendar().dayInterval(clock.now())};
        Task *a = store.insertTask(u"a"_s, 0);
        Task *b = store.insertTask(u"b"_s, 1);
        std::unique_ptr<TaskListViewModel> list =
            std::make_unique<TaskListViewModel>(tasks, timer, store.context());
    };

private Q_SLOTS:
    void shouldKeepTheRowsOfTasksThatStayListed()
    {
        // given
        Fixture f;
        const TaskRowViewModel *const rowOfB = f.row(1);
        f.row(1)->startNameEditing();
        f.row(1)->setEditedName(u"Halvt skre"_s);

        // when
        f.a->setSortOrder(2);
        f.store.insertTask(u"c"_s, -1);

        // then
        QCOMPARE(f.row(1), rowOfB);
        QCOMPARE(f.row(1)->editedName(), u"Halvt skre"_s);
        QCOMPARE(f.row(2)->task(), f.a);
    }

    void shouldUpdateWithATickOnlyTheRowsThatRun()
    {
        // given
        Fixture f;
        f.a->start();
        QCOMPARE(f.row(0)->displayedTime(), u"00:00:00"_s);
        QCOMPARE(f.row(1)->displayedTime(), u"00:00:00"_s);
        QSignalSpy running(f.row(0), &TaskRowViewModel::displayedTimeChanged);
        QSignalSpy resting(f.row(1), &TaskRowViewModel::displayedTimeChanged);

        // when
        f.clock.advance(1);
        Q_EMIT f.timer.tickChanged();

        // then
        QCOMPARE(f.row(0)->displayedTime(), u"00:00:01"_s);
        QCOMPARE(running.count(), 1);
        QCOMPARE(resting.count(), 0);
    }

    void shouldShowOtherHoursInEveryRowWithTheBillableSwitch()
    {
        // given
        Fixture f;
        f.a->setAccumulatedSeconds(3960);
        f.b->setAccumulatedSeconds(3960);
        QCOMPARE(f.row(1)->displayedHours(), u"1.25"_s);

        // when
        f.timer.setShowBillableTime(false);

        // then
        QCOMPARE(f.row(0)->displayedHours(), u"1.10"_s);
        QCOMPARE(f.row(1)->displayedHours(), u"1.10"_s);
    }

    void shouldClearTheEditingFlagWhenTheLastEditedTaskLeaves()
    {
        // given
        Fixture f;
        f.row(0)->startNameEditing();
        f.row(1)->startTimeEditing();

        // when
        f.store.context().remove(f.a);

        // then
        QVERIFY(f.timer.isEditing());

        // when
        f.store.context().remove(f.b);

        // then
        QVERIFY(!f.timer.isEditing());
    }

    void shouldLeaveTheFlagAloneWhenNoEditedTaskLeaves()
    {
        // given
        Fixture f;
        f.timer.setIsEditing(true);

        // when
        f.store.context().remove(f.a);

        // then
        QVERIFY(f.timer.isEditing());
    }

    void shouldClearTheFlagWhenTheListGoes()
    {
        // given
        Fixture f;
        f.row(0)->startNameEditing();

        // when
        f.list.reset();

        // then
        QVERIFY(!f.timer.isEditing());
    }

    void shouldKeepARowsViewModelForAsLongAsItsDelegateIsThere()
    {
        // given
        Fixture f;
        auto keeper = std::make_unique<RowKeeper>();
        const QPointer<TaskRowViewModel> row = f.row(0);
        QCOMPARE(row->shownName(), u"a"_s);
        keeper->setRow(row);

        // when
        f.store.context().remove(f.a);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        // then
        QVERIFY(row);
        QVERIFY(!row->task());
        QCOMPARE(row->shownName(), u"a"_s);

        // when
        row->startNameEditing();

        // then
        QVERIFY(!row->isEditing());

        // when
        keeper.reset();

        // then
        QVERIFY(!row);
    }
};

QTEST_GUILESS_MAIN(TestTaskListViewModel)
#include "tst_tasklistviewmodel.moc"
