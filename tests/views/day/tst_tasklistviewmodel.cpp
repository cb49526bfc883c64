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
        Fixture f;
        const TaskRowViewModel *const rowOfB = f.row(1);
        f.row(1)->startNameEditing();
        f.row(1)->setEditedName(u"Halvt skre"_s);

        f.a->setSortOrder(2);
        f.store.insertTask(u"c"_s, -1);

        QCOMPARE(f.row(1), rowOfB);
        QCOMPARE(f.row(1)->editedName(), u"Halvt skre"_s);
        QCOMPARE(f.row(2)->task(), f.a);
    }

    void shouldUpdateWithATickOnlyTheRowsThatRun()
    {
        Fixture f;
        f.a->start();
        QCOMPARE(f.row(0)->displayedTime(), u"00:00:00"_s);
        QCOMPARE(f.row(1)->displayedTime(), u"00:00:00"_s);
        QSignalSpy running(f.row(0), &TaskRowViewModel::displayedTimeChanged);
        QSignalSpy resting(f.row(1), &TaskRowViewModel::displayedTimeChanged);

        f.clock.advance(1);
        Q_EMIT f.timer.tickChanged();

        QCOMPARE(f.row(0)->displayedTime(), u"00:00:01"_s);
        QCOMPARE(running.count(), 1);
        QCOMPARE(resting.count(), 0);
    }

    void shouldShowOtherHoursInEveryRowWithTheBillableSwitch()
    {
        Fixture f;
        f.a->setAccumulatedSeconds(3960);
        f.b->setAccumulatedSeconds(3960);
        QCOMPARE(f.row(1)->displayedHours(), u"1.25"_s);
        f.timer.setShowBillableTime(false);
        QCOMPARE(f.row(0)->displayedHours(), u"1.10"_s);
        QCOMPARE(f.row(1)->displayedHours(), u"1.10"_s);
    }

    void shouldClearTheEditingFlagWhenTheLastEditedTaskLeaves()
    {
        Fixture f;
        f.row(0)->startNameEditing();
        f.row(1)->startTimeEditing();
        f.store.context().remove(f.a);
        QVERIFY(f.timer.isEditing());
        f.store.context().remove(f.b);
        QVERIFY(!f.timer.isEditing());
    }

    void shouldLeaveTheFlagAloneWhenNoEditedTaskLeaves()
    {
        Fixture f;
        f.timer.setIsEditing(true);
        f.store.context().remove(f.a);
        QVERIFY(f.timer.isEditing());
    }

    void shouldClearTheFlagWhenTheListGoes()
    {
        Fixture f;
        f.row(0)->startNameEditing();
        f.list.reset();
        QVERIFY(!f.timer.isEditing());
    }

    void shouldKeepARowsViewModelForAsLongAsItsDelegateIsThere()
    {
        Fixture f;
        auto keeper = std::make_unique<RowKeeper>();
        const QPointer<TaskRowViewModel> row = f.row(0);
        QCOMPARE(row->shownName(), u"a"_s);
        keeper->setRow(row);

        f.store.context().remove(f.a);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QVERIFY(row);
        QVERIFY(!row->task());
        QCOMPARE(row->shownName(), u"a"_s);
        row->startNameEditing();
        QVERIFY(!row->isEditing());
        keeper.reset();
        QVERIFY(!row);
    }
};

QTEST_GUILESS_MAIN(TestTaskListViewModel)
#include "tst_tasklistviewmodel.moc"
