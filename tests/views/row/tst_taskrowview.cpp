#include "../../support/qmltest.h"
#include "../../support/teststore.h"
#include "model/projectcode.h"
#include "timer/timermanager.h"
#include "views/controls/theme.h"
#include "views/row/rowedits.h"

#include <QAccessible>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using qmltest::centre;

namespace
{

/// The pixel size that an item's text is drawn in.
int pixelSize(const QQuickItem *item)
{
    return item->property("font").value<QFont>().pixelSize();
}

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
        explicit Fixture(const QString &name = u"Møde"_s, bool isSelected = false)
            : task(store.insertTask(name))
        {
            edits.setTimerManager(&timer);
            window = std::make_unique<qmltest::Window>(
                QByteArray(R"(
                    import QtQuick
                    import TimeTracker.Model
                    import TimeTracker.Timer
                    import TimeTracker.Views.Row
                    FocusScope {
                        id: root
                        required property Task task
                        required property TimerManager timerManager
                        required property RowEdits edits
                        required property ModelContext modelContext
                        required property bool isSelected
                        property int toggles: 0
                        property int deletions: 0
                        property int selections: 0
                        focus: true
                        Item { objectName: "elsewhere"; focus: true }
                        TaskRowView {
                            objectName: "row"
                            x: 8; y: 50
                            width: 454; height: implicitHeight
                            task: root.task
                            timerManager: root.timerManager
                            edits: root.edits
                            modelContext: root.modelContext
                            isActive: root.task?.isRunning ?? false
                            isSelected: root.isSelected
                            onToggle: ++root.toggles
                            onDeleteRequested: ++root.deletions
                            onSelect: ++root.selections
                        }
                    })"),
                QSize(470, 200),
                QVariantMap{{u"task"_s, QVariant::fromValue(task)},
                            {u"timerManager"_s, QVariant::fromValue(&timer)},
                            {u"edits"_s, QVariant::fromValue(&edits)},
                            {u"modelContext"_s, QVariant::fromValue(&store.context())},
                            {u"isSelected"_s, isSelected}});
            window->hover({1, 1});
        }

        QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
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
        void type(const QString &text) const
        {
            for (const QChar character : text)
                QTest::sendKeyEvent(QTest::Click, window.get(), Qt::Key_unknown, character, {});
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        RowEdits edits;
        Task *task;
        std::unique_ptr<qmltest::Window> window;
    };

private Q_SLOTS:
    void shouldLayOutItsElementsFromLeftToRight()
    {
        const Fixture f;
        const QRectF start = f.place("startButton");
        const QRectF picker = f.place("picker");
        const QRectF name = f.place("nameGroup");
        const QRectF time = f.place("timeText");
        const QRectF hours = f.place("hoursText");
        const QRectF deletion = f.place("deleteButton");

        QCOMPARE(f.item("row")->height(), 28.0 + 16);
        QCOMPARE(start, QRectF(12, 8, 28, 28));
        QCOMPARE(picker.left(), start.right() + 12);
        QCOMPARE(name.left(), picker.right() + 12);
        QCOMPARE(name.right() + 12, time.left());
        QCOMPARE(time.width(), 70.0);
        QCOMPARE(hours.left(), time.right() + 12);
        QCOMPARE(hours.width(), 50.0);
        QCOMPARE(deletion.left(), hours.right() + 12);
        QCOMPARE(deletion.right() + 12, f.item("row")->width());
        const QRectF nameText = f.place("nameText");
        const double textWidth = f.item("nameText")->property("contentWidth").toDouble();
        QCOMPARE(f.place("pencil").left(), nameText.left() + std::ceil(textWidth) + 6);
        for (const char *each : {"nameText", "hoursText"})
            QCOMPARE(pixelSize(f.item(each)), 14);
        QCOMPARE(f.item("startButton")->property("symbolSize").toInt(), 14);
        QCOMPARE(f.item("pencil")->property("symbolSize").toInt(), 14);
        QCOMPARE(f.item("deleteButton")->property("symbolSize").toInt(), 16);
        for (const QRectF &place : {start, picker, name, time, hours, deletion})
            QVERIFY(std::abs(place.center().y() - f.item("row")->height() / 2) <= 0.5);
    }

    void shouldLetALongClockGrowIntoTheGap()
    {
        const Fixture f;
        f.task->setAccumulatedSeconds(360000);
        const QRectF time = f.place("timeText");
        QVERIFY(time.width() > 70);
        QCOMPARE(f.place("hoursText").left(), time.right() + 12);
        QCOMPARE(f.place("nameGroup").right() + 12, time.left());
    }

