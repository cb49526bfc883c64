#include "../../support/layout.h"
#include "../../support/qmltest.h"
#include "../../support/teststore.h"
#include "model/projectcode.h"
#include "timer/timermanager.h"
#include "views/controls/theme.h"
#include "views/row/taskrowviewmodel.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using qmltest::centre;

namespace
{

/// Where @p item lies in its row.
QRectF inRow(const QQuickItem *item, const QQuickItem *row)
{
    return item->mapRectToItem(row, QRectF(0, 0, item->width(), item->height()));
}

} // namespace

class TestTaskRowView : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        /// A row as wide as in a window of @p windowWidth.
        explicit Fixture(const QString &name = u"Møde"_s, bool isSelected = false,
                         int windowWidth = 650)
            : task(store.insertTask(name))
            , viewModel(*task, timer, codeMenu)
        {
            // As its list does.
            connect(&timer, &TimerManager::showBillableTimeChanged, &viewModel,
                    &TaskRowViewModel::update);
            connect(&timer, &TimerManager::tickChanged, &viewModel, &TaskRowViewModel::update);
            window = std::make_unique<qmltest::Window>(
                QByteArray(R"(
                    import QtQuick
                    import TimeTracker.Views.Row
                    FocusScope {
                        id: root
                        required property TaskRowViewModel viewModel
                        required property bool isSelected
                        property int toggles: 0
                        property int deletions: 0
                        property int selections: 0
                        focus: true
                        Item { objectName: "elsewhere"; focus: true }
                        TaskRowView {
                            objectName: "row"
                            x: 8; y: 50
                            width: parent.width - 16; height: implicitHeight
                            viewModel: root.viewModel
                            isSelected: root.isSelected
                            onToggle: ++root.toggles
                            onDeleteRequested: ++root.deletions
                            onSelect: ++root.selections
                        }
                    })"),
                QSize(windowWidth - 180, 200),
                QVariantMap{{u"viewModel"_s, QVariant::fromValue(&viewModel)},
                            {u"isSelected"_s, isSelected}});
            window->hover({1, 1});
        }

        QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
        /// Where an item lies in the row.
        QRectF place(const char *name) const { return inRow(item(name), item("row")); }
        void click(const char *name) const
        {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(item(name)));
        }
        int count(const char *what) const { return window->rootObject()->property(what).toInt(); }
        QQuickItem *field(const char *name) const
        {
            return qmltest::findItem(window->rootObject(), QString::fromLatin1(name));
        }
        /// The entry of the open menu that has that text, or null.
        QQuickItem *inMenu(const QString &text) const
        {
            const auto entries = qmltest::findItems(window->contentItem(), u"menuEntry"_s);
            for (QQuickItem *entry : entries) {
                if (entry->property("label").toString() == text)
                    return entry;
            }
            return nullptr;
        }
        /// The six that stand beside each other, from left to right.
        QList<QRectF> columns() const
        {
            return {place("startButton"), place("picker"),    place("nameGroup"),
                    place("time"),        place("hoursText"), place("deleteButton")};
        }
        /// A word that is as wide as possible within @p width.
        QString word(double width) const
        {
            const QFontMetricsF metrics(item("nameText")->property("font").value<QFont>());
            QString word(1, u'i');
            while (std::ceil(metrics.horizontalAdvance(word + u'i')) <= width)
                word += u'i';
            return word;
        }
        void type(const QString &text) const
        {
            for (const QChar character : text)
                QTest::sendKeyEvent(QTest::Click, window.get(), Qt::Key_unknown, character, {});
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        ProjectCodeMenuModel codeMenu{store.context()};
        Task *task;
        TaskRowViewModel viewModel;
        std::unique_ptr<qmltest::Window> window;
    };

