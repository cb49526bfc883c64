#include "tests/support/fakeclock.h"
#include "tests/support/layout.h"
#include "tests/support/qmltest.h"
#include "views/controls/theme.h"
#include "views/sidebar/calendarviewmodel.h"

#include <QAccessible>
#include <QQuickItem>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using qmltest::centre;
using qmltest::findItems;

/// The calendar in a window, used with mouse and keys.
class TestCalendarView : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(const QString &selected = u"2026-11-18T00:00:00"_s,
                         const QString &now = u"2026-11-20T08:00:00"_s)
            : clock(now)
            , calendar(std::make_unique<CalendarViewModel>(clock, clock.at(selected)))
        {
            connect(calendar.get(), &CalendarViewModel::dateSelected, [this](double date) {
                pickedDates << date;
                if (isFollowing)
                    calendar->setSelectedDate(date);
            });
            window = std::make_unique<qmltest::Window>(
                QByteArray(R"(
                    import QtQuick
                    import TimeTracker.Views.Controls
                    import TimeTracker.Views.Sidebar
                    Rectangle {
                        id: root
                        required property CalendarViewModel viewModel
                        color: Theme.controlBackground
                        FocusScope {
                            anchors.fill: parent
                            focus: true
                            Item { objectName: "elsewhere"; focus: true }
                            CalendarView {
                                objectName: "calendar"
                                width: 180
                                height: implicitHeight
                                viewModel: root.viewModel
                            }
                        }
                    })"),
                QSize(180, 240),
                QVariantMap{{u"viewModel"_s, QVariant::fromValue(calendar.get())}});
            window->hover({1, 239});
        }

        QQuickItem *root() const { return window->rootObject(); }
        QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
        QRectF place(const QQuickItem *item) const
        {
            return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        }
        QString title() const { return item("monthTitle")->property("text").toString(); }
        /// The cells that are seen.
        QList<QQuickItem *> cells() const
        {
            QList<QQuickItem *> cells = findItems(root(), u"dayCell"_s);
            cells.removeIf([](const QQuickItem *cell) { return !cell->isVisible(); });
            return cells;
        }
        QQuickItem *cell(int day) const
        {
            for (QQuickItem *cell : cells()) {
                if (cell->property("day").toInt() == day)
                    return cell;
            }
            QTest::qFail("no such day", __FILE__, __LINE__);
            return nullptr;
        }
        static QQuickItem *label(const QQuickItem *cell)
        {
            return cell->property("contentItem").value<QQuickItem *>();
        }
        static QFont font(const QQuickItem *text) { return text->property("font").value<QFont>(); }
        /// The days that say that they are selected; the circle has to be behind just these.
        QList<int> selected() const
        {
            const QQuickItem *const circle = item("selectedDay");
            QList<int> days;
            for (const QQuickItem *cell : cells()) {
                const bool isSelected = cell->property("isSelected").toBool();
                if (isSelected != (circle->isVisible() && place(circle) == place(cell)))
                    QTest::qFail("the circle is elsewhere", __FILE__, __LINE__);
                if (isSelected)
                    days.append(cell->property("day").toInt());
            }
            return days;
        }
        const QVariantList &picked() const { return pickedDates; }
        void click(const QQuickItem *item) const
        {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(item));
        }
        void click(const char *name) const { click(item(name)); }
        void select(const QString &time) const { calendar->setSelectedDate(clock.at(time)); }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        std::unique_ptr<CalendarViewModel> calendar;
        bool isFollowing = true;
        QVariantList pickedDates;
        std::unique_ptr<qmltest::Window> window;
    };

