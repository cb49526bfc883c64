#include "model/tasklist.h"
#include "tests/support/layout.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"
#include "timer/timermanager.h"
#include "views/controls/theme.h"
#include "views/menubar/menubarviewmodel.h"

#include <QAccessible>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using qmltest::centre;
using qmltest::findItem;
using qmltest::findItems;

/// The panel, used with mouse and keys.
class TestMenuBarView : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds beat = 1h)
            : timer(clock, beat)
        {
        }

        void show()
        {
            window = std::make_unique<qmltest::Window>(
                QUrl(u"qrc:/qt/qml/TimeTracker/Views/MenuBar/MenuBarView.qml"_s),
                QVariantMap{{u"viewModel"_s, QVariant::fromValue(&viewModel)}});
            // As large as its content, which may change.
            window->setResizeMode(QQuickView::SizeRootObjectToView);
            window->resize(240, 400);
        }
        QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
        static QRectF place(const QQuickItem *item)
        {
            return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        }
        QRectF place(const char *name) const { return place(item(name)); }
        static QString text(const QQuickItem *item) { return item->property("text").toString(); }
        static QColor color(const QQuickItem *item)
        {
            return item->property("color").value<QColor>();
        }
        /// The rows from top to bottom.
        QList<QQuickItem *> rows() const
        {
            QList<QQuickItem *> rows;
            for (QQuickItem *background : findItems(item("panelList"), u"rowBackground"_s))
                rows << background->parentItem();
            std::sort(rows.begin(), rows.end(), [](const QQuickItem *a, const QQuickItem *b) {
                return a->mapToScene({}).y() < b->mapToScene({}).y();
            });
            return rows;
        }
        static QQuickItem *in(QQuickItem *row, const char *name)
        {
            return findItem(row, QString::fromLatin1(name));
        }
        void click(const QQuickItem *target) const
        {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(target));
        }
        void press(Qt::Key key) const { QTest::keyClick(window.get(), key); }
        QQuickItem *focus() const { return window->activeFocusItem(); }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer;
        MenuBarViewModel viewModel{timer, store.context()};
        std::unique_ptr<qmltest::Window> window;
    };

