#include "app/menubar/menubarpanel.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The panel's window: where it appears, and when it goes.
class TestMenuBarPanel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds sameClick = 300ms)
            : panel(engine, timer, store.context(), sameClick)
        {
            engine.addImportPath(u"qrc:/qt/qml"_s);
            // Away from the edges, so that what is reported counts.
            QCursor::setPos(QGuiApplication::primaryScreen()->geometry().center());
            other.show();
        }

        bool open()
        {
            panel.toggle(corner());
            return panel.window() && QTest::qWaitForWindowActive(panel.window(), 30'000);
        }
        bool activateOther()
        {
            other.requestActivate();
            return QTest::qWaitForWindowActive(&other, 30'000);
        }
        static QPoint corner()
        {
            return QGuiApplication::primaryScreen()->geometry().topRight() + QPoint(-20, 10);
        }
        QQuickItem *item(const char *name) const
        {
            return qmltest::findItem(panel.window()->contentItem(), QString::fromLatin1(name));
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        QQmlEngine engine;
        QQuickWindow other;
        MenuBarPanel panel;
    };

private Q_SLOTS:
    void shouldOpenWholeUnderTheItem()
    {
        // given
        Fixture f;
        for (int i = 0; i < 3; ++i)
            f.store.insertTask(u"Opgave %1"_s.arg(i), i);
        QVERIFY(!f.panel.isOpen());

        // when
        QVERIFY(f.open());

        // then
        QVERIFY(f.panel.isOpen());
        const QQuickWindow *const window = f.panel.window();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(window->geometry().right(), screen.right());
        QCOMPARE(window->y(), Fixture::corner().y() + 1);
        QCOMPARE(window->width(), 240);
        const QQuickItem *const last = f.item("quitButton");
        QCOMPARE(window->height(), last->mapToScene({0, last->height()}).y());
        QVERIFY(window->title() != u"TULO Time Tracker"_s);
        QVERIFY(window->flags().testFlag(Qt::FramelessWindowHint));
    }

    void shouldCloseWithASecondClickAndOpenWithAThird()
    {
        // given
        Fixture f;
        QVERIFY(f.open());

        // when
        f.panel.toggle(Fixture::corner());

        // then
        QVERIFY(!f.panel.isOpen());

        // when
        QVERIFY(f.open());

        // then
        QVERIFY(f.panel.isOpen());
    }

    void shouldCloseWithEscape()
    {
        // given
        Fixture f;
        QVERIFY(f.open());

        // when
        QTest::keyClick(f.panel.window(), Qt::Key_Escape);

        // then
        QVERIFY(!f.panel.isOpen());

        // when the item is clicked, which Escape was not
        QVERIFY(f.open());

        // then
        QVERIFY(f.panel.isOpen());
    }

    void shouldCloseWhenAnotherWindowGetsTheKeyboard()
    {
        // given
        Fixture f;
        QVERIFY(f.open());

        // when
        QVERIFY(f.activateOther());

        // then
        QTRY_VERIFY(!f.panel.isOpen());
    }

    void shouldStayOpenUntilItHasHadTheKeyboard()
    {
        // given
        Fixture f;
        QVERIFY(f.activateOther());

        // when
        f.panel.toggle(Fixture::corner());

        // then
        QVERIFY(f.panel.isOpen());
    }

    void shouldStayClosedAfterTheClickThatTookItsKeyboardAway()
    {
        // given
        Fixture f(1h);
        QVERIFY(f.open());
        QVERIFY(f.activateOther());
        QTRY_VERIFY(!f.panel.isOpen());

        // when
        f.panel.toggle(Fixture::corner());

        // then
        QVERIFY(!f.panel.isOpen());

        // when
        f.panel.toggle(Fixture::corner());

        // then
        QVERIFY(f.panel.isOpen());
    }

    void shouldOpenWithAClickThatComesLater()
    {
        // given
        Fixture f(0ms);
        QVERIFY(f.open());
        QVERIFY(f.activateOther());
        QTRY_VERIFY(!f.panel.isOpen());

        // then a click opens it, once it is too late to be the one that closed it
        QTRY_VERIFY(f.panel.isOpen() || (f.panel.toggle(Fixture::corner()), f.panel.isOpen()));
    }

    void shouldStayOpenWhileTasksAreStartedAndStopped()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        const QQuickItem *const row = f.item("rowBackground")->parentItem();

        // when
        QTest::mouseClick(f.panel.window(), Qt::LeftButton, {}, qmltest::centre(row));

        // then
        QVERIFY(task->isRunning());
        QVERIFY(f.panel.isOpen());

        // when
        QTest::mouseClick(f.panel.window(), Qt::LeftButton, {}, qmltest::centre(row));

        // then
        QVERIFY(!task->isRunning());
        QVERIFY(f.panel.isOpen());
    }

    void shouldGrowWithItsTasks()
    {
        // given
        Fixture f;
        QVERIFY(f.open());
        const int height = f.panel.window()->height();

        // when
        for (int i = 0; i < 4; ++i)
            f.store.insertTask(u"Opgave %1"_s.arg(i), i);

        // then
        QTRY_VERIFY(f.panel.window()->height() > height);
        QCOMPARE(f.panel.window()->y(), Fixture::corner().y() + 1);
    }

    void shouldStandOnAnItemInTheLowerHalfAlsoWhenItGrows()
    {
        // given
        Fixture f;
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRect anchor(screen.center().x(), screen.bottom() - 100, 120, 28);

        // when
        f.panel.toggleAt(anchor);

        // then
        QCOMPARE(f.panel.window()->geometry().bottom(), anchor.top() - 1);

        // when
        const int height = f.panel.window()->height();
        f.store.insertTask(u"A"_s);
        f.store.insertTask(u"B"_s, 1);

        // then
        QTRY_VERIFY(f.panel.window()->height() > height);
        QCOMPARE(f.panel.window()->geometry().bottom(), anchor.top() - 1);
    }

    void shouldPassOnWhatItsButtonsAskFor()
    {
        // given
        Fixture f;
        QSignalSpy open(&f.panel, &MenuBarPanel::openMainWindow);
        QSignalSpy quit(&f.panel, &MenuBarPanel::quit);
        QVERIFY(f.open());

        // when
        QTest::mouseClick(f.panel.window(), Qt::LeftButton, {},
                          qmltest::centre(f.item("openButton")));

        // then
        QCOMPARE(open.size(), 1);

        // when
        QTest::mouseClick(f.panel.window(), Qt::LeftButton, {},
                          qmltest::centre(f.item("quitButton")));

        // then
        QCOMPARE(quit.size(), 1);
    }
};

QTEST_MAIN(TestMenuBarPanel)
#include "tst_menubarpanel.moc"
