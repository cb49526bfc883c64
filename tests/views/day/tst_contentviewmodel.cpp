#include "../../support/teststore.h"
#include "views/day/contentviewmodel.h"

#include <SQLiteCpp/Database.h>

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestContentViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        void addTasks(int count)
        {
            for (int i = 0; i < count; ++i)
                day.addTask();
        }
        Task *row(int index) { return day.tasks().sortedTasks().at(index); }
        bool press(Qt::Key key) { return day.handleKey({key, false, false, false}); }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        ContentViewModel day{timer, store.context()};
    };

    /// A day whose store cannot be read until it is healed.
    struct UnreadableStore {
        UnreadableStore() { ModelContainer(path(), clock); }

        QString path() const { return directory.filePath(u"store.sqlite"_s); }
        QUuid insertRunningTask()
        {
            ModelContainer container(path(), clock);
            auto task = std::make_unique<Task>(clock, u"kører"_s, clock.now(), std::nullopt);
            task->start();
            const QUuid id = task->id();
            container.mainContext().insert(std::move(task));
            return id;
        }
        void open()
        {
            database = std::make_unique<SQLite::Database>(QFile::encodeName(path()).constData(),
                                                          SQLite::OPEN_READWRITE);
            database->exec("ALTER TABLE Task RENAME TO Hidden");
            context = std::make_unique<ModelContext>(*database, clock, SaveDelays{1h, 1ms});
            day = std::make_unique<ContentViewModel>(timer, *context);
        }
        void heal() const { database->exec("ALTER TABLE Hidden RENAME TO Task"); }

        FakeClock clock;
        QTemporaryDir directory;
        TimerManager timer{clock, 1h};
        std::unique_ptr<SQLite::Database> database;
        std::unique_ptr<ModelContext> context;
        std::unique_ptr<ContentViewModel> day;
    };

