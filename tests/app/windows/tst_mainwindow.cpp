#include "app/windows/mainwindow.h"
#include "model/tasklist.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"
#include "views/menubar/menubarviewmodel.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The main window's life.
class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        Fixture() { engine.addImportPath(u"qrc:/qt/qml"_s); }

        bool open()
        {
            main.open();
            main.window()->requestActivate();
            return QTest::qWaitForWindowActive(main.window(), 30'000);
        }
        /// As the desktop's close button does.
        void close()
        {
            const QPointer<QQuickWindow> window = main.window();
            window->close();
            QTRY_VERIFY(!window);
        }
        QQuickItem *item(const char *name) const
        {
            return qmltest::findItem(main.window()->contentItem(), QString::fromLatin1(name));
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        QQmlEngine engine;
        MainWindow main{engine, timer, store.context()};
    };

private Q_SLOTS:
    void shouldOpenWithItsTitleAndSize()
    {
        // given
        Fixture f;
        QSignalSpy changes(&f.main, &MainWindow::isOpenChanged);
        QVERIFY(!f.main.isOpen());

        // when
        QVERIFY(f.open());

        // then
        QVERIFY(f.main.isOpen());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(f.main.window()->title(), u"TULO Time Tracker"_s);
        QCOMPARE(f.main.window()->size(), QSize(650, 450));
        QCOMPARE(f.main.window()->minimumSize(), QSize(550, 350));
    }

    void shouldNotOpenASecondWindow()
    {
        // given
        Fixture f;
        QVERIFY(f.open());
        const QQuickWindow *const first = f.main.window();

        // when
        f.main.open(u"token"_s);

        // then
        QCOMPARE(f.main.window(), first);
    }

    void shouldComeBackFromMinimised()
    {
        // given
        Fixture f;
        QVERIFY(f.open());
        f.main.window()->showMinimized();

        // when
        f.main.open();

        // then
        QCOMPARE(f.main.window()->windowState(), Qt::WindowNoState);
        QVERIFY(f.main.window()->isVisible());
    }

    void shouldStayMaximisedWhenItComesForward()
    {
        // given
        Fixture f;
        QVERIFY(f.open());
        f.main.window()->showMaximized();

        // when
        f.main.open();

        // then
        QCOMPARE(f.main.window()->windowState(), Qt::WindowMaximized);
    }

    void shouldGoOnTimingWhileItIsClosed()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());

        // when
        f.close();

        // then
        QVERIFY(!f.main.isOpen());
        QVERIFY(task->isRunning());
        QVERIFY(f.timer.isTicking());
    }

    void shouldShowTheSameDayAndSwitchAgainWithAllElseNew()
    {
        // given
        Fixture f;
        f.store.insert<Task>(u"A"_s, f.clock.now() - 86400, std::nullopt);
        QVERIFY(f.open());
        f.timer.goToPreviousDay();
        f.timer.setShowBillableTime(false);
        QTest::keyClick(f.main.window(), Qt::Key_Down);
        QCOMPARE(f.item("taskList")->property("selectedTaskIndex").toInt(), 0);
        const Instant selected = f.timer.selectedDate();

        // when
        f.close();
        QVERIFY(f.open());

        // then
        QCOMPARE(f.timer.selectedDate(), selected);
        QVERIFY(!f.timer.showBillableTime());
        QCOMPARE(f.item("taskList")->property("count").toInt(), 1);
        QCOMPARE(f.item("taskList")->property("selectedTaskIndex").toInt(), -1);
    }

    void shouldTakeUpATaskThatRunsOnTheSelectedDayWhenItOpensAgain()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        f.close();
        task->start();

        // when
        QVERIFY(f.open());

        // then
        QCOMPARE(f.timer.activeTaskID(), task->id());
        QVERIFY(f.timer.isTicking());
    }

    void shouldShowATaskThatWasStartedFromThePanelWhileItWasClosed()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        f.close();
        MenuBarViewModel panel(f.timer, f.store.context());
        panel.toggleTask(task);
        f.clock.advance(65);

        // when
        QVERIFY(f.open());

        // then
        QVERIFY(task->isRunning());
        QCOMPARE(f.timer.activeTaskID(), task->id());
        QVERIFY(f.timer.isTicking());
        QCOMPARE(f.item("timeText")->property("label").toString(), u"00:01:05"_s);

        // when the key comes that stops it in the window
        QTest::keyClick(f.main.window(), Qt::Key_Space);

        // then
        QVERIFY(!task->isRunning());
        QCOMPARE(task->accumulatedSeconds(), 65);
        QVERIFY(!f.timer.isTicking());
    }

    void shouldGiveUpAnActiveTaskOfAnotherDayWhenItOpensAgain()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());
        f.timer.goToPreviousDay();

        // when
        f.close();
        QVERIFY(f.open());

        // then
        QVERIFY(task->isRunning());
        QVERIFY(!f.timer.isAnyTaskRunning());
        QVERIFY(!f.timer.isTicking());
    }

    void shouldNotTakeHidingAndShowingForANewAppearance()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());
        f.timer.goToPreviousDay();
        const QQuickWindow *const window = f.main.window();

        // when
        f.main.window()->hide();
        f.main.open();

        // then
        QCOMPARE(f.main.window(), window);
        QCOMPARE(f.timer.activeTaskID(), task->id());
    }

    void shouldLeaveNoEditingBehindThatKeysWaitFor()
    {
        // given
        Fixture f;
        f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        QTest::mouseClick(f.main.window(), Qt::LeftButton, {}, qmltest::centre(f.item("pencil")));
        QTRY_VERIFY(f.timer.isEditing());

        // when
        f.close();
        QVERIFY(f.open());
        QTest::keyClick(f.main.window(), Qt::Key_Down);

        // then
        QCOMPARE(f.item("taskList")->property("selectedTaskIndex").toInt(), 0);
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
