#include "app/menubar/menubarpanel.h"
#include "app/windows/x11.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"

#include <QCursor>
#include <QGuiApplication>
#include <QProcess>
#include <QQuickItem>
#include <QScopeGuard>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// What a real pointer does, step by step.
bool pointer(const QStringList &steps)
{
    return QProcess::execute(u"xdotool"_s, steps) == 0;
}

bool movePointer(const QPoint &place)
{
    return pointer({u"mousemove"_s, QString::number(place.x()), QString::number(place.y())});
}

/// Where the X server has the window.
QRect shownGeometry(const QWindow &window)
{
    xcb_connection_t *const connection = x11::connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto size =
        x11::owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, id), nullptr));
    const auto place = x11::owned(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, id, x11::root(connection), 0, 0),
        nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

/// A window of another part of the desktop, which counts what is pressed in it.
class Elsewhere : public QWindow
{
public:
    Elsewhere()
    {
        setGeometry(40, 400, 200, 200);
        // Like a desktop's bar, it does not take the keyboard.
        setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
        show();
    }
    QPoint centre() const { return geometry().center(); }
    int presses() const { return m_presses; }
    int turns() const { return m_turns; }

protected:
    void mousePressEvent(QMouseEvent *) override { ++m_presses; }
    void wheelEvent(QWheelEvent *) override { ++m_turns; }

private:
    int m_presses = 0;
    int m_turns = 0;
};

/// A desktop's bar at the bottom edge. Other windows leave its room free.
class Bar : public QWindow
{
public:
    explicit Bar(int depth)
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        setGeometry(0, screen.height() - depth, screen.width(), depth);
        setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
        xcb_connection_t *const connection = x11::connection();
        const std::array<uint32_t, 4> strut{0, 0, 0, static_cast<uint32_t>(depth)};
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(winId()),
                            x11::atom(connection, "_NET_WM_STRUT"), XCB_ATOM_CARDINAL, 32,
                            strut.size(), strut.data());
        show();
    }
};

} // namespace

/// The panel's window where an X server and a window manager have their say.
class TestPanelOnX11 : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds sameClick = 300ms)
            : panel(engine, timer, store.context(), sameClick)
        {
            engine.addImportPath(u"qrc:/qt/qml"_s);
        }

        void insertTasks(int count)
        {
            for (; count > 0; --count)
                store.insertTask(u"Opgave %1"_s.arg(count), count);
        }
        bool open(const QRect &anchor)
        {
            panel.toggleAt(anchor);
            return panel.window() && QTest::qWaitForWindowActive(panel.window(), 30'000);
        }
        bool open() { return open(QRect(600, 0, 24, 24)); }
        QRect shown() const { return shownGeometry(*panel.window()); }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        QQmlEngine engine;
        MenuBarPanel panel;
    };

    /// The place of an item of 24 pixels in a bar at that edge of the screen.
    static QRect item(Qt::Edge edge)
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QRect item(QPoint(), QSize(24, 24));
        item.moveCenter(screen.center());
        switch (edge) {
        case Qt::TopEdge:
            item.moveTop(screen.top());
            break;
        case Qt::BottomEdge:
            item.moveBottom(screen.bottom());
            break;
        case Qt::LeftEdge:
            item.moveLeft(screen.left());
            break;
        case Qt::RightEdge:
            item.moveRight(screen.right());
            break;
        }
        return item;
    }