private Q_SLOTS:
    void shouldDoNothingOnADayWithoutTasks()
    {
        Fixture f;
        QVERIFY(f.day.tasks().isEmpty());
        QVERIFY(f.press(Qt::Key_Space));
        QVERIFY(f.press(Qt::Key_Up));
        QVERIFY(f.press(Qt::Key_Down));
        QVERIFY(!f.day.selectedTaskIndex());
        QVERIFY(!f.timer.isAnyTaskRunning());
        f.day.startFirst();
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldAddATaskByCommandReturnToAnEmptyDay()
    {
        Fixture f;
        QSignalSpy added(&f.day, &ContentViewModel::taskAdded);
        QVERIFY(f.day.handleKey({Qt::Key_Return, true, false, false}));
        QVERIFY(!f.day.tasks().isEmpty());
        QCOMPARE(f.row(0)->name(), QString());
        QCOMPARE(f.row(0)->date(), f.timer.selectedDate());
        QVERIFY(!f.row(0)->projectCode());
        QVERIFY(!f.row(0)->isRunning());
        QVERIFY(!f.day.selectedTaskIndex());
        QCOMPARE(added.count(), 1);
        QCOMPARE(added.at(0).at(0).toInt(), 0);
        QVERIFY(f.day.isAnimated());
    }

    void shouldAddATemplatesTaskToTheSelectedDay()
    {
        Fixture f;
        f.timer.goToNextDay();
        f.day.addTaskFromTemplate(u" Møde "_s);
        QCOMPARE(f.row(0)->name(), u" Møde "_s);
        QCOMPARE(f.row(0)->date(), f.clock.at(u"2026-11-21T00:00:00"_s));
    }

    void shouldCountTheDaysTasksForTheSortOrder()
    {
        Fixture f;
        f.addTasks(3);
        QCOMPARE(f.row(0)->sortOrder(), 0);
        QCOMPARE(f.row(1)->sortOrder(), 1);
        QCOMPARE(f.row(2)->sortOrder(), 2);

        Task *const last = f.row(2);
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();
        QSignalSpy added(&f.day, &ContentViewModel::taskAdded);
        f.day.addTask();
        // two are equal now, and keep the order of the store
        QCOMPARE(f.row(1), last);
        QCOMPARE(f.row(1)->sortOrder(), 2);
        QCOMPARE(f.row(2)->sortOrder(), 2);
        QCOMPARE(added.at(0).at(0).toInt(), 2);
    }

    void shouldShowTheTasksOfTheSelectedDayAsItIsInANewZone_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::newRow("eastward") << QByteArray("Asia/Tokyo");
        QTest::newRow("westward") << QByteArray("America/New_York");
    }
    void shouldShowTheTasksOfTheSelectedDayAsItIsInANewZone()
    {
        QFETCH(QByteArray, zone);
        Fixture f;
        f.addTasks(1);
        Task *const before = f.row(0);
        f.day.selectTask(0);
        QSignalSpy dayChanged(&f.day, &ContentViewModel::dayChanged);
        f.clock.travelTo(zone);
        f.day.addTask();
        QCOMPARE(f.day.tasks().tasks().size(), 2);
        QCOMPARE(f.row(0), before);
        QCOMPARE(f.row(1)->date(), f.clock.calendar().startOfDay(f.timer.selectedDate()));
        QCOMPARE(f.row(1)->sortOrder(), 1);
        // The same day is selected, and the same row of it.
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QCOMPARE(dayChanged.count(), 0);
    }

    void shouldLeaveTasksOfAnotherDayThereWhenTheZoneChanges()
    {
        // given a task of the 20th, made in the east, whose day begins on the 19th here
        Fixture f;
        f.clock.travelTo("Asia/Tokyo");
        f.timer.goToToday();
        f.day.addTask();
        f.clock.travelTo("Europe/Copenhagen");
        f.timer.goToToday();
        QVERIFY(f.day.tasks().isEmpty());
        // then it is of today again back there
        f.clock.travelTo("Asia/Tokyo");
        QCOMPARE(f.day.tasks().tasks().size(), 1);
    }

    void shouldTakeUpTheRunningTaskThatIsFirstInTheStore()
    {
        Fixture f;
        Task *const first = f.store.insertTask(u"b"_s, 2);
        Task *const second = f.store.insertTask(u"a"_s, 1);
        first->start();
        second->start();
        ContentViewModel day(f.timer, f.store.context());
        QCOMPARE(day.tasks().sortedTasks().constFirst(), second);
        QCOMPARE(f.timer.activeTaskID().value(), first->id());
    }

    void shouldTakeUpTheRunningTaskOnceItsDayCanBeRead()
    {
        UnreadableStore f;
        const QUuid running = f.insertRunningTask();
        f.open();
        QVERIFY(!f.day->tasks().isKnown());
        QVERIFY(!f.timer.isAnyTaskRunning());
        f.heal();
        QTRY_COMPARE(f.timer.activeTaskID(), running);
        QVERIFY(f.timer.isTicking());
        // and only that once
        f.timer.stopAllTasks(AllTasks(*f.context), *f.context);
        f.day->tasks().tasks().constFirst()->start();
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldNotTakeUpARunningTaskOfAnotherDayThatIsReadFirst()
    {
        UnreadableStore f;
        const QUuid running = f.insertRunningTask();
        f.clock.advance(86400);
        f.timer.goToToday();
        f.open();
        f.heal();
        f.timer.goToPreviousDay();
        QTRY_COMPARE(f.day->tasks().tasks().size(), 1);
        QVERIFY(f.day->tasks().withID(running));
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldLeaveTheTaskActiveThatWasStartedBeforeTheDayCouldBeRead()
    {
        UnreadableStore f;
        f.insertRunningTask();
        f.open();
        f.day->addTask();
        f.day->startFirst();
        const std::optional<QUuid> started = f.timer.activeTaskID();
        QVERIFY(started);
        f.heal();
        QTRY_COMPARE(f.day->tasks().tasks().size(), 2);
        QCOMPARE(f.timer.activeTaskID(), started);
    }

    void shouldNotSelectARowThatIsOnItsWayOut()
    {
        Fixture f;
        f.addTasks(1);
        f.day.selectTask(-1);
        QVERIFY(!f.day.selectedTaskIndex());
        // and Space acts as if nothing were selected
        f.press(Qt::Key_Space);
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QVERIFY(f.row(0)->isRunning());
    }

    void shouldShowTasksBySortOrder()
    {
        Fixture f;
        Task *const c = f.store.insertTask(u"c"_s, 2);
        Task *const a = f.store.insertTask(u"a"_s, 0);
        Task *const b = f.store.insertTask(u"b"_s, 1);
        QCOMPARE(f.day.tasks().sortedTasks(), (QList<Task *>{a, b, c}));
        QCOMPARE(f.day.tasks().tasks(), (QList<Task *>{c, a, b}));
    }

    void shouldLeaveTheSelectionWhereItIsWhenATaskIsDeleted()
    {
        Fixture f;
        f.addTasks(3);
        f.day.selectTask(2);
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();
        QCOMPARE(f.day.selectedTaskIndex().value(), 2);

        // Down goes to the last row, Up to row 1
        f.press(Qt::Key_Down);
        QCOMPARE(f.day.selectedTaskIndex().value(), 1);
        f.day.selectTask(2);
        f.press(Qt::Key_Up);
        QCOMPARE(f.day.selectedTaskIndex().value(), 1);
    }

    void shouldWantTheKeyboardWhenARowIsSelectedUnlessOneIsEdited()
    {
        Fixture f;
        f.addTasks(2);
        const QSignalSpy wanted(&f.day, &ContentViewModel::keyboardWanted);
        f.day.selectTask(1);
        QCOMPARE(wanted.count(), 1);
        // also when it is selected already
        f.day.selectTask(1);
        QCOMPARE(wanted.count(), 2);
        f.timer.setIsEditing(true);
        f.day.selectTask(0);
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QCOMPARE(wanted.count(), 2);
        // nor for a selection by key, which has it
        f.timer.setIsEditing(false);
        f.press(Qt::Key_Down);
        QCOMPARE(wanted.count(), 2);
    }

    void shouldActAsIfNothingWereSelectedWhenTheSelectionIsPastTheEnd()
    {
        Fixture f;
        f.addTasks(3);
        f.day.selectTask(2);
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();
        f.press(Qt::Key_Space);
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QVERIFY(f.row(0)->isRunning());

        f.day.selectTask(2);
        f.press(Qt::Key_Space);
        QVERIFY(!f.row(0)->isRunning());
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldSelectTheLastRowGoingUpAndTheFirstGoingDown()
    {
        Fixture f;
        f.addTasks(3);
        f.press(Qt::Key_Up);
        QCOMPARE(f.day.selectedTaskIndex().value(), 2);
        f.press(Qt::Key_Down);
        QCOMPARE(f.day.selectedTaskIndex().value(), 2);
        f.timer.goToNextDay();
        f.timer.goToPreviousDay();
        QVERIFY(!f.day.selectedTaskIndex());
        f.press(Qt::Key_Down);
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        f.press(Qt::Key_Up);
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
    }

    void shouldToggleTheSelectedRowWithSpace()
    {
        Fixture f;
        f.addTasks(2);
        f.day.selectTask(1);
        f.press(Qt::Key_Space);
        QVERIFY(f.row(1)->isRunning());
        f.press(Qt::Key_Up);
        f.press(Qt::Key_Space);
        QVERIFY(f.row(0)->isRunning());
        QVERIFY(!f.row(1)->isRunning());
        f.press(Qt::Key_Space);
        QVERIFY(!f.row(0)->isRunning());
    }

    void shouldStartTheFirstRowWithSpaceWhenNothingRunsAndSelectIt()
    {
        Fixture f;
        f.addTasks(2);
        f.press(Qt::Key_Space);
        QVERIFY(f.row(0)->isRunning());
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
    }

    void shouldStopATaskOfAnotherDayWithSpaceAndStartNothing()
    {
        Fixture f;
        f.addTasks(1);
        Task *const today = f.row(0);
        f.day.startFirst();
        f.timer.goToNextDay();
        f.addTasks(1);
        f.press(Qt::Key_Space);
        QVERIFY(!today->isRunning());
        QVERIFY(!f.row(0)->isRunning());
        QVERIFY(!f.day.selectedTaskIndex());
    }

    void shouldStopARunningTaskOfAnotherDayWhenARowIsStartedByKey()
    {
        // The keys hand every task of every day to the timer manager.
        Fixture f;
        f.addTasks(1);
        Task *const today = f.row(0);
        f.day.startFirst();
        f.timer.goToNextDay();
        f.addTasks(1);
        f.day.selectTask(0);
        f.press(Qt::Key_Space);
        QVERIFY(!today->isRunning());
        QVERIFY(f.row(0)->isRunning());
    }

    void shouldStartTheTaskWithTheSmallestSortOrderFirst()
    {
        Fixture f;
        f.store.insertTask(u"b"_s, 5);
        Task *const first = f.store.insertTask(u"a"_s, -1);
        f.day.startFirst();
        QVERIFY(first->isRunning());
        QVERIFY(!f.day.selectedTaskIndex());
    }

    void shouldClearTheSelectionWithAnyChangeOfDay()
    {
        Fixture f;
        f.addTasks(2);
        const auto select = [&] { f.day.selectTask(1); };
        select();
        f.press(Qt::Key_Left);
        QVERIFY(!f.day.selectedTaskIndex());
        QCOMPARE(f.timer.selectedDate(), f.clock.at(u"2026-11-19T00:00:00"_s));
        select();
        f.press(Qt::Key_Right);
        QVERIFY(!f.day.selectedTaskIndex());
        select();
        f.timer.navigateToDate(f.clock.at(u"2026-12-24T00:00:00"_s));
        QVERIFY(!f.day.selectedTaskIndex());
        select();
        QVERIFY(f.day.handleKey({Qt::Key_T, true, true, false}));
        QVERIFY(!f.day.selectedTaskIndex());
        QCOMPARE(f.timer.selectedDate(), f.clock.at(u"2026-11-20T00:00:00"_s));
        // also when today was shown already
        select();
        f.day.handleKey({Qt::Key_T, true, true, false});
        QVERIFY(!f.day.selectedTaskIndex());
        QVERIFY(!f.day.isAnimated());
    }

    void shouldRepeatSpaceAndArrowsButNotTheOthers()
    {
        Fixture f;
        f.addTasks(3);
        QVERIFY(f.day.handleKey({Qt::Key_Down, false, false, true}));
        QVERIFY(f.day.handleKey({Qt::Key_Down, false, false, true}));
        QCOMPARE(f.day.selectedTaskIndex().value(), 1);
        QVERIFY(f.day.handleKey({Qt::Key_Space, false, false, true}));
        QVERIFY(f.row(1)->isRunning());
        QVERIFY(f.day.handleKey({Qt::Key_Left, false, false, true}));
        QVERIFY(!f.day.handleKey({Qt::Key_T, true, true, true}));
        QVERIFY(!f.timer.isToday());
        QVERIFY(!f.day.handleKey({Qt::Key_Return, true, false, true}));
        QVERIFY(f.day.tasks().isEmpty());
    }

    void shouldTakeReturnAndTOnlyWithCommandAndOnlyALowerCaseT()
    {
        Fixture f;
        f.timer.goToPreviousDay();
        QVERIFY(!f.day.handleKey({Qt::Key_Return, false, false, false}));
        QVERIFY(!f.day.handleKey({Qt::Key_T, false, true, false}));
        QVERIFY(!f.day.handleKey({Qt::Key_T, true, false, false}));
        QVERIFY(!f.day.handleKey({Qt::Key_A, true, false, false}));
        QVERIFY(!f.timer.isToday());
        QVERIFY(f.day.tasks().isEmpty());
    }

    void shouldTakeNoKeyWhileARowIsEdited()
    {
        Fixture f;
        f.addTasks(2);
        f.timer.setIsEditing(true);
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left,
                                  Qt::Key_Right, Qt::Key_Return, Qt::Key_T}) {
            QVERIFY(!f.day.handleKey({key, true, true, false}));
            QVERIFY(!f.day.handleKey({key, false, true, false}));
        }
        QCOMPARE(f.day.tasks().tasks().size(), 2);
        QVERIFY(f.timer.isToday());
        QVERIFY(!f.timer.isAnyTaskRunning());
        QVERIFY(!f.day.selectedTaskIndex());
    }

    void shouldAskBeforeItDeletes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<bool>("isRunning");
        QTest::addColumn<QString>("message");

        const QString recorded =
            u"Denne opgave har registreret tid. Er du sikker på, at du vil slette \"%1\"?"_s;
        QTest::newRow("without time") << u"Møde"_s << Q_INT64_C(0) << false << u"Slet \"Møde\"?"_s;
        QTest::newRow("with time") << u"Møde"_s << Q_INT64_C(1) << false << recorded.arg(u"Møde"_s);
        QTest::newRow("running") << u"Møde"_s << Q_INT64_C(0) << true << recorded.arg(u"Møde"_s);
        QTest::newRow("unnamed") << QString() << Q_INT64_C(0) << false
                                 << u"Slet \"Unavngivet opgave\"?"_s;
        QTest::newRow("negative time") << u"a"_s << Q_INT64_C(-5) << false << u"Slet \"a\"?"_s;
        QTest::newRow("a name of blanks") << u" "_s << Q_INT64_C(0) << false << u"Slet \" \"?"_s;
    }
    void shouldAskBeforeItDeletes()
    {
        QFETCH(QString, name);
        QFETCH(qint64, seconds);
        QFETCH(bool, isRunning);
        Fixture f;
        Task *const task = f.store.insertTask(name);
        task->setAccumulatedSeconds(seconds);
        if (isRunning)
            f.day.startFirst();
        f.day.confirmDelete(task);
        QVERIFY(f.day.showDeleteConfirmation());
        QTEST(f.day.deleteMessage(), "message");
        QCOMPARE(f.day.tasks().tasks().size(), 1);
    }

    void shouldFollowTheTaskWithWhatItAsks()
    {
        // given
        Fixture f;
        f.addTasks(1);
        f.row(0)->setName(u"Møde"_s);
        f.day.confirmDelete(f.row(0));
        QSignalSpy changed(&f.day, &ContentViewModel::deleteMessageChanged);

        // when
        f.day.startFirst();

        // then
        QVERIFY(!changed.isEmpty());
        QCOMPARE(
            f.day.deleteMessage(),
            u"Denne opgave har registreret tid. Er du sikker på, at du vil slette \"Møde\"?"_s);

        // when
        changed.clear();
        f.row(0)->setName(u"Frokost"_s);

        // then
        QVERIFY(!changed.isEmpty());
        QVERIFY(f.day.deleteMessage().contains(u"\"Frokost\""_s));

        // when
        f.day.cancelDelete();
        changed.clear();
        f.row(0)->setName(u"Ferie"_s);

        // then
        QVERIFY(changed.isEmpty());
    }

    void shouldAskOneQuestionAtATime()
    {
        // given
        Fixture f;
        f.addTasks(2);
        f.row(0)->setName(u"Første"_s);
        f.row(1)->setName(u"Anden"_s);
        f.day.confirmDelete(f.row(0));

        // when
        f.day.confirmDelete(f.row(1));

        // then
        QCOMPARE(f.day.deleteMessage(), u"Slet \"Første\"?"_s);
        f.day.performDelete();
        QCOMPARE(f.day.tasks().tasks().size(), 1);
        QCOMPARE(f.row(0)->name(), u"Anden"_s);
    }

    void shouldTakeNoKeyWhileItAsks()
    {
        // given
        Fixture f;
        f.addTasks(2);
        f.day.confirmDelete(f.row(0));

        // then
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left})
            QVERIFY(!f.press(key));
        QVERIFY(!f.day.handleKey({Qt::Key_Return, true, false, false}));
        QVERIFY(!f.timer.isAnyTaskRunning());
        QVERIFY(!f.day.selectedTaskIndex());
        QCOMPARE(f.day.tasks().tasks().size(), 2);
        f.day.cancelDelete();
        QVERIFY(f.press(Qt::Key_Down));
    }

    void shouldDeleteNothingWhenTheAnswerIsNo()
    {
        Fixture f;
        f.addTasks(1);
        f.day.confirmDelete(f.row(0));
        f.day.cancelDelete();
        QVERIFY(!f.day.showDeleteConfirmation());
        QCOMPARE(f.day.deleteMessage(), QString());
        f.day.performDelete();
        QCOMPARE(f.day.tasks().tasks().size(), 1);
    }

    void shouldStopARunningTaskWhenItIsDeleted()
    {
        Fixture f;
        f.addTasks(1);
        f.day.startFirst();
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();
        QVERIFY(f.day.tasks().isEmpty());
        QVERIFY(!f.timer.isAnyTaskRunning());
        QVERIFY(!f.timer.isTicking());
        QVERIFY(!f.day.showDeleteConfirmation());
    }

    void shouldNotMindWhenTheTaskIsGoneBeforeTheAnswer()
    {
        Fixture f;
        f.addTasks(1);
        f.day.confirmDelete(f.row(0));
        f.store.context().remove(f.row(0));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        f.day.performDelete();
        QVERIFY(!f.day.showDeleteConfirmation());
    }

    void shouldTakeUpARunningTaskOfTheSelectedDayWhenItAppears()
    {
        Fixture f;
        f.addTasks(1);
        f.day.startFirst();
        TimerManager timer(f.clock, 1h);
        const ContentViewModel another(timer, f.store.context());
        QCOMPARE(timer.activeTaskID().value(), f.row(0)->id());
        QVERIFY(timer.isTicking());
    }

    void shouldNotTakeUpARunningTaskOfAnotherDayWhenItAppears()
    {
        Fixture f;
        f.addTasks(1);
        f.day.startFirst();
        f.clock.advance(86400);
        TimerManager timer(f.clock, 1h);
        const ContentViewModel another(timer, f.store.context());
        QVERIFY(!timer.activeTaskID());
        QVERIFY(f.row(0)->isRunning());
    }
};

QTEST_GUILESS_MAIN(TestContentViewModel)
#include "tst_contentviewmodel.moc"
