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
        // given
        Fixture f;
        QVERIFY(f.day.tasks().isEmpty());

        // when
        QVERIFY(f.press(Qt::Key_Space));
        QVERIFY(f.press(Qt::Key_Up));
        QVERIFY(f.press(Qt::Key_Down));

        // then
        QVERIFY(!f.day.selectedTaskIndex());
        QVERIFY(!f.timer.isAnyTaskRunning());

        // when
        f.day.startFirst();

        // then
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldAddATaskByCommandReturnToAnEmptyDay()
    {
        // given
        Fixture f;
        QSignalSpy added(&f.day, &ContentViewModel::taskAdded);

        // when
        QVERIFY(f.day.handleKey({Qt::Key_Return, true, false, false}));

        // then
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
        // given
        Fixture f;
        f.timer.goToNextDay();

        // when
        f.day.addTaskFromTemplate(u" Møde "_s);

        // then
        QCOMPARE(f.row(0)->name(), u" Møde "_s);
        QCOMPARE(f.row(0)->date(), f.clock.at(u"2026-11-21T00:00:00"_s));
    }

    void shouldCountTheDaysTasksForTheSortOrder()
    {
        // given
        Fixture f;

        // when
        f.addTasks(3);

        // then
        QCOMPARE(f.row(0)->sortOrder(), 0);
        QCOMPARE(f.row(1)->sortOrder(), 1);
        QCOMPARE(f.row(2)->sortOrder(), 2);

        // when
        Task *const last = f.row(2);
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();
        QSignalSpy added(&f.day, &ContentViewModel::taskAdded);
        f.day.addTask();

        // then two are equal, and keep the order of the store
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

        // given
        Fixture f;
        f.addTasks(1);
        Task *const before = f.row(0);
        f.day.selectTask(0);
        QSignalSpy dayChanged(&f.day, &ContentViewModel::dayChanged);

        // when
        f.clock.travelTo(zone);
        f.day.addTask();

        // then
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

        // when
        f.clock.travelTo("Europe/Copenhagen");
        f.timer.goToToday();

        // then
        QVERIFY(f.day.tasks().isEmpty());

        // when
        f.clock.travelTo("Asia/Tokyo");

        // then it is of today again back there
        QCOMPARE(f.day.tasks().tasks().size(), 1);
    }

    void shouldTakeUpTheRunningTaskThatIsFirstInTheStore()
    {
        // given
        Fixture f;
        Task *const first = f.store.insertTask(u"b"_s, 2);
        Task *const second = f.store.insertTask(u"a"_s, 1);
        first->start();
        second->start();

        // when
        ContentViewModel day(f.timer, f.store.context());

        // then
        QCOMPARE(day.tasks().sortedTasks().constFirst(), second);
        QCOMPARE(f.timer.activeTaskID().value(), first->id());
    }

    void shouldTakeUpTheRunningTaskOnceItsDayCanBeRead()
    {
        // given
        UnreadableStore f;
        const QUuid running = f.insertRunningTask();
        f.open();
        QVERIFY(!f.day->tasks().isKnown());
        QVERIFY(!f.timer.isAnyTaskRunning());

        // when
        f.heal();

        // then
        QTRY_COMPARE(f.timer.activeTaskID(), running);
        QVERIFY(f.timer.isTicking());

        // when
        f.timer.stopAllTasks(AllTasks(*f.context), *f.context);
        f.day->tasks().tasks().constFirst()->start();

        // then it has been taken up only that once
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldNotTakeUpARunningTaskOfAnotherDayThatIsReadFirst()
    {
        // given
        UnreadableStore f;
        const QUuid running = f.insertRunningTask();
        f.clock.advance(86400);
        f.timer.goToToday();
        f.open();

        // when
        f.heal();
        f.timer.goToPreviousDay();

        // then
        QTRY_COMPARE(f.day->tasks().tasks().size(), 1);
        QVERIFY(f.day->tasks().withID(running));
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldLeaveTheTaskActiveThatWasStartedBeforeTheDayCouldBeRead()
    {
        // given
        UnreadableStore f;
        f.insertRunningTask();
        f.open();
        f.day->addTask();
        f.day->startFirst();
        const std::optional<QUuid> started = f.timer.activeTaskID();
        QVERIFY(started);

        // when
        f.heal();

        // then
        QTRY_COMPARE(f.day->tasks().tasks().size(), 2);
        QCOMPARE(f.timer.activeTaskID(), started);
    }

    void shouldNotSelectARowThatIsOnItsWayOut()
    {
        // given
        Fixture f;
        f.addTasks(1);

        // when
        f.day.selectTask(-1);

        // then
        QVERIFY(!f.day.selectedTaskIndex());

        // when
        f.press(Qt::Key_Space);

        // then Space acts as if nothing were selected
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QVERIFY(f.row(0)->isRunning());
    }

    void shouldShowTasksBySortOrder()
    {
        // given
        Fixture f;
        Task *const c = f.store.insertTask(u"c"_s, 2);
        Task *const a = f.store.insertTask(u"a"_s, 0);
        Task *const b = f.store.insertTask(u"b"_s, 1);

        // then
        QCOMPARE(f.day.tasks().sortedTasks(), (QList<Task *>{a, b, c}));
        QCOMPARE(f.day.tasks().tasks(), (QList<Task *>{c, a, b}));
    }

    void shouldLeaveTheSelectionWhereItIsWhenATaskIsDeleted()
    {
        // given
        Fixture f;
        f.addTasks(3);
        f.day.selectTask(2);

        // when
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 2);

        // when
        f.press(Qt::Key_Down);

        // then Down goes to the last row
        QCOMPARE(f.day.selectedTaskIndex().value(), 1);

        // when
        f.day.selectTask(2);
        f.press(Qt::Key_Up);

        // then Up goes to row 1
        QCOMPARE(f.day.selectedTaskIndex().value(), 1);
    }

    void shouldWantTheKeyboardWhenARowIsSelectedUnlessOneIsEdited()
    {
        // given
        Fixture f;
        f.addTasks(2);
        const QSignalSpy wanted(&f.day, &ContentViewModel::keyboardWanted);

        // when
        f.day.selectTask(1);

        // then
        QCOMPARE(wanted.count(), 1);

        // when the row is selected already
        f.day.selectTask(1);

        // then
        QCOMPARE(wanted.count(), 2);

        // when a row is edited
        f.timer.setIsEditing(true);
        f.day.selectTask(0);

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QCOMPARE(wanted.count(), 2);

        // when a row is selected by key, so that the keyboard is there already
        f.timer.setIsEditing(false);
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(wanted.count(), 2);
    }

    void shouldActAsIfNothingWereSelectedWhenTheSelectionIsPastTheEnd()
    {
        // given
        Fixture f;
        f.addTasks(3);
        f.day.selectTask(2);
        f.day.confirmDelete(f.row(0));
        f.day.performDelete();

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
        QVERIFY(f.row(0)->isRunning());

        // when
        f.day.selectTask(2);
        f.press(Qt::Key_Space);

        // then
        QVERIFY(!f.row(0)->isRunning());
        QVERIFY(!f.timer.isAnyTaskRunning());
    }

    void shouldSelectTheLastRowGoingUpAndTheFirstGoingDown()
    {
        // given
        Fixture f;
        f.addTasks(3);

        // when
        f.press(Qt::Key_Up);

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 2);

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 2);

        // when
        f.timer.goToNextDay();
        f.timer.goToPreviousDay();

        // then
        QVERIFY(!f.day.selectedTaskIndex());

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);

        // when
        f.press(Qt::Key_Up);

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
    }

    void shouldToggleTheSelectedRowWithSpace()
    {
        // given
        Fixture f;
        f.addTasks(2);
        f.day.selectTask(1);

        // when
        f.press(Qt::Key_Space);

        // then
        QVERIFY(f.row(1)->isRunning());

        // when
        f.press(Qt::Key_Up);
        f.press(Qt::Key_Space);

        // then
        QVERIFY(f.row(0)->isRunning());
        QVERIFY(!f.row(1)->isRunning());

        // when
        f.press(Qt::Key_Space);

        // then
        QVERIFY(!f.row(0)->isRunning());
    }

    void shouldStartTheFirstRowWithSpaceWhenNothingRunsAndSelectIt()
    {
        // given
        Fixture f;
        f.addTasks(2);

        // when
        f.press(Qt::Key_Space);

        // then
        QVERIFY(f.row(0)->isRunning());
        QCOMPARE(f.day.selectedTaskIndex().value(), 0);
    }

    void shouldStopATaskOfAnotherDayWithSpaceAndStartNothing()
    {
        // given
        Fixture f;
        f.addTasks(1);
        Task *const today = f.row(0);
        f.day.startFirst();
        f.timer.goToNextDay();
        f.addTasks(1);

        // when
        f.press(Qt::Key_Space);

        // then
        QVERIFY(!today->isRunning());
        QVERIFY(!f.row(0)->isRunning());
        QVERIFY(!f.day.selectedTaskIndex());
    }

    void shouldStopARunningTaskOfAnotherDayWhenARowIsStartedByKey()
    {
        // given
        Fixture f;
        f.addTasks(1);
        Task *const today = f.row(0);
        f.day.startFirst();
        f.timer.goToNextDay();
        f.addTasks(1);
        f.day.selectTask(0);

        // when
        f.press(Qt::Key_Space);

        // then, as the keys hand every task of every day to the timer manager
        QVERIFY(!today->isRunning());
        QVERIFY(f.row(0)->isRunning());
    }

    void shouldStartTheTaskWithTheSmallestSortOrderFirst()
    {
        // given
        Fixture f;
        f.store.insertTask(u"b"_s, 5);
        Task *const first = f.store.insertTask(u"a"_s, -1);

        // when
        f.day.startFirst();

        // then
        QVERIFY(first->isRunning());
        QVERIFY(!f.day.selectedTaskIndex());
    }

    void shouldClearTheSelectionWithAnyChangeOfDay()
    {
        // given
        Fixture f;
        f.addTasks(2);
        const auto select = [&] { f.day.selectTask(1); };

        // when
        select();
        f.press(Qt::Key_Left);

        // then
        QVERIFY(!f.day.selectedTaskIndex());
        QCOMPARE(f.timer.selectedDate(), f.clock.at(u"2026-11-19T00:00:00"_s));

        // when
        select();
        f.press(Qt::Key_Right);

        // then
        QVERIFY(!f.day.selectedTaskIndex());

        // when
        select();
        f.timer.navigateToDate(f.clock.at(u"2026-12-24T00:00:00"_s));

        // then
        QVERIFY(!f.day.selectedTaskIndex());

        // when
        select();
        QVERIFY(f.day.handleKey({Qt::Key_T, true, true, false}));

        // then
        QVERIFY(!f.day.selectedTaskIndex());
        QCOMPARE(f.timer.selectedDate(), f.clock.at(u"2026-11-20T00:00:00"_s));

        // when today is shown already
        select();
        f.day.handleKey({Qt::Key_T, true, true, false});

        // then
        QVERIFY(!f.day.selectedTaskIndex());
        QVERIFY(!f.day.isAnimated());
    }

    void shouldRepeatSpaceAndArrowsButNotTheOthers()
    {
        // given
        Fixture f;
        f.addTasks(3);

        // when
        QVERIFY(f.day.handleKey({Qt::Key_Down, false, false, true}));
        QVERIFY(f.day.handleKey({Qt::Key_Down, false, false, true}));

        // then
        QCOMPARE(f.day.selectedTaskIndex().value(), 1);

        // when
        QVERIFY(f.day.handleKey({Qt::Key_Space, false, false, true}));

        // then
        QVERIFY(f.row(1)->isRunning());

        // when
        QVERIFY(f.day.handleKey({Qt::Key_Left, false, false, true}));
        QVERIFY(!f.day.handleKey({Qt::Key_T, true, true, true}));

        // then
        QVERIFY(!f.timer.isToday());

        // when
        QVERIFY(!f.day.handleKey({Qt::Key_Return, true, false, true}));

        // then
        QVERIFY(f.day.tasks().isEmpty());
    }

    void shouldTakeReturnAndTOnlyWithCommandAndOnlyALowerCaseT()
    {
        // given
        Fixture f;
        f.timer.goToPreviousDay();

        // then
        QVERIFY(!f.day.handleKey({Qt::Key_Return, false, false, false}));
        QVERIFY(!f.day.handleKey({Qt::Key_T, false, true, false}));
        QVERIFY(!f.day.handleKey({Qt::Key_T, true, false, false}));
        QVERIFY(!f.day.handleKey({Qt::Key_A, true, false, false}));
        QVERIFY(!f.timer.isToday());
        QVERIFY(f.day.tasks().isEmpty());
    }

    void shouldTakeNoKeyWhileARowIsEdited()
    {
        // given
        Fixture f;
        f.addTasks(2);
        f.timer.setIsEditing(true);

        // then
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

        // given
        Fixture f;
        Task *const task = f.store.insertTask(name);
        task->setAccumulatedSeconds(seconds);
        if (isRunning)
            f.day.startFirst();

        // when
        f.day.confirmDelete(task);

        // then
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

        // when
        f.day.performDelete();

        // then
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

        // when
        f.day.cancelDelete();

        // then
        QVERIFY(f.press(Qt::Key_Down));
    }

    void shouldDeleteNothingWhenTheAnswerIsNo()
    {
        // given
        Fixture f;
        f.addTasks(1);
        f.day.confirmDelete(f.row(0));

        // when
        f.day.cancelDelete();

        // then
        QVERIFY(!f.day.showDeleteConfirmation());
        QCOMPARE(f.day.deleteMessage(), QString());

        // when
        f.day.performDelete();

        // then
        QCOMPARE(f.day.tasks().tasks().size(), 1);
    }

    void shouldStopARunningTaskWhenItIsDeleted()
    {
        // given
        Fixture f;
        f.addTasks(1);
        f.day.startFirst();
        f.day.confirmDelete(f.row(0));

        // when
        f.day.performDelete();

        // then
        QVERIFY(f.day.tasks().isEmpty());
        QVERIFY(!f.timer.isAnyTaskRunning());
        QVERIFY(!f.timer.isTicking());
        QVERIFY(!f.day.showDeleteConfirmation());
    }

    void shouldNotMindWhenTheTaskIsGoneBeforeTheAnswer()
    {
        // given
        Fixture f;
        f.addTasks(1);
        f.day.confirmDelete(f.row(0));
        f.store.context().remove(f.row(0));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        // when
        f.day.performDelete();

        // then
        QVERIFY(!f.day.showDeleteConfirmation());
    }

    void shouldTakeUpARunningTaskOfTheSelectedDayWhenItAppears()
    {
        // given
        Fixture f;
        f.addTasks(1);
        f.day.startFirst();
        TimerManager timer(f.clock, 1h);

        // when
        const ContentViewModel another(timer, f.store.context());

        // then
        QCOMPARE(timer.activeTaskID().value(), f.row(0)->id());
        QVERIFY(timer.isTicking());
    }

    void shouldNotTakeUpARunningTaskOfAnotherDayWhenItAppears()
    {
        // given
        Fixture f;
        f.addTasks(1);
        f.day.startFirst();
        f.clock.advance(86400);
        TimerManager timer(f.clock, 1h);

        // when
        const ContentViewModel another(timer, f.store.context());

        // then
        QVERIFY(!timer.activeTaskID());
        QVERIFY(f.row(0)->isRunning());
    }
};

QTEST_GUILESS_MAIN(TestContentViewModel)
#include "tst_contentviewmodel.moc"