    void shouldGiveALongCodeHalfOfTheFreeWidth()
    {
        const Fixture f;
        const QRectF time = f.place("timeText");
        f.task->setProjectCode(QString(100, u'K'));
        const QRectF picker = f.place("picker");
        const QRectF name = f.place("nameGroup");
        QCOMPARE(f.place("timeText"), time);
        QCOMPARE(picker.width(), name.width());
        QVERIFY(f.item("badgeText")->property("truncated").toBool());
        f.task->setProjectCode(u"KODE-1"_s);
        QVERIFY(f.place("picker").width() < picker.width());
        QVERIFY(!f.item("badgeText")->property("truncated").toBool());
    }

    void shouldGiveTheTaskACodeByItsMenu()
    {
        Fixture f;
        f.store.insert<ProjectCode>(u"4711"_s, u"Støtte"_s);
        f.click("picker");
        QTRY_VERIFY(f.inMenu(u"4711 \u2013 Støtte"_s));
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          centre(f.inMenu(u"4711 \u2013 Støtte"_s)));
        QCOMPARE(f.task->projectCode().value_or(u"none"_s), u"4711"_s);
        QCOMPARE(f.item("badgeText")->property("text").toString(), u"4711"_s);
        QCOMPARE(f.count("selections"), 0);
    }

    void shouldWrapALongName()
    {
        const Fixture f(u"Et meget langt navn på en opgave som ikke kan stå på en linje"_s);
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
        QVERIFY(isNear(f.window->colorAt({8 + 200, 50 + 5}), mixed(background)));
        const QColor edge = f.window->colorAt({8 + 200, 50});
        QCOMPARE(isNear(edge, mixed(background)), !border);
        // the corner is round
        QVERIFY(isNear(f.window->colorAt({8, 50}), mixed(0)));
    }

    void shouldShowThePauseSymbolAndFadeTheDeleteButtonWhileItRuns()
    {
        const Fixture f;
        const Theme theme;
        QQuickItem *const start = f.item("startButton");
        QCOMPARE(start->property("symbol").toString(), u"play.fill"_s);
        QCOMPARE(start->property("symbolColor").value<QColor>(), theme.brandAccent());
        QCOMPARE(f.item("deleteButton")->opacity(), 1.0);
        f.task->start();
        QCOMPARE(start->property("symbol").toString(), u"pause.fill"_s);
        QCOMPARE(start->property("symbolColor").value<QColor>(), theme.brandBackground());
        QCOMPARE(start->property("circleColor").value<QColor>().alpha(), qRound(0.15 * 255));
        QCOMPARE(f.item("deleteButton")->opacity(), 0.5);
        // half transparent, it still deletes
        f.click("deleteButton");
        QCOMPARE(f.count("deletions"), 1);
    }

    void shouldCallItsOwnerWhenClicked()
    {
        const Fixture f;
        f.click("startButton");
        QCOMPARE(f.count("toggles"), 1);
        f.click("deleteButton");
        QCOMPARE(f.count("deletions"), 1);
        QCOMPARE(f.count("selections"), 0);
        // anywhere in the name's rectangle, not only on its letters
        const QRectF group = f.place("nameGroup");
        QTest::mouseClick(
            f.window.get(), Qt::LeftButton, {},
            f.item("row")->mapToScene(QPointF(group.right() - 2, group.top() + 1)).toPoint());
        QCOMPARE(f.count("selections"), 1);
        // the hours are no button
        f.click("hoursText");
        QCOMPARE(f.count("toggles") + f.count("deletions") + f.count("selections"), 3);
        QVERIFY(!f.field("timeField"));
    }

    void shouldShowThePencilOnlyUnderThePointerAndKeepItsPlace()
    {
        const Fixture f;
        const auto *const symbol = f.item("pencil")->property("contentItem").value<QQuickItem *>();
        const QRectF place = f.place("pencil");
        QCOMPARE(symbol->opacity(), 0.0);
        f.window->hover(f.item("row")->mapToScene({5, 5}).toPoint());
        QTRY_COMPARE(symbol->opacity(), 1.0);
        QCOMPARE(f.place("pencil"), place);
        f.window->hover({1, 1});
        QTRY_COMPARE(symbol->opacity(), 0.0);
    }

    void shouldShowThePencilWhileTheKeyboardFocusIsInTheRow()
    {
        const Fixture f;
        const auto *const symbol = f.item("pencil")->property("contentItem").value<QQuickItem *>();
        QTest::keyClick(f.window.get(), Qt::Key_Tab);
        QVERIFY(f.item("startButton")->hasActiveFocus());
        QCOMPARE(symbol->opacity(), 1.0);
    }

    void shouldSelectByATapOnThePencilThatIsNotDrawn()
    {
        const Fixture f;
        const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
        QTest::touchEvent(f.window.get(), finger.get()).press(0, centre(f.item("pencil")));
        QTest::touchEvent(f.window.get(), finger.get()).release(0, centre(f.item("pencil")));
        QTRY_COMPARE(f.count("selections"), 1);
        QVERIFY(!f.timer.isEditing());
        // a mouse's pointer is there before it clicks
        f.click("pencil");
        QVERIFY(f.timer.isEditing());
    }

    void shouldEditTheNameInPlace()
    {
        const Fixture f;
        const double right = f.place("nameGroup").right();
        f.click("pencil");
        QVERIFY(f.timer.isEditing());
        QQuickItem *const field = f.field("nameField");
        QVERIFY(field);
        QVERIFY(field->hasActiveFocus());
        QCOMPARE(field->property("text").toString(), u"Møde"_s);
        QCOMPARE(field->property("placeholderText").toString(), u"Opgavenavn"_s);
        QCOMPARE(pixelSize(field), 14);
        QCOMPARE(inRow(field, f.item("row")).right(), right);
        QVERIFY(!f.item("nameText")->isVisible());
        // what is typed takes the place of the old name
        f.type(u"  Kaffe med Åse "_s);
        QTest::keyClick(f.window.get(), Qt::Key_Return);
        QCOMPARE(f.task->name(), u"Kaffe med Åse"_s);
        QVERIFY(!f.timer.isEditing());
        QTRY_VERIFY(!f.field("nameField"));
        QVERIFY(f.item("nameText")->isVisible());
        QCOMPARE(f.count("selections"), 0);
    }

    void shouldShowAnEmptyNameInTheSecondaryColour()
    {
        const Fixture f;
        const Theme theme;
        QCOMPARE(f.item("nameText")->property("color").value<QColor>(), theme.primary());
        f.task->setName({});
        QCOMPARE(f.item("nameText")->property("text").toString(), u"Unavngivet opgave"_s);
        QCOMPARE(f.item("nameText")->property("color").value<QColor>(), theme.secondary());
    }

    void shouldEditTheTimeInPlace()
    {
        Fixture f;
        f.task->setAccumulatedSeconds(61);
        f.task->start();
        f.clock.advance(4);
        f.click("timeText");
        QVERIFY(!f.task->isRunning());
        QVERIFY(f.timer.isEditing());
        QQuickItem *const field = f.field("timeField");
        QVERIFY(field);
        QVERIFY(field->hasActiveFocus());
        QCOMPARE(field->property("text").toString(), u"00:01:05"_s);
        QCOMPARE(field->property("placeholderText").toString(), u"00:00:00"_s);
        QCOMPARE(field->property("horizontalAlignment").toInt(), int(Qt::AlignRight));
        QCOMPARE(field->width(), 70.0);
        QCOMPARE(pixelSize(field), 14);
        f.type(u"1:30"_s);
        QTest::keyClick(f.window.get(), Qt::Key_Return);
        QCOMPARE(f.task->accumulatedSeconds(), 5400);
        QVERIFY(!f.task->isRunning());
        QTRY_VERIFY(!f.field("timeField"));
        QCOMPARE(f.item("timeText")->property("label").toString(), u"01:30:00"_s);
    }

    void shouldStayInTheEditUntilReturn()
    {
        const Fixture f;
        f.click("pencil");
        f.type(u"Ny"_s);
        QTest::keyClick(f.window.get(), Qt::Key_Escape);
        QVERIFY(f.field("nameField"));
        QVERIFY(f.field("nameField")->hasActiveFocus());
        f.click("hoursText");
        QTest::keyClick(f.window.get(), Qt::Key_Tab);
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
        QQuickItem *const field = f.field("timeField");
        const auto expectOpen = [&] {
            QCOMPARE(f.field("timeField"), field);
            QCOMPARE(field->property("text").toString(), u"1:30"_s);
            QCOMPARE(f.task->accumulatedSeconds(), 61);
            QVERIFY(f.timer.isEditing());
        };

        // when
        QTest::keyClick(f.window.get(), Qt::Key_Escape);

        // then
        expectOpen();
        QVERIFY(field->hasActiveFocus());

        // when
        for (const char *elsewhere : {"hoursText", "nameGroup", "startButton"}) {
            f.click(elsewhere);
            expectOpen();
        }
        QTest::keyClick(f.window.get(), Qt::Key_Tab);

        // then
        expectOpen();
        QVERIFY(!field->hasActiveFocus());

        // when
        f.item("elsewhere")->forceActiveFocus();
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then
        expectOpen();

        // when
        field->forceActiveFocus();
        QTest::keyClick(f.window.get(), Qt::Key_Return);

        // then
        QCOMPARE(f.task->accumulatedSeconds(), 5400);
        QVERIFY(!f.timer.isEditing());
    }

    void shouldHaveBothFieldsOpenAtOnce()
    {
        const Fixture f;
        f.click("pencil");
        f.click("timeText");
        QVERIFY(f.field("nameField"));
        QVERIFY(f.field("timeField")->hasActiveFocus());
        QTest::keyClick(f.window.get(), Qt::Key_Return);
        QVERIFY(!f.timer.isEditing());
        QTRY_VERIFY(!f.field("timeField"));
        QVERIFY(f.field("nameField"));
    }

    void shouldOpenAnEditThatWasLeftOpen()
    {
        Fixture f;
        f.click("pencil");
        f.type(u"Halvt skre"_s);
        const QVariantMap properties{{u"task"_s, QVariant::fromValue(f.task)},
                                     {u"timerManager"_s, QVariant::fromValue(&f.timer)},
                                     {u"edits"_s, QVariant::fromValue(&f.edits)},
                                     {u"modelContext"_s, QVariant::fromValue(&f.store.context())},
                                     {u"isActive"_s, false},
                                     {u"isSelected"_s, false}};
        f.window.reset();
        qmltest::Window again(QByteArray("import TimeTracker.Views.Row\nTaskRowView {}"),
                              QSize(454, 44), properties);
        QQuickItem *const field = again.item(u"nameField"_s);
        QCOMPARE(field->property("text").toString(), u"Halvt skre"_s);
    }

    void shouldExplainTheTimeInATooltip()
    {
        const Fixture f;
        f.window->hover(centre(f.item("timeText")));
        QTRY_VERIFY(qmltest::findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(
            qmltest::findItem(f.window->contentItem(), u"helpTip"_s)->property("text").toString(),
            u"Klik for at redigere tid"_s);
    }

    void shouldNameItsControls()
    {
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
        expect("row", QAccessible::ListItem, u"Møde"_s);
        expect("startButton", QAccessible::Button, u"Start Møde"_s);
        expect("pencil", QAccessible::Button, u"Rediger navn"_s);
        expect("timeText", QAccessible::Button, u"00:00:00"_s);
        expect("hoursText", QAccessible::StaticText, u"0.00"_s);
        expect("deleteButton", QAccessible::Button, u"Slet Møde"_s);
        QCOMPARE(interface("timeText")->text(QAccessible::Description),
                 u"Klik for at redigere tid"_s);
        f.task->start();
        expect("startButton", QAccessible::Button, u"Sæt på pause: Møde"_s);
        f.task->setName({});
        expect("row", QAccessible::ListItem, u"Unavngivet opgave"_s);
        f.click("pencil");
        expect("nameField", QAccessible::EditableText, u"Opgavenavn"_s);
        f.click("timeText");
        expect("timeField", QAccessible::EditableText, u"Tid"_s);
    }

    void shouldSayThatItsTaskRuns()
    {
        const Fixture f;
        QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(f.item("row"));
        QCOMPARE(row->text(QAccessible::Description), QString());
        f.task->start();
        QCOMPARE(row->text(QAccessible::Description), u"Kører"_s);
    }

    void shouldKeepTheNameOfARunningTimeWhileItHasTheKeyboard()
    {
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
        pass(2);
        QCOMPARE(name(), u"00:00:02"_s);

        time->forceActiveFocus(Qt::TabFocusReason);
        pass(3);
        QCOMPARE(time->property("label").toString(), u"00:00:05"_s);
        QCOMPARE(name(), u"00:00:02"_s);

        f.item("deleteButton")->forceActiveFocus(Qt::TabFocusReason);
        QCOMPARE(name(), u"00:00:05"_s);
        time->forceActiveFocus(Qt::TabFocusReason);
        pass(1);
        f.task->stop();
        QCOMPARE(name(), u"00:00:06"_s);
    }

    void shouldBeSelectedByAssistiveTechnology()
    {
        const Fixture f(u"Møde"_s, true);
        QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(f.item("row"));
        QVERIFY(row->state().selected);
        QVERIFY(row->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction()));
        row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(f.count("selections"), 1);
        QAccessible::queryAccessibleInterface(f.item("startButton"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(f.count("toggles"), 1);
    }
};

QTEST_MAIN(TestTaskRowView)
#include "tst_taskrowview.moc"