private Q_SLOTS:
    void shouldLayOutItsElementsFromLeftToRight()
    {
        // given
        const Fixture f;

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"row.height"_s, 28 + 16},
                     {u"startButton.left - row.left"_s, 12},
                     {u"startButton.top - row.top"_s, 8},
                     {u"startButton.width"_s, 28},
                     {u"startButton.height"_s, 28},
                     {u"startButton.symbolSize"_s, 14},
                     {u"picker.left - startButton.right"_s, 12},
                     {u"nameGroup.left - picker.right"_s, 12},
                     {u"nameText.font.pixelSize"_s, 14},
                     {u"pencil.symbolSize"_s, 14},
                     // on both sides of a spacer
                     {u"timeText.left - nameGroup.right"_s, 12 + 12},
                     {u"timeText.width"_s, 70},
                     {u"hoursText.left - timeText.right"_s, 12},
                     {u"hoursText.width"_s, 50},
                     {u"hoursText.font.pixelSize"_s, 14},
                     {u"deleteButton.left - hoursText.right"_s, 12},
                     {u"row.right - deleteButton.right"_s, 12},
                     {u"deleteButton.symbolSize"_s, 16},
                     {u"startButton.centreY - row.centreY"_s, 0},
                     {u"picker.centreY - row.centreY"_s, 0},
                     {u"nameGroup.centreY - row.centreY"_s, 0},
                     {u"timeText.centreY - row.centreY"_s, 0},
                     {u"hoursText.centreY - row.centreY"_s, 0},
                     {u"deleteButton.centreY - row.centreY"_s, 0},
                 }),
                 QStringList());
        // clang-format on
        const double textWidth = f.item("nameText")->property("contentWidth").toDouble();
        QCOMPARE(f.place("pencil").left(), f.place("nameText").left() + std::ceil(textWidth) + 6);
    }

    void shouldLetALongClockGrowIntoTheGap()
    {
        // given
        const Fixture f;

        // when
        f.task->setAccumulatedSeconds(360000);

        // then
        QVERIFY(f.place("timeText").width() > 70);
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"timeText.left - nameGroup.right"_s, 24},
                     {u"hoursText.left - timeText.right"_s, 12},
                 }),
                 QStringList());
        // clang-format on
    }

    void shouldLetLongHoursGrowToTheLeft()
    {
        // given
        const Fixture f;
        const QRectF deletion = f.place("deleteButton");

        // when
        f.task->setAccumulatedSeconds(3'600'000);

        // then
        QVERIFY(f.place("hoursText").width() > 50);
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"time.left - nameGroup.right"_s, 24},
                     {u"hoursText.left - time.right"_s, 12},
                     {u"hoursText.text"_s, u"1000.00"_s},
                     {u"hoursText.width - hoursText.implicitWidth"_s, 0},
                     {u"deleteButton.left - hoursText.right"_s, 12},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(f.place("deleteButton"), deletion);
    }

    void shouldNeverLetFiguresOverlap_data()
    {
        QTest::addColumn<qint64>("hours");
        QTest::addColumn<QString>("code");
        for (const qint64 hours : {1'000LL, 10'000LL, 1'000'000'000LL, 2'562'047'788'015'215LL}) {
            QTest::addRow("%lld", hours) << qint64(hours) << QString();
            QTest::addRow("%lld and a code", hours) << qint64(hours) << QString(30, u'K');
        }
    }
    void shouldNeverLetFiguresOverlap()
    {
        QFETCH(qint64, hours);
        QFETCH(QString, code);

        // given the smallest window
        const Fixture f(u"Kundemøde om den nye aftale"_s, false, 550);
        if (!code.isEmpty())
            f.task->setProjectCode(code);

        // when
        f.task->setAccumulatedSeconds(hours * 3600);

        // then
        const QList<QRectF> columns = f.columns();
        for (int i = 1; i < columns.size(); ++i)
            QVERIFY2(columns[i].left() >= columns[i - 1].right() + 11.9, QByteArray::number(i));
        QQuickItem *const time = f.item("timeText")->property("contentItem").value<QQuickItem *>();
        for (const QQuickItem *figure : {time, f.item("hoursText")}) {
            QVERIFY(figure->property("contentWidth").toDouble() <= figure->width());
            QVERIFY(!figure->property("truncated").toBool());
        }
        QVERIFY(f.place("pencil").right() <= f.place("nameGroup").right());
        QVERIFY(f.place("nameText").width() > 0);
    }

    void shouldShowFiguresInTheFixedFontAtTheTrailingEdge()
    {
        // given
        const Fixture f;

        // then
        const Theme theme;
        QQuickItem *const time = f.item("timeText")->property("contentItem").value<QQuickItem *>();
        for (const QQuickItem *figure : {time, f.item("hoursText")}) {
            const auto font = figure->property("font").value<QFont>();
            QCOMPARE(font.family(), theme.monospacedFamily());
            QCOMPARE(font.pixelSize(), 14);
            QCOMPARE(font.weight(), QFont::Normal);
            QCOMPARE(figure->property("color").value<QColor>(), theme.secondary());
            QCOMPARE(figure->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignRight));
            QCOMPARE(figure->opacity(), 1.0);
        }
        QCOMPARE(time->width(), 70.0);
        QCOMPARE(f.place("hoursText").width(), 50.0);
    }

    void shouldCloseTheGapBehindTheNameBeforeAWordBreaks()
    {
        // given
        const Fixture f;
        const double room = f.item("nameText")->width();
        const auto gap = [&f] { return f.place("time").left() - f.place("nameGroup").right(); };
        QCOMPARE(gap(), 24.0);

        // when a word needs half of what the gap can give
        f.task->setName(f.word(room + 6));

        // then
        QVERIFY(gap() > 12);
        QVERIFY(gap() < 24);
        QCOMPARE(f.item("nameText")->property("lineCount").toInt(), 1);

        // when it needs more
        f.task->setName(f.word(room + 20));

        // then
        QCOMPARE(gap(), 12.0);
        QCOMPARE(f.item("nameText")->property("lineCount").toInt(), 2);
    }

    void shouldShortenTheCodeBeforeAWordOfTheNameBreaks()
    {
        // given the smallest window, where code and name have half each
        const Fixture f(u"a"_s, false, 550);
        f.task->setProjectCode(u"KUNDE-2026-INTERN"_s);
        QCOMPARE(f.place("picker").width(), f.place("nameGroup").width());
        const double half = f.item("nameText")->width();
        const double badge = f.place("picker").width();

        // when a word needs more, and another less
        f.task->setName(f.word(half + 12 + 6) + u" med Åse"_s);

        // then the gap has closed, and the code has given way
        QCOMPARE(f.place("time").left() - f.place("nameGroup").right(), 12.0);
        QVERIFY(f.place("picker").width() < badge);
        QVERIFY(f.item("nameText")->property("contentWidth").toDouble() <=
                f.item("nameText")->width());
        QVERIFY(f.place("nameText").width() >= half + 12 + 2);

        // when the word does not fit at all
        f.task->setName(f.word(1000));

        // then the code shows its first letters
        QCOMPARE(f.place("picker").width(), 36.0);
        QVERIFY(f.item("badgeText")->property("truncated").toBool());
        QVERIFY(f.item("badgeText")->property("contentWidth").toDouble() > 12);
    }

    void shouldBreakNoWordBeforeAllElseHasGivenWay_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"Kundemøde", "Unavngivet", "Planlægning", "Dokumentation", "Fakturering", "Test"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void shouldBreakNoWordBeforeAllElseHasGivenWay()
    {
        QFETCH(QString, name);

        // given
        const Fixture f(name, false, 550);
        f.task->setProjectCode(u"KUNDE-2026-INTERN"_s);
        const QQuickItem *const text = f.item("nameText");
        int whole = 0;

        // when the window grows
        for (int width = 550; width <= 800; ++width) {
            f.window->rootObject()->setWidth(width - 180);

            // then
            if (text->property("lineCount").toInt() == 1) {
                ++whole;
                continue;
            }
            QCOMPARE(f.place("picker").width(), 36.0);
            QCOMPARE(f.place("time").left() - f.place("nameGroup").right(), 12.0);
            QVERIFY2(text->width() < text->implicitWidth(), QByteArray::number(width));
        }
        QVERIFY(whole > 100);
    }

    void shouldShowAtMostFiveLinesOfAName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("words") << u"lille møde "_s.repeated(900).trimmed();
        QTest::newRow("one word") << u"m"_s.repeated(10'000);
        QTest::newRow("lines") << u"linje\n"_s.repeated(1000).trimmed();
    }
    void shouldShowAtMostFiveLinesOfAName()
    {
        QFETCH(QString, name);

        // given
        const Fixture f(name);

        // then
        const QQuickItem *const text = f.item("nameText");
        QCOMPARE(text->property("lineCount").toInt(), 5);
        QVERIFY(text->property("truncated").toBool());
        QCOMPARE(f.item("row")->height(), text->height() + 16);
        QVERIFY(f.item("row")->height() < 8 + 5 * 20 + 8);
        QVERIFY(f.place("pencil").right() <= f.place("nameGroup").right());

        // when the pointer rests on it
        f.window->hover(centre(text));

        // then the whole of it is told
        QTRY_VERIFY(qmltest::findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(
            qmltest::findItem(f.window->contentItem(), u"helpTip"_s)->property("text").toString(),
            name);
    }

    void shouldStandAtTheLeadingEdgeAlsoFromRightToLeft()
    {
        // given
        const Fixture f(u"פגישה עם לקוח"_s);
        const QRectF group = f.place("nameGroup");
        const QPointF row = f.item("row")->mapToScene({});
        const QImage picture = f.window->picture();
        const double scale = picture.devicePixelRatio();

        // when looking for the first ink
        const QRect area = QRectF((group.topLeft() + row) * scale, group.size() * scale).toRect();
        const QColor ground = picture.pixelColor(area.topRight());
        int ink = area.left();
        const auto isEmpty = [&](int x) {
            for (int y = area.top(); y < area.bottom(); ++y) {
                if (picture.pixelColor(x, y) != ground)
                    return false;
            }
            return true;
        };
        while (ink < area.right() && isEmpty(ink))
            ++ink;

        // then
        QVERIFY2(ink <= area.left() + 4 * scale, QByteArray::number(ink - area.left()));
        const double width = f.item("nameText")->property("contentWidth").toDouble();
        QCOMPARE(f.place("pencil").left(), group.left() + std::ceil(width) + 6);
    }

    void shouldGiveALongCodeHalfOfTheFreeWidth()
    {
        // given
        const Fixture f;
        const QRectF time = f.place("timeText");

        // when
        f.task->setProjectCode(QString(100, u'K'));

        // then
        const QRectF picker = f.place("picker");
        const QRectF name = f.place("nameGroup");
        QCOMPARE(f.place("timeText"), time);
        QCOMPARE(picker.width(), name.width());
        QVERIFY(f.item("badgeText")->property("truncated").toBool());

        // when
        f.task->setProjectCode(u"KODE-1"_s);

        // then
        QVERIFY(f.place("picker").width() < picker.width());
        QVERIFY(!f.item("badgeText")->property("truncated").toBool());
    }

    void shouldGiveTheTaskACodeByItsMenu()
    {
        // given
        Fixture f;
        f.store.insert<ProjectCode>(u"4711"_s, u"Støtte"_s);

        // when
        f.click("picker");
        QTRY_VERIFY(f.inMenu(u"4711 \u2013 Støtte"_s));
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          centre(f.inMenu(u"4711 \u2013 Støtte"_s)));

        // then
        QCOMPARE(f.task->projectCode().value_or(u"none"_s), u"4711"_s);
        QCOMPARE(f.item("badgeText")->property("text").toString(), u"4711"_s);
        QCOMPARE(f.count("selections"), 0);
    }

    void shouldWrapALongName()
    {
        // given
        const Fixture f(u"Et meget langt navn på en opgave som ikke kan stå på en linje"_s);

        // then
        QVERIFY(f.item("row")->height() > 44);
        QVERIFY(f.place("pencil").right() <= f.place("nameGroup").right());
        QVERIFY(f.place("nameText").top() >= 8);
        QVERIFY(std::abs(f.place("startButton").center().y() - f.item("row")->height() / 2) <= 0.5);
    }

    void shouldShowWhetherItRunsAndIsSelected_data()
    {
        QTest::addColumn<bool>("isRunning");
        QTest::addColumn<bool>("isSelected");
        QTest::addColumn<double>("background");
        QTest::addColumn<bool>("border");
        QTest::newRow("neither") << false << false << 0.0 << false;
        QTest::newRow("selected") << false << true << 0.06 << true;
        QTest::newRow("running") << true << false << 0.1 << false;
        QTest::newRow("both") << true << true << 0.1 << true;
    }
    void shouldShowWhetherItRunsAndIsSelected()
    {
        QFETCH(bool, isRunning);
        QFETCH(bool, isSelected);
        QFETCH(double, background);
        QFETCH(bool, border);

        // given
        const Fixture f(u"Møde"_s, isSelected);
        if (isRunning)
            f.task->start();
        const Theme theme;
        const auto mixed = [&](double opacity) {
            const QColor under = f.window->colorAt({4, 4});
            const auto mix = [&](int a, int b) { return qRound(a * opacity + b * (1 - opacity)); };
            const QColor accent = theme.brandAccent();
            return QColor(mix(accent.red(), under.red()), mix(accent.green(), under.green()),
                          mix(accent.blue(), under.blue()));
        };
        const auto isNear = [](const QColor &a, const QColor &b) {
            return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2 &&
                   std::abs(a.blue() - b.blue()) <= 2;
        };

        // then
        QVERIFY(isNear(f.window->colorAt({8 + 200, 50 + 5}), mixed(background)));
        const QColor edge = f.window->colorAt({8 + 200, 50});
        QCOMPARE(isNear(edge, mixed(background)), !border);
        // the corner is round
        QVERIFY(isNear(f.window->colorAt({8, 50}), mixed(0)));
    }

    void shouldDrawTheBorderAlikeOnAllSides()
    {
        // given
        const Fixture f(u"Møde"_s, true);
        const QImage picture = f.window->picture();
        const double scale = picture.devicePixelRatio();
        const QQuickItem *const row = f.item("row");
        const QRect place =
            QRectF(row->mapToScene({}) * scale, row->size() * scale).toAlignedRect();
        const QColor accent = Theme().brandAccent();
        // what the border covers by half, well inside the row
        const QColor under =
            picture.pixelColor(place.left() + qRound(300 * scale), place.top() + qRound(5 * scale));
        const QColor expected((accent.red() + under.red()) / 2,
                              (accent.green() + under.green()) / 2,
                              (accent.blue() + under.blue()) / 2);
        /// How many pixels have the border's colour, inwards from the edge.
        const auto width = [&](QPoint pixel, QPoint step) {
            int count = 0;
            for (; count < 10; ++count, pixel += step) {
                const QColor colour = picture.pixelColor(pixel);
                if (std::abs(colour.red() - expected.red()) > 2 ||
                    std::abs(colour.green() - expected.green()) > 2 ||
                    std::abs(colour.blue() - expected.blue()) > 2) {
                    break;
                }
            }
            return count;
        };

        // then it is 1.5 wide where the screen has such pixels, else as near as can be
        const QPoint middle = place.center();
        const int wanted = scale == 2 ? 3 : 2;
        QCOMPARE(width({place.left(), middle.y()}, {1, 0}), wanted);
        QCOMPARE(width({middle.x(), place.top()}, {0, 1}), wanted);
        QCOMPARE(width({place.right(), middle.y()}, {-1, 0}), wanted);
        QCOMPARE(width({middle.x(), place.bottom()}, {0, -1}), wanted);
    }

    void shouldShowThePauseSymbolAndFadeTheDeleteButtonWhileItRuns()
    {
        // given
        const Fixture f;

        // then
        const Theme theme;
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"startButton.symbol"_s, u"play.fill"_s},
                     {u"startButton.symbolColor"_s, theme.brandAccent()},
                     {u"deleteButton.opacity"_s, 1},
                 }),
                 QStringList());
        // clang-format on

        // when
        f.task->start();

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"startButton.symbol"_s, u"pause.fill"_s},
                     {u"startButton.symbolColor"_s, theme.brandBackground()},
                     {u"deleteButton.opacity"_s, 0.5},
                 }),
                 QStringList());
        // clang-format on
        const auto circle = f.item("startButton")->property("circleColor").value<QColor>();
        QCOMPARE(circle.alpha(), qRound(0.15 * 255));

        // when
        f.click("deleteButton");

        // then it still deletes, half transparent as it is
        QCOMPARE(f.count("deletions"), 1);
    }

    void shouldCallItsOwnerWhenClicked()
    {
        // given
        const Fixture f;

        // when
        f.click("startButton");

        // then
        QCOMPARE(f.count("toggles"), 1);

        // when
        f.click("deleteButton");

        // then
        QCOMPARE(f.count("deletions"), 1);
        QCOMPARE(f.count("selections"), 0);

        // when it is clicked anywhere in the name's rectangle, not only on its letters
        const QRectF group = f.place("nameGroup");
        QTest::mouseClick(
            f.window.get(), Qt::LeftButton, {},
            f.item("row")->mapToScene(QPointF(group.right() - 2, group.top() + 1)).toPoint());

        // then
        QCOMPARE(f.count("selections"), 1);

        // when it is clicked on the hours, which are no button
        f.click("hoursText");

        // then
        QCOMPARE(f.count("toggles") + f.count("deletions") + f.count("selections"), 3);
        QVERIFY(!f.field("timeField"));
    }

    void shouldShowThePencilOnlyUnderThePointerAndKeepItsPlace()
    {
        // given
        const Fixture f;
        const auto *const symbol = f.item("pencil")->property("contentItem").value<QQuickItem *>();
        const QRectF place = f.place("pencil");
        QCOMPARE(symbol->opacity(), 0.0);

        // when
        f.window->hover(f.item("row")->mapToScene({5, 5}).toPoint());

        // then
        QTRY_COMPARE(symbol->opacity(), 1.0);
        QCOMPARE(f.place("pencil"), place);

        // when
        f.window->hover({1, 1});

        // then
        QTRY_COMPARE(symbol->opacity(), 0.0);
    }

    void shouldShowThePencilWhileTheKeyboardFocusIsInTheRow()
    {
        // given
        const Fixture f;
        const auto *const symbol = f.item("pencil")->property("contentItem").value<QQuickItem *>();

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Tab);

        // then
        QVERIFY(f.item("startButton")->hasActiveFocus());
        QCOMPARE(symbol->opacity(), 1.0);
    }

    void shouldSelectByATapOnThePencilThatIsNotDrawn()
    {
        // given
        const Fixture f;
        const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());

        // when
        QTest::touchEvent(f.window.get(), finger.get()).press(0, centre(f.item("pencil")));
        QTest::touchEvent(f.window.get(), finger.get()).release(0, centre(f.item("pencil")));

        // then
        QTRY_COMPARE(f.count("selections"), 1);
        QVERIFY(!f.timer.isEditing());

        // when it is clicked with a mouse, whose pointer is there before
        f.click("pencil");

        // then
        QVERIFY(f.timer.isEditing());
    }

    void shouldEditTheNameInPlace()
    {
        // given
        const Fixture f;
        const double right = f.place("nameGroup").right();

        // when
        f.click("pencil");

        // then
        QVERIFY(f.timer.isEditing());
        const QQuickItem *const field = f.field("nameField");
        QVERIFY(field);
        QVERIFY(field->hasActiveFocus());
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"nameField.right - row.left"_s, right},
                     {u"nameField.text"_s, u"Møde"_s},
                     {u"nameField.placeholderText"_s, u"Opgavenavn"_s},
                     {u"nameField.font.pixelSize"_s, 14},
                     {u"nameText.visible"_s, false},
                 }),
                 QStringList());
        // clang-format on

        // when
        f.type(u"  Kaffe med Åse "_s);
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then what was typed takes the place of the old name
        QCOMPARE(f.task->name(), u"Kaffe med Åse"_s);
        QVERIFY(!f.timer.isEditing());
        QTRY_VERIFY(!f.field("nameField"));
        QVERIFY(f.item("nameText")->isVisible());
        QCOMPARE(f.count("selections"), 0);
    }

    void shouldShowAnEmptyNameInTheSecondaryColour()
    {
        // given
        const Fixture f;
        const Theme theme;
        QCOMPARE(f.item("nameText")->property("color").value<QColor>(), theme.primary());

        // when
        f.task->setName({});

        // then
        QCOMPARE(f.item("nameText")->property("text").toString(), u"Unavngivet opgave"_s);
        QCOMPARE(f.item("nameText")->property("color").value<QColor>(), theme.secondary());
    }

    void shouldEditTheTimeInPlace()
    {
        // given
        Fixture f;
        f.task->setAccumulatedSeconds(61);
        f.task->start();
        f.clock.advance(4);

        // when
        f.click("timeText");

        // then
        QVERIFY(!f.task->isRunning());
        QVERIFY(f.timer.isEditing());
        const QQuickItem *const field = f.field("timeField");
        QVERIFY(field);
        QVERIFY(field->hasActiveFocus());
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"timeField.width"_s, 70},
                     {u"timeField.text"_s, u"00:01:05"_s},
                     {u"timeField.placeholderText"_s, u"00:00:00"_s},
                     {u"timeField.font.pixelSize"_s, 14},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(field->property("horizontalAlignment").toInt(), int(Qt::AlignRight));

        // when
        f.type(u"1:30"_s);
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then
        QCOMPARE(f.task->accumulatedSeconds(), 5400);
        QVERIFY(!f.task->isRunning());
        QTRY_VERIFY(!f.field("timeField"));
        QCOMPARE(f.item("timeText")->property("label").toString(), u"01:30:00"_s);
    }

    void shouldStayInTheEditUntilReturn()
    {
        // given
        const Fixture f;
        f.click("pencil");
        f.type(u"Ny"_s);

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Escape);

        // then
        QVERIFY(f.field("nameField"));
        QVERIFY(f.field("nameField")->hasActiveFocus());

        // when
        f.click("hoursText");
        QTest::keyClick(f.window.get(), Qt::Key_Tab);

        // then
        QVERIFY(f.field("nameField"));
        QCOMPARE(f.field("nameField")->property("text").toString(), u"Ny"_s);
        QCOMPARE(f.task->name(), u"Møde"_s);
        QVERIFY(f.timer.isEditing());
    }

    void shouldStayInTheTimeEditUntilReturn()
    {
        // given
        Fixture f;
        f.task->setAccumulatedSeconds(61);
        f.click("timeText");
        f.type(u"1:30"_s);
        const auto field = [&f] { return f.field("timeField"); };
        const auto isOpen = [&] {
            return field() && field()->property("text").toString() == u"1:30"_s &&
                   f.task->accumulatedSeconds() == 61 && f.timer.isEditing();
        };

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Escape);

        // then
        QVERIFY(isOpen());
        QVERIFY(field()->hasActiveFocus());

        for (const char *elsewhere : {"hoursText", "nameGroup", "startButton"}) {
            // when
            f.click(elsewhere);

            // then
            QVERIFY2(isOpen(), elsewhere);
        }

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Tab);

        // then
        QVERIFY(isOpen());
        QVERIFY(!field()->hasActiveFocus());

        // when
        f.item("elsewhere")->forceActiveFocus();
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then
        QVERIFY(isOpen());

        // when
        field()->forceActiveFocus();
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then
        QCOMPARE(f.task->accumulatedSeconds(), 5400);
        QVERIFY(!f.timer.isEditing());
    }

    void shouldHaveBothFieldsOpenAtOnce()
    {
        // given
        const Fixture f;

        // when
        f.click("pencil");
        f.click("timeText");

        // then
        QVERIFY(f.field("nameField"));
        QVERIFY(f.field("timeField")->hasActiveFocus());

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then
        QVERIFY(!f.timer.isEditing());
        QTRY_VERIFY(!f.field("timeField"));
        QVERIFY(f.field("nameField"));
    }

    void shouldOpenAnEditThatWasLeftOpen()
    {
        // given
        Fixture f;
        f.click("pencil");
        f.type(u"Halvt skre"_s);
        f.window.reset();

        // when
        const QVariantMap properties{{u"viewModel"_s, QVariant::fromValue(&f.viewModel)},
                                     {u"isSelected"_s, false}};
        qmltest::Window again(QByteArray("import TimeTracker.Views.Row\nTaskRowView {}"),
                              QSize(454, 44), properties);

        // then
        QQuickItem *const field = again.item(u"nameField"_s);
        QCOMPARE(field->property("text").toString(), u"Halvt skre"_s);
    }

    void shouldExplainTheTimeInATooltip()
    {
        // given
        const Fixture f;

        // when
        f.window->hover(centre(f.item("timeText")));

        // then
        QTRY_VERIFY(qmltest::findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(
            qmltest::findItem(f.window->contentItem(), u"helpTip"_s)->property("text").toString(),
            u"Klik for at redigere tid"_s);
    }

    void shouldNameItsControls()
    {
        // given
        const Fixture f;
        const auto interface = [&](const char *name) {
            return QAccessible::queryAccessibleInterface(f.item(name));
        };
        const auto expect = [&](const char *item, QAccessible::Role role, const QString &name) {
            QAccessibleInterface *const found = interface(item);
            QVERIFY2(found, item);
            QCOMPARE(found->role(), role);
            QCOMPARE(found->text(QAccessible::Name), name);
            QVERIFY2(!found->state().invisible, item);
        };

        // then
        expect("row", QAccessible::ListItem, u"Møde"_s);
        expect("startButton", QAccessible::Button, u"Start Møde"_s);
        expect("pencil", QAccessible::Button, u"Rediger navn"_s);
        expect("timeText", QAccessible::Button, u"00:00:00"_s);
        expect("hoursText", QAccessible::StaticText, u"0.00"_s);
        expect("deleteButton", QAccessible::Button, u"Slet Møde"_s);
        QCOMPARE(interface("timeText")->text(QAccessible::Description),
                 u"Klik for at redigere tid"_s);

        // when
        f.task->start();

        // then
        expect("startButton", QAccessible::Button, u"Sæt på pause: Møde"_s);

        // when
        f.task->setName({});

        // then
        expect("row", QAccessible::ListItem, u"Unavngivet opgave"_s);

        // when
        f.click("pencil");

        // then
        expect("nameField", QAccessible::EditableText, u"Opgavenavn"_s);

        // when
        f.click("timeText");

        // then
        expect("timeField", QAccessible::EditableText, u"Tid"_s);
    }

    void shouldSayThatItsTaskRuns()
    {
        // given
        const Fixture f;
        QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(f.item("row"));
        QCOMPARE(row->text(QAccessible::Description), QString());

        // when
        f.task->start();

        // then
        QCOMPARE(row->text(QAccessible::Description), u"Kører"_s);
    }

    void shouldKeepTheNameOfARunningTimeWhileItHasTheKeyboard()
    {
        // given
        Fixture f;
        QQuickItem *const time = f.item("timeText");
        const auto name = [time] {
            return QAccessible::queryAccessibleInterface(time)->text(QAccessible::Name);
        };
        const auto pass = [&f](double seconds) {
            f.clock.advance(seconds);
            Q_EMIT f.timer.tickChanged();
        };
        f.task->start();

        // when
        pass(2);

        // then
        QCOMPARE(name(), u"00:00:02"_s);

        // when
        time->forceActiveFocus(Qt::TabFocusReason);
        pass(3);

        // then
        QCOMPARE(time->property("label").toString(), u"00:00:05"_s);
        QCOMPARE(name(), u"00:00:02"_s);

        // when
        f.item("deleteButton")->forceActiveFocus(Qt::TabFocusReason);

        // then
        QCOMPARE(name(), u"00:00:05"_s);

        // when
        time->forceActiveFocus(Qt::TabFocusReason);
        pass(1);
        f.task->stop();

        // then
        QCOMPARE(name(), u"00:00:06"_s);
    }

    void shouldBeSelectedByAssistiveTechnology()
    {
        // given
        const Fixture f(u"Møde"_s, true);
        QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(f.item("row"));

        // then
        QVERIFY(row->state().selected);
        QVERIFY(row->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction()));

        // when
        row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QCOMPARE(f.count("selections"), 1);

        // when
        QAccessible::queryAccessibleInterface(f.item("startButton"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());

        // then
        QCOMPARE(f.count("toggles"), 1);
    }
};

QTEST_MAIN(TestTaskRowView)
#include "tst_taskrowview.moc"