private Q_SLOTS:
    void shouldLayOutItsParts()
    {
        // given
        const Fixture f;
        const QRectF previous = f.place(f.item("previousMonth"));
        const QRectF title = f.place(f.item("monthTitle"));
        const QRectF grid = f.place(f.item("monthGrid"));
        const auto headings = findItems(f.root(), u"dayOfWeek"_s);

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"calendar.right"_s, 180},
                     {u"previousMonth.left"_s, 12 + 4},
                     {u"previousMonth.symbol"_s, u"chevron.left"_s},
                     {u"previousMonth.symbolSize"_s, 10},
                     {u"calendar.right - nextMonth.right"_s, 12 + 4},
                     {u"nextMonth.symbol"_s, u"chevron.right"_s},
                     {u"nextMonth.symbolSize"_s, 10},
                     {u"nextMonth.width - previousMonth.width"_s, 0},
                     {u"monthTitle.centreX"_s, 90},
                     {u"monthTitle.left - previousMonth.right"_s, 8},
                     {u"nextMonth.left - monthTitle.right"_s, 8},
                     {u"previousMonth.centreY - monthTitle.centreY"_s, 0},
                     {u"monthTitle.font.pixelSize"_s, 12},
                     {u"monthTitle.font.weight"_s, QFont::DemiBold},
                     {u"monthGrid.left"_s, 12},
                     {u"monthGrid.width"_s, 156},
                     {u"monthGrid.height"_s, 6 * 22 + 5 * 2},
                     {u"calendar.height - monthGrid.bottom"_s, 12},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(std::min(title.top(), previous.top()), 12.0);
        QCOMPARE(headings.size(), 7);
        QStringList texts;
        for (int i = 0; i < 7; ++i) {
            const QQuickItem *const heading = headings.at(i);
            texts << heading->property("text").toString();
            QCOMPARE(Fixture::font(heading).pixelSize(), 9);
            QCOMPARE(Fixture::font(heading).weight(), QFont::Medium);
            QCOMPARE(heading->property("color").value<QColor>(), Theme().secondary());
            QVERIFY(std::abs(f.place(heading).left() - (12 + i * 156 / 7.0)) <= 0.5);
            QVERIFY(std::abs(f.place(heading).width() - 156 / 7.0) <= 0.5);
            QCOMPARE(f.place(heading).top(), std::max(title.bottom(), previous.bottom()) + 8);
            QCOMPARE(f.place(heading).bottom() + 8, grid.top());
        }
        QCOMPARE(texts,
                 (QStringList{u"Ma"_s, u"Ti"_s, u"On"_s, u"To"_s, u"Fr"_s, u"Lø"_s, u"Sø"_s}));
    }

    void shouldPlaceTheDaysInSevenEqualColumns()
    {
        // given a month that begins on a Sunday
        const Fixture f;
        const QRectF grid = f.place(f.item("monthGrid"));

        // then
        QCOMPARE(f.cells().size(), 30);
        for (int day = 1; day <= 30; ++day) {
            const int place = 6 + day - 1;
            const QRectF cell = f.place(f.cell(day));
            QCOMPARE(cell.size(), QSizeF(22, 22));
            QCOMPARE(cell.left(), std::round(cell.left()));
            QVERIFY(std::abs(cell.center().x() - (12 + (place % 7 + 0.5) * 156 / 7.0)) <= 0.5);
            const int row = place / 7;
            QCOMPARE(cell.top(), grid.top() + row * 24);
            const QQuickItem *const label = Fixture::label(f.cell(day));
            QCOMPARE(label->property("text").toString(), QString::number(day));
            QCOMPARE(Fixture::font(label).pixelSize(), 11);
            QCOMPARE(label->property("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
            QCOMPARE(label->property("verticalAlignment").toInt(), int(Qt::AlignVCenter));
        }
    }

    void shouldBeAsHighAsItsWeeks_data()
    {
        QTest::addColumn<QString>("date");
        QTest::addColumn<int>("weeks");
        QTest::newRow("four") << u"2027-02-10T00:00:00"_s << 4;
        QTest::newRow("five") << u"2026-10-10T00:00:00"_s << 5;
        QTest::newRow("six") << u"2026-08-10T00:00:00"_s << 6;
    }
    void shouldBeAsHighAsItsWeeks()
    {
        QFETCH(QString, date);
        QFETCH(int, weeks);

        // given
        const Fixture f(date);
        const double six = f.item("calendar")->height() + (6 - weeks) * 24;

        // then
        QCOMPARE(f.item("monthGrid")->height(), weeks * 24.0 - 2);

        // when
        f.select(u"2026-11-01T00:00:00"_s);

        // then
        QCOMPARE(f.item("calendar")->height(), six);
    }

    void shouldMarkTodayAndTheSelectedDay()
    {
        // given
        const Fixture f;
        const Theme theme;
        const auto colour = [&](int day) {
            return Fixture::label(f.cell(day))->property("color").value<QColor>();
        };
        const auto weight = [&](int day) {
            return Fixture::font(Fixture::label(f.cell(day))).weight();
        };
        const auto fill = [&](int day) {
            return f.window->colorAt(f.cell(day)->mapToScene({11, 1.5}));
        };

        // then
        QCOMPARE(colour(18), QColor(Qt::white));
        QCOMPARE(weight(18), QFont::Normal);
        QCOMPARE(fill(18), theme.brandAccent());
        // a circle
        QCOMPARE(f.window->colorAt(f.cell(18)->mapToScene({1, 1})), theme.controlBackground());
        QCOMPARE(colour(20), theme.brandAccent());
        QCOMPARE(weight(20), QFont::Bold);
        QCOMPARE(fill(20), theme.controlBackground());
        QCOMPARE(colour(19), theme.primary());
        QCOMPARE(weight(19), QFont::Normal);
        QCOMPARE(fill(19), theme.controlBackground());

        // when today is selected
        f.click(f.cell(20));

        // then
        QCOMPARE(colour(20), QColor(Qt::white));
        QCOMPARE(weight(20), QFont::Bold);
        QTRY_COMPARE(fill(20), theme.brandAccent());
        QCOMPARE(colour(18), theme.primary());
    }

    void shouldReportAClickedDayOnce()
    {
        // given
        const Fixture f;

        // when a click is anywhere in the cell, such as in its corner
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          f.cell(3)->mapToScene({1, 1}).toPoint());

        // then
        QCOMPARE(f.picked(), QVariantList{f.clock.at(u"2026-11-03T00:00:00"_s)});
        QCOMPARE(f.selected(), QList<int>{3});

        // when a click is between the rows
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          f.cell(3)->mapToScene({11, 23}).toPoint());

        // then it is none
        QCOMPARE(f.picked().size(), 1);
    }

    void shouldMoveTheMarkOnlyWhenItsOwnerDoes()
    {
        // given
        Fixture f;
        f.isFollowing = false;

        // when
        f.click(f.cell(3));

        // then
        QCOMPARE(f.picked().size(), 1);
        QCOMPARE(f.selected(), QList<int>{18});

        // when
        f.select(u"2026-11-03T00:00:00"_s);

        // then
        QCOMPARE(f.selected(), QList<int>{3});

        // when the selected day is clicked
        f.click(f.cell(3));

        // then it is a click
        QCOMPARE(f.picked().size(), 2);
    }

    void shouldPageWithTheChevrons()
    {
        // given
        const Fixture f;

        // when
        f.click("nextMonth");

        // then
        QCOMPARE(f.title(), u"december 2026"_s);
        QVERIFY(f.selected().isEmpty());
        QCOMPARE(f.cells().size(), 31);

        // when
        f.click("nextMonth");

        // then
        QCOMPARE(f.title(), u"januar 2027"_s);

        // when
        f.click("previousMonth");
        f.click("previousMonth");

        // then
        QCOMPARE(f.title(), u"november 2026"_s);
        QCOMPARE(f.selected(), QList<int>{18});
        QVERIFY(f.picked().isEmpty());
        QCOMPARE(Fixture::font(Fixture::label(f.cell(20))).weight(), QFont::Bold);

        // when
        f.click("previousMonth");

        // then
        QCOMPARE(f.title(), u"oktober 2026"_s);
    }

    void shouldMarkTodayAgainAfterPaging()
    {
        // given
        const Fixture f;
        const Theme theme;
        const auto today = [&] {
            QList<int> days;
            for (const QQuickItem *cell : f.cells()) {
                const QQuickItem *const label = Fixture::label(cell);
                const bool isBold = Fixture::font(label).weight() == QFont::Bold;
                if (isBold != (label->property("color").value<QColor>() == theme.brandAccent()))
                    QTest::qFail("bold or accented alone", __FILE__, __LINE__);
                if (isBold)
                    days.append(cell->property("day").toInt());
            }
            return days;
        };
        QCOMPARE(today(), QList<int>{20});

        // when
        f.click("nextMonth");

        // then
        QCOMPARE(today(), QList<int>());

        // when
        f.click("previousMonth");

        // then
        QCOMPARE(today(), QList<int>{20});

        // when
        f.click("previousMonth");

        // then
        QCOMPARE(today(), QList<int>());
    }

    void shouldFollowADateSelectedElsewhere()
    {
        // given
        const Fixture f;

        // when
        f.select(u"2026-12-24T00:00:00"_s);

        // then
        QCOMPARE(f.title(), u"december 2026"_s);
        QCOMPARE(f.selected(), QList<int>{24});

        // given another page
        f.click("nextMonth");

        // when
        f.select(u"2027-01-02T00:00:00"_s);

        // then
        QCOMPARE(f.title(), u"januar 2027"_s);
        QCOMPARE(f.selected(), QList<int>{2});
    }

    void shouldReportDaysOfAPagedMonth()
    {
        // given
        const Fixture f;
        f.click("nextMonth");
        f.click("nextMonth");

        // when
        f.click(f.cell(31));

        // then
        QCOMPARE(f.picked(), QVariantList{f.clock.at(u"2027-01-31T00:00:00"_s)});
        QCOMPARE(f.title(), u"januar 2027"_s);
        QCOMPARE(f.selected(), QList<int>{31});
    }

    void shouldMoveTodayAtMidnight()
    {
        // given
        Fixture f;

        // when
        f.clock.set(u"2026-11-21T00:00:00"_s);

        // then
        QCOMPARE(Fixture::font(Fixture::label(f.cell(20))).weight(), QFont::Normal);
        QCOMPARE(Fixture::font(Fixture::label(f.cell(21))).weight(), QFont::Bold);
        QCOMPARE(f.selected(), QList<int>{18});
    }

    void shouldShowEveryTitleWhole()
    {
        // given
        const Fixture f(u"2026-01-18T00:00:00"_s);
        const double height = f.item("monthGrid")->y();

        // then every title of a year has room
        for (int month = 0; month < 12; ++month) {
            const QQuickItem *const title = f.item("monthTitle");
            QVERIFY2(title->property("contentWidth").toReal() <= title->width(),
                     qPrintable(f.title()));
            QCOMPARE(f.item("monthGrid")->y(), height);
            f.click("nextMonth");
        }
    }

    void shouldNotTakeTheFocusByAClick()
    {
        // given
        const Fixture f;

        // when
        f.click("nextMonth");
        f.click("previousMonth");
        f.click(f.cell(3));

        // then
        QVERIFY(f.item("elsewhere")->hasActiveFocus());
    }

    void shouldStopTabAtTheChevronsAndTheSelectedDay()
    {
        // given
        const Fixture f;
        const auto tab = [&f](Qt::Key key = Qt::Key_Tab) {
            QTest::keyClick(f.window.get(), key);
            return f.window->activeFocusItem();
        };

        // then each key leads to the next stop
        QCOMPARE(tab(), f.item("previousMonth"));
        QCOMPARE(tab(), f.item("nextMonth"));
        QCOMPARE(tab(), f.cell(18));
        QCOMPARE(tab(), f.item("previousMonth"));
        QCOMPARE(tab(Qt::Key_Backtab), f.cell(18));
        QCOMPARE(tab(Qt::Key_Backtab), f.item("nextMonth"));
    }

    void shouldPickTheFirstDayOfAnotherMonthByKey()
    {
        // given
        const Fixture f;
        f.click("nextMonth");

        // when
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(f.window.get(), Qt::Key_Tab);

        // then
        QCOMPARE(f.window->activeFocusItem(), f.cell(1));

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Space);

        // then
        QCOMPARE(f.selected(), QList<int>{1});
        QCOMPARE(f.title(), u"december 2026"_s);
        QVERIFY(f.cell(1)->hasActiveFocus());
    }

    void shouldKeepTheFocusOnTheSelectedDay_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::newRow("next day") << u"2026-11-18T00:00:00"_s << u"2026-11-19T00:00:00"_s;
        QTest::newRow("previous day") << u"2026-11-18T00:00:00"_s << u"2026-11-17T00:00:00"_s;
        QTest::newRow("a month of fewer rows")
            << u"2026-11-30T00:00:00"_s << u"2026-12-01T00:00:00"_s;
        QTest::newRow("a month of more rows")
            << u"2026-12-01T00:00:00"_s << u"2026-11-30T00:00:00"_s;
        QTest::newRow("another month of as many rows")
            << u"2026-09-30T00:00:00"_s << u"2026-10-01T00:00:00"_s;
    }
    void shouldKeepTheFocusOnTheSelectedDay()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);

        // given
        const Fixture f(from);
        const int day = from.mid(8, 2).toInt();
        f.cell(day)->forceActiveFocus(Qt::TabFocusReason);

        // when
        f.select(to);

        // then
        QQuickItem *const cell = f.cell(to.mid(8, 2).toInt());
        QVERIFY(cell->hasActiveFocus());
        QVERIFY(cell->property("visualFocus").toBool());

        // given that another has the focus
        f.item("elsewhere")->forceActiveFocus();

        // when
        f.select(from);

        // then it is not taken from it
        QVERIFY(f.item("elsewhere")->hasActiveFocus());
    }

    void shouldNameItsControls()
    {
        // given
        const Fixture f;
        const auto interface = [](QQuickItem *item) {
            return QAccessible::queryAccessibleInterface(item);
        };
        const auto press = [&](QQuickItem *item) {
            interface(item)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        };

        // then
        for (const auto &[item, name] : {std::pair{"previousMonth", u"Forrige måned"_s},
                                         std::pair{"nextMonth", u"Næste måned"_s}}) {
            QCOMPARE(interface(f.item(item))->role(), QAccessible::Button);
            QCOMPARE(interface(f.item(item))->text(QAccessible::Name), name);
        }
        QCOMPARE(interface(f.item("monthTitle"))->role(), QAccessible::StaticText);
        QCOMPARE(interface(f.item("monthTitle"))->text(QAccessible::Name), u"november 2026"_s);
        QCOMPARE(interface(findItems(f.root(), u"dayOfWeek"_s).at(5))->text(QAccessible::Name),
                 u"Lø"_s);
        QCOMPARE(interface(f.cell(3))->role(), QAccessible::Button);
        QCOMPARE(interface(f.cell(3))->text(QAccessible::Name), u"tirsdag 3. november 2026"_s);
        QVERIFY(!interface(f.cell(3))->state().selected);
        QVERIFY(interface(f.cell(18))->state().selected);

        // when
        press(f.cell(3));

        // then
        QVERIFY(interface(f.cell(3))->state().selected);
        QCOMPARE(f.picked().size(), 1);

        // when
        press(f.item("nextMonth"));

        // then
        QCOMPARE(f.title(), u"december 2026"_s);

        // when
        press(f.item("previousMonth"));

        // then
        QCOMPARE(f.title(), u"november 2026"_s);
    }
};

QTEST_MAIN(TestCalendarView)
#include "tst_calendarview.moc"
