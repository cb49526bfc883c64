#include "model/tasklist.h"
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
#include <cmath>

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
        static QFont font(const QQuickItem *item) { return item->property("font").value<QFont>(); }
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
        Fixture f;
        f.show();
        const Theme theme;
        QCOMPARE(f.window->rootObject()->implicitWidth(), 240.0);
        const QRectF header = f.place("panelHeader");
        const QRectF title = f.place("panelTitle");
        const QRectF total = f.place("panelTotal");
        QCOMPARE(header.topLeft(), QPointF(0, 0));
        QCOMPARE(title.left(), 12.0);
        QCOMPARE(total.right(), 240.0 - 12);
        QCOMPARE(std::min(title.top(), total.top()), 8.0);
        QCOMPARE(std::max(title.bottom(), total.bottom()), header.bottom() - 8);
        QCOMPARE(f.text(f.item("panelTitle")), u"I dag"_s);
        QCOMPARE(f.font(f.item("panelTitle")).pixelSize(), 12);
        QCOMPARE(f.font(f.item("panelTitle")).weight(), QFont::DemiBold);
        QCOMPARE(f.color(f.item("panelTitle")), theme.secondary());
        QCOMPARE(f.text(f.item("panelTotal")), u"0.00 t"_s);
        QCOMPARE(f.font(f.item("panelTotal")).pixelSize(), 12);
        QCOMPARE(f.font(f.item("panelTotal")).weight(), QFont::Medium);
        QCOMPARE(f.font(f.item("panelTotal")).family(), theme.monospacedFamily());
        QCOMPARE(f.color(f.item("panelTotal")), theme.primary());

        const QQuickItem *const empty = f.item("emptyText");
        QVERIFY(empty->isVisible());
        QVERIFY(!f.item("panelTasks")->isVisible());
        QCOMPARE(f.text(empty), u"Ingen opgaver i dag"_s);
        QCOMPARE(f.font(empty).pixelSize(), 12);
        QCOMPARE(f.color(empty), theme.secondary());
        QCOMPARE(f.place(empty).top(), header.bottom() + 1);
        QCOMPARE(empty->property("padding").toInt(), 12);

        const QRectF open = f.place("openButton");
        const QRectF quit = f.place("quitButton");
        QCOMPARE(open.top(), f.place(empty).bottom() + 1);
        QCOMPARE(quit.top(), open.bottom() + 1);
        QCOMPARE(f.window->rootObject()->implicitHeight(), quit.bottom());
        for (const auto &[name, symbol, text] :
             {std::tuple{"openButton", u"timer"_s, u"Åbn Time Tracker"_s},
              std::tuple{"quitButton", u"power"_s, u"Afslut"_s}}) {
            QQuickItem *const button = f.item(name);
            QCOMPARE(button->width(), 240.0);
            QCOMPARE(button->property("label").toString(), text);
            QCOMPARE(button->property("symbol").toString(), symbol);
            for (const char *side : {"leftPadding", "rightPadding"})
                QCOMPARE(button->property(side).toInt(), 12);
            for (const char *side : {"topPadding", "bottomPadding"})
                QCOMPARE(button->property(side).toInt(), 8);
        }
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
        Fixture f;
        f.store.insert<Task>(u"פגישה עם לקוח"_s, f.clock.now(), u"לקוח"_s);
        f.show();
        for (const char *label : {"nameText", "badgeText"}) {
            QCOMPARE(f.item(label)->property("effectiveHorizontalAlignment").toInt(),
                     int(Qt::AlignLeft));
        }
    }

    void shouldLayOutARow()
    {
        Fixture f;
        Task *const task = f.store.insert<Task>(u"Budget"_s, f.clock.now(), u"TULO-1"_s);
        task->setAccumulatedSeconds(3725);
        f.store.insertTask(QString(), 1);
        f.show();
        const Theme theme;
        QQuickItem *const first = f.rows().at(0);
        QQuickItem *const second = f.rows().at(1);
        QCOMPARE(f.place(first).top(), f.place("panelHeader").bottom() + 1 + 4);
        QCOMPARE(f.place(second).top(), f.place(first).bottom() + 2);
        QCOMPARE(f.place("panelTasks").bottom(), f.place(second).bottom() + 4);
        QCOMPARE(first->width(), 240.0);

        const QRectF symbol = f.place(f.in(first, "rowSymbol"));
        const QRectF badge = f.place(f.in(first, "badge"));
        const QRectF name = f.place(f.in(first, "nameText"));
        const QRectF time = f.place(f.in(first, "timeText"));
        QCOMPARE(symbol.left(), 12.0);
        QCOMPARE(badge.left(), symbol.right() + 8);
        QCOMPARE(name.left(), badge.left());
        QCOMPARE(name.top(), badge.bottom() + 1);
        QCOMPARE(time.right(), 240.0 - 12);
        QCOMPARE(badge.top(), f.place(first).top() + 6);
        QCOMPARE(name.bottom(), f.place(first).bottom() - 6);
        for (const QRectF &part : {symbol, time})
            QVERIFY(std::abs(part.center().y() - f.place(first).center().y()) <= 0.5);

        QCOMPARE(f.in(first, "rowSymbol")->property("name").toString(), u"play.circle"_s);
        QCOMPARE(f.in(first, "rowSymbol")->property("fontSize").toInt(), 14);
        QCOMPARE(f.color(f.in(first, "rowSymbol")), theme.secondary());
        const QQuickItem *const code = f.in(first, "badgeText");
        QCOMPARE(f.text(code), u"TULO-1"_s);
        QCOMPARE(f.font(code).pixelSize(), 9);
        QCOMPARE(f.font(code).weight(), QFont::Medium);
        QCOMPARE(f.color(code), theme.brandAccent());
        QCOMPARE(f.place(code), badge.adjusted(4, 1, -4, -1));
        QCOMPARE(f.in(first, "badge")->property("radius").toInt(), 2);
        QCOMPARE(f.font(f.in(first, "nameText")).pixelSize(), 12);
        QCOMPARE(f.color(f.in(first, "nameText")), theme.primary());
        QCOMPARE(f.text(f.in(first, "timeText")), u"01:02:05"_s);
        QCOMPARE(f.font(f.in(first, "timeText")).pixelSize(), 11);
        QCOMPARE(f.font(f.in(first, "timeText")).family(), theme.monospacedFamily());
        QCOMPARE(f.color(f.in(first, "timeText")), theme.secondary());

        QVERIFY(!f.in(second, "badge")->isVisible());
        QCOMPARE(f.text(f.in(second, "nameText")), u"Unavngivet"_s);
        QCOMPARE(f.text(f.in(second, "timeText")), u"00:00:00"_s);
    }

    void shouldMarkTheRunningRow()
    {
        Fixture f;
        f.store.insertTask(u"A"_s)->start();
        f.store.insertTask(u"B"_s, 1);
        f.show();
        const Theme theme;
        QQuickItem *const running = f.rows().at(0);
        QCOMPARE(f.in(running, "rowSymbol")->property("name").toString(), u"pause.circle.fill"_s);
        QCOMPARE(f.color(f.in(running, "rowSymbol")), theme.brandAccent());
        QColor tint = theme.brandAccent();
        tint.setAlphaF(0.1F);
        QCOMPARE(f.color(f.in(running, "rowBackground")), tint);
        QCOMPARE(f.color(f.in(f.rows().at(1), "rowBackground")).alpha(), 0);
    }

    void shouldDrawAnEmptyCodeAsAnEmptyBadge()
    {
        Fixture f;
        f.store.insert<Task>(u"A"_s, f.clock.now(), QString(u""_s));
        f.show();
        const QQuickItem *const badge = f.in(f.rows().at(0), "badge");
        QVERIFY(badge->isVisible());
        QCOMPARE(badge->width(), 8.0);
    }

    void shouldKeepALongNameOnOneLineClearOfTheTime()
    {
        Fixture f;
        f.store.insert<Task>(u"Et navn "_s.repeated(40), f.clock.now(), u"KODE"_s.repeated(30));
        f.show();
        QQuickItem *const row = f.rows().at(0);
        const QRectF time = f.place(f.in(row, "timeText"));
        QVERIFY(f.in(row, "nameText")->property("truncated").toBool());
        QVERIFY(f.place(f.in(row, "nameText")).right() <= time.left() - 8);
        QVERIFY(f.place(f.in(row, "badge")).right() <= time.left() - 8);
    }

    void shouldGrowToALimitAndThenScroll()
    {
        Fixture f;
        for (int i = 0; i < 30; ++i)
            f.store.insertTask(u"Opgave %1"_s.arg(i), i);
        f.show();
        QCOMPARE(f.item("panelTasks")->height(), 200.0);
        QVERIFY(f.rows().size() < 30);
        const double before = f.item("panelList")->property("contentY").toDouble();
        for (int i = 0; i < 12; ++i)
            f.press(Qt::Key_Down);
        QVERIFY(f.item("panelList")->property("contentY").toDouble() > before);
        const QRectF focused = f.place(f.focus());
        QVERIFY(f.place("panelTasks").contains(focused));
    }

    void shouldGrowAndShrinkWithItsTasks()
    {
        Fixture f;
        f.show();
        const double empty = f.window->rootObject()->implicitHeight();
        Task *const task = f.store.insertTask(u"A"_s);
        QTRY_COMPARE(f.rows().size(), 1);
        QTRY_COMPARE(f.item("panelTasks")->height(), f.rows().at(0)->height() + 8);
        f.store.context().remove(task);
        QTRY_COMPARE(f.window->rootObject()->implicitHeight(), empty);
    }

    void shouldStartAndStopWithAClickAnywhereOnTheRow()
    {
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        f.show();
        const QRectF row = f.place(f.rows().at(0));
        for (const QPointF &corner :
             {row.topLeft() + QPointF(1, 1), row.bottomRight() - QPointF(2, 2)}) {
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, corner.toPoint());
            QVERIFY(task->isRunning());
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, corner.toPoint());
            QVERIFY(!task->isRunning());
        }
        QVERIFY(!f.rows().at(0)->hasActiveFocus());
    }

    void shouldCountUpWhileATaskRuns()
    {
        Fixture f(1ms);
        Task *const task = f.store.insertTask(u"A"_s);
        f.show();
        f.click(f.rows().at(0));
        QVERIFY(task->isRunning());
        f.clock.advance(1800);
        const QQuickItem *const time = f.in(f.rows().at(0), "timeText");
        QTRY_COMPARE(f.text(time), u"00:30:00"_s);
        QTRY_COMPARE(f.text(f.item("panelTotal")), u"0.50 t"_s);
    }

    void shouldAskForTheMainWindowAndForTheEnd()
    {
        Fixture f;
        f.show();
        QSignalSpy open(f.window->rootObject(), SIGNAL(openMainWindow()));
        QSignalSpy quit(f.window->rootObject(), SIGNAL(quit()));
        f.click(f.item("openButton"));
        QCOMPARE(open.size(), 1);
        f.click(f.item("quitButton"));
        QCOMPARE(quit.size(), 1);
    }

    void shouldBeUsableWithTheKeyboardAlone()
    {
        Fixture f;
        Task *const first = f.store.insertTask(u"A"_s);
        Task *const second = f.store.insertTask(u"B"_s, 1);
        f.show();
        QSignalSpy open(f.window->rootObject(), SIGNAL(openMainWindow()));
        QSignalSpy quit(f.window->rootObject(), SIGNAL(quit()));
        QSignalSpy close(f.window->rootObject(), SIGNAL(closeRequested()));

        f.press(Qt::Key_Down);
        QCOMPARE(f.focus(), f.rows().at(0));
        QVERIFY(f.focus()->property("visualFocus").toBool());
        f.press(Qt::Key_Return);
        QVERIFY(first->isRunning());
        f.press(Qt::Key_Tab);
        QCOMPARE(f.focus(), f.rows().at(1));
        f.press(Qt::Key_Space);
        QVERIFY(second->isRunning());
        QVERIFY(!first->isRunning());
        f.press(Qt::Key_Up);
        QCOMPARE(f.focus(), f.rows().at(0));
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Down);
        QCOMPARE(f.focus(), f.item("openButton"));
        f.press(Qt::Key_Enter);
        QCOMPARE(open.size(), 1);
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Space);
        QCOMPARE(quit.size(), 1);
        f.press(Qt::Key_Down);
        QCOMPARE(f.focus(), f.rows().at(0));
        f.press(Qt::Key_Up);
        QCOMPARE(f.focus(), f.item("quitButton"));
        f.press(Qt::Key_Escape);
        QCOMPARE(close.size(), 1);
    }

    void shouldNotPressAnythingWithReturnBeforeTheKeyboardIsSomewhere()
    {
        Fixture f;
        Task *const task = f.store.insertTask(u"A"_s);
        f.show();
        f.press(Qt::Key_Return);
        f.press(Qt::Key_Space);
        QVERIFY(!task->isRunning());
    }

    void shouldBeNamedForAssistiveTechnology()
    {
        Fixture f;
        Task *const task = f.store.insertTask(QString());
        f.show();
        const auto accessible = [](QQuickItem *item) {
            return QAccessible::queryAccessibleInterface(item);
        };
        QQuickItem *const row = f.rows().at(0);
        QCOMPARE(accessible(row)->role(), QAccessible::Button);
        QCOMPARE(accessible(row)->text(QAccessible::Name), u"Start Unavngivet"_s);
        accessible(row)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(task->isRunning());
        QCOMPARE(accessible(row)->text(QAccessible::Name), u"Sæt på pause: Unavngivet"_s);
        QCOMPARE(accessible(f.item("openButton"))->text(QAccessible::Name), u"Åbn Time Tracker"_s);
        QCOMPARE(accessible(f.item("quitButton"))->text(QAccessible::Name), u"Afslut"_s);
        QCOMPARE(accessible(f.item("panelTotal"))->role(), QAccessible::StaticText);
    }
};

QTEST_MAIN(TestMenuBarView)
#include "tst_menubarview.moc"