private Q_SLOTS:
    void shouldLayOutAnEmptyDay()
    {
        // given
        Fixture f;
        f.show();

        // then
        const Theme theme;
        const QQuickItem *const panel = f.window->rootObject();
        QCOMPARE(panel->implicitWidth(), 240.0);
        QCOMPARE(panel->implicitHeight(), f.place("quitButton").bottom());
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"panelHeader.left"_s, 0},
                     {u"panelHeader.top"_s, 0},
                     {u"panelHeader.width"_s, 240},
                     {u"panelTitle.left"_s, 12},
                     {u"panelTitle.text"_s, u"I dag"_s},
                     {u"panelTitle.font.pixelSize"_s, 12},
                     {u"panelTitle.font.weight"_s, QFont::DemiBold},
                     {u"panelTitle.color"_s, theme.secondary()},
                     {u"panelHeader.right - panelTotal.right"_s, 12},
                     {u"panelTotal.text"_s, u"0.00 t"_s},
                     {u"panelTotal.font.pixelSize"_s, 12},
                     {u"panelTotal.font.weight"_s, QFont::Medium},
                     {u"panelTotal.font.family"_s, theme.monospacedFamily()},
                     {u"panelTotal.color"_s, theme.primary()},
                     {u"panelTasks.visible"_s, false},
                     {u"emptyText.visible"_s, true},
                     {u"emptyText.top - panelHeader.bottom"_s, 1},
                     {u"emptyText.padding"_s, 12},
                     {u"emptyText.text"_s, u"Ingen opgaver i dag"_s},
                     {u"emptyText.font.pixelSize"_s, 12},
                     {u"emptyText.color"_s, theme.secondary()},
                     {u"openButton.top - emptyText.bottom"_s, 1},
                     {u"openButton.width"_s, 240},
                     {u"openButton.leftPadding"_s, 12},
                     {u"openButton.rightPadding"_s, 12},
                     {u"openButton.topPadding"_s, 8},
                     {u"openButton.bottomPadding"_s, 8},
                     {u"openButton.symbol"_s, u"timer"_s},
                     {u"openButton.label"_s, u"Åbn Time Tracker"_s},
                     {u"quitButton.top - openButton.bottom"_s, 1},
                     {u"quitButton.width"_s, 240},
                     {u"quitButton.leftPadding"_s, 12},
                     {u"quitButton.rightPadding"_s, 12},
                     {u"quitButton.topPadding"_s, 8},
                     {u"quitButton.bottomPadding"_s, 8},
                     {u"quitButton.symbol"_s, u"power"_s},
                     {u"quitButton.label"_s, u"Afslut"_s},
                 }),
                 QStringList());
        // clang-format on
        // the higher one of the two labels makes the header's height
        const QRectF title = f.place("panelTitle");
        const QRectF total = f.place("panelTotal");
        QCOMPARE(std::min(title.top(), total.top()), 8.0);
        QCOMPARE(std::max(title.bottom(), total.bottom()), f.place("panelHeader").bottom() - 8);
    }

    void shouldMakeNoShortcutOfAName()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"R&D & sa&lg"_s);
        f.show();
        QCOMPARE(f.rows().size(), 1);

        // when
        for (const Qt::Key key : {Qt::Key_D, Qt::Key_Space, Qt::Key_L})
            QTest::keyClick(f.window.get(), key, Qt::AltModifier);

        // then
        QVERIFY(!task->isRunning());
        QCOMPARE(f.text(f.item("nameText")), u"R&D & sa&lg"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(f.rows().at(0))->text(QAccessible::Name),
                 u"Start R&D & sa&lg"_s);
    }

    void shouldShowNamesFromRightToLeftAtTheLeadingEdge()
    {
        // given
        Fixture f;
        f.store.insert<Task>(u"פגישה עם לקוח"_s, f.clock.now(), u"לקוח"_s);
        f.show();

        // then
        for (const char *label : {"nameText", "badgeText"}) {
            QCOMPARE(f.item(label)->property("effectiveHorizontalAlignment").toInt(),
                     int(Qt::AlignLeft));
        }
    }

    void shouldLayOutARow()
    {
        // given a task with a code and a time, and one that has neither, nor a name
        Fixture f;
        Task *const task = f.store.insert<Task>(u"Budget"_s, f.clock.now(), u"TULO-1"_s);
        task->setAccumulatedSeconds(3725);
        f.store.insertTask(QString(), 1);
        f.show();

        // then
        const Theme theme;
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"rowBackground[0].left"_s, 0},
                     {u"rowBackground[0].top - panelHeader.bottom"_s, 1 + 4},
                     {u"rowBackground[0].width"_s, 240},
                     {u"rowSymbol[0].left"_s, 12},
                     {u"rowSymbol[0].centreY - rowBackground[0].centreY"_s, 0},
                     {u"rowSymbol[0].name"_s, u"play.circle"_s},
                     {u"rowSymbol[0].fontSize"_s, 14},
                     {u"rowSymbol[0].color"_s, theme.secondary()},
                     {u"badge[0].left - rowSymbol[0].right"_s, 8},
                     {u"badge[0].top - rowBackground[0].top"_s, 6},
                     {u"badge[0].radius"_s, 2},
                     {u"badgeText[0].left - badge[0].left"_s, 4},
                     {u"badgeText[0].top - badge[0].top"_s, 1},
                     {u"badge[0].right - badgeText[0].right"_s, 4},
                     {u"badge[0].bottom - badgeText[0].bottom"_s, 1},
                     {u"badgeText[0].text"_s, u"TULO-1"_s},
                     {u"badgeText[0].font.pixelSize"_s, 9},
                     {u"badgeText[0].font.weight"_s, QFont::Medium},
                     {u"badgeText[0].color"_s, theme.brandAccent()},
                     {u"nameText[0].left - badge[0].left"_s, 0},
                     {u"nameText[0].top - badge[0].bottom"_s, 1},
                     {u"rowBackground[0].bottom - nameText[0].bottom"_s, 6},
                     {u"nameText[0].font.pixelSize"_s, 12},
                     {u"nameText[0].color"_s, theme.primary()},
                     {u"rowBackground[0].right - timeText[0].right"_s, 12},
                     {u"timeText[0].centreY - rowBackground[0].centreY"_s, 0},
                     {u"timeText[0].text"_s, u"01:02:05"_s},
                     {u"timeText[0].font.pixelSize"_s, 11},
                     {u"timeText[0].font.family"_s, theme.monospacedFamily()},
                     {u"timeText[0].color"_s, theme.secondary()},
                     {u"rowBackground[1].top - rowBackground[0].bottom"_s, 2},
                     {u"panelTasks.bottom - rowBackground[1].bottom"_s, 4},
                     {u"badge[1].visible"_s, false},
                     {u"nameText[1].text"_s, u"Unavngivet"_s},
                     {u"timeText[1].text"_s, u"00:00:00"_s},
                 }),
                 QStringList());
        // clang-format on
    }

    void shouldMarkTheRunningRow()
    {
        // given
        Fixture f;
        f.store.insertTask(u"A"_s)->start();
        f.store.insertTask(u"B"_s, 1);
        f.show();

        // then
        const Theme theme;
        QColor tint = theme.brandAccent();
        tint.setAlphaF(0.1F);
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"rowSymbol[0].name"_s, u"pause.circle.fill"_s},
                     {u"rowSymbol[0].color"_s, theme.brandAccent()},
                     {u"rowBackground[0].color"_s, tint},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(f.color(f.in(f.rows().at(1), "rowBackground")).alpha(), 0);
    }

    void shouldDrawAnEmptyCodeAsAnEmptyBadge()
    {
        // given
        Fixture f;
        f.store.insert<Task>(u"A"_s, f.clock.now(), QString(u""_s));
        f.show();

        // then
        const QQuickItem *const badge = f.in(f.rows().at(0), "badge");
        QVERIFY(badge->isVisible());
        QCOMPARE(badge->width(), 8.0);
    }

    void shouldKeepALongNameOnOneLineClearOfTheTime()
    {
        // given
        Fixture f;
        f.store.insert<Task>(u"Et navn "_s.repeated(40), f.clock.now(), u"KODE"_s.repeated(30));
        f.show();

        // then
        QQuickItem *const row = f.rows().at(0);
        const QRectF time = f.place(f.in(row, "timeText"));
        QVERIFY(f.in(row, "nameText")->property("truncated").toBool());
        QVERIFY(f.place(f.in(row, "nameText")).right() <= time.left() - 8);
        QVERIFY(f.place(f.in(row, "badge")).right() <= time.left() - 8);
    }

    void shouldGrowToALimitAndThenScroll()
    {
        // given
        Fixture f;
        for (int i = 0; i < 30; ++i)
            f.store.insertTask(u"Opgave %1"_s.arg(i), i);
        f.show();

        // then
        QCOMPARE(f.item("panelTasks")->height(), 200.0);
        QVERIFY(f.rows().size() < 30);

        // when
        const double before = f.item("panelList")->property("contentY").toDouble();
        for (int i = 0; i < 12; ++i)
            f.press(Qt::Key_Down);

        // then
        QVERIFY(f.item("panelList")->property("contentY").toDouble() > before);
        const QRectF focused = f.place(f.focus());
        QVERIFY(f.place("panelTasks").contains(focused));
    }

    void shouldGrowAndShrinkWithItsTasks()
    {
        // given
        Fixture f;
        f.show();
        const double empty = f.window->rootObject()->implicitHeight();

        // when
        Task *const task = f.store.insertTask(u"A"_s);

        // then
        QTRY_COMPARE(f.rows().size(), 1);
        QTRY_COMPARE(f.item("panelTasks")->height(), f.rows().at(0)->height() + 8);

        // when
        f.store.context().remove(task);

        // then
        QTRY_COMPARE(f.window->rootObject()->implicitHeight(), empty);
    }

    void shouldStartAndStopWithAClickAnywhereOnTheRow()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        f.show();
        const QRectF row = f.place(f.rows().at(0));

        for (const QPointF &corner :
             {row.topLeft() + QPointF(1, 1), row.bottomRight() - QPointF(2, 2)}) {
            // when
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, corner.toPoint());

            // then
            QVERIFY(task->isRunning());

            // when
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, corner.toPoint());

            // then
            QVERIFY(!task->isRunning());
        }

        // then no click has given it the keyboard focus
        QVERIFY(!f.rows().at(0)->hasActiveFocus());
    }

    void shouldCountUpWhileATaskRuns()
    {
        // given
        Fixture f(1ms);
        Task *const task = f.store.insertTask(u"A"_s);
        f.show();
        f.click(f.rows().at(0));
        QVERIFY(task->isRunning());

        // when
        f.clock.advance(1800);

        // then
        const QQuickItem *const time = f.in(f.rows().at(0), "timeText");
        QTRY_COMPARE(f.text(time), u"00:30:00"_s);
        QTRY_COMPARE(f.text(f.item("panelTotal")), u"0.50 t"_s);
    }

    void shouldAskForTheMainWindowAndForTheEnd()
    {
        // given
        Fixture f;
        f.show();
        QSignalSpy open(f.window->rootObject(), SIGNAL(openMainWindow()));
        QSignalSpy quit(f.window->rootObject(), SIGNAL(quit()));

        // when
        f.click(f.item("openButton"));

        // then
        QCOMPARE(open.size(), 1);

        // when
        f.click(f.item("quitButton"));

        // then
        QCOMPARE(quit.size(), 1);
    }

    void shouldBeUsableWithTheKeyboardAlone()
    {
        // given
        Fixture f;
        Task *const first = f.store.insertTask(u"A"_s);
        Task *const second = f.store.insertTask(u"B"_s, 1);
        f.show();
        QSignalSpy open(f.window->rootObject(), SIGNAL(openMainWindow()));
        QSignalSpy quit(f.window->rootObject(), SIGNAL(quit()));
        QSignalSpy close(f.window->rootObject(), SIGNAL(closeRequested()));

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.focus(), f.rows().at(0));
        QVERIFY(f.focus()->property("visualFocus").toBool());

        // when
        f.press(Qt::Key_Return);

        // then
        QVERIFY(first->isRunning());

        // when
        f.press(Qt::Key_Tab);

        // then
        QCOMPARE(f.focus(), f.rows().at(1));

        // when
        f.press(Qt::Key_Space);

        // then
        QVERIFY(second->isRunning());
        QVERIFY(!first->isRunning());

        // when
        f.press(Qt::Key_Up);

        // then
        QCOMPARE(f.focus(), f.rows().at(0));

        // when
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.focus(), f.item("openButton"));

        // when
        f.press(Qt::Key_Enter);

        // then
        QCOMPARE(open.size(), 1);

        // when
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(quit.size(), 1);

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.focus(), f.rows().at(0));

        // when
        f.press(Qt::Key_Up);

        // then
        QCOMPARE(f.focus(), f.item("quitButton"));

        // when
        f.press(Qt::Key_Escape);

        // then
        QCOMPARE(close.size(), 1);
    }

    void shouldNotPressAnythingWithReturnBeforeTheKeyboardIsSomewhere()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        f.show();

        // when
        f.press(Qt::Key_Return);
        f.press(Qt::Key_Space);

        // then
        QVERIFY(!task->isRunning());
    }

    void shouldBeNamedForAssistiveTechnology()
    {
        // given
        Fixture f;
        Task *const task = f.store.insertTask(QString());
        f.show();
        const auto accessible = [](QQuickItem *item) {
            return QAccessible::queryAccessibleInterface(item);
        };
        QQuickItem *const row = f.rows().at(0);

        // then
        QCOMPARE(accessible(row)->role(), QAccessible::Button);
        QCOMPARE(accessible(row)->text(QAccessible::Name), u"Start Unavngivet"_s);

        // when
        accessible(row)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QVERIFY(task->isRunning());
        QCOMPARE(accessible(row)->text(QAccessible::Name), u"Sæt på pause: Unavngivet"_s);
        QCOMPARE(accessible(f.item("openButton"))->text(QAccessible::Name), u"Åbn Time Tracker"_s);
        QCOMPARE(accessible(f.item("quitButton"))->text(QAccessible::Name), u"Afslut"_s);
        QCOMPARE(accessible(f.item("panelTotal"))->role(), QAccessible::StaticText);
    }
};

QTEST_MAIN(TestMenuBarView)
#include "tst_menubarview.moc"
