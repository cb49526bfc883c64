#include "../../support/layout.h"
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

private Q_SLOTS:
    void shouldBreakAWordThatIsWiderThanItsRow()
    {
        // given
        Fixture f(1);
        f.store.insertTask(
            u"mellemrumognogetsåndsvagtlangtordsomikkekanbrydesnogetstedoverhovedet"_s, 1);

        // when
        f.show();

        // then
        const QQuickItem *const name = f.inRow(1, "nameText");
        const QQuickItem *const pencil = f.inRow(1, "pencil");
        QVERIFY(name->property("lineCount").toInt() > 1);
        QVERIFY(!name->property("truncated").toBool());
        QVERIFY(pencil->x() + pencil->width() <= pencil->parentItem()->width());
    }

    void shouldDivideTheWindow()
    {
        // given
        const Fixture f(1);

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"accentBar.left"_s, 0},
                     {u"accentBar.top"_s, 0},
                     {u"accentBar.width"_s, 650},
                     {u"accentBar.height"_s, 2},
                     {u"header.left"_s, 0},
                     {u"header.top"_s, 0},
                     {u"header.width"_s, 470},
                     {u"header.height"_s, 2 + 12 + 44 + 12},
                     {u"taskList.top - header.bottom"_s, 1},
                     {u"taskList.width"_s, 470},
                     {u"footer.top - taskList.bottom"_s, 1},
                     {u"footer.bottom"_s, 450},
                     {u"sideColumn.left"_s, 470},
                     {u"sideColumn.top"_s, 0},
                     {u"sideColumn.width"_s, 180},
                     {u"sideColumn.height"_s, 450},
                 }),
                 QStringList());
        // clang-format on
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
        // given
        Fixture f(1);

        // when
        f.clock.travelTo("Asia/Tokyo");

        // then
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);

        // when
        f.click("addTaskButton");

        // then
        QTRY_COMPARE(f.rows().size(), 2);
        QCOMPARE(f.tasks().size(), 2);

        // when
        f.click(f.dayCell(21));

        // then the days of the calendar begin as they do there
        QCOMPARE(f.timer.selectedDate(), f.clock.at(u"2026-11-21T00:00:00"_s));
        QCOMPARE(f.dateText(), u"lørdag 21. november 2026"_s);
    }

    void shouldShowTheDayAsItIsWestward()
    {
        // given
        Fixture f(1);

        // when
        f.clock.travelTo("America/New_York");

        // then the selected day began there on the evening before
        QCOMPARE(f.dateText(), u"torsdag 19. november 2026"_s);
        QCOMPARE(f.rows().size(), 1);
        QVERIFY(f.dayCell(19)->property("isSelected").toBool());
        QVERIFY(f.dayCell(20)->property("isToday").toBool());

        // when
        f.click(f.dayCell(20));

        // then
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
        QVERIFY(f.dayCell(20)->property("isSelected").toBool());
        QTRY_COMPARE(f.rows().size(), 0);

        // when
        f.click("addTaskButton");

        // then
        QTRY_COMPARE(f.rows().size(), 1);
        QCOMPARE(f.tasks().constFirst()->date(), f.clock.today());
    }

    void shouldLayOutTheHeader()
    {
        // given a window with room for the date on one line
        const Fixture f(1, {900, 450});

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"startPauseButton.left"_s, 16},
                     {u"startPauseButton.top"_s, 14},
                     {u"startPauseButton.width"_s, 44},
                     {u"startPauseButton.height"_s, 44},
                     {u"startPauseButton.symbolSize"_s, 20},
                     {u"previousDay.width"_s, 32},
                     {u"previousDay.height"_s, 32},
                     {u"previousDay.symbolSize"_s, 14},
                     {u"dateText.left - previousDay.right"_s, 8},
                     {u"dateText.font.pixelSize"_s, 16},
                     {u"dateText.font.weight"_s, QFont::Medium},
                     {u"dateText.lineCount"_s, 1},
                     {u"nextDay.left - dateText.right"_s, 8},
                     {u"nextDay.width"_s, 32},
                     {u"nextDay.height"_s, 32},
                     {u"billableSwitch.width"_s, 150},
                     {u"header.right - billableSwitch.right"_s, 16},
                     {u"header.right"_s, 720},
                     {u"actualSegment.width"_s, 75},
                     {u"actualSegment.height - actualSegment.contentItem.implicitHeight"_s, 12},
                     {u"actualSegment.contentItem.font.pixelSize"_s, 11},
                     {u"billableSegment.left - actualSegment.right"_s, 0},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
        // the flexible spacers are equal
        const double before = f.place("previousDay").left() - f.place("startPauseButton").right();
        const double behind = f.place("billableSwitch").left() - f.place("nextDay").right();
        QVERIFY(std::abs(before - behind) <= 1);
        QVERIFY(before >= 16);
    }

    void shouldShowTheWholeDateInTheSmallestWindow()
    {
        // given
        Fixture f(0, {550, 350});

        // when
        f.timer.navigateToDate(f.clock.at(u"2026-09-30T00:00:00"_s));

        // then
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
        // given
        Fixture f(1);
        f.tasks().at(0)->setAccumulatedSeconds(3725);

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"addTaskButton.left"_s, 16},
                     {u"totalTime.text"_s, u"01:02:05"_s},
                     {u"totalTime.font.pixelSize"_s, 14},
                     {u"totalTime.font.weight"_s, QFont::DemiBold},
                     {u"totalHours.left - totalTime.right"_s, 16},
                     {u"totalHours.text"_s, u"1.00 t"_s},
                     {u"footer.right - totalHours.right"_s, 16},
                     {u"footer.right"_s, 470},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(f.place("footer").height(),
                 std::max(f.place("addTaskButton").height(), f.place("totalTime").height()) + 24);

        // when
        f.click("actualSegment");

        // then
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
        // given
        const Fixture f(3);

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"taskRow[0].left"_s, 8},
                     {u"taskRow[0].top - taskList.top"_s, 4},
                     {u"taskRow[0].width"_s, 470 - 16},
                     {u"taskRow[0].height"_s, 44},
                     {u"taskRow[1].top - taskRow[0].bottom"_s, 4},
                     {u"taskRow[2].top - taskRow[1].bottom"_s, 4},
                     {u"taskRow[2].bottom - taskRow[2].top"_s, 44},
                 }),
                 QStringList());
        // clang-format on
    }

    void shouldShowTheEmptyStateOnADayWithoutTasks()
    {
        // given
        Fixture f;

        // then
        QVERIFY(f.item("emptyDay")->isVisible());
        QVERIFY(!f.item("taskList")->isVisible());

        // when
        f.press(Qt::Key_Space);
        f.press(Qt::Key_Up);
        f.press(Qt::Key_Down);

        // then
        QVERIFY(f.running().isEmpty());

        // when
        f.press(Qt::Key_Return, Qt::ControlModifier);

        // then
        QVERIFY(!f.item("emptyDay")->isVisible());
        QVERIFY(f.item("taskList")->isVisible());
        QTRY_COMPARE(f.names(), QStringList{u"Unavngivet opgave"_s});
    }

    void shouldSayInTheEmptyStateWhatToDo()
    {
        // given
        const Fixture f;

        // then
        const Theme theme;
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"emptySymbol.name"_s, u"clock"_s},
                     {u"emptySymbol.fontSize"_s, 40},
                     {u"emptySymbol.color"_s, theme.secondary()},
                     {u"emptySymbol.opacity"_s, 0.5},
                     {u"emptyDay/emptyText.top - emptySymbol.bottom"_s, 12},
                     {u"emptyDay/emptyText.left - emptyDay.left"_s, 0},
                     {u"emptyDay.right - emptyDay/emptyText.right"_s, 0},
                     {u"emptyDay/emptyText.horizontalAlignment"_s, Qt::AlignHCenter},
                     {u"emptyDay/emptyText.text"_s, u"Ingen opgaver for denne dag"_s},
                     {u"emptyDay/emptyText.font.pixelSize"_s, 14},
                     {u"emptyDay/emptyText.color"_s, theme.secondary()},
                     {u"emptyHint.top - emptyDay/emptyText.bottom"_s, 12},
                     {u"emptyHint.left - emptyDay.left"_s, 0},
                     {u"emptyDay.right - emptyHint.right"_s, 0},
                     {u"emptyHint.horizontalAlignment"_s, Qt::AlignHCenter},
                     {u"emptyHint.text"_s, u"Klik på \"Ny opgave\" for at tilføje en"_s},
                     {u"emptyHint.font.pixelSize"_s, 12},
                     {u"emptyHint.color"_s, theme.tertiary()},
                 }),
                 QStringList());
        // clang-format on

        // all of them in the middle
        const QRectF whole = f.place("emptySymbol") | f.place("emptyHint");
        QCOMPARE(f.place("emptySymbol").center().x(), 235.0);
        QVERIFY(std::abs(whole.center().y() - f.place("emptyDay").center().y()) <= 0.5);
    }

    void shouldListTasksBySortOrderAndSelectByTheirPlace()
    {
        // given
        Fixture f;

        // when
        f.store.insertTask(u"c"_s, 2);
        f.store.insertTask(u"a"_s, 0);
        f.store.insertTask(u"b"_s, 1);

        // then
        QTRY_COMPARE(f.names(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(f.selectedRow(), -1);

        // when
        f.click(f.inRow(1, "nameText"));

        // then
        QCOMPARE(f.selectedRow(), 1);
    }

    void shouldTakeKeysWithoutAClickFirst()
    {
        // given
        Fixture f(2);

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.selectedRow(), 0);

        // when
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Space);

        // then
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
        QTRY_VERIFY(f.item("dayFocus")->hasActiveFocus());

        // when
        f.press(static_cast<Qt::Key>(key));

        // then
        QTEST(f.selectedRow(), "selected");
        QTEST(int(f.running().size()), "running");
    }

    void shouldStartOneRowAndStopTheOther()
    {
        // given
        Fixture f(2);
        f.click(f.inRow(0, "startButton"));
        f.clock.advance(3);

        // when
        f.click(f.inRow(1, "startButton"));

        // then
        QCOMPARE(f.running(), QList<Task *>{f.tasks().at(1)});
        QCOMPARE(f.tasks().at(0)->accumulatedSeconds(), 3);
    }

    void shouldLeaveATaskOfAnotherDayRunningWhenARowIsStarted()
    {
        // given
        Fixture f(1);
        f.click(f.inRow(0, "startButton"));
        f.timer.goToNextDay();
        f.store.insert<Task>(u"i morgen"_s, f.timer.selectedDate(), std::nullopt);
        QTRY_COMPARE(f.names(), QStringList{u"i morgen"_s});

        // when
        f.click(f.inRow(0, "startButton"));

        // then
        QCOMPARE(f.running().size(), 2);
    }

    void shouldShowEveryRunningRowAsRunning()
    {
        // given
        Fixture f(2);

        // when
        f.tasks().at(1)->start();

        // then
        QVERIFY(!f.isActive(0));
        QVERIFY(f.isActive(1));
    }

    void shouldStartAndPauseFromTheHeader()
    {
        // given a day without tasks
        Fixture f;
        const QQuickItem *const button = f.item("startPauseButton");

        // then
        QVERIFY(!button->isEnabled());
        QCOMPARE(button->opacity(), 0.5);
        QCOMPARE(button->property("symbol").toString(), u"play.fill"_s);

        // when
        f.click(button);

        // then
        QVERIFY(!f.timer.isAnyTaskRunning());

        // when
        f.store.insertTask(u"a"_s);

        // then
        QVERIFY(button->isEnabled());
        QCOMPARE(button->opacity(), 1.0);

        // when
        f.click(button);

        // then
        QCOMPARE(f.running(), f.tasks());
        QCOMPARE(button->property("symbol").toString(), u"pause.fill"_s);
        QCOMPARE(f.selectedRow(), -1);

        // when
        f.click("nextDay");

        // then on another day, without tasks, it pauses all the same
        QVERIFY(button->isEnabled());

        // when
        f.click(button);

        // then
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
        // given
        Fixture f(1);
        const Theme theme;
        const auto colour = [&](const char *segment) {
            return f.item(segment)
                ->property("contentItem")
                .value<QQuickItem *>()
                ->property("color");
        };

        // then
        QVERIFY(f.timer.showBillableTime());
        QCOMPARE(colour("billableSegment").value<QColor>(), QColor(Qt::white));
        QCOMPARE(colour("actualSegment").value<QColor>(), theme.primary());

        // when
        f.click("billableSegment");
        f.click("billableSegment");

        // then
        QVERIFY(f.timer.showBillableTime());

        // when
        f.click("actualSegment");

        // then
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
        // given
        Fixture f(2);
        f.press(Qt::Key_Down);

        // when
        f.click("previousDay");

        // then
        QCOMPARE(f.dateText(), u"torsdag 19. november 2026"_s);
        QVERIFY(f.item("emptyDay")->isVisible());

        // when
        f.press(Qt::Key_Right);

        // then
        QTRY_COMPARE(f.rows().size(), 2);
        QTRY_COMPARE(f.rows().first()->mapToScene({}).y(), f.place("taskList").top() + 4);
        QCOMPARE(f.selectedRow(), -1);

        // when
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Left);

        // then
        QCOMPARE(f.dateText(), u"onsdag 18. november 2026"_s);

        // when
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);

        // then
        QCOMPARE(f.dateText(), u"fredag 20. november 2026"_s);
    }

    void shouldNotFadeRowsWhenTheDayChanges()
    {
        // given
        Fixture f(2);
        f.store.insert<Task>(u"i morgen"_s, f.clock.now() + 86400, std::nullopt);

        // when
        f.click("nextDay");

        // then
        QTRY_COMPARE(f.names(), QStringList{u"i morgen"_s});
        QCOMPARE(f.rows().at(0)->parentItem()->opacity(), 1.0);
    }

    void shouldFadeATaskInAndOut()
    {
        // given the fading noted as it goes on, of which a busy machine makes few steps
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

        // when
        f.click("addTaskButton");

        // then
        QTRY_COMPARE(f.rows().size(), 3);
        const QPointer<QQuickItem> added = f.rows().at(2)->parentItem();
        QTRY_COMPARE(added->opacity(), 1.0);
        QVERIFY(faintest < 1);

        // when
        list->disconnect(this);
        const QPointer<QQuickItem> removed = f.rows().at(0)->parentItem();
        connect(removed, &QQuickItem::opacityChanged, this, [&] {
            fadingName = text(findItem(removed, u"nameText"_s));
            hasBorder = findItem(removed, u"rowBorder"_s)->isVisible();
        });
        f.click(f.inRow(0, "deleteButton"));
        f.click("deleteConfirmButton");

        // then it fades out as it was, though its task is gone
        QCOMPARE(f.tasks().size(), 2);
        QVERIFY(removed);
        QTRY_VERIFY(!removed);
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
        QVERIFY(leaving);

        // when
        row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, place);

        // then
        QCOMPARE(f.selectedRow(), -1);

        // when
        f.press(Qt::Key_Space);

        // then it acts as if nothing were selected
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
        // given
        Fixture f(2);
        const QSignalSpy days(&f.timer, &TimerManager::selectedDateChanged);
        f.press(Qt::Key_Down);

        // when
        f.click(f.inRow(0, "deleteButton"));

        // then
        QCOMPARE(text(f.item("alertTitle")), u"Slet opgave"_s);
        QCOMPARE(text(f.item("alertMessage")), u"Slet \"Opgave 1\"?"_s);
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);

        // then no key reaches what is behind
        QVERIFY(days.isEmpty());
        QCOMPARE(f.selectedRow(), 0);
        QCOMPARE(f.tasks().size(), 2);

        // when
        f.click(f.inRow(1, "startButton"));
        f.click("addTaskButton");

        // then no click does either
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

        // when
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

        // then
        QTRY_VERIFY(!f.maybe("alertMessage"));

        // when
        f.type(u"t"_s);

        // then the field that had the keyboard has it again
        QCOMPARE(text(f.item("codeField")), u"Nyt"_s);

        // when
        QAccessible::queryAccessibleInterface(f.item("nextDay"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());

        // then
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

        // when assistive technology asks for the focus, in one place after the other
        focusAll(focusAll, f.root());

        // then
        QVERIFY2(requests > 20, qPrintable(QString::number(requests)));
        QVERIFY(cancel->hasActiveFocus());

        // when
        f.press(Qt::Key_Tab);

        // then the keys are the alert's
        QVERIFY(f.item("deleteConfirmButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Escape);

        // then
        QTRY_VERIFY(!f.maybe("alertMessage"));
        QVERIFY(f.item("codeField")->hasActiveFocus());
        QCOMPARE(f.tasks().size(), 2);
    }

    void shouldLookTheSameBehindTheAlert()
    {
        // given two buttons that nothing but the alert disables
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
        // given
        Fixture f(1);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Escape);

        // then
        QTRY_VERIFY(!f.maybe("cancelButton"));
        QCOMPARE(f.tasks().size(), 1);

        // when
        f.press(Qt::Key_Down);

        // then the keys are the day's again
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

        // given
        Fixture f(1);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());

        // when
        f.press(static_cast<Qt::Key>(key));

        // then
        QTRY_VERIFY(!f.maybe("cancelButton"));
        QCOMPARE(f.tasks().size(), 1);
        QVERIFY(f.running().isEmpty());
    }

    void shouldDeleteByKey()
    {
        // given
        Fixture f(2);
        f.click(f.inRow(0, "deleteButton"));
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("deleteConfirmButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Return);

        // then
        QTRY_VERIFY(!f.maybe("deleteConfirmButton"));
        QCOMPARE(f.tasks().size(), 1);
        QTRY_COMPARE(f.names(), QStringList{u"Opgave 2"_s});
    }

    void shouldSuspendAllKeysWhileANameIsEdited()
    {
        // given
        Fixture f(2);
        f.click(f.inRow(0, "pencil"));
        QVERIFY(f.timer.isEditing());

        // when
        f.type(u"a b"_s);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Home);
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Up);
        f.press(Qt::Key_Down);
        f.press(Qt::Key_End);
        f.press(Qt::Key_Right);
        f.type(u"c"_s);

        // then
        QVERIFY(f.timer.isToday());
        QCOMPARE(f.selectedRow(), -1);
        QVERIFY(f.running().isEmpty());

        // when
        f.press(Qt::Key_Return);

        // then
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
        // given
        Fixture f(1);
        f.click(f.inRow(0, "pencil"));
        f.type(u"Ny"_s);

        // when
        f.press(Qt::Key_Return, Qt::ControlModifier);

        // then
        QCOMPARE(f.tasks().size(), 1);
        QCOMPARE(f.tasks().at(0)->name(), u"Ny"_s);
        QVERIFY(!f.timer.isEditing());

        // when
        f.press(Qt::Key_Down);

        // then the keyboard is the day's again, without a click
        QCOMPARE(f.selectedRow(), 0);

        // when
        f.press(Qt::Key_Return, Qt::ControlModifier);

        // then
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

        // when
        f.item("taskList")->setProperty("contentY", 1200);

        // then
        QTRY_COMPARE(findItems(f.item("taskList"), u"nameField"_s).size(), 1);
        QVERIFY(f.timer.isEditing());

        // when
        f.item("taskList")->setProperty("contentY", -4);

        // then
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

        // given rows that differ in height, one of them being edited
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

        // when
        list->setProperty("contentY", y);

        // then
        QTRY_VERIFY(!f.names().contains(u"Opgave %1"_s.arg(row == 0 ? 2 : 39)));
        QVERIFY(field);
        QVERIFY(!isInSight());

        // when
        f.type(u" skrevet"_s);

        // then
        QTRY_VERIFY(isInSight());
        QCOMPARE(text(field), u"Halvt skrevet"_s);

        // when
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.tasks().at(row)->name(), u"Halvt skrevet"_s);
        QVERIFY(!f.timer.isEditing());
        QVERIFY(f.item("dayFocus")->hasActiveFocus());
        QTRY_VERIFY(f.names().contains(u"Halvt skrevet"_s));
    }

    void shouldNotMoveTheRowsWhenOneOfThemGetsTheKeyboard()
    {
        // given
        Fixture f(40);
        const double top = f.rows().first()->mapToScene({}).y();
        QCOMPARE(top, f.place("taskList").top() + 4);

        // when
        f.click(f.inRow(0, "pencil"));

        // then
        QCOMPARE(f.rows().first()->mapToScene({}).y(), top);

        // when
        f.press(Qt::Key_Return);
        f.click(f.inRow(2, "timeText"));

        // then
        QCOMPARE(f.rows().first()->mapToScene({}).y(), top);

        // when the keyboard goes through the header, which has five controls
        f.press(Qt::Key_Return);
        for (int i = 0; i < 6; ++i)
            f.press(Qt::Key_Tab);

        // then
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

        // given
        Fixture f(3);
        f.press(Qt::Key_Down);

        // when
        for (const QString &step : steps)
            f.perform(step);

        // then
        QTRY_VERIFY(f.item("dayFocus")->hasActiveFocus());
        QTRY_COMPARE(f.rows().size(), f.tasks().size());
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(!f.maybe("timeField"));
        QTRY_VERIFY(!f.maybe("menuEntry"));

        // when
        f.press(Qt::Key_Down);

        // then it acts, and screen readers are told what upon
        QCOMPARE(f.selectedRow(), 1);
        QVERIFY(f.rows().at(1)->property("hasKeys").toBool());

        // when
        f.window->hover({1, 1});

        // then no pencil stays
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

        // given
        Fixture f(2);
        const QPointer<QQuickItem> opener = f.named(control);
        opener->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Space);
        QTRY_VERIFY(!opener->hasActiveFocus());

        // when
        for (const QString &step : steps)
            f.perform(step);

        // then
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
        // given
        Fixture f(1);
        f.perform(u"click templates plusButton"_s);
        f.perform(u"type Ny"_s);
        f.perform(u"click row pencil"_s);
        const QPointer<QQuickItem> name = f.named(u"row nameField"_s);
        QTRY_VERIFY(name->hasActiveFocus());

        // when
        f.perform(u"click templates cancelButton"_s);

        // then
        QTRY_VERIFY(!f.maybe("cancelButton"));
        QVERIFY(name);
        QVERIFY(name->hasActiveFocus());

        // when
        f.perform(u"type Navn"_s);

        // then
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

        // given
        Fixture f(2);
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        QTRY_VERIFY(f.maybe("templateButton"));
        f.named(control)->forceActiveFocus(Qt::TabFocusReason);

        // when
        for (const QString &step : steps)
            f.perform(step);

        // then
        QTRY_VERIFY(f.item("dayFocus")->hasActiveFocus());
    }

    void shouldTakeTheKeyboardWhenARowIsSelectedByAClick()
    {
        // given a field of the side column that has it
        Fixture f(2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.type(u"Ny"_s);

        // when
        f.clickName(0);

        // then
        QCOMPARE(f.selectedRow(), 0);
        QVERIFY(f.item("dayFocus")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.running().size(), 1);
        QCOMPARE(text(f.item("nameField")), u"Ny"_s);

        // when a button has it
        f.item("nextDay")->forceActiveFocus(Qt::TabFocusReason);
        f.clickName(1);

        // then
        QVERIFY(f.item("dayFocus")->hasActiveFocus());
    }

    void shouldLeaveTheKeyboardWithAnEditWhenAnotherRowIsSelected()
    {
        // given
        Fixture f(2);
        f.click(f.inRow(0, "pencil"));
        f.type(u"N"_s);

        // when
        f.clickName(1);

        // then
        QCOMPARE(f.selectedRow(), 1);

        // when
        f.type(u"y"_s);
        f.press(Qt::Key_Return);

        // then
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

        // given
        Fixture f(2);
        f.click(f.inRow(1, "pencil"));
        f.type(u"Ny"_s);
        QVERIFY(f.timer.isEditing());

        // when
        if (how == "day"_L1) {
            f.click("nextDay");
        } else if (how == "delete"_L1) {
            f.click(f.inRow(1, "deleteButton"));
            f.click("deleteConfirmButton");
        } else {
            f.window.reset();
            f.day.reset();
        }

        // then
        QVERIFY(!f.timer.isEditing());
        QCOMPARE(f.store.context().inMemory(RecordType::Task, allRecords()).size(),
                 how == "delete"_L1 ? 1 : 2);
        if (how == "day"_L1) {
            QTRY_VERIFY(!f.maybe("nameField"));

            // when
            f.press(Qt::Key_Left);

            // then
            QVERIFY(f.timer.isToday());
            QTRY_COMPARE(f.names(), (QStringList{u"Opgave 1"_s, u"Opgave 2"_s}));
            QVERIFY(!f.maybe("nameField"));
        }
    }

    void shouldStayInTheEditWhenAnotherRowLeaves()
    {
        // given
        Fixture f(2);
        f.click(f.inRow(1, "pencil"));
        f.type(u"Ny"_s);

        // when
        f.store.context().remove(f.tasks().at(0));

        // then
        QTRY_COMPARE(f.rows().size(), 1);
        QVERIFY(f.timer.isEditing());
        QCOMPARE(text(f.item("nameField")), u"Ny"_s);
    }

    void shouldScrollTheRowSelectedByKeyIntoView()
    {
        // given
        Fixture f(40);

        // when
        f.press(Qt::Key_Up);

        // then
        QTRY_COMPARE(f.names().last(), u"Opgave 40"_s);
        const QQuickItem *const row = f.rows().last();
        QVERIFY(row->mapToScene({0, row->height()}).y() <= f.place("taskList").bottom());

        // when
        f.timer.goToNextDay();
        f.timer.goToPreviousDay();

        // then
        QTRY_COMPARE(f.names().first(), u"Opgave 1"_s);

        // when
        f.press(Qt::Key_Down);

        // then
        QTRY_COMPARE(f.rows().first()->mapToScene({}).y(), f.place("taskList").top() + 4);
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldScrollANewTasksRowIntoView()
    {
        // given
        Fixture f(40);

        // when
        f.press(Qt::Key_Return, Qt::ControlModifier);

        // then
        QTRY_COMPARE(f.names().last(), u"Unavngivet opgave"_s);
        const QQuickItem *const row = f.rows().last();
        QVERIFY(row->mapToScene({0, row->height()}).y() <= f.place("taskList").bottom());
        QCOMPARE(f.selectedRow(), -1);
    }

    void shouldNeverMoveTheFocusToAButtonByAClick()
    {
        // given
        Fixture f(1);

        // when
        f.click("startPauseButton");
        f.click("nextDay");
        f.click("previousDay");
        f.click("actualSegment");
        QTRY_COMPARE(f.rows().size(), 1);
        f.click(f.inRow(0, "startButton"));
        f.press(Qt::Key_Down);

        // then
        QVERIFY(f.running().isEmpty());

        // when
        f.press(Qt::Key_Space);

        // then it is the day's, not the last button's
        QCOMPARE(f.running().size(), 1);
        QVERIFY(f.timer.isToday());
    }

    void shouldPressAFocusedButtonWithSpaceAndLeaveTheOtherKeysToTheDay()
    {
        // given
        Fixture f(2);

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("startPauseButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.running(), QList<Task *>{f.tasks().at(0)});
        QCOMPARE(f.selectedRow(), -1);

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("previousDay")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
        QVERIFY(!f.timer.isToday());

        // when
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);

        // then
        QVERIFY(f.timer.isToday());

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.selectedRow(), 0);

        // when
        f.press(Qt::Key_Return, Qt::ControlModifier);

        // then
        QCOMPARE(f.tasks().size(), 3);

        // when
        f.press(Qt::Key_Escape);

        // then the keyboard goes back to the day
        QVERIFY(!f.item("previousDay")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
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

        // given
        Fixture f(1);

        // when the day has the keyboard
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Space, modifiers);

        // then
        QVERIFY(f.running().isEmpty());

        // when a button has it
        f.inRow(0, "startButton")->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Space, modifiers);

        // then
        QVERIFY(f.running().isEmpty());

        // when the menu of project codes has it
        f.inRow(0, "picker")->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Space, modifiers);

        // then
        QVERIFY(!f.maybe("menuEntry"));

        // when
        f.press(Qt::Key_Space);

        // then the key alone does what it did
        QTRY_VERIFY(f.maybe("menuEntry"));
    }

    void shouldFollowADarkPaletteWhileItRuns()
    {
        // given
        const Fixture f(2);
        const QPalette before = QGuiApplication::palette();
        const QColor light = f.window->colorAt({100, 60});
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(0x2d, 0x2d, 0x2d));
        dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
        dark.setColor(QPalette::WindowText, Qt::white);
        dark.setColor(QPalette::Text, Qt::white);

        // when
        QGuiApplication::setPalette(dark);

        // then
        QTRY_VERIFY(f.window->colorAt({100, 60}).lightness() < 100);

        // when
        QGuiApplication::setPalette(before);

        // then
        QTRY_COMPARE(f.window->colorAt({100, 60}), light);
    }

    void shouldStackTheSideColumn()
    {
        // given
        const Fixture f;

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"calendar.left - sideColumn.left"_s, 0},
                     {u"calendar.top - sideColumn.top"_s, 0},
                     {u"calendar.width"_s, 180},
                     {u"templates.top - calendar.bottom"_s, 1},
                     {u"templates.width"_s, 180},
                     {u"projectCodes.top - templates.bottom"_s, 1},
                     {u"projectCodes.width"_s, 180},
                     {u"sideColumn.bottom - projectCodes.bottom"_s, 0},
                 }),
                 QStringList());
        // clang-format on
        const double difference = f.place("templates").height() - f.place("projectCodes").height();
        QVERIFY(std::abs(difference) <= 1);
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

        // then
        for (const QQuickItem *item : clicked) {
            // It is large enough both ways.
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

            // It takes nothing away from another.
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
        // given
        Fixture f(2);
        f.press(Qt::Key_Down);
        const auto cells = findItems(f.item("calendar"), u"dayCell"_s);

        // when the tenth is clicked in a month that begins on a Sunday
        f.click(cells.at(6 + 9));

        // then
        QCOMPARE(f.dateText(), u"tirsdag 10. november 2026"_s);
        QCOMPARE(f.selectedRow(), -1);

        // when
        f.press(Qt::Key_Right);

        // then the keys are still the day's
        QCOMPARE(f.dateText(), u"onsdag 11. november 2026"_s);
    }

    void shouldMakeATaskFromATemplateWithOneClick()
    {
        // given
        Fixture f;
        f.store.insert<TaskTemplate>(u"Daglig status"_s);
        f.timer.goToNextDay();
        QTRY_VERIFY(f.maybe("templateButton"));

        // when
        f.click("templateButton");

        // then
        QTRY_COMPARE(f.names(), QStringList{u"Daglig status"_s});
        QCOMPARE(f.tasks().at(0)->date(), f.clock.at(u"2026-11-21T00:00:00"_s));

        // when
        f.press(Qt::Key_Down);

        // then the keys are still the day's
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldLeaveATextFieldOfTheSideColumnEveryKeyWithoutCtrl()
    {
        // given
        Fixture f(2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        QQuickItem *const field = findItem(f.item("templates"), u"nameField"_s);
        QVERIFY(field);
        QVERIFY(field->hasActiveFocus());
        QVERIFY(!f.timer.isEditing());
        f.type(u"a b"_s);

        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,
                                  Qt::Key_Home, Qt::Key_Left, Qt::Key_Left}) {
            // when
            f.press(key);

            // then
            QVERIFY(f.timer.isToday());
            QCOMPARE(f.selectedRow(), -1);
        }

        // when
        f.press(Qt::Key_Right, Qt::ControlModifier);

        // then it goes by words, not by days
        QVERIFY(f.timer.isToday());

        // when
        f.press(Qt::Key_Left, Qt::ControlModifier);

        // then
        QCOMPARE(text(field), u"a b"_s);
        QVERIFY(f.timer.isToday());
        QCOMPARE(f.selectedRow(), -1);
        QVERIFY(f.running().isEmpty());

        // when
        f.press(Qt::Key_Return, Qt::ControlModifier);

        // then this shortcut acts
        QCOMPARE(f.tasks().size(), 3);

        // when
        f.timer.goToNextDay();
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);

        // then so does this one
        QVERIFY(f.timer.isToday());
        QCOMPARE(text(field), u"a b"_s);

        // when
        f.press(Qt::Key_Escape);
        f.press(Qt::Key_Down);

        // then Escape has led back to the day
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldGiveTheKeysBackWhenATemplateHasBeenAdded()
    {
        // given
        Fixture f(2);
        f.click(findItem(f.item("templates"), u"plusButton"_s));
        f.type(u"Ny"_s);

        // when
        f.press(Qt::Key_Return);

        // then
        QTRY_VERIFY(f.maybe("templateButton"));
        QCOMPARE(f.tasks().size(), 2);

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldTakeNoKeyWhileAMenuIsOpen()
    {
        // given
        Fixture f(2);
        const QSignalSpy days(&f.timer, &TimerManager::selectedDateChanged);
        f.click(f.inRow(0, "picker"));
        QTRY_VERIFY(f.maybe("menuEntry"));

        // when
        f.press(Qt::Key_Left);
        f.press(Qt::Key_Return, Qt::ControlModifier);
        QTest::keyClick(f.window.get(), 't', Qt::ControlModifier);

        // then
        QVERIFY(days.isEmpty());

        // when
        f.press(Qt::Key_Escape);

        // then
        QTRY_VERIFY(!f.maybe("menuEntry"));
        QCOMPARE(f.tasks().size(), 2);

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.selectedRow(), 0);
    }

    void shouldReachEveryButtonOfTheSectionsInTheSmallestWindow()
    {
        // given
        Fixture f(1, {550, 350});
        for (int i = 0; i < 10; ++i) {
            f.store.insert<TaskTemplate>(u"Skabelon %1"_s.arg(i), i);
            f.store.insert<ProjectCode>(u"KODE-%1"_s.arg(i), u"Kunde"_s, i);
        }
        for (const char *section : {"templates", "projectCodes"}) {
            f.click(findItem(f.item(section), u"plusButton"_s));
            const QRectF frame = f.place(section);
            for (const char *button : {"addButton", "cancelButton"}) {
                const QQuickItem *const item =
                    findItem(f.item(section), QString::fromLatin1(button));
                QVERIFY2(item, button);

                // when
                for (int turn = 0; turn < 20 && !frame.contains(item->mapRectToScene(
                                                    QRectF(0, 0, item->width(), item->height())));
                     ++turn) {
                    QWheelEvent wheel(frame.center(), f.window->mapToGlobal(frame.center()), {},
                                      {0, -120}, {}, {}, Qt::NoScrollPhase, false);
                    QCoreApplication::sendEvent(f.window.get(), &wheel);
                    QCoreApplication::processEvents();
                }

                // then the wheel has brought it into the section's share
                QTRY_VERIFY2(frame.contains(
                                 item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))),
                             button);
            }
        }
    }

    void shouldTellAssistiveTechnologyWhatTheKeysActUpon()
    {
        // given
        Fixture f(2);
        const auto day = [&f] { return QAccessible::queryAccessibleInterface(f.item("dayPane")); };
        const auto isFocused = [&f](int row) {
            return QAccessible::queryAccessibleInterface(f.rows().at(row))->state().focused;
        };

        // then
        QVERIFY(day()->state().focused);
        QCOMPARE(day()->text(QAccessible::Name), u"fredag 20. november 2026"_s);
        QCOMPARE(day()->text(QAccessible::Description), QString());

        // when
        f.press(Qt::Key_Down);

        // then
        QVERIFY(isFocused(0));
        QVERIFY(!day()->state().focused);

        // when
        f.press(Qt::Key_Down);

        // then
        QVERIFY(isFocused(1));
        QVERIFY(!isFocused(0));
        QVERIFY(f.item("dayFocus")->hasActiveFocus());

        // when a control has the keyboard
        f.item("nextDay")->forceActiveFocus(Qt::TabFocusReason);

        // then
        QVERIFY(!isFocused(1));

        // when
        f.press(Qt::Key_Escape);

        // then
        QVERIFY(isFocused(1));

        // when
        f.press(Qt::Key_Left);

        // then
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

        // when
        expectNoShortcuts();

        // then nothing has happened in the day
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

        // when the menu is open
        f.click("picker");
        QTRY_COMPARE(findItems(f.window->contentItem(), u"menuEntry"_s).size(), 2);
        QVERIFY(spoken().contains(u"R&D \u2013 Salg & service"_s));
        expectNoShortcuts();

        // then nothing has happened in it
        QCOMPARE(task->projectCode(), u"R&D"_s);

        // when
        f.press(Qt::Key_Escape);

        // then
        QTRY_VERIFY(!f.maybe("menuEntry"));

        // when the alert is open
        f.click("deleteButton");
        QTRY_VERIFY(f.item("cancelButton")->hasActiveFocus());
        expectNoShortcuts();

        // then nothing has happened in it
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
        // given
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

        // then
        QStringList names;
        for (QAccessibleInterface *const button : buttons) {
            names << button->text(QAccessible::Name);
            QCOMPARE(button->text(QAccessible::Description), u"Ikke tilgængelig"_s);
        }
        QCOMPARE(names,
                 (QStringList{u"Ingen opgaver"_s, u"Tilføj skabelon"_s, u"Tilføj projektkode"_s}));

        // when
        for (QAccessibleInterface *const button : buttons)
            press(button);

        // then
        QCOMPARE(findItems(f.root(), u"addButton"_s).size(), 2);
        QVERIFY(findItems(f.root(), u"deleteMark"_s).isEmpty());
        QVERIFY(!f.timer.isAnyTaskRunning());

        // when
        f.store.insertTask(u"Møde"_s);

        // then what is available says nothing
        QCOMPARE(start->text(QAccessible::Name), u"Start første opgave"_s);
        QCOMPARE(start->text(QAccessible::Description), QString());

        // when
        press(start);

        // then
        QVERIFY(f.timer.isAnyTaskRunning());
    }

    void shouldNameItsControls()
    {
        // given
        Fixture f(1);
        const auto expect = [&](const char *item, QAccessible::Role role, const QString &name) {
            QAccessibleInterface *const found = QAccessible::queryAccessibleInterface(f.item(item));
            QVERIFY2(found, item);
            QCOMPARE(found->role(), role);
            QCOMPARE(found->text(QAccessible::Name), name);
        };

        // then
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

        // when
        QAccessible::queryAccessibleInterface(f.item("actualSegment"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());

        // then
        QVERIFY(!f.timer.showBillableTime());

        // when
        f.click(f.inRow(0, "deleteButton"));

        // then
        expect("cancelButton", QAccessible::Button, u"Annuller"_s);
        expect("deleteConfirmButton", QAccessible::Button, u"Slet"_s);
    }
};

QTEST_MAIN(TestContentView)
#include "tst_contentview.moc"