private Q_SLOTS:
    void shouldOpenWholeAndAtTheItemEachTime_data()
    {
        QTest::addColumn<Qt::Edge>("edge");
        QTest::newRow("top") << Qt::TopEdge;
        QTest::newRow("bottom") << Qt::BottomEdge;
        QTest::newRow("left") << Qt::LeftEdge;
        QTest::newRow("right") << Qt::RightEdge;
    }

    void shouldOpenWholeAndAtTheItemEachTime()
    {
        QFETCH(const Qt::Edge, edge);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRect anchor = item(edge);
        Fixture f;
        for (int opening = 0; opening < 50; ++opening) {
            // given up to seven tasks
            if (opening % 7 == 0)
                f.insertTasks(1);

            // when
            f.panel.toggleAt(anchor);
            QSignalSpy heights(f.panel.window(), &QWindow::heightChanged);
            QVERIFY(QTest::qWaitForWindowActive(f.panel.window(), 30'000));

            // then
            const auto *const last =
                qmltest::findItem(f.panel.window()->contentItem(), u"quitButton"_s);
            const QSize whole(240, static_cast<int>(last->mapToScene({0, last->height()}).y()));
            const bool isAbove = anchor.center().y() > screen.center().y();
            const QPoint corner(std::clamp(anchor.center().x() - 120, 0, screen.width() - 240),
                                isAbove ? anchor.top() - whole.height() : anchor.bottom() + 1);
            QTRY_COMPARE(f.shown(), QRect(corner, whole));
            QVERIFY2(heights.isEmpty(), "It has its size before it is shown");

            // when
            f.panel.close();

            // then
            QVERIFY(!f.panel.isOpen());
        }
    }

    void shouldStayAtTheItemWhenItsContentGrowsAndShrinks()
    {
        // given
        const QRect anchor = item(Qt::BottomEdge);
        Fixture f;
        QVERIFY(f.open(anchor));
        QTRY_COMPARE(f.shown().bottom(), anchor.top() - 1);
        const int height = f.shown().height();

        // when
        f.insertTasks(3);

        // then
        QTRY_VERIFY(f.shown().height() > height);
        QTRY_COMPARE(f.shown().bottom(), anchor.top() - 1);

        // when
        for (Record *const task : f.store.context().fetch(RecordType::Task, allRecords()))
            f.store.context().remove(task);

        // then
        QTRY_COMPARE(f.shown().height(), height);
        QTRY_COMPARE(f.shown().bottom(), anchor.top() - 1);
    }

    void shouldKeepClearOfABarThatFloats_data()
    {
        QTest::addColumn<QByteArray>("plasma");
        QTest::addColumn<int>("distance");
        QTest::newRow("no Plasma") << QByteArray() << 0;
        QTest::newRow("Plasma 5, whose bars do not float") << QByteArray("5") << 0;
        QTest::newRow("Plasma 6") << QByteArray("6") << 8;
    }

    void shouldKeepClearOfABarThatFloats()
    {
        // given
        QFETCH(const QByteArray, plasma);
        QFETCH(const int, distance);
        const QByteArray before = qgetenv("KDE_SESSION_VERSION");
        const auto restore = qScopeGuard([&before] { qputenv("KDE_SESSION_VERSION", before); });
        qputenv("KDE_SESSION_VERSION", plasma);
        const QScreen *const screen = QGuiApplication::primaryScreen();
        {
            const Bar bar(40);
            QTRY_COMPARE(screen->availableGeometry().height(), screen->geometry().height() - 40);
            Fixture f;

            // when
            QVERIFY(f.open(item(Qt::BottomEdge)));

            // then
            QTRY_COMPARE(f.shown().bottom(), screen->availableGeometry().bottom() - distance);
        }
        QTRY_COMPARE(screen->availableGeometry(), screen->geometry());
    }

    void shouldCloseWhenTheWallpaperIsPressed()
    {
        // given
        Fixture f;
        QVERIFY(f.open());

        // when
        QVERIFY(movePointer({20, 780}));
        QVERIFY(pointer({u"click"_s, u"1"_s}));

        // then
        QTRY_VERIFY(!f.panel.isOpen());
    }

    void shouldLeaveAPressThatClosesItToTheWindowItIsMeantFor()
    {
        // given a window that does not take the keyboard
        Fixture f;
        Elsewhere elsewhere;
        QVERIFY(QTest::qWaitForWindowExposed(&elsewhere, 30'000));
        QVERIFY(f.open());
        QTRY_COMPARE(shownGeometry(elsewhere), elsewhere.geometry());

        // when
        QVERIFY(movePointer(elsewhere.centre()));
        QVERIFY(pointer({u"click"_s, u"1"_s}));

        // then
        QTRY_VERIFY(!f.panel.isOpen());
        QTRY_COMPARE(elsewhere.presses(), 1);
    }

    void shouldStayOpenWhenTheWheelIsTurnedElsewhere()
    {
        // given
        Fixture f;
        Elsewhere elsewhere;
        QVERIFY(QTest::qWaitForWindowExposed(&elsewhere, 30'000));
        QVERIFY(f.open());
        QTRY_COMPARE(shownGeometry(elsewhere), elsewhere.geometry());

        // when
        QVERIFY(movePointer(elsewhere.centre()));
        QVERIFY(pointer({u"click"_s, u"4"_s}));

        // then
        QTRY_COMPARE(elsewhere.turns(), 1);
        QVERIFY(f.panel.isOpen());
    }

    void shouldGoByWhereThePointerWasPressedAndNotByWhereItIsNow()
    {
        // given a program that has too much to do to look at once
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        QVERIFY(f.open());
        QTRY_COMPARE(f.shown(), f.panel.window()->geometry());
        const QPoint row = f.panel.window()->mapToGlobal(qmltest::centre(
            qmltest::findItem(f.panel.window()->contentItem(), u"rowBackground"_s)));

        // when a row is clicked, and the pointer is elsewhere by now
        QVERIFY(movePointer(row));
        QVERIFY(pointer({u"click"_s, u"1"_s}));
        QVERIFY(movePointer({20, 780}));

        // then
        QTRY_VERIFY(task->isRunning());
        QVERIFY(f.panel.isOpen());

        // when the press is elsewhere, and the pointer over the panel by now
        QVERIFY(pointer({u"click"_s, u"1"_s}));
        QVERIFY(movePointer(row));

        // then
        QTRY_VERIFY(!f.panel.isOpen());
    }

    void shouldStayClosedWhenTheItemIsPressedForLong()
    {
        // given a press that is no click yet
        Fixture f(1h);
        QVERIFY(f.open());
        QVERIFY(movePointer({20, 780}));
        QVERIFY(pointer({u"mousedown"_s, u"1"_s}));
        QTRY_VERIFY(!f.panel.isOpen());

        // when the desktop tells of a click as soon as the press begins
        f.panel.toggleAt(item(Qt::TopEdge));

        // then
        QVERIFY(!f.panel.isOpen());

        // when the next click comes
        QVERIFY(pointer({u"mouseup"_s, u"1"_s}));
        QVERIFY(f.open());

        // then
        QVERIFY(f.panel.isOpen());
    }

    void shouldStayClosedWhenTheClickIsToldAtTheEndOfThePress()
    {
        // given
        Fixture f(1h);
        QVERIFY(f.open());
        PointerPresses presses;
        presses.listenOutside(*f.panel.window());
        QSignalSpy released(&presses, &PointerPresses::released);
        QVERIFY(movePointer({20, 780}));
        QVERIFY(pointer({u"mousedown"_s, u"1"_s}));
        QTRY_VERIFY(!f.panel.isOpen());

        // when
        QVERIFY(pointer({u"mouseup"_s, u"1"_s}));
        QTRY_COMPARE(released.size(), 1);
        f.panel.toggleAt(item(Qt::TopEdge));

        // then
        QVERIFY(!f.panel.isOpen());

        // when
        f.panel.toggleAt(item(Qt::TopEdge));

        // then
        QVERIFY(f.panel.isOpen());
    }
};

QTEST_MAIN(TestPanelOnX11)
#include "tst_panelonx11.moc"
