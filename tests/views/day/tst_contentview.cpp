#include "../../support/qmltest.h"
#include "../../support/teststore.h"
#include "model/projectcode.h"
#include "model/tasklist.h"
#include "model/tasktemplate.h"
#include "timer/timermanager.h"
#include "views/controls/theme.h"
#include "views/day/contentviewmodel.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QKeySequence>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using qmltest::centre;
using qmltest::findItem;
using qmltest::findItems;

/// The whole day in a window, used with mouse and keys.
class TestContentView : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(int taskCount = 0, const QSize &size = {650, 450})
        {
            for (int i = 0; i < taskCount; ++i)
                store.insertTask(u"Opgave %1"_s.arg(i + 1), i);
            show(size);
        }

        void show(const QSize &size = {650, 450})
        {
            window.reset();
            day = std::make_unique<ContentViewModel>(timer, store.context());
            window = std::make_unique<qmltest::Window>(
                QByteArray("import TimeTracker.Views.Day\nContentView {}"), size,
                QVariantMap{{u"viewModel"_s, QVariant::fromValue(day.get())}});
            window->hover({1, 1});
        }

        QQuickItem *root() const { return window->rootObject(); }
        QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
        /// The item of that name, or null.
        QQuickItem *maybe(const char *name) const
        {
            return findItem(window->contentItem(), QString::fromLatin1(name));
        }
        QRectF place(const char *name) const
        {
            const QQuickItem *const found = item(name);
            return found->mapRectToScene(QRectF(0, 0, found->width(), found->height()));
        }
        /// The rows that are there, from top to bottom.
        QList<QQuickItem *> rows() const
        {
            QList<QQuickItem *> rows;
            for (QQuickItem *label : findItems(item("taskList"), u"startButton"_s))
                rows << label->parentItem();
            std::sort(rows.begin(), rows.end(), [](const QQuickItem *a, const QQuickItem *b) {
                return a->mapToScene({}).y() < b->mapToScene({}).y();
            });
            return rows;
        }
        QQuickItem *inRow(int row, const char *name) const
        {
            return findItem(rows().at(row), QString::fromLatin1(name));
        }
        bool isActive(int row) const
        {
            return rows().at(row)->property("viewModel").value<TaskRowViewModel *>()->isActive();
        }
        QStringList names() const
        {
            QStringList names;
            for (QQuickItem *row : rows())
                names << findItem(row, u"nameText"_s)->property("text").toString();
            return names;
        }
        QString dateText() const { return day->header()->dateText(); }
        /// The row that is drawn as selected, or -1.
        int selectedRow() const
        {
            int selected = -1;
            for (int i = 0; i < rows().size(); ++i) {
                if (rows().at(i)->property("isSelected").toBool())
                    selected = i;
            }
            return selected;
        }
        /// The calendar's cell of that day of the month.
        QQuickItem *dayCell(int day) const
        {
            for (QQuickItem *cell : findItems(item("calendar"), u"dayCell"_s)) {
                if (cell->isVisible() && cell->property("day").toInt() == day)
                    return cell;
            }
            QTest::qFail("no such day", __FILE__, __LINE__);
            return nullptr;
        }
        QList<Task *> tasks()
        {
            return LiveQuery<Task>(store.context(),
                                   tasksOnDay(clock.calendar().dayInterval(timer.selectedDate())),
                                   QueryOrder::SortOrder)
                .results();
        }
        QList<Task *> running() { return AllTasks(store.context()).running(); }

        void click(const QQuickItem *target) const
        {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(target));
        }
        void click(const char *name) const { click(item(name)); }
        /// Selects a row by its name's first letter, clear of the pencil.
        void clickName(int row) const
        {
            const QPointF letter = inRow(row, "nameText")->mapToScene({4, 8});
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, letter.toPoint());
        }
        /// The item called "place name", where the place is "row", the first one, or "window".
        QQuickItem *named(const QString &path) const
        {
            const QString place = path.section(u' ', 0, 0);
            QQuickItem *const in = place == u"row"_s      ? rows().first()
                                   : place == u"window"_s ? window->contentItem()
                                                          : window->item(place);
            QQuickItem *const found = findItem(in, path.section(u' ', 1));
            if (!found)
                QTest::qFail(qPrintable(u"no "_s + path), __FILE__, __LINE__);
            return found;
        }
        /// Does "click" with what named() finds, "press" with a key's name, or "type".
        void perform(const QString &step) const
        {
            const QString what = step.section(u' ', 0, 0);
            const QString with = step.section(u' ', 1);
            if (what == u"click"_s)
                click(named(with));
            else if (what == u"press"_s)
                press(static_cast<Qt::Key>(QKeySequence(with)[0].key()));
            else
                type(with);
        }
        void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
        {
            QTest::keyClick(window.get(), key, modifiers);
        }
        void type(const QString &text) const
        {
            for (const QChar character : text)
                QTest::sendKeyEvent(QTest::Click, window.get(),
                                    character == u' ' ? Qt::Key_Space : Qt::Key_unknown, character,
                                    {});
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        std::unique_ptr<ContentViewModel> day;
        std::unique_ptr<qmltest::Window> window;
    };

    static QString text(const QQuickItem *item) { return item->property("text").toString(); }
    static QFont font(const QQuickItem *item) { return item->property("font").value<QFont>(); }

