#include "app/menubar/menubarextra.h"
#include "tests/support/bus.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"

#include <QCursor>
#include <QDBusArgument>
#include <QGuiApplication>
#include <QPointer>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The extra as a whole: which backend when, and what its items do.
class TestMenuBarExtra : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds settling = 1h,
                         std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
            , settlingTime(settling)
        {
            engine.addImportPath(u"qrc:/qt/qml"_s);
            QCursor::setPos(QGuiApplication::primaryScreen()->geometry().center());
        }

        void start()
        {
            extra = std::make_unique<MenuBarExtra>(bus, engine, timer, store.context(),
                                                   settlingTime, readingTime);
        }
        QDBusMessage callItem(const QString &method, const QVariantList &arguments)
        {
            return host.call(bus.baseService(), StatusNotifierItem::path(),
                             u"org.kde.StatusNotifierItem"_s, method, arguments);
        }
        QDBusMessage callMenu(const QString &method, const QVariantList &arguments)
        {
            return host.call(bus.baseService(), StatusNotifierItem::menuPath(),
                             u"com.canonical.dbusmenu"_s, method, arguments);
        }
        void chooseInMenu(const QString &label)
        {
            const QDBusMessage reply =
                callMenu(u"GetGroupProperties"_s,
                         {QVariant::fromValue(QList<int>()), QStringList{u"label"_s}});
            const auto lines = qdbus_cast<QList<DBusMenuProperties>>(
                reply.arguments().at(0).value<QDBusArgument>());
            for (const DBusMenuProperties &line : lines) {
                if (line.properties.value(u"label"_s).toString().startsWith(label))
                    callMenu(u"Event"_s, {line.id, u"clicked"_s,
                                          QVariant::fromValue(QDBusVariant(QString())), 0u});
            }
        }
        QString itemProperty(const QString &name)
        {
            return host
                .property(bus.baseService(), StatusNotifierItem::path(),
                          u"org.kde.StatusNotifierItem"_s, name)
                .toString();
        }
        QString label() { return itemProperty(u"XAyatanaLabel"_s); }
        QString toolTip()
        {
            return qdbus_cast<StatusNotifierToolTip>(
                       host.property(bus.baseService(), StatusNotifierItem::path(),
                                     u"org.kde.StatusNotifierItem"_s, u"ToolTip"_s)
                           .value<QDBusArgument>())
                .title;
        }
        QString iconName() { return itemProperty(u"IconName"_s); }
        static QWindow *clockWindow()
        {
            const QWindowList windows = QGuiApplication::topLevelWindows();
            for (QWindow *window : windows) {
                if (window->title() == u"Ur"_s)
                    return window;
            }
            return nullptr;
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        std::chrono::milliseconds settlingTime;
        std::chrono::milliseconds readingTime = 1h;
        QQmlEngine engine;
        QDBusConnection bus = QDBusConnection::sessionBus();
        Peer host{u"host"_s};
        std::unique_ptr<MenuBarExtra> extra;
    };

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_CACHE_HOME", m_home.path().toLocal8Bit());
        qputenv("XDG_STATE_HOME", m_home.path().toLocal8Bit());
    }

    void shouldBeAnItemInTheDesktopsPanel()
    {
        // given
        Fixture f;
        const Watcher watcher;

        // when
        f.start();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);
        QTRY_COMPARE(watcher.items(), QStringList{f.bus.baseService()});
        QVERIFY(!f.clockWindow());
    }

    void shouldHaveAnIconThatSuitsTheBar()
    {
        // given
        const QTemporaryDir data;
        const QString folder = data.filePath(u"icons/hicolor/symbolic/apps"_s);
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + u"/dk.tulo.TimeTracker-symbolic.svg"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        qputenv("XDG_DATA_HOME", data.path().toLocal8Bit());
        Fixture f;
        auto watcher = std::make_unique<Watcher>();
        f.start();
        QTRY_COMPARE(watcher->items().size(), 1);

        // then
        QVERIFY(f.iconName().endsWith(u".png"_s));

        // when a bar comes that gives icons its own colour
        watcher.reset();
        const ProcessName name("plasmashell");
        watcher = std::make_unique<Watcher>();
        QTRY_COMPARE(watcher->items().size(), 1);
        qunsetenv("XDG_DATA_HOME");

        // then
        QCOMPARE(f.iconName(), u"dk.tulo.TimeTracker-symbolic"_s);
    }

    void shouldShowTheRunningTasksClockEachSecond()
    {
        // given
        Fixture f(1h, 1ms);
        const Watcher watcher;
        Task *const task = f.store.insertTask(u"A"_s);
        task->setAccumulatedSeconds(3725);
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        QCOMPARE(f.label(), u""_s);

        // when
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());

        // then
        QCOMPARE(f.label(), u"01:02:05"_s);

        // when
        f.clock.advance(1);

        // then
        QTRY_COMPARE(f.label(), u"01:02:06"_s);

        // when
        f.timer.stopTask(task, f.store.context());

        // then
        QCOMPARE(f.label(), u""_s);
    }

    void shouldShowTheClockInTheIconWhereABarShowsNothingElse()
    {
        // given
        Fixture f(1h, 1ms);
        const ProcessName name("swaybar");
        const Watcher watcher;
        Task *const task = f.store.insertTask(u"A"_s);
        task->setAccumulatedSeconds(3725);
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        const QString picture = f.iconName();
        QVERIFY(!picture.isEmpty());
        f.host.listenTo(f.bus.baseService());
        QStringList heard;
        const auto newIcons = [&] {
            heard += f.host.heard(f.bus.baseService());
            return heard.count(u"NewIcon"_s);
        };

        // when
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());

        // then
        QTRY_COMPARE(newIcons(), 1);
        QCOMPARE(f.iconName(), u""_s);

        // when it comes to the end of the minute, and into the next one
        f.clock.advance(54);
        QTRY_COMPARE(f.label(), u"01:02:59"_s);
        f.clock.advance(1);
        QTRY_COMPARE(f.label(), u"01:03:00"_s);

        // then
        QTRY_VERIFY(newIcons() > 1);
        QCOMPARE(newIcons(), 2);

        // when
        f.timer.stopTask(task, f.store.context());

        // then
        QTRY_COMPARE(newIcons(), 3);
        QCOMPARE(f.iconName(), picture);
    }

    void shouldShowATaskThatWasLeftRunningBeforeAnythingTicks()
    {
        // given
        Fixture f;
        const Watcher watcher;
        f.store.insertTask(u"A"_s)->start();
        f.clock.advance(90);

        // when
        f.start();

        // then
        QTRY_COMPARE(watcher.items().size(), 1);
        QCOMPARE(f.label(), u"00:01:30"_s);
        QVERIFY(!f.timer.isTicking());
    }

    void shouldStaySilentWhileNothingChanges()
    {
        // given
        Fixture f(1h, 1ms);
        Watcher watcher;
        Task *const task = f.store.insertTask(u"A"_s);
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        f.host.listenTo(f.bus.baseService());
        f.host.heard(f.bus.baseService());

        // when
        f.clock.advance(600);

        // then
        QCOMPARE(f.host.heard(f.bus.baseService()), QStringList());

        // when
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());

        // then
        QStringList heard;
        const auto hasHeard = [&](const QString &signal) {
            heard += f.host.heard(f.bus.baseService());
            return heard.contains(signal);
        };
        QTRY_VERIFY(hasHeard(u"XAyatanaNewLabel"_s));
        // Nobody has the menu open.
        settle();
        QVERIFY(!hasHeard(u"LayoutUpdated"_s) && !heard.contains(u"ItemsPropertiesUpdated"_s));

        // when
        const qint64 tick = f.timer.tick();
        QTRY_VERIFY(f.timer.tick() > tick + 5);

        // then ticks within one second change no text
        QCOMPARE(f.host.heard(f.bus.baseService()), QStringList());
    }

    void shouldOpenAndCloseThePanelWithClicksOnTheItem()
    {
        // given
        Fixture f;
        const Watcher watcher;
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);

        // when
        f.callItem(u"Activate"_s, {700, 10});

        // then
        QVERIFY(f.extra->panel().isOpen());
        QCOMPARE(f.toolTip(), u""_s);

        // when
        f.callItem(u"Activate"_s, {700, 10});

        // then
        QVERIFY(!f.extra->panel().isOpen());
        QCOMPARE(f.toolTip(), u"TULO Time Tracker"_s);
    }

    void shouldUseUpTheActivationTokenForThePanel()
    {
        // given
        Fixture f;
        const Watcher watcher;
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        QSignalSpy open(f.extra.get(), &MenuBarExtra::openMainWindow);
        f.callItem(u"ProvideXdgActivationToken"_s, {u"token"_s});

        // when
        f.callItem(u"Activate"_s, {700, 10});

        // then
        QCOMPARE(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), u"token"_s);
        qunsetenv("XDG_ACTIVATION_TOKEN");

        // when the panel opens the main window
        QQuickWindow *const window = f.extra->panel().window();
        QVERIFY(QTest::qWaitForWindowExposed(window, 30'000));
        QTest::mouseClick(
            window, Qt::LeftButton, {},
            qmltest::centre(qmltest::findItem(window->contentItem(), u"openButton"_s)));

        // then
        QCOMPARE(open.size(), 1);
        QCOMPARE(open.takeFirst().at(0), QString());
        QVERIFY(!f.extra->panel().isOpen());
    }

    void shouldUseUpTheActivationTokenForATaskOfTheMenu()
    {
        // given
        Fixture f;
        const Watcher watcher;
        Task *const task = f.store.insertTask(u"A"_s);
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        QSignalSpy open(f.extra.get(), &MenuBarExtra::openMainWindow);
        f.callItem(u"ProvideXdgActivationToken"_s, {u"token"_s});

        // when
        f.chooseInMenu(u"00:00:00"_s);
        QVERIFY(task->isRunning());
        f.chooseInMenu(u"Åbn"_s);

        // then the window that opens later does not get it
        QCOMPARE(open.size(), 1);
        QCOMPARE(open.takeFirst().at(0), QString());
    }

    void shouldPassTheActivationTokenOfTheMenuToTheMainWindowOnce()
    {
        // given
        Fixture f;
        const Watcher watcher;
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        QSignalSpy open(f.extra.get(), &MenuBarExtra::openMainWindow);
        f.callItem(u"ProvideXdgActivationToken"_s, {u"token"_s});

        for (const QString &token : {u"token"_s, QString()}) {
            // when
            f.chooseInMenu(u"Åbn"_s);

            // then
            QCOMPARE(open.size(), 1);
            QCOMPARE(open.takeFirst().at(0), token);
        }
    }

    void shouldShowTheClockWindowWhereNoTrayComes()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.store.insertTask(u"A"_s);
        task->setAccumulatedSeconds(3725);
        task->start();

        // when
        f.start();

        // then
        QCOMPARE(f.extra->backend(), Backend::None);
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
        auto *const window = qobject_cast<QQuickWindow *>(f.clockWindow());
        QVERIFY(window && window->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(window, 30'000));
        QCOMPARE(window->size(), QSize(120, 28));
        QCOMPARE(qmltest::findItem(window->contentItem(), u"labelText"_s)->property("text"),
                 u"01:02:05"_s);

        // when
        QTest::mouseClick(window, Qt::LeftButton, {}, {60, 14});

        // then
        QVERIFY(f.extra->panel().isOpen());
    }

    void shouldOpenThePanelFromTheClockWindowByKey()
    {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            // given
            Fixture f(1ms);
            f.start();
            QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
            QWindow *const window = f.clockWindow();
            window->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(window, 30'000));

            // when
            QTest::keyClick(window, key);

            // then
            QVERIFY(f.extra->panel().isOpen());
        }
    }

    void shouldGrowTheClockWindowWithALongClock()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.store.insertTask(u"A"_s);
        task->setAccumulatedSeconds(qint64(123456789) * 3600);
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);

        // when
        task->start();

        // then
        QTRY_VERIFY(f.clockWindow()->width() > 120);
    }

    void shouldWorkWithoutABus()
    {
        // given
        Fixture f(1ms);
        f.bus = QDBusConnection(u"none"_s);

        // when
        f.start();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
    }

    void shouldChangeItsBackendAsTraysComeAndGo()
    {
        // given
        Fixture f(1ms);
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);

        // when
        auto watcher = std::make_unique<Watcher>();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);
        QTRY_COMPARE(watcher->items().size(), 1);
        QVERIFY(!f.clockWindow());

        // when
        watcher.reset();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);

        // when
        watcher = std::make_unique<Watcher>();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);
        QTRY_COMPARE(watcher->items().size(), 1);
        QCOMPARE(f.label(), u""_s);
    }

    void shouldKeepTheClockWindowUntilSomethingBetterIsThere()
    {
        // given
        Fixture f(1ms);
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
        const QWindow *const window = f.clockWindow();
        QSignalSpy changes(f.extra.get(), &MenuBarExtra::backendChanged);

        // when a watcher comes, and then its host
        Watcher watcher(false);
        watcher.registerHost();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);
        QCOMPARE(changes.size(), 1);
        QVERIFY(window != f.clockWindow());
    }

    void shouldShowTheClockWindowUntilTheHostReadsTheItem()
    {
        // given
        Fixture f;
        f.readingTime = 1ms;
        Task *const task = f.store.insertTask(u"A"_s);
        const Watcher watcher;

        // when
        f.start();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
        QVERIFY(f.clockWindow()->isVisible());
        QTRY_COMPARE(watcher.items().size(), 1);

        // when it reads it after all
        f.timer.startTask(task, AllTasks(f.store.context()), f.store.context());
        f.iconName();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);
        QVERIFY(!f.clockWindow());
        QCOMPARE(f.label(), u"00:00:00"_s);
    }

    void shouldWaitForTheHostUntilItReadsTheItem()
    {
        // given
        Fixture f;
        const Watcher watcher;
        f.start();
        QTRY_COMPARE(watcher.items().size(), 1);
        QVERIFY(f.extra->isWaitingForReader());

        // when
        f.iconName();

        // then
        QTRY_VERIFY(!f.extra->isWaitingForReader());
        QCOMPARE(f.extra->backend(), Backend::StatusNotifier);
    }

    void shouldGiveANewHostTimeToReadTheItem()
    {
        // given a host that has read it
        Fixture f;
        f.readingTime = 1ms;
        auto watcher = std::make_unique<Watcher>();
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
        f.iconName();
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);

        // when another one comes that does not
        watcher.reset();
        QTRY_COMPARE(f.extra->backend(), Backend::None);
        watcher = std::make_unique<Watcher>();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
    }

    void shouldCloseTheClockWindowsPanelWhenABarComes()
    {
        // given
        Fixture f(1ms);
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
        auto *const window = qobject_cast<QQuickWindow *>(f.clockWindow());
        QVERIFY(QTest::qWaitForWindowExposed(window, 30'000));
        QTest::mouseClick(window, Qt::LeftButton, {}, {60, 14});
        QPointer<QWindow> panel = f.extra->panel().window();
        QVERIFY(panel && QTest::qWaitForWindowExposed(panel, 30'000));

        // when
        const Watcher watcher;

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);
        QVERIFY(!f.extra->panel().isOpen());
        QTRY_VERIFY(!panel);
        QVERIFY(!f.clockWindow());
    }

    void shouldGiveAPanelThatRestartsTimeToComeBack()
    {
        // given
        Fixture f;
        auto watcher = std::make_unique<Watcher>();
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::StatusNotifier);

        // when
        watcher.reset();

        // then
        QTRY_COMPARE(f.extra->backend(), Backend::None);
        QVERIFY(!f.clockWindow());
    }

    void shouldQuitWhenItsClockWindowIsTheLastToClose()
    {
        // given
        Fixture f(1ms);
        f.start();
        QTRY_COMPARE(f.extra->backend(), Backend::ClockWindow);
        QSignalSpy quit(f.extra.get(), &MenuBarExtra::quit);

        // when
        f.clockWindow()->close();

        // then
        QCOMPARE(quit.size(), 0);
        QVERIFY(!f.clockWindow()->isVisible());

        // when no other window would lead to the program
        f.extra->setIsMainWindowOpen(false);

        // then
        QVERIFY(f.clockWindow()->isVisible());

        // when
        f.clockWindow()->close();

        // then
        QCOMPARE(quit.size(), 1);
    }

private:
    QTemporaryDir m_home;
};

QTEST_MAIN(TestMenuBarExtra)
#include "tst_menubarextra.moc"
