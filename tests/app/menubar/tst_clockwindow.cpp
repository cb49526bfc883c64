#include "app/menubar/clockwindow.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The clock window beside another window of the program. The platform of these tests gives the
/// keyboard to each new window, and takes it back when a window asks for it.
class TestClockWindow : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::optional<std::chrono::milliseconds> quiet)
            : clockWindow(engineWithTypes(), timer, store.context(), quiet)
        {
            QObject::connect(&clockWindow, &ClockWindow::activated, &clockWindow,
                             &ClockWindow::togglePanel);
        }

        QQmlEngine &engineWithTypes()
        {
            engine.addImportPath(u"qrc:/qt/qml"_s);
            return engine;
        }
        bool hasMainKeyboard() { return QGuiApplication::focusWindow() == &main; }
        bool isMainActive() { return QTest::qWaitForWindowActive(&main, 30'000); }
        QQuickWindow &window() { return *clockWindow.window(); }
        bool hasClockKeyboard() { return QGuiApplication::focusWindow() == &window(); }
        bool isClockActive()
        {
            clockWindow.show();
            window().requestActivate();
            return QTest::qWaitForWindowActive(&window(), 30'000);
        }
        QQuickItem *item(const char *name)
        {
            return qmltest::findItem(window().contentItem(), QString::fromLatin1(name));
        }
        void click(const char *name)
        {
            QTest::mouseClick(&window(), Qt::LeftButton, {}, qmltest::centre(item(name)));
        }
        int panelHeight()
        {
            const QQuickItem *const last = item("quitButton");
            return qRound(last->mapToScene({0, last->height()}).y() -
                          item("panelHeader")->mapToScene({0, 0}).y());
        }
        void typeIntoClock(const QStringList &texts)
        {
            for (const QString &text : texts) {
                for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                    QKeyEvent key(type, Qt::Key_1, {}, text);
                    QCoreApplication::sendEvent(&window(), &key);
                }
            }
        }
        QString typed() { return main.item(u"keys"_s)->property("typed").toString(); }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        QQmlEngine engine;
        qmltest::Window main{R"(
            import QtQuick
            Item {
                objectName: "keys"
                property string typed
                focus: true
                Keys.onPressed: event => typed += event.text
            })"};
        ClockWindow clockWindow;
    };

    QTemporaryDir m_state;

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_STATE_HOME", m_state.path().toLocal8Bit()); }

    void shouldBeHiddenAtFirst()
    {
        // given
        Fixture f(std::nullopt);

        // then
        QVERIFY(!f.window().isVisible());
    }

    void shouldShowAtOnceWhereItAppearsWithoutTheKeyboard()
    {
        // given
        Fixture f(std::nullopt);

        // when
        f.clockWindow.showBeside();

        // then
        QVERIFY(f.window().isVisible());
    }

    void shouldShowAtOnceAsTheOnlyWayToTheProgram()
    {
        // given
        Fixture f(1h);
        f.clockWindow.showBeside();
        QVERIFY(!f.window().isVisible());

        // when
        f.clockWindow.show();

        // then
        QVERIFY(f.window().isVisible());
        QVERIFY(QTest::qWaitForWindowActive(&f.window(), 30'000));
    }

    void shouldHandTheKeyboardBack()
    {
        // given
        Fixture f(1ms);
        QVERIFY(f.isMainActive());
        QSignalSpy taken(&f.window(), &QWindow::activeChanged);

        // when
        f.clockWindow.showBeside();

        // then
        QTRY_VERIFY(!taken.isEmpty());
        QTRY_VERIFY(f.hasMainKeyboard());
        QVERIFY(f.window().isVisible());

        // when it is the user who gives it the keyboard
        f.window().requestActivate();

        // then
        QVERIFY(QTest::qWaitForWindowActive(&f.window(), 30'000));
        QTest::keyClick(&f.window(), Qt::Key_A);
        QVERIFY(f.hasClockKeyboard());
        QCOMPARE(f.typed(), u""_s);
    }

    void shouldPassOnWhatIsTypedBeforeTheKeyboardIsBack()
    {
        // given
        Fixture f(1ms);
        QVERIFY(f.isMainActive());
        connect(
            &f.window(), &QWindow::activeChanged, &f.window(),
            [&f] {
                f.typeIntoClock({u"1"_s, u"2"_s});
            },
            Qt::SingleShotConnection);

        // when
        f.clockWindow.showBeside();

        // then
        QTRY_COMPARE(f.typed(), u"12"_s);
        QVERIFY(f.isMainActive());
        QVERIFY(f.window().isVisible());
    }

    void shouldHideInAPauseOfTheTypingWhereTheKeyboardIsNotHandedBack()
    {
        // given
        Fixture f(1ms);
        QVERIFY(f.isMainActive());
        QSignalSpy shown(&f.window(), &QWindow::visibleChanged);
        connect(
            &f.window(), &QWindow::visibleChanged, &f.window(),
            [&f] { f.main.setFlag(Qt::WindowDoesNotAcceptFocus); }, Qt::SingleShotConnection);
        f.clockWindow.showBeside();
        QVERIFY(QTest::qWaitForWindowActive(&f.window(), 30'000));
        QCOMPARE(f.guard.expected().size(), 1);

        // when
        f.typeIntoClock({u"1"_s, u"2"_s});

        // then it takes what follows at once, too
        QVERIFY(f.window().isVisible());
        f.typeIntoClock({u"3"_s});
        QTRY_VERIFY(!f.window().isVisible());
        QCOMPARE(f.typed(), u""_s);

        // when the keyboard falls to the one that had it before
        f.main.setFlag(Qt::WindowDoesNotAcceptFocus, false);
        f.main.requestActivate();

        // then it gets all of it, and the clock comes again in the next quiet moment
        QTRY_COMPARE(f.typed(), u"123"_s);
        QTRY_COMPARE(shown.size(), 3);
        QVERIFY(f.window().isVisible());
    }

    void shouldLeaveTheKeyboardWhereTheUserPutsIt_data()
    {
        QTest::addColumn<bool>("isPressed");
        QTest::newRow("by a press on the clock") << true;
        QTest::newRow("by going to another window") << false;
    }

    void shouldLeaveTheKeyboardWhereTheUserPutsIt()
    {
        // given a desktop that does not give the keyboard back for the asking
        QFETCH(bool, isPressed);
        Fixture f(1ms);
        QVERIFY(f.isMainActive());
        connect(
            &f.window(), &QWindow::visibleChanged, &f.window(),
            [&f] { f.main.setFlag(Qt::WindowDoesNotAcceptFocus); }, Qt::SingleShotConnection);
        f.clockWindow.showBeside();
        QVERIFY(QTest::qWaitForWindowExposed(&f.window(), 30'000));
        QVERIFY(QTest::qWaitForWindowActive(&f.window(), 30'000));
        QCOMPARE(f.guard.expected().size(), 1);

        // when
        QQuickWindow other;
        if (isPressed) {
            QTest::mousePress(&f.window(), Qt::LeftButton, {}, {60, 14});
        } else {
            other.show();
            QVERIFY(QTest::qWaitForWindowActive(&other, 30'000));
            f.window().requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(&f.window(), 30'000));
        }
        QTest::keyClick(&f.window(), Qt::Key_A);

        // then
        QVERIFY(f.hasClockKeyboard());
        QVERIFY(f.window().isVisible());
        QCOMPARE(f.typed(), u""_s);
    }

    void shouldOpenThePanelInsideTheWindow()
    {
        // given
        Fixture f(std::nullopt);
        f.store.insertTask(u"A"_s);
        const QSize size = f.window().size();
        QVERIFY(f.isClockActive());

        // when
        f.click("clockButton");

        // then
        QCOMPARE(f.window().title(), u"I dag"_s);
        QVERIFY(f.item("panelTasks")->isVisible());
        QTRY_COMPARE(f.window().height(), size.height() + f.panelHeight());
        QCOMPARE(f.window().width(), 240);

        // when
        f.click("clockButton");

        // then
        QCOMPARE(f.window().title(), u"Ur"_s);
        QTRY_COMPARE(f.window().size(), size);
        QVERIFY(!f.item("panelTasks"));
    }

    void shouldUseThePanelByKeys()
    {
        // given
        Fixture f(std::nullopt);
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.isClockActive());
        QTest::keyClick(&f.window(), Qt::Key_Return);
        QVERIFY(f.item("panelTasks"));

        // when
        QTest::keyClick(&f.window(), Qt::Key_Down);
        QTest::keyClick(&f.window(), Qt::Key_Return);

        // then
        QVERIFY(task->isRunning());

        // when
        QTest::keyClick(&f.window(), Qt::Key_Up);

        // then
        QVERIFY(f.item("quitButton")->hasActiveFocus());

        // when
        QTest::keyClick(&f.window(), Qt::Key_Escape);

        // then
        QTRY_VERIFY(!f.item("panelTasks"));

        // when
        QTest::keyClick(&f.window(), Qt::Key_Space);

        // then
        QVERIFY(f.item("panelTasks"));
    }

    void shouldCloseThePanelWhenTheKeyboardGoesElsewhere()
    {
        // given
        Fixture f(std::nullopt);
        QVERIFY(f.isClockActive());
        f.click("clockButton");
        QVERIFY(f.item("panelTasks"));

        // when
        f.main.requestActivate();

        // then
        QVERIFY(f.isMainActive());
        QTRY_VERIFY(!f.item("panelTasks"));
    }

    void shouldPassOnWhatIsAskedForInThePanel()
    {
        // given
        Fixture f(std::nullopt);
        QVERIFY(f.isClockActive());
        f.click("clockButton");
        QSignalSpy asked(&f.clockWindow, &ClockWindow::openMainWindow);
        QSignalSpy quit(&f.clockWindow, &ClockWindow::quit);

        // when
        f.click("quitButton");

        // then
        QCOMPARE(quit.size(), 1);

        // when
        f.click("openButton");

        // then
        QCOMPARE(asked.size(), 1);
        QTRY_VERIFY(!f.item("panelTasks"));
    }

    void shouldStandWhereItStoodTheLastTime()
    {
        // given
        const QPoint corner(123, 45);
        {
            Fixture f(std::nullopt);
            f.clockWindow.showBeside();
            QVERIFY(f.window().position() != corner);

            // when
            f.window().setPosition(corner);
            QTRY_COMPARE(ClockPlace().read(), corner);
            QSignalSpy moved(&f.window(), &QWindow::xChanged);
            f.window().setPosition(corner + QPoint(1, 0));
            QTRY_COMPARE(moved.size(), 1);
        }

        // then
        Fixture f(std::nullopt);
        QCOMPARE(f.window().position(), corner + QPoint(1, 0));
    }
};

QTEST_MAIN(TestClockWindow)
#include "tst_clockwindow.moc"