private Q_SLOTS:
    void shouldBreakAWordThatIsWiderThanItsRow()
    {
        Fixture f(1);
        f.store.insertTask(
            u"mellemrumognogetsåndsvagtlangtordsomikkekanbrydesnogetstedoverhovedet"_s, 1);
        f.show();
        const QQuickItem *const name = f.inRow(1, "nameText");
        const QQuickItem *const pencil = f.inRow(1, "pencil");
        QVERIFY(name->property("lineCount").toInt() > 1);
        QVERIFY(!name->property("truncated").toBool());
        QVERIFY(pencil->x() + pencil->width() <= pencil->parentItem()->width());
    }

    void shouldDivideTheWindow()
    {
        const Fixture f(1);
        const QRectF header = f.place("header");
        const QRectF list = f.place("taskList");
        const QRectF footer = f.place("footer");
        const QRectF side = f.place("sideColumn");

        QCOMPARE(side, QRectF(470, 0, 180, 450));
        QCOMPARE(header.topLeft(), QPointF(0, 0));
        QCOMPARE(header.width(), 470.0);
        QCOMPARE(header.height(), 2.0 + 12 + 44 + 12);
        QCOMPARE(list.top(), header.bottom() + 1);
        QCOMPARE(list.width(), 470.0);
        QCOMPARE(footer.bottom(), 450.0);
        QCOMPARE(list.bottom() + 1, footer.top());
        QCOMPARE(f.place("accentBar"), QRectF(0, 0, 650, 2));
        QCOMPARE(f.root()->property("minimumWidth").toReal(), 550.0);
        QCOMPARE(f.root()->property("minimumHeight").toReal(), 350.0);

        const Theme theme;
        QCOMPARE(f.window->colorAt({10, 1}), theme.brandAccent());
        QCOMPARE(f.window->colorAt({640, 1}), theme.brandAccent());
        QCOMPARE(f.window->colorAt({10, 3}), theme.controlBackground());
        QCOMPARE(f.window->colorAt({640, 440}), theme.controlBackground());
        QCOMPARE(f.window->colorAt({300, 448}), theme.controlBackground());
    }

    void shouldShowTheDayAsItIsEastward()
    {
        Fixture f(1);
        f.clock.travelTo("Asia/Tokyo");
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
        f.click("addTaskButton");
        QTRY_COMPARE(f.rows().size(), 2);
        QCOMPARE(f.tasks().size(), 2);
        // and the days of the calendar begin as they do there
        f.click(f.dayCell(21));
        QCOMPARE(f.timer.selectedDate(), f.clock.at(u"2026-11-21T00:00:00"_s));
        QCOMPARE(f.dateText(), u"lørdag 21. november 2026"_s);
    }

    void shouldShowTheDayAsItIsWestward()
    {
        Fixture f(1);
        f.clock.travelTo("America/New_York");
        // the selected day began there on the evening before
        QCOMPARE(f.dateText(), u"torsdag 19. november 2026"_s);
        QCOMPARE(f.rows().size(), 1);
        QVERIFY(f.dayCell(19)->property("isSelected").toBool());
        QVERIFY(f.dayCell(20)->property("isToday").toBool());

        f.click(f.dayCell(20));
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
        QVERIFY(f.dayCell(20)->property("isSelected").toBool());
        QTRY_COMPARE(f.rows().size(), 0);
        f.click("addTaskButton");
        QTRY_COMPARE(f.rows().size(), 1);
        QCOMPARE(f.tasks().constFirst()->date(), f.clock.today());
    }

    void shouldLayOutTheHeader()
    {
        // given a window with room for the date on one line
        const Fixture f(1, {900, 450});
        const QRectF start = f.place("startPauseButton");
        const QRectF previous = f.place("previousDay");
        const QRectF date = f.place("dateText");
        const QRectF next = f.place("nextDay");
        const QRectF billable = f.place("billableSwitch");

        QCOMPARE(start, QRectF(16, 14, 44, 44));
        QCOMPARE(previous.size(), QSizeF(32, 32));
        QCOMPARE(next.size(), QSizeF(32, 32));
        QCOMPARE(date.left(), previous.right() + 8);
        QCOMPARE(next.left(), date.right() + 8);
        QCOMPARE(billable.width(), 150.0);
        QCOMPARE(billable.right(), 720.0 - 16);
        // the flexible spacers are equal
        QVERIFY(std::abs((previous.left() - start.right()) - (billable.left() - next.right())) <=
                1);
        QVERIFY(previous.left() - start.right() >= 16);
        QCOMPARE(f.item("startPauseButton")->property("symbolSize").toInt(), 20);
        QCOMPARE(f.item("previousDay")->property("symbolSize").toInt(), 14);
        QCOMPARE(font(f.item("dateText")).pixelSize(), 16);
        QCOMPARE(font(f.item("dateText")).weight(), QFont::Medium);
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
        QCOMPARE(f.item("dateText")->property("lineCount").toInt(), 1);
        const auto *const label =
            f.item("actualSegment")->property("contentItem").value<QQuickItem *>();
        QCOMPARE(font(label).pixelSize(), 11);
        QCOMPARE(f.place("actualSegment").width(), 75.0);
        QCOMPARE(f.place("actualSegment").height(), label->implicitHeight() + 12);
        QCOMPARE(f.place("billableSegment").left(), f.place("actualSegment").right());
    }

    void shouldShowTheWholeDateInTheSmallestWindow()
    {
        Fixture f(0, {550, 350});
        f.timer.navigateToDate(f.clock.at(u"2026-09-30T00:00:00"_s));
        const QQuickItem *const date = f.item("dateText");
        QVERIFY(!date->property("truncated").toBool());
        QVERIFY(date->property("contentWidth").toReal() <= date->width());
        QVERIFY(f.place("previousDay").left() >= f.place("startPauseButton").right() + 8);
        QVERIFY(f.place("nextDay").right() + 8 <= f.place("billableSwitch").left());
        QVERIFY(f.place("header").height() >= date->height() + 26);
    }

    void shouldBreakTheDateAfterTheWeekdayWhereItNeedsTwoLines()
    {
        // given
        const Fixture f;
        const QQuickItem *const date = f.item("dateText");

        // then
        QCOMPARE(text(date), u"fredag\n20. november 2026"_s);
        QCOMPARE(date->property("lineCount").toInt(), 2);
        QVERIFY(date->property("contentWidth").toReal() <= date->width());
        QCOMPARE(QAccessible::queryAccessibleInterface(f.item("dateText"))->text(QAccessible::Name),
                 u"fredag 20. november 2026"_s);
    }

    void shouldLayOutTheFooter()
    {
        Fixture f(1);
        f.tasks().at(0)->setAccumulatedSeconds(3725);
        const QRectF add = f.place("addTaskButton");
        const QRectF time = f.place("totalTime");
        const QRectF hours = f.place("totalHours");
        QCOMPARE(add.left(), 16.0);
        QCOMPARE(hours.right(), 470.0 - 16);
        QCOMPARE(time.right() + 16, hours.left());
        QCOMPARE(text(f.item("totalTime")), u"01:02:05"_s);
        QCOMPARE(text(f.item("totalHours")), u"1.00 t"_s);
        QCOMPARE(font(f.item("totalTime")).pixelSize(), 14);
        QCOMPARE(font(f.item("totalTime")).weight(), QFont::DemiBold);
        QCOMPARE(f.place("footer").height(), std::max(add.height(), time.height()) + 24);
        f.click("actualSegment");
        QCOMPARE(text(f.item("totalHours")), u"1.03 t"_s);
        QCOMPARE(text(f.item("totalTime")), u"01:02:05"_s);
    }

    void shouldNeverLetTheTotalsReachTheButton_data()
    {
        QTest::addColumn<qint64>("hours");
        QTest::addColumn<bool>("isWhole");
        QTest::newRow("1000") << qint64(1'000) << true;
        QTest::newRow("100000") << qint64(100'000) << false;
        QTest::newRow("the most there is") << qint64(2'562'047'788'015'215) << false;
    }
    void shouldNeverLetTheTotalsReachTheButton()
    {
        QFETCH(qint64, hours);
        QFETCH(bool, isWhole);
        // given the smallest window
        Fixture f(1, {550, 350});
        const double height = f.place("footer").height();

        // when
        f.tasks().at(0)->setAccumulatedSeconds(hours * 3600);

        // then
        const auto gap = [&f](const char *left, const char *right) {
            return f.place(right).left() - f.place(left).right();
        };
        QTRY_VERIFY(std::abs(gap("totalLabel", "totalTime") - 16) < 0.1);
        QTRY_VERIFY(std::abs(gap("totalTime", "totalHours") - 16) < 0.1);
        QTRY_VERIFY(std::abs(f.place("totalHours").right() - (370 - 16)) < 0.1);
        QVERIFY(gap("addTaskButton", "totalLabel") >= 15.9);
        QCOMPARE(f.place("footer").height(), height);
        for (const char *figure : {"totalTime", "totalHours"}) {
            QVERIFY(f.item(figure)->property("contentWidth").toDouble() <= f.item(figure)->width());
            QVERIFY(!f.item(figure)->property("truncated").toBool());
            QCOMPARE(f.item(figure)->width() >= f.item(figure)->implicitWidth(), isWhole);
        }
    }

    void shouldLayOutTheRows()
    {
        const Fixture f(3);
        const double top = f.place("taskList").top();
        for (int i = 0; i < 3; ++i) {
            const QQuickItem *const row = f.rows().at(i);
            QCOMPARE(row->mapRectToScene(QRectF(0, 0, row->width(), row->height())),
                     QRectF(8, top + 4 + i * (44 + 4), 470 - 16, 44));
        }
    }

    void shouldShowTheEmptyStateOnADayWithoutTasks()
    {
        Fixture f;
        QVERIFY(f.item("emptyDay")->isVisible());
        QVERIFY(!f.item("taskList")->isVisible());
        const QRectF symbol = f.place("emptySymbol");
        QCOMPARE(f.item("emptySymbol")->property("fontSize").toInt(), 40);
        QCOMPARE(f.item("emptySymbol")->opacity(), 0.5);
        QCOMPARE(symbol.center().x(), 235.0);
        f.press(Qt::Key_Space);
        f.press(Qt::Key_Up);
        f.press(Qt::Key_Down);
        QVERIFY(f.running().isEmpty());
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(!f.item("emptyDay")->isVisible());
        QVERIFY(f.item("taskList")->isVisible());
        QTRY_COMPARE(f.names(), QStringList{u"Unavngivet opgave"_s});
    }

    void shouldSayInTheEmptyStateWhatToDo()
    {
        const Fixture f;
        const Theme theme;
        const QQuickItem *const symbol = f.item("emptySymbol");
        const QQuickItem *const statement = findItem(f.item("emptyDay"), u"emptyText"_s);
        const QQuickItem *const hint = f.item("emptyHint");
        const auto colour = [](const QQuickItem *item) {
            return item->property("color").value<QColor>();
        };
        const auto place = [](const QQuickItem *item) {
            return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        };
        QCOMPARE(symbol->property("name").toString(), u"clock"_s);
        QCOMPARE(colour(symbol), theme.secondary());
        QCOMPARE(text(statement), u"Ingen opgaver for denne dag"_s);
        QCOMPARE(font(statement).pixelSize(), 14);
        QCOMPARE(colour(statement), theme.secondary());
        QCOMPARE(text(hint), u"Klik på \"Ny opgave\" for at tilføje en"_s);
        QCOMPARE(font(hint).pixelSize(), 12);
        QCOMPARE(colour(hint), theme.tertiary());

        // one below the other, and all of them in the middle
        const QRectF whole = place(symbol) | place(statement) | place(hint);
        const QRectF room = f.place("emptyDay");
        QCOMPARE(place(statement).top(), place(symbol).bottom() + 12);
        QCOMPARE(place(hint).top(), place(statement).bottom() + 12);
        QVERIFY(std::abs(whole.center().y() - room.center().y()) <= 0.5);
        for (const QQuickItem *const line : {statement, hint}) {
            QCOMPARE(place(line).center().x(), room.center().x());
            QCOMPARE(line->property("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
        }
    }

    void shouldListTasksBySortOrderAndSelectByTheirPlace()
    {
        Fixture f;
        f.store.insertTask(u"c"_s, 2);
        f.store.insertTask(u"a"_s, 0);
        f.store.insertTask(u"b"_s, 1);
        QTRY_COMPARE(f.names(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(f.selectedRow(), -1);
        f.click(f.inRow(1, "nameText"));
        QCOMPARE(f.selectedRow(), 1);
    }

    void shouldTakeKeysWithoutAClickFirst()
    {
        Fixture f(2);
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Space);
        QCOMPARE(f.running(), QList<Task *>{f.tasks().at(1)});
        QVERIFY(f.isActive(1));
    }

    void shouldShowNoRowAsSelectedWhenTheSelectionIsPastTheEnd_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("selected");
        QTest::addColumn<int>("running");
        QTest::newRow("Down") << int(Qt::Key_Down) << 1 << 0;
        QTest::newRow("Up") << int(Qt::Key_Up) << 1 << 0;
        QTest::newRow("Space") << int(Qt::Key_Space) << 0 << 1;
    }
    void shouldShowNoRowAsSelectedWhenTheSelectionIsPastTheEnd()
    {
        QFETCH(int, key);
        // given
        Fixture f(3);
        f.press(Qt::Key_Up);
        QCOMPARE(f.selectedRow(), 2);

        // when
        f.click(f.inRow(0, "deleteButton"));
        f.click("deleteConfirmButton");

        // then
        QTRY_COMPARE(f.names(), (QStringList{u"Opgave 2"_s, u"Opgave 3"_s}));
        QCOMPARE(f.selectedRow(), -1);
        for (int row = 0; row < 2; ++row) {
            QVERIFY(!f.inRow(row, "rowBorder")->isVisible());
            QVERIFY(!f.inRow(row, "rowBackground")->isVisible());
        }

        // when
        QTRY_VERIFY(f.item("dayFocus")->hasActiveFocus());
        f.press(static_cast<Qt::Key>(key));

        // then
        QTEST(f.selectedRow(), "selected");
        QTEST(int(f.running().size()), "running");
    }

    void shouldStartOneRowAndStopTheOther()
    {
        Fixture f(2);
        f.click(f.inRow(0, "startButton"));
        f.clock.advance(3);
        f.click(f.inRow(1, "startButton"));
        QCOMPARE(f.running(), QList<Task *>{f.tasks().at(1)});
        QCOMPARE(f.tasks().at(0)->accumulatedSeconds(), 3);
    }

    void shouldLeaveATaskOfAnotherDayRunningWhenARowIsStarted()
    {
        Fixture f(1);
        f.click(f.inRow(0, "startButton"));
        f.timer.goToNextDay();
        f.store.insert<Task>(u"i morgen"_s, f.timer.selectedDate(), std::nullopt);
        QTRY_COMPARE(f.names(), QStringList{u"i morgen"_s});
        f.click(f.inRow(0, "startButton"));
        QCOMPARE(f.running().size(), 2);
    }

    void shouldShowEveryRunningRowAsRunning()
    {
        Fixture f(2);
        f.tasks().at(1)->start();
        QVERIFY(!f.isActive(0));
        QVERIFY(f.isActive(1));
    }

    void shouldStartAndPauseFromTheHeader()
    {
        Fixture f;
        const QQuickItem *const button = f.item("startPauseButton");
        QVERIFY(!button->isEnabled());
        QCOMPARE(button->opacity(), 0.5);
        QCOMPARE(button->property("symbol").toString(), u"play.fill"_s);
        f.click(button);
        QVERIFY(!f.timer.isAnyTaskRunning());

        f.store.insertTask(u"a"_s);
        QVERIFY(button->isEnabled());
        QCOMPARE(button->opacity(), 1.0);
        f.click(button);
        QCOMPARE(f.running(), f.tasks());
        QCOMPARE(button->property("symbol").toString(), u"pause.fill"_s);
        QCOMPARE(f.selectedRow(), -1);

        // on another day, without tasks, it pauses all the same
        f.click("nextDay");
        QVERIFY(button->isEnabled());
        f.click(button);
        QVERIFY(f.running().isEmpty());
        QVERIFY(!button->isEnabled());
    }

    void shouldColourTheHeadersButtonByWhatRuns()
    {
        // given
        Fixture f(1);
        const QRectF button = f.place("startPauseButton");
        const QPointF onCircle(button.center().x(), button.top() + 3);
        const Theme theme;
        QCOMPARE(f.window->colorAt(onCircle), theme.brandAccent());
        QCOMPARE(f.window->colorAt(button.center()), QColor(Qt::white));
        QCOMPARE(f.window->colorAt(button.topLeft() + QPointF(1, 1)), theme.controlBackground());

        // when
        f.click("startPauseButton");

        // then
        QTRY_COMPARE(f.window->colorAt(onCircle), theme.brandBackground());
        QVERIFY(theme.brandBackground() != theme.brandAccent());
        // between the two bars of the pause symbol
        QCOMPARE(f.window->colorAt(button.center()), theme.brandBackground());
        QCOMPARE(f.item("startPauseButton")->property("symbolColor").value<QColor>(),
                 QColor(Qt::white));
    }

    void shouldExplainTheHeadersButton_data()
    {
        QTest::addColumn<int>("tasks");
        QTest::addColumn<bool>("isRunning");
        QTest::addColumn<QString>("help");
        QTest::newRow("no tasks") << 0 << false << u"Ingen opgaver"_s;
        QTest::newRow("tasks") << 1 << false << u"Start første opgave"_s;
        QTest::newRow("a task runs") << 1 << true << u"Sæt aktiv opgave på pause"_s;
    }
    void shouldExplainTheHeadersButton()
    {
        QFETCH(int, tasks);
        QFETCH(bool, isRunning);
        // given
        Fixture f(tasks);
        if (isRunning)
            f.press(Qt::Key_Space);

        // when
        f.window->hover(centre(f.item("startPauseButton")));

        // then
        QTRY_VERIFY(f.maybe("helpTip") && f.item("helpTip")->isVisible());
        QTEST(text(f.item("helpTip")), "help");
    }

    void shouldChangeTheHelpOfTheHeadersButtonWhileItIsShown()
    {
        // given
        Fixture f(1);
        f.window->hover(centre(f.item("startPauseButton")));
        QTRY_VERIFY(f.maybe("helpTip") && f.item("helpTip")->isVisible());

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(text(f.item("helpTip")), u"Sæt aktiv opgave på pause"_s);
    }

    void shouldStepADayFromAnywhereOnAChevron()
    {
        // given
        Fixture f;
        const QRectF previous = f.place("previousDay");
        const QRectF next = f.place("nextDay");
        const auto click = [&f](const QPointF &point) {
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, point.toPoint());
        };

        // when
        click(previous.topLeft() + QPointF(1, 1));
        click(previous.bottomRight() - QPointF(2, 2));

        // then
        QCOMPARE(f.dateText(), u"onsdag 18. november 2026"_s);

        // when
        click(next.topRight() + QPointF(-2, 1));
        click(next.bottomLeft() + QPointF(1, -2));

        // then
        QVERIFY(f.timer.isToday());

        // when
        click(previous.center() - QPointF(0, previous.height() / 2 + 2));
        click(next.center() + QPointF(next.width() / 2 + 2, 0));

        // then
        QVERIFY(f.timer.isToday());
    }

    void shouldSwitchBetweenActualAndBillableHours()
    {
        Fixture f(1);
        const Theme theme;
        const auto colour = [&](const char *segment) {
            return f.item(segment)
                ->property("contentItem")
                .value<QQuickItem *>()
                ->property("color");
        };
        QVERIFY(f.timer.showBillableTime());
        QCOMPARE(colour("billableSegment").value<QColor>(), QColor(Qt::white));
        QCOMPARE(colour("actualSegment").value<QColor>(), theme.primary());
        f.click("billableSegment");
        f.click("billableSegment");
        QVERIFY(f.timer.showBillableTime());
        f.click("actualSegment");
        QVERIFY(!f.timer.showBillableTime());
        QCOMPARE(colour("actualSegment").value<QColor>(), QColor(Qt::white));
        const QRectF actual = f.place("actualSegment");
        QCOMPARE(f.window->colorAt(QPointF(actual.left() + 8, actual.top() + 3)),
                 theme.brandAccent());
        // round outside, square inside
        QVERIFY(f.window->colorAt(actual.topLeft()) != theme.brandAccent());
        QCOMPARE(f.window->colorAt(QPointF(actual.right() - 1, actual.top() + 1)),
                 theme.brandAccent());
    }

    void shouldStepThroughDaysAndClearTheSelection()
    {
        Fixture f(2);
        f.press(Qt::Key_Down);
        f.click("previousDay");
        QCOMPARE(f.dateText(), u"torsdag 19. november 2026"_s);
        QVERIFY(f.item("emptyDay")->isVisible());
        f.press(Qt::Key_Right);
        QTRY_COMPARE(f.rows().size(), 2);
        QTRY_COMPARE(f.rows().first()->mapToScene({}).y(), f.place("taskList").top() + 4);
        QCOMPARE(f.selectedRow(), -1);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Left);
        QCOMPARE(f.dateText(), u"onsdag 18. november 2026"_s);
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
    }

    void shouldNotFadeRowsWhenTheDayChanges()
    {
        Fixture f(2);
        f.store.insert<Task>(u"i morgen"_s, f.clock.now() + 86400, std::nullopt);
        f.click("nextDay");
        QTRY_COMPARE(f.names(), QStringList{u"i morgen"_s});
        QCOMPARE(f.rows().at(0)->parentItem()->opacity(), 1.0);
    }

    void shouldFadeATaskInAndOut()
    {
        // Noted as the fading goes on, of which a busy machine makes few steps.
        qreal faintest = 1;
        QString fadingName;
        bool hasBorder = true;
        Fixture f(2);
        const QQuickItem *const list = f.rows().at(0)->parentItem()->parentItem();
        connect(list, &QQuickItem::childrenChanged, this, [list, &faintest] {
            const QQuickItem *const last = list->childItems().constLast();
            connect(last, &QQuickItem::opacityChanged, last,
                    [last, &faintest] { faintest = std::min(faintest, last->opacity()); });
        });
        f.click("addTaskButton");
        QTRY_COMPARE(f.rows().size(), 3);
        const QPointer<QQuickItem> added = f.rows().at(2)->parentItem();
        QTRY_COMPARE(added->opacity(), 1.0);
        QVERIFY(faintest < 1);
        list->disconnect(this);

        const QPointer<QQuickItem> removed = f.rows().at(0)->parentItem();
        connect(removed, &QQuickItem::opacityChanged, this, [&] {
            fadingName = text(findItem(removed, u"nameText"_s));
            hasBorder = findItem(removed, u"rowBorder"_s)->isVisible();
        });
        f.click(f.inRow(0, "deleteButton"));
        f.click("deleteConfirmButton");
        QCOMPARE(f.tasks().size(), 2);
        QVERIFY(removed);
        QTRY_VERIFY(!removed);
        // it fades out as it was, though its task is gone
        QCOMPARE(fadingName, u"Opgave 1"_s);
        QVERIFY(!hasBorder);
        QTRY_COMPARE(f.rows().at(0)->mapToScene({}).y(), f.place("taskList").top() + 4);
        QCOMPARE(f.names(), (QStringList{u"Opgave 2"_s, u"Unavngivet opgave"_s}));
    }

    void shouldFadeTheLastTaskOutBeforeTheDayIsEmpty()
    {
        // given
        Fixture f(1);
        const QPointer<QQuickItem> removed = f.rows().at(0)->parentItem();

        // when
        f.click(f.inRow(0, "deleteButton"));
        f.click("deleteConfirmButton");

        // then
        QVERIFY(f.tasks().isEmpty());
        QTRY_VERIFY(removed->opacity() < 0.9);
        QVERIFY(removed->isVisible());
        QVERIFY(!f.item("emptyDay")->isVisible());
        QTRY_VERIFY(f.item("emptyDay")->isVisible());
        QVERIFY(!removed);
        QVERIFY(!f.item("taskList")->isVisible());
    }

    void shouldNotSelectARowThatFadesOut()
    {
        // given
        Fixture f(2);
        QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(f.rows().at(0));
        const QPointer<QQuickItem> leaving = f.rows().at(0);
        const QPoint place = f.inRow(0, "nameText")->mapToScene({4, 8}).toPoint();
        f.click(f.inRow(0, "deleteButton"));
        f.click("deleteConfirmButton");
        QTRY_VERIFY(!f.maybe("deleteConfirmButton"));

        // when
        QVERIFY(leaving);
        row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, place);

        // then Space acts as if nothing were selected
        QCOMPARE(f.selectedRow(), -1);
        f.press(Qt::Key_Space);
        QCOMPARE(f.running(), QList<Task *>{f.tasks().at(0)});
    }

    void shouldFadeTheFirstTaskIn()
    {
        // given
        Fixture f;

        // when
        f.click("addTaskButton");

        // then
        QVERIFY(!f.item("emptyDay")->isVisible());
        QTRY_COMPARE(f.rows().size(), 1);
        const QQuickItem *const added = f.rows().at(0)->parentItem();
        QVERIFY(added->opacity() < 1);
        QTRY_COMPARE(added->opacity(), 1.0);
    }

    void shouldShowTheFirstTaskAgainWhileTheLastFades()
    {
        // given
        Fixture f(1);
        f.click(f.inRow(0, "deleteButton"));
        f.click("deleteConfirmButton");
        QTRY_VERIFY(f.rows().at(0)->parentItem()->opacity() < 0.9);

        // when
        f.click("addTaskButton");

        // then
        QTRY_COMPARE(f.names(), QStringList{u"Unavngivet opgave"_s});
        QTRY_COMPARE(f.rows().at(0)->parentItem()->opacity(), 1.0);
        QCOMPARE(f.rows().at(0)->mapToScene({}).y(), f.place("taskList").top() + 4);
        QVERIFY(!f.item("emptyDay")->isVisible());
    }

    void shouldShowAnEmptyDayAtOnceWhenTheDayChanges()
    {
        // given
        Fixture f(3);
        f.click("addTaskButton");
        QTRY_COMPARE(f.rows().size(), 4);

        // when
        f.click("nextDay");

        // then
        QVERIFY(f.item("emptyDay")->isVisible());
        QVERIFY(!f.item("taskList")->isVisible());
        QTRY_VERIFY(f.rows().isEmpty());
    }

    void shouldAskBeforeItDeletesAndLetNothingThroughMeanwhile()
    {
        Fixture f(2);
        f.press(Qt::Key_Down);
        f.click(f.inRow(0, "deleteButton"));
        QCOMPARE(text(f.item("alertTitle")), u"Slet opgave"_s);
        QCOMPARE(text(f.item("alertMessage")), u"Slet \"Opgave 1\"?"_s);
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());

        // neither keys nor clicks reach what is behind
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);
        QVERIFY(f.timer.isToday());
        QCOMPARE(f.selectedRow(), 0);
        QCOMPARE(f.tasks().size(), 2);
        f.click(f.inRow(1, "startButton"));
        f.click("addTaskButton");
        QVERIFY(f.running().isEmpty());
        QCOMPARE(f.tasks().size(), 2);
    }

    void shouldFollowTheTaskWithTheAlertsMessage()
    {
        // given
        Fixture f(1);
        f.click(f.inRow(0, "deleteButton"));
        QCOMPARE(text(f.item("alertMessage")), u"Slet \"Opgave 1\"?"_s);

        // when it is started from elsewhere
        f.timer.toggleTask(f.tasks().at(0), AllTasks(f.store.context()), f.store.context());

        // then
        QCOMPARE(text(f.item("alertMessage")),
                 u"Denne opgave har registreret tid. Er du sikker på, at du vil slette "
                 "\"Opgave 1\"?"_s);
    }

    void shouldLetAssistiveTechnologyPressNothingBehindTheAlert()
    {
        // given all there is to be pressed
        Fixture f(2);
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        f.store.insert<ProjectCode>(u"KODE"_s, u"Kunde"_s);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.type(u"Ny"_s);
        f.click(findItem(f.item("projectCodes"), u"plusButton"_s));
        f.type(u"Ny"_s);
        QTRY_COMPARE(findItems(f.root(), u"deleteMark"_s).size(), 2);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.maybe("deleteConfirmButton"));
        // The forms have such a button, too.
        const QPointer<QQuickItem> alertsCancelButton =
            findItem(f.item("deleteConfirmButton")->parentItem(), u"cancelButton"_s);
        QTRY_VERIFY(alertsCancelButton->hasActiveFocus());

        // when
        int presses = 0;
        const QSignalSpy switches(&f.timer, &TimerManager::showBillableTimeChanged);
        const auto pressAll = [&](auto &pressAll, QQuickItem *item) -> void {
            QAccessibleInterface *const found = QAccessible::queryAccessibleInterface(item);
            if (QAccessibleActionInterface *const actions =
                    found ? found->actionInterface() : nullptr) {
                for (const QString &action : actions->actionNames()) {
                    if (action == QAccessibleActionInterface::setFocusAction())
                        continue;
                    ++presses;
                    actions->doAction(action);
                }
            }
            for (QQuickItem *child : item->childItems())
                pressAll(pressAll, child);
        };
        pressAll(pressAll, f.root());

        // then
        QVERIFY2(presses > 50, qPrintable(QString::number(presses)));
        QVERIFY(f.timer.isToday());
        // One half of the switch would undo what the other has done.
        QCOMPARE(switches.count(), 0);
        QVERIFY(!f.timer.isEditing());
        QVERIFY(f.running().isEmpty());
        QCOMPARE(f.selectedRow(), -1);
        QCOMPARE(f.tasks().size(), 2);
        QCOMPARE(LiveQuery<TaskTemplate>(f.store.context(), allRecords(), QueryOrder::SortOrder)
                     .results()
                     .size(),
                 1);
        QCOMPARE(LiveQuery<ProjectCode>(f.store.context(), allRecords(), QueryOrder::SortOrder)
                     .results()
                     .size(),
                 1);
        QVERIFY(!f.maybe("menuEntry"));
        QCOMPARE(findItems(f.root(), u"addButton"_s).size(), 2);
        QCOMPARE(f.item("monthTitle")->property("text").toString(), u"november 2026"_s);
        QCOMPARE(text(f.item("alertMessage")), u"Slet \"Opgave 1\"?"_s);
        QVERIFY(alertsCancelButton->hasActiveFocus());

        // when
        f.press(Qt::Key_Escape);

        // then the field that had the keyboard has it again
        QTRY_VERIFY(!f.maybe("alertMessage"));
        f.type(u"t"_s);
        QCOMPARE(text(f.item("codeField")), u"Nyt"_s);
        QAccessible::queryAccessibleInterface(f.item("nextDay"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(!f.timer.isToday());
    }

    void shouldKeepTheKeyboardInTheAlertWhoeverElseIsToHaveIt()
    {
        // given all there is to be focused
        Fixture f(2);
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        f.store.insert<ProjectCode>(u"KODE"_s, u"Kunde"_s);
        f.click(f.inRow(1, "pencil"));
        f.click(findItem(f.item("projectCodes"), u"plusButton"_s));
        QTRY_COMPARE(findItems(f.root(), u"deleteMark"_s).size(), 2);
        f.click(f.inRow(0, "deleteButton"));
        const QQuickItem *const cancel =
            findItem(f.item("deleteConfirmButton")->parentItem(), u"cancelButton"_s);
        QTRY_VERIFY(cancel->hasActiveFocus());

        // when assistive technology asks for the focus, in one place after the other
        int requests = 0;
        const auto focusAll = [&](auto &focusAll, QQuickItem *item) -> void {
            QAccessibleInterface *const found = QAccessible::queryAccessibleInterface(item);
            QAccessibleActionInterface *const actions = found ? found->actionInterface() : nullptr;
            // Qt 6.8 does not offer it for what is disabled, but it can be asked all the same.
            if (actions) {
                ++requests;
                actions->doAction(QAccessibleActionInterface::setFocusAction());
                QVERIFY2(cancel->hasActiveFocus(), qPrintable(item->objectName()));
            }
            for (QQuickItem *child : item->childItems())
                focusAll(focusAll, child);
        };
        focusAll(focusAll, f.root());

        // then the keys are the alert's
        QVERIFY2(requests > 20, qPrintable(QString::number(requests)));
        QVERIFY(cancel->hasActiveFocus());
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("deleteConfirmButton")->hasActiveFocus());
        f.press(Qt::Key_Escape);
        QTRY_VERIFY(!f.maybe("alertMessage"));
        QVERIFY(f.item("codeField")->hasActiveFocus());
        QCOMPARE(f.tasks().size(), 2);
    }

    void shouldLookTheSameBehindTheAlert()
    {
        // given what is disabled for other reasons stays so
        Fixture f(1);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.type(u"Ny"_s);

        // when
        f.click(f.inRow(0, "deleteButton"));

        // then
        QVERIFY(f.maybe("alertMessage"));
        QCOMPARE(f.item("startPauseButton")->opacity(), 1.0);
        QCOMPARE(f.item("addButton")->opacity(), 1.0);
    }

    void shouldCancelWithEscape()
    {
        Fixture f(1);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());
        f.press(Qt::Key_Escape);
        QTRY_VERIFY(!f.maybe("cancelButton"));
        QCOMPARE(f.tasks().size(), 1);
        // and the keys are the day's again
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldCancelWithTheFocusedButton_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Space") << int(Qt::Key_Space);
    }
    void shouldCancelWithTheFocusedButton()
    {
        QFETCH(int, key);
        Fixture f(1);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());
        f.press(static_cast<Qt::Key>(key));
        QTRY_VERIFY(!f.maybe("cancelButton"));
        QCOMPARE(f.tasks().size(), 1);
        QVERIFY(f.running().isEmpty());
    }

    void shouldDeleteByKey()
    {
        Fixture f(2);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("deleteConfirmButton")->hasActiveFocus());
        f.press(Qt::Key_Return);
        QTRY_VERIFY(!f.maybe("deleteConfirmButton"));
        QCOMPARE(f.tasks().size(), 1);
        QTRY_COMPARE(f.names(), QStringList{u"Opgave 2"_s});
    }

    void shouldSuspendAllKeysWhileANameIsEdited()
    {
        Fixture f(2);
        f.click(f.inRow(0, "pencil"));
        QVERIFY(f.timer.isEditing());
        f.type(u"a b"_s);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Home);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Up);
        f.press(Qt::Key_Down);
        f.press(Qt::Key_End);
        f.press(Qt::Key_Right);
        f.type(u"c"_s);
        QVERIFY(f.timer.isToday());
        QCOMPARE(f.selectedRow(), -1);
        QVERIFY(f.running().isEmpty());
        f.press(Qt::Key_Return);
        QCOMPARE(f.tasks().at(0)->name(), u"a bc"_s);
    }

    void shouldTypeABlankWhileATimeIsEdited()
    {
        // given
        Fixture f(2);
        f.press(Qt::Key_Down);
        f.click(f.inRow(0, "timeText"));

        // when
        f.type(u" 1:30 "_s);

        // then
        QCOMPARE(text(f.item("timeField")), u" 1:30 "_s);
        QVERIFY(f.running().isEmpty());
        QCOMPARE(f.selectedRow(), 0);

        // when
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.tasks().at(0)->accumulatedSeconds(), 5400);
    }

    void shouldDoNothingElseWithTheKeyThatCommits()
    {
        Fixture f(1);
        f.click(f.inRow(0, "pencil"));
        f.type(u"Ny"_s);
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.tasks().size(), 1);
        QCOMPARE(f.tasks().at(0)->name(), u"Ny"_s);
        QVERIFY(!f.timer.isEditing());
        // and the keyboard is the day's again, without a click
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.tasks().size(), 2);
    }

    void shouldKeepAnOpenEditThatScrollsOutOfSight()
    {
        // given two, of which the second has the keyboard
        Fixture f(40);
        f.click(f.inRow(1, "pencil"));
        f.type(u"Halvt"_s);
        f.click(f.inRow(0, "pencil"));
        f.type(u"Uden"_s);
        f.item("taskList")->setProperty("contentY", 1200);
        QTRY_COMPARE(findItems(f.item("taskList"), u"nameField"_s).size(), 1);
        QVERIFY(f.timer.isEditing());
        f.item("taskList")->setProperty("contentY", -4);
        QTRY_COMPARE(findItems(f.item("taskList"), u"nameField"_s).size(), 2);
        QCOMPARE(text(f.inRow(0, "nameField")), u"Uden"_s);
        QVERIFY(f.inRow(0, "nameField")->hasActiveFocus());
        QCOMPARE(text(f.inRow(1, "nameField")), u"Halvt"_s);
    }

    void shouldTypeIntoAnEditThatIsOutOfSightAndShowIt_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<double>("y");
        QTest::newRow("above") << 0 << 1200.0;
        QTest::newRow("below") << 39 << -4.0;
    }
    void shouldTypeIntoAnEditThatIsOutOfSightAndShowIt()
    {
        QFETCH(int, row);
        QFETCH(double, y);
        // given rows that differ in height
        Fixture f(40);
        for (const int each : {3, 7, 30})
            f.tasks().at(each)->setName(
                u"Et meget langt navn på en opgave som ikke kan stå på en linje"_s);
        QQuickItem *const list = f.item("taskList");
        if (row == 39)
            f.press(Qt::Key_Up);
        QTRY_VERIFY(f.names().contains(u"Opgave %1"_s.arg(row + 1)));
        f.click(
            f.inRow(static_cast<int>(f.names().indexOf(u"Opgave %1"_s.arg(row + 1))), "pencil"));
        f.type(u"Halvt"_s);
        const QPointer<QQuickItem> field = f.item("nameField");
        const auto isInSight = [&] {
            return field && f.place("taskList")
                                .contains(field->mapRectToScene(
                                    QRectF(0, 0, field->width(), field->height())));
        };
        QVERIFY(isInSight());

        list->setProperty("contentY", y);
        QTRY_VERIFY(!f.names().contains(u"Opgave %1"_s.arg(row == 0 ? 2 : 39)));
        QVERIFY(field);
        QVERIFY(!isInSight());
        f.type(u" skrevet"_s);
        QTRY_VERIFY(isInSight());
        QCOMPARE(text(field), u"Halvt skrevet"_s);
        f.press(Qt::Key_Return);
        QCOMPARE(f.tasks().at(row)->name(), u"Halvt skrevet"_s);
        QVERIFY(!f.timer.isEditing());
        QVERIFY(f.item("dayFocus")->hasActiveFocus());
        QTRY_VERIFY(f.names().contains(u"Halvt skrevet"_s));
    }

    void shouldNotMoveTheRowsWhenOneOfThemGetsTheKeyboard()
    {
        Fixture f(40);
        const double top = f.rows().first()->mapToScene({}).y();
        QCOMPARE(top, f.place("taskList").top() + 4);
        f.click(f.inRow(0, "pencil"));
        QCOMPARE(f.rows().first()->mapToScene({}).y(), top);
        f.press(Qt::Key_Return);
        f.click(f.inRow(2, "timeText"));
        QCOMPARE(f.rows().first()->mapToScene({}).y(), top);
        f.press(Qt::Key_Return);
        // the header has five controls
        for (int i = 0; i < 6; ++i)
            f.press(Qt::Key_Tab);
        QVERIFY(f.inRow(0, "startButton")->hasActiveFocus());
        QCOMPARE(f.rows().first()->mapToScene({}).y(), top);
    }

    void shouldReturnTheKeyboardToTheDayWhenSomethingCloses_data()
    {
        using Steps = QStringList;
        QTest::addColumn<QStringList>("steps");
        const Steps templateForm{u"click templates plusButton"_s, u"type Ny"_s};
        QTest::newRow("template, Return") << templateForm + Steps{u"press Return"_s};
        QTest::newRow("template, checkmark")
            << templateForm + Steps{u"click templates addButton"_s};
        QTest::newRow("template, xmark") << templateForm + Steps{u"click templates cancelButton"_s};
        QTest::newRow("template, checkmark by key")
            << templateForm + Steps{u"press Tab"_s, u"press Space"_s};
        QTest::newRow("template, xmark by key")
            << templateForm + Steps{u"press Tab"_s, u"press Tab"_s, u"press Space"_s};
        const Steps codeForm{u"click projectCodes plusButton"_s, u"type Ny"_s};
        QTest::newRow("code, Return")
            << codeForm + Steps{u"press Tab"_s, u"type Navn"_s, u"press Return"_s};
        QTest::newRow("code, checkmark") << codeForm + Steps{u"click projectCodes addButton"_s};
        QTest::newRow("code, xmark") << codeForm + Steps{u"click projectCodes cancelButton"_s};
        const Steps name{u"click row pencil"_s};
        const Steps time{u"click row timeText"_s};
        const Steps enter{u"press Return"_s};
        QTest::newRow("name") << name + enter;
        QTest::newRow("time") << time + enter;
        QTest::newRow("both, time first")
            << name + time + enter + Steps{u"click row nameField"_s} + enter;
        QTest::newRow("both, name first") << name + time + Steps{u"click row nameField"_s} + enter +
                                                 Steps{u"click row timeField"_s} + enter;
        QTest::newRow("name, then a form")
            << name + templateForm + enter + Steps{u"click row nameField"_s} + enter;
        const Steps menu{u"click row picker"_s};
        QTest::newRow("menu, Escape") << menu + Steps{u"press Escape"_s};
        QTest::newRow("menu, choice") << menu + Steps{u"click window menuEntry"_s};
        QTest::newRow("menu, choice by key") << menu + Steps{u"press Down"_s} + enter;
        const Steps alert{u"click row deleteButton"_s};
        QTest::newRow("alert, Escape") << alert + Steps{u"press Escape"_s};
        QTest::newRow("alert, Annuller") << alert + Steps{u"click window cancelButton"_s};
        QTest::newRow("alert, Annuller by key") << alert + enter;
        QTest::newRow("alert, Slet") << alert + Steps{u"click window deleteConfirmButton"_s};
        QTest::newRow("alert, Slet by key") << alert + Steps{u"press Tab"_s, u"press Space"_s};
    }
    void shouldReturnTheKeyboardToTheDayWhenSomethingCloses()
    {
        QFETCH(QStringList, steps);
        Fixture f(3);
        f.press(Qt::Key_Down);
        for (const QString &step : steps)
            f.perform(step);
        QTRY_VERIFY(f.item("dayFocus")->hasActiveFocus());
        // then keys act, and screen readers are told what upon
        QTRY_COMPARE(f.rows().size(), f.tasks().size());
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(!f.maybe("timeField"));
        QTRY_VERIFY(!f.maybe("menuEntry"));
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 1);
        QVERIFY(f.rows().at(1)->property("hasKeys").toBool());
        // and no pencil stays
        f.window->hover({1, 1});
        QTRY_VERIFY(!f.rows().at(0)->property("isHovered").toBool());
    }

    void shouldReturnTheKeyboardToTheControlThatOpenedWhatCloses_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QStringList>("steps");
        const auto add = [](const QString &control, const QStringList &steps) {
            QTest::newRow(qPrintable(control + u' ' + steps.constLast())) << control << steps;
        };
        add(u"templates plusButton"_s, {u"type Ny"_s, u"press Return"_s});
        add(u"templates plusButton"_s, {u"press Tab"_s, u"press Space"_s});
        add(u"projectCodes plusButton"_s,
            {u"type Ny"_s, u"press Tab"_s, u"press Tab"_s, u"press Space"_s});
        add(u"row pencil"_s, {u"type Ny"_s, u"press Return"_s});
        add(u"row timeText"_s, {u"type 1"_s, u"press Return"_s});
        add(u"row picker"_s, {u"press Escape"_s});
        add(u"row picker"_s, {u"press Return"_s});
        add(u"row deleteButton"_s, {u"press Escape"_s});
        add(u"row deleteButton"_s, {u"press Return"_s});
    }
    void shouldReturnTheKeyboardToTheControlThatOpenedWhatCloses()
    {
        QFETCH(QString, control);
        QFETCH(QStringList, steps);
        Fixture f(2);
        const QPointer<QQuickItem> opener = f.named(control);
        opener->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Space);
        QTRY_VERIFY(!opener->hasActiveFocus());
        for (const QString &step : steps)
            f.perform(step);
        QTRY_VERIFY(opener->hasActiveFocus());
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(!f.maybe("timeField"));
        // and it is seen there
        QTRY_VERIFY(opener->isVisible());
        const QVariant visualFocus = opener->property("visualFocus");
        QVERIFY(!visualFocus.isValid() || visualFocus.toBool());
    }

    void shouldLeaveTheKeyboardInTheFieldThatHasItWhenAnotherCloses()
    {
        Fixture f(1);
        f.perform(u"click templates plusButton"_s);
        f.perform(u"type Ny"_s);
        f.perform(u"click row pencil"_s);
        const QPointer<QQuickItem> name = f.named(u"row nameField"_s);
        QTRY_VERIFY(name->hasActiveFocus());

        f.perform(u"click templates cancelButton"_s);
        QTRY_VERIFY(!f.maybe("cancelButton"));
        QVERIFY(name);
        QVERIFY(name->hasActiveFocus());
        f.perform(u"type Navn"_s);
        QCOMPARE(name->property("text").toString(), u"Navn"_s);
    }

    void shouldGiveTheDayTheKeyboardWhenWhatHadItGoes_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QStringList>("steps");
        QTest::newRow("the row is deleted")
            << u"row deleteButton"_s
            << QStringList{u"press Space"_s, u"press Tab"_s, u"press Return"_s};
        QTest::newRow("the template is deleted")
            << u"templates deleteMark"_s << QStringList{u"press Space"_s};
        QTest::newRow("another day") << u"row startButton"_s << QStringList{u"press Right"_s};
        QTest::newRow("the button is disabled")
            << u"window startPauseButton"_s << QStringList{u"press Right"_s};
    }
    void shouldGiveTheDayTheKeyboardWhenWhatHadItGoes()
    {
        QFETCH(QString, control);
        QFETCH(QStringList, steps);
        Fixture f(2);
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        QTRY_VERIFY(f.maybe("templateButton"));
        f.named(control)->forceActiveFocus(Qt::TabFocusReason);
        for (const QString &step : steps)
            f.perform(step);
        QTRY_VERIFY(f.item("dayFocus")->hasActiveFocus());
    }

    void shouldTakeTheKeyboardWhenARowIsSelectedByAClick()
    {
        // given a field of the side column that has it
        Fixture f(2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.type(u"Ny"_s);
        f.clickName(0);
        QCOMPARE(f.selectedRow(), 0);
        QVERIFY(f.item("dayFocus")->hasActiveFocus());
        f.press(Qt::Key_Space);
        QCOMPARE(f.running().size(), 1);
        QCOMPARE(text(f.item("nameField")), u"Ny"_s);
        // and so from a button
        f.item("nextDay")->forceActiveFocus(Qt::TabFocusReason);
        f.clickName(1);
        QVERIFY(f.item("dayFocus")->hasActiveFocus());
    }

    void shouldLeaveTheKeyboardWithAnEditWhenAnotherRowIsSelected()
    {
        Fixture f(2);
        f.click(f.inRow(0, "pencil"));
        f.type(u"N"_s);
        f.clickName(1);
        QCOMPARE(f.selectedRow(), 1);
        f.type(u"y"_s);
        f.press(Qt::Key_Return);
        QCOMPARE(f.tasks().at(0)->name(), u"Ny"_s);
    }

    void shouldGiveTheKeyboardBackWhenTheEditedTaskLeaves_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("another day") << u"day"_s;
        QTest::newRow("deleted") << u"delete"_s;
        QTest::newRow("the window closes") << u"close"_s;
    }
    void shouldGiveTheKeyboardBackWhenTheEditedTaskLeaves()
    {
        QFETCH(QString, how);
        Fixture f(2);
        f.click(f.inRow(1, "pencil"));
        f.type(u"Ny"_s);
        QVERIFY(f.timer.isEditing());
        if (how == "day"_L1) {
            f.click("nextDay");
        } else if (how == "delete"_L1) {
            f.click(f.inRow(1, "deleteButton"));
            f.click("deleteConfirmButton");
        } else {
            f.window.reset();
            f.day.reset();
        }
        QVERIFY(!f.timer.isEditing());
        QCOMPARE(f.store.context().inMemory(RecordType::Task, allRecords()).size(),
                 how == "delete"_L1 ? 1 : 2);
        if (how == "day"_L1) {
            QTRY_VERIFY(!f.maybe("nameField"));
            f.press(Qt::Key_Left);
            QVERIFY(f.timer.isToday());
            QTRY_COMPARE(f.names(), (QStringList{u"Opgave 1"_s, u"Opgave 2"_s}));
            QVERIFY(!f.maybe("nameField"));
        }
    }

    void shouldStayInTheEditWhenAnotherRowLeaves()
    {
        Fixture f(2);
        f.click(f.inRow(1, "pencil"));
        f.type(u"Ny"_s);
        f.store.context().remove(f.tasks().at(0));
        QTRY_COMPARE(f.rows().size(), 1);
        QVERIFY(f.timer.isEditing());
        QCOMPARE(text(f.item("nameField")), u"Ny"_s);
    }

    void shouldScrollTheRowSelectedByKeyIntoView()
    {
        Fixture f(40);
        f.press(Qt::Key_Up);
        QTRY_COMPARE(f.names().last(), u"Opgave 40"_s);
        const QQuickItem *const row = f.rows().last();
        QVERIFY(row->mapToScene({0, row->height()}).y() <= f.place("taskList").bottom());
        f.timer.goToNextDay();
        f.timer.goToPreviousDay();
        QTRY_COMPARE(f.names().first(), u"Opgave 1"_s);
        f.press(Qt::Key_Down);
        QTRY_COMPARE(f.rows().first()->mapToScene({}).y(), f.place("taskList").top() + 4);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldScrollANewTasksRowIntoView()
    {
        Fixture f(40);
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QTRY_COMPARE(f.names().last(), u"Unavngivet opgave"_s);
        const QQuickItem *const row = f.rows().last();
        QVERIFY(row->mapToScene({0, row->height()}).y() <= f.place("taskList").bottom());
        QCOMPARE(f.selectedRow(), -1);
    }

    void shouldNeverMoveTheFocusToAButtonByAClick()
    {
        Fixture f(1);
        f.click("startPauseButton");
        f.click("nextDay");
        f.click("previousDay");
        f.click("actualSegment");
        QTRY_COMPARE(f.rows().size(), 1);
        f.click(f.inRow(0, "startButton"));
        // Space is the day's, not the last button's
        f.press(Qt::Key_Down);
        QVERIFY(f.running().isEmpty());
        f.press(Qt::Key_Space);
        QCOMPARE(f.running().size(), 1);
        QVERIFY(f.timer.isToday());
    }

    void shouldPressAFocusedButtonWithSpaceAndLeaveTheOtherKeysToTheDay()
    {
        Fixture f(2);
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("startPauseButton")->hasActiveFocus());
        f.press(Qt::Key_Space);
        QCOMPARE(f.running(), QList<Task *>{f.tasks().at(0)});
        QCOMPARE(f.selectedRow(), -1);
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("previousDay")->hasActiveFocus());
        f.press(Qt::Key_Space);
        QVERIFY(!f.timer.isToday());
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);
        QVERIFY(f.timer.isToday());
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.tasks().size(), 3);
        // Escape goes back to the day
        f.press(Qt::Key_Escape);
        QVERIFY(!f.item("previousDay")->hasActiveFocus());
        f.press(Qt::Key_Space);
        QVERIFY(f.running().isEmpty());
        QVERIFY(f.timer.isToday());
    }

    void shouldLeaveSpaceWithTheDesktopsModifiersAlone_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("Alt") << Qt::KeyboardModifiers(Qt::AltModifier);
        QTest::newRow("Meta") << Qt::KeyboardModifiers(Qt::MetaModifier);
    }
    void shouldLeaveSpaceWithTheDesktopsModifiersAlone()
    {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        Fixture f(1);
        // of the day
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Space, modifiers);
        QVERIFY(f.running().isEmpty());
        // of a button
        f.inRow(0, "startButton")->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Space, modifiers);
        QVERIFY(f.running().isEmpty());
        // and of the menu of project codes
        f.inRow(0, "picker")->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Space, modifiers);
        QVERIFY(!f.maybe("menuEntry"));
        // The key alone does what it did.
        f.press(Qt::Key_Space);
        QTRY_VERIFY(f.maybe("menuEntry"));
    }

    void shouldFollowADarkPaletteWhileItRuns()
    {
        const Fixture f(2);
        const QPalette before = QGuiApplication::palette();
        const QColor light = f.window->colorAt({100, 60});
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(0x2d, 0x2d, 0x2d));
        dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
        dark.setColor(QPalette::WindowText, Qt::white);
        dark.setColor(QPalette::Text, Qt::white);
        QGuiApplication::setPalette(dark);
        QTRY_VERIFY(f.window->colorAt({100, 60}).lightness() < 100);
        QGuiApplication::setPalette(before);
        QTRY_COMPARE(f.window->colorAt({100, 60}), light);
    }

    void shouldStackTheSideColumn()
    {
        const Fixture f;
        const QRectF side = f.place("sideColumn");
        const QRectF calendar = f.place("calendar");
        const QRectF templates = f.place("templates");
        const QRectF codes = f.place("projectCodes");
        QCOMPARE(calendar.topLeft(), side.topLeft());
        for (const QRectF &part : {calendar, templates, codes})
            QCOMPARE(part.width(), 180.0);
        QCOMPARE(templates.top(), calendar.bottom() + 1);
        QCOMPARE(codes.top(), templates.bottom() + 1);
        QCOMPARE(codes.bottom(), side.bottom());
        QVERIFY(std::abs(templates.height() - codes.height()) <= 1);
    }

    void shouldBeClickedInTwentyByTwentyWhereverThereIsRoom()
    {
        // given everything that is clicked
        Fixture f;
        f.store.insert<Task>(u"Møde"_s, f.clock.now(), u"KODE"_s);
        f.store.insertTask(u"Frokost"_s, 1);
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        f.store.insert<ProjectCode>(u"KODE"_s, u"Kunde"_s);
        QTRY_COMPARE(f.rows().size(), 2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.click(findItem(f.item("projectCodes"), u"plusButton"_s));
        QTRY_COMPARE(findItems(f.root(), u"deleteMark"_s).size(), 2);
        // one mark is drawn; what is not drawn takes no clicks
        const QQuickItem *const mark = findItem(f.item("templates"), u"deleteMark"_s);
        f.window->hover(centre(mark));
        QTRY_VERIFY(mark->property("isShown").toBool());

        QList<QQuickItem *> clicked;
        const auto collect = [&clicked](auto &collect, QQuickItem *item) -> void {
            const QVariant isShown = item->property("isShown");
            if (!item->isVisible() || (isShown.isValid() && !isShown.toBool()))
                return;
            if (item->inherits("QQuickAbstractButton") || item->inherits("QQuickTextInput") ||
                (item->parentItem() && item->parentItem()->objectName() == "picker"_L1 &&
                 item->inherits("QQuickMouseArea")))
                clicked << item;
            for (QQuickItem *child : item->childItems())
                collect(collect, child);
        };
        collect(collect, f.root());
        QVERIFY2(clicked.size() > 50, qPrintable(QString::number(clicked.size())));

        for (const QQuickItem *item : clicked) {
            // then it is large enough both ways
            const QPoint middle = item->mapFromScene(QPointF(centre(item))).toPoint();
            int width = 0;
            int height = 0;
            for (int i = -400; i < 400; ++i) {
                width += item->contains(middle + QPointF(i + 0.5, 0.5));
                height += item->contains(middle + QPointF(0.5, i + 0.5));
            }
            const QByteArray what = item->objectName().toUtf8() + ' ' + QByteArray::number(width) +
                                    ' ' + QByteArray::number(height);
            // A template's checkmark has 4 on one side, and shares 4 with the cross on the other.
            const bool isBetween =
                item->objectName() == "addButton"_L1 && f.item("templates")->isAncestorOf(item);
            QVERIFY2(width >= (isBetween ? 18 : 20), what.constData());
            QVERIFY2(height >= 20, what.constData());

            // and takes nothing away from another
            for (const QQuickItem *other : clicked) {
                const auto place = [](const QQuickItem *of) {
                    return of->mapRectToScene(QRectF(0, 0, of->width(), of->height()));
                };
                if (other == item ||
                    !place(item).adjusted(-20, -20, 20, 20).intersects(place(other)))
                    continue;
                for (int y = 0; y < other->height(); ++y) {
                    for (int x = 0; x < other->width(); ++x) {
                        const QPointF point(x + 0.5, y + 0.5);
                        QVERIFY2(!item->contains(item->mapFromItem(other, point)),
                                 what.constData());
                    }
                }
            }
        }
    }

    void shouldPageTheCalendarByAClickBesideAChevron()
    {
        // given
        const Fixture f;
        const auto click = [&f](const QPointF &point) {
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, point.toPoint());
        };
        QCOMPARE(text(f.item("monthTitle")), u"november 2026"_s);

        // when
        click(f.place("nextMonth").bottomRight() + QPointF(2, 2));

        // then
        QCOMPARE(text(f.item("monthTitle")), u"december 2026"_s);

        // when
        click(f.place("previousMonth").topLeft() - QPointF(3, 3));
        click(f.place("previousMonth").bottomRight() - QPointF(1, 1));

        // then
        QCOMPARE(text(f.item("monthTitle")), u"oktober 2026"_s);
    }

    void shouldShowTheDayThatIsClickedInTheCalendar()
    {
        Fixture f(2);
        f.press(Qt::Key_Down);
        const auto cells = findItems(f.item("calendar"), u"dayCell"_s);
        // November 2026 begins on a Sunday
        f.click(cells.at(6 + 9));
        QCOMPARE(f.dateText(), u"tirsdag 10. november 2026"_s);
        QCOMPARE(f.selectedRow(), -1);
        // the keys are still the day's
        f.press(Qt::Key_Right);
        QCOMPARE(f.dateText(), u"onsdag 11. november 2026"_s);
    }

    void shouldMakeATaskFromATemplateWithOneClick()
    {
        Fixture f;
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        f.timer.goToNextDay();
        QTRY_VERIFY(f.maybe("templateButton"));
        f.click("templateButton");
        QTRY_COMPARE(f.names(), QStringList{u"Daglig status"_s});
        QCOMPARE(f.tasks().at(0)->date(), f.clock.at(u"2026-11-21T00:00:00"_s));
        // the keys are still the day's
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldLeaveATextFieldOfTheSideColumnEveryKeyWithoutCtrl()
    {
        Fixture f(2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        QQuickItem *const field = findItem(f.item("templates"), u"nameField"_s);
        QVERIFY(field);
        QVERIFY(field->hasActiveFocus());
        QVERIFY(!f.timer.isEditing());
        f.type(u"a b"_s);
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,
                                  Qt::Key_Home, Qt::Key_Left, Qt::Key_Left}) {
            f.press(key);
            QVERIFY(f.timer.isToday());
            QCOMPARE(f.selectedRow(), -1);
        }
        // by words, not by days
        f.press(Qt::Key_Right, Qt::ControlModifier);
        QVERIFY(f.timer.isToday());
        f.press(Qt::Key_Left, Qt::ControlModifier);
        QCOMPARE(text(field), u"a b"_s);
        QVERIFY(f.timer.isToday());
        QCOMPARE(f.selectedRow(), -1);
        QVERIFY(f.running().isEmpty());

        // but the two shortcuts act
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.tasks().size(), 3);
        f.timer.goToNextDay();
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);
        QVERIFY(f.timer.isToday());
        QCOMPARE(text(field), u"a b"_s);

        // and Escape goes back to the day
        f.press(Qt::Key_Escape);
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldGiveTheKeysBackWhenATemplateHasBeenAdded()
    {
        Fixture f(2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.type(u"Ny"_s);
        f.press(Qt::Key_Return);
        QTRY_VERIFY(f.maybe("templateButton"));
        QCOMPARE(f.tasks().size(), 2);
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldTakeNoKeyWhileAMenuIsOpen()
    {
        Fixture f(2);
        f.click(f.inRow(0, "picker"));
        QTRY_VERIFY(f.maybe("menuEntry"));
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);
        QVERIFY(f.timer.isToday());
        f.press(Qt::Key_Escape);
        QTRY_VERIFY(!f.maybe("menuEntry"));
        QCOMPARE(f.tasks().size(), 2);
        f.press(Qt::Key_Down);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldReachEveryButtonOfTheSectionsInTheSmallestWindow()
    {
        Fixture f(1, {550, 350});
        for (int i = 0; i < 10; ++i) {
            f.store.insert<TaskTemplate>(u"Skabelon %1"_s.arg(i), i);
            f.store.insert<ProjectCode>(u"KODE-%1"_s.arg(i), u"Kunde"_s, i);
        }
        for (const char *section : {"templates", "projectCodes"}) {
            f.click(findItem(f.item(section), u"plusButton"_s));
            const QRectF frame = f.place(section);
            for (const char *button : {"addButton", "cancelButton"}) {
                const QQuickItem *const item = findItem(f.item(section), QString::fromLatin1(button));
                QVERIFY2(item, button);
                // the wheel brings it into the section's share
                for (int turn = 0; turn < 20 && !frame.contains(item->mapRectToScene(
                                                    QRectF(0, 0, item->width(), item->height())));
                     ++turn) {
                    QWheelEvent wheel(frame.center(), f.window->mapToGlobal(frame.center()), {},
                                      {0, -120}, {}, {}, Qt::NoScrollPhase, false);
                    QCoreApplication::sendEvent(f.window.get(), &wheel);
                    QCoreApplication::processEvents();
                }
                QTRY_VERIFY2(frame.contains(
                                 item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))),
                             button);
            }
        }
    }

    void shouldTellAssistiveTechnologyWhatTheKeysActUpon()
    {
        Fixture f(2);
        const auto day = [&f] { return QAccessible::queryAccessibleInterface(f.item("dayPane")); };
        const auto isFocused = [&f](int row) {
            return QAccessible::queryAccessibleInterface(f.rows().at(row))->state().focused;
        };
        QVERIFY(day()->state().focused);
        QCOMPARE(day()->text(QAccessible::Name), u"fredag 20. november 2026"_s);
        QCOMPARE(day()->text(QAccessible::Description), QString());

        f.press(Qt::Key_Down);
        QVERIFY(isFocused(0));
        QVERIFY(!day()->state().focused);
        f.press(Qt::Key_Down);
        QVERIFY(isFocused(1));
        QVERIFY(!isFocused(0));
        QVERIFY(f.item("dayFocus")->hasActiveFocus());

        // Not while a control has the keyboard.
        f.item("nextDay")->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(!isFocused(1));
        f.press(Qt::Key_Escape);
        QVERIFY(isFocused(1));

        f.press(Qt::Key_Left);
        QCOMPARE(day()->text(QAccessible::Name), u"torsdag 19. november 2026"_s);
        QCOMPARE(day()->text(QAccessible::Description), u"Ingen opgaver for denne dag"_s);
    }

    void shouldMakeNoShortcutOfAName()
    {
        // given
        Fixture f;
        Task *const task = f.store.insert<Task>(u"B&O"_s, f.clock.now(), u"R&D"_s);
        f.store.insert<TaskTemplate>(u"B&O &møde"_s);
        f.store.insert<ProjectCode>(u"R&D"_s, u"Salg & service"_s);
        QTRY_COMPARE(f.rows().size(), 1);
        QTRY_COMPARE(findItems(f.root(), u"deleteMark"_s).size(), 2);
        const auto controls = [&f] {
            QList<const QQuickItem *> controls;
            const QList<QQuickItem *> items = findItems(f.window->contentItem());
            std::copy_if(
                items.begin(), items.end(), std::back_inserter(controls),
                [](const QQuickItem *item) { return item->inherits("QQuickAbstractButton"); });
            return controls;
        };
        const auto expectNoShortcuts = [&] {
            for (const QQuickItem *control : controls())
                QVERIFY2(QKeySequence::mnemonic(text(control)).isEmpty(),
                         qPrintable(text(control)));
            // by key, too
            for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key)
                f.press(static_cast<Qt::Key>(key), Qt::AltModifier);
        };
        const auto spoken = [&] {
            QStringList names;
            for (const QQuickItem *control : controls())
                names << QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(control))
                             ->text(QAccessible::Name);
            return names;
        };

        // then nothing has happened in the day
        expectNoShortcuts();
        QCOMPARE(f.tasks(), QList<Task *>{task});
        QVERIFY(!task->isRunning());
        QCOMPARE(findItems(f.root(), u"deleteMark"_s).size(), 2);
        QVERIFY(!f.maybe("cancelButton"));
        for (const QString &name : {u"Start B&O"_s, u"Slet B&O"_s, u"B&O &møde"_s,
                                    u"Slet skabelon B&O &møde"_s, u"Slet projektkode R&D"_s}) {
            QVERIFY2(spoken().contains(name), qPrintable(name));
        }
        QCOMPARE(f.names(), QStringList{u"B&O"_s});
        QCOMPARE(text(findItem(f.item("templates"), u"nameText"_s)), u"B&O &møde"_s);
        QCOMPARE(text(f.item("codeText")), u"R&D"_s);
        QCOMPARE(text(f.item("badgeText")), u"R&D"_s);

        // nor in the menu
        f.click("picker");
        QTRY_COMPARE(findItems(f.window->contentItem(), u"menuEntry"_s).size(), 2);
        QVERIFY(spoken().contains(u"R&D \u2013 Salg & service"_s));
        expectNoShortcuts();
        QCOMPARE(task->projectCode(), u"R&D"_s);
        f.press(Qt::Key_Escape);
        QTRY_VERIFY(!f.maybe("menuEntry"));

        // nor in the alert
        f.click("deleteButton");
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());
        expectNoShortcuts();
        QCOMPARE(text(f.item("alertMessage")), u"Slet \"B&O\"?"_s);
        QCOMPARE(f.tasks(), QList<Task *>{task});
    }

    void shouldShowNamesFromRightToLeftAtTheLeadingEdge()
    {
        // given
        const QString name = u"פגישה עם לקוח"_s;
        Fixture f;
        f.store.insert<Task>(name, f.clock.now(), name);
        f.store.insert<TaskTemplate>(name);
        f.store.insert<ProjectCode>(name, name);
        QTRY_COMPARE(f.rows().size(), 1);

        // when
        f.click("picker");
        QTRY_COMPARE(findItems(f.window->contentItem(), u"menuEntry"_s).size(), 2);

        // then that of the row, its badge, the template, both of the code, and the menu's
        int names = 0;
        const QList<QQuickItem *> items = findItems(f.window->contentItem());
        for (const QQuickItem *item : items) {
            if (!item->inherits("QQuickText") || !text(item).startsWith(name))
                continue;
            ++names;
            QVERIFY2(item->property("effectiveHorizontalAlignment").toInt() == int(Qt::AlignLeft),
                     qPrintable(item->objectName() + u' ' + text(item)));
        }
        QCOMPARE(names, 6);
    }

    void shouldSayWhatIsNotAvailable()
    {
        Fixture f;
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.click(findItem(f.item("projectCodes"), u"plusButton"_s));
        const auto press = [](QAccessibleInterface *button) {
            button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        };
        QAccessibleInterface *const start =
            QAccessible::queryAccessibleInterface(f.item("startPauseButton"));
        QList<QAccessibleInterface *> buttons{start};
        for (QQuickItem *button : findItems(f.root(), u"addButton"_s))
            buttons << QAccessible::queryAccessibleInterface(button);
        QStringList names;
        for (QAccessibleInterface *const button : buttons) {
            names << button->text(QAccessible::Name);
            QCOMPARE(button->text(QAccessible::Description), u"Ikke tilgængelig"_s);
            press(button);
        }
        QCOMPARE(names,
                 (QStringList{u"Ingen opgaver"_s, u"Tilføj skabelon"_s, u"Tilføj projektkode"_s}));
        QCOMPARE(findItems(f.root(), u"addButton"_s).size(), 2);
        QVERIFY(findItems(f.root(), u"deleteMark"_s).isEmpty());
        QVERIFY(!f.timer.isAnyTaskRunning());

        // and what is available says nothing
        f.store.insertTask(u"Møde"_s);
        QCOMPARE(start->text(QAccessible::Name), u"Start første opgave"_s);
        QCOMPARE(start->text(QAccessible::Description), QString());
        press(start);
        QVERIFY(f.timer.isAnyTaskRunning());
    }

    void shouldNameItsControls()
    {
        Fixture f(1);
        const auto expect = [&](const char *item, QAccessible::Role role, const QString &name) {
            QAccessibleInterface *const found = QAccessible::queryAccessibleInterface(f.item(item));
            QVERIFY2(found, item);
            QCOMPARE(found->role(), role);
            QCOMPARE(found->text(QAccessible::Name), name);
        };
        expect("startPauseButton", QAccessible::Button, u"Start første opgave"_s);
        expect("previousDay", QAccessible::Button, u"Forrige dag"_s);
        expect("nextDay", QAccessible::Button, u"Næste dag"_s);
        expect("dateText", QAccessible::StaticText, u"fredag 20. november 2026"_s);
        expect("actualSegment", QAccessible::RadioButton, u"Faktisk"_s);
        expect("billableSegment", QAccessible::RadioButton, u"Fakturerbar"_s);
        expect("addTaskButton", QAccessible::Button, u"Ny opgave"_s);
        expect("totalTime", QAccessible::StaticText, u"00:00:00"_s);
        QVERIFY(QAccessible::queryAccessibleInterface(f.item("billableSegment"))->state().checked);
        QVERIFY(!QAccessible::queryAccessibleInterface(f.item("actualSegment"))->state().checked);

        QAccessible::queryAccessibleInterface(f.item("actualSegment"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(!f.timer.showBillableTime());
        f.click(f.inRow(0, "deleteButton"));
        expect("cancelButton", QAccessible::Button, u"Annuller"_s);
        expect("deleteConfirmButton", QAccessible::Button, u"Slet"_s);
    }
};

QTEST_MAIN(TestContentView)
#include "tst_contentview.moc"
