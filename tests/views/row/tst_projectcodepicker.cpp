#include "../../support/layout.h"
#include "../../support/qmltest.h"
#include "../../support/teststore.h"
#include "model/projectcode.h"
#include "timer/timermanager.h"
#include "views/controls/theme.h"
#include "views/row/taskrowviewmodel.h"

#include <QAccessible>
#include <QQuickItem>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using qmltest::centre;
using qmltest::findItems;

class TestProjectCodePicker : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(const QStringList &codes = {},
                         const std::optional<QString> &chosen = std::nullopt)
            : task(store.insert<Task>(u"Møde"_s, clock.now(), chosen))
        {
            for (qsizetype i = 0; i < codes.size(); ++i)
                store.insert<ProjectCode>(codes.at(i), i == 1 ? u"Støtte"_s : QString(), i);
            window = std::make_unique<qmltest::Window>(
                QByteArray(R"(
                    import QtQuick
                    import TimeTracker.Views.Row
                    FocusScope {
                        id: root
                        required property TaskRowViewModel viewModel
                        property int clicksBehind: 0
                        property int keysBehind: 0
                        focus: true
                        Keys.onPressed: ++keysBehind
                        MouseArea { anchors.fill: parent; onClicked: ++root.clicksBehind }
                        Item { objectName: "elsewhere"; focus: true }
                        ProjectCodePicker {
                            objectName: "picker"
                            x: 20; y: 20
                            selectedCode: root.viewModel.projectCode
                            codeMenu: root.viewModel.codeMenu
                            onCodeChosen: code => root.viewModel.projectCode = code
                        }
                    })"),
                QSize(300, 240), QVariantMap{{u"viewModel"_s, QVariant::fromValue(&viewModel)}});
            window->hover({1, 1});
        }

        QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
        /// The open menu's entries.
        QList<QQuickItem *> entries() const
        {
            return findItems(window->contentItem(), u"menuEntry"_s);
        }
        QStringList texts() const
        {
            QStringList texts;
            for (const QQuickItem *entry : entries())
                texts << entry->property("label").toString();
            return texts;
        }
        QStringList checkedTexts() const
        {
            QStringList texts;
            for (QQuickItem *entry : entries()) {
                if (qmltest::findItem(entry, u"checkmark"_s)->isVisible())
                    texts << entry->property("label").toString();
            }
            return texts;
        }
        QString highlightedText() const
        {
            for (const QQuickItem *entry : entries()) {
                if (entry->property("highlighted").toBool())
                    return entry->property("label").toString();
            }
            return {};
        }
        void open() const
        {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(item("picker")));
            QTRY_VERIFY(!entries().isEmpty());
            QTRY_VERIFY(entries().constFirst()->window());
        }
        void click(const QQuickItem *target) const
        {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(target));
        }
        void press(Qt::Key key) const { QTest::keyClick(window.get(), key); }
        int count(const char *what) const { return window->rootObject()->property(what).toInt(); }
        QString code() const { return task->projectCode().value_or(u"(ingen)"_s); }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        ProjectCodeMenuModel codeMenu{store.context()};
        Task *task;
        TaskRowViewModel viewModel{*task, timer, codeMenu};
        std::unique_ptr<qmltest::Window> window;
    };

private Q_SLOTS:
    void shouldShowATagWithoutACode()
    {
        // given
        const Fixture f;

        // then
        const Theme theme;
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"tag.visible"_s, true},
                     {u"tag.fontSize"_s, 12},
                     {u"tag.color"_s, theme.secondary()},
                     {u"tag.opacity"_s, 0.6},
                     {u"badge.visible"_s, false},
                     {u"picker.width - tag.width"_s, 0},
                 }),
                 QStringList());
        // clang-format on
    }

    void shouldShowTheCodeAsABadge()
    {
        // given
        const Fixture f({}, u"kode-1"_s);

        // then
        const Theme theme;
        // clang-format off
        QCOMPARE(layout::deviations(f.window->rootObject(), {
                     {u"tag.visible"_s, false},
                     {u"badge.radius"_s, 4},
                     {u"badge.width - badgeText.implicitWidth"_s, 12},
                     {u"badge.height - badgeText.height"_s, 4},
                     {u"badgeText.left - badge.left"_s, 6},
                     {u"badgeText.top - badge.top"_s, 2},
                     {u"badgeText.text"_s, u"kode-1"_s},
                     {u"badgeText.font.pixelSize"_s, 10},
                     {u"badgeText.font.weight"_s, QFont::Medium},
                     {u"badgeText.color"_s, theme.brandAccent()},
                 }),
                 QStringList());
        // clang-format on
    }

    void shouldShowAnEmptyCodeAsAnEmptyBadgeAndNotCheckNone()
    {
        // given
        const Fixture f({u"a"_s}, u""_s);

        // then
        QVERIFY(f.item("badge")->isVisible());
        QVERIFY(!f.item("tag")->isVisible());

        // when
        f.open();

        // then
        QCOMPARE(f.checkedTexts(), QStringList());
    }

    void shouldOfferNoneAloneWithoutCodesAndNoDivider()
    {
        // given
        const Fixture f;

        // when
        f.open();

        // then
        QCOMPARE(f.texts(), QStringList{u"Ingen"_s});
        QCOMPARE(f.checkedTexts(), QStringList{u"Ingen"_s});
        QVERIFY(!f.item("menuDivider")->isVisible());
    }

    void shouldOfferAllCodesBySortOrder()
    {
        // given
        Fixture f({u"b"_s, u"a"_s});
        f.store.insert<ProjectCode>(u"først"_s, u""_s, -1);

        // when
        f.open();

        // then
        QCOMPARE(f.texts(), (QStringList{u"Ingen"_s, u"først"_s, u"b"_s, u"a \u2013 Støtte"_s}));
        QVERIFY(f.item("menuDivider")->isVisible());
        QCOMPARE(f.checkedTexts(), QStringList{u"Ingen"_s});
    }

    void shouldChooseACodeAndNoneAgain()
    {
        // given
        const Fixture f({u"a"_s, u"b"_s});
        f.open();

        // when
        f.click(f.entries().at(2));

        // then
        QCOMPARE(f.code(), u"b"_s);
        QTRY_VERIFY(f.entries().isEmpty());

        // when
        f.open();

        // then
        QCOMPARE(f.checkedTexts(), QStringList{u"b \u2013 Støtte"_s});

        // when the checked one is clicked again
        f.click(f.entries().at(2));

        // then nothing changes
        QCOMPARE(f.code(), u"b"_s);
        QTRY_VERIFY(f.entries().isEmpty());

        // when
        f.open();
        f.click(f.entries().at(0));

        // then
        QCOMPARE(f.code(), u"(ingen)"_s);
        QCOMPARE(f.count("clicksBehind"), 0);
    }

    void shouldCheckBothOfTwoEqualCodesAndTellCaseApart()
    {
        // given
        const Fixture f({u"x"_s, u"y"_s, u"x"_s, u"X"_s}, u"x"_s);

        // when
        f.open();

        // then
        QCOMPARE(f.checkedTexts(), (QStringList{u"x"_s, u"x"_s}));
    }

    void shouldCheckNothingForACodeThatIsNoMore()
    {
        // given
        const Fixture f({u"a"_s}, u"slettet"_s);
        QCOMPARE(f.item("badgeText")->property("text").toString(), u"slettet"_s);

        // when
        f.open();

        // then
        QCOMPARE(f.checkedTexts(), QStringList());
    }

    void shouldKeepClicksAndKeysFromWhatIsBehindWhileItIsOpen()
    {
        // given
        const Fixture f({u"a"_s});
        f.open();

        // when
        f.press(Qt::Key_Left);
        f.press(Qt::Key_T);

        // then
        QCOMPARE(f.count("keysBehind"), 0);

        // when
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, {290, 230});

        // then
        QCOMPARE(f.count("clicksBehind"), 0);
        QTRY_VERIFY(f.entries().isEmpty());

        // when
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, {290, 230});

        // then
        QCOMPARE(f.count("clicksBehind"), 1);
        QCOMPARE(f.code(), u"(ingen)"_s);
    }

    void shouldBeUsedByKeyboard()
    {
        // given
        const Fixture f({u"a"_s, u"b"_s});

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("picker")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
        QTRY_COMPARE(f.highlightedText(), u"Ingen"_s);

        // when
        f.press(Qt::Key_Down);
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.code(), u"a"_s);
        QTRY_VERIFY(f.entries().isEmpty());
        QTRY_VERIFY(f.item("picker")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
        QTRY_COMPARE(f.highlightedText(), u"a"_s);

        // when
        f.press(Qt::Key_Escape);

        // then
        QTRY_VERIFY(f.entries().isEmpty());
        QCOMPARE(f.code(), u"a"_s);
    }

    void shouldOpenByKeyAtItsChoiceThoughThePointerRestsOnAnotherEntry()
    {
        // given a pointer where another entry will be
        const Fixture f({u"a"_s, u"b"_s, u"c"_s}, u"c"_s);
        const QPoint pointer(40, 80);
        f.window->hover(pointer);

        // when
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Space);

        // then
        QTRY_COMPARE(f.highlightedText(), u"c"_s);
        const QQuickItem *const under = f.entries().at(1);
        QVERIFY(under->contains(under->mapFromScene(pointer)));
        f.window->drawFrame();
        QCOMPARE(f.highlightedText(), u"c"_s);

        // when
        f.window->hover(pointer + QPoint(1, 0));

        // then
        QTRY_COMPARE(f.highlightedText(), u"a"_s);
    }

    void shouldStayOpenWhileTheKeyIsHeldThatOpensIt()
    {
        // given
        const Fixture f({u"a"_s}, u"a"_s);
        const auto send = [&f](QEvent::Type type, bool isRepeat) {
            QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, u" "_s, isRepeat);
            QCoreApplication::sendEvent(f.window.get(), &event);
        };
        f.press(Qt::Key_Tab);

        // when the window system repeats the key as X does
        send(QEvent::KeyPress, false);
        QTRY_COMPARE(f.highlightedText(), u"a"_s);
        f.press(Qt::Key_Up);
        for (int i = 0; i < 5; ++i) {
            send(QEvent::KeyRelease, true);
            send(QEvent::KeyPress, true);
        }
        send(QEvent::KeyRelease, false);

        // then
        QCOMPARE(f.code(), u"a"_s);
        QCOMPARE(f.highlightedText(), u"Ingen"_s);

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.code(), u"(ingen)"_s);
    }

    void shouldGoToItsEndsByHomeAndEnd()
    {
        // given
        const Fixture f({u"a"_s, u"b"_s, u"c"_s}, u"b"_s);
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Space);
        QTRY_COMPARE(f.highlightedText(), u"b \u2013 Støtte"_s);

        // when
        f.press(Qt::Key_Home);

        // then
        QCOMPARE(f.highlightedText(), u"Ingen"_s);

        // when
        f.press(Qt::Key_End);

        // then
        QCOMPARE(f.highlightedText(), u"c"_s);

        // when
        f.press(Qt::Key_Up);

        // then
        QCOMPARE(f.highlightedText(), u"b \u2013 Støtte"_s);

        // when
        f.press(Qt::Key_End);
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.code(), u"c"_s);
    }

    void shouldGoByKeyThroughALongMenuThatARestingPointerHasOpened()
    {
        // given entries that scroll by under the pointer
        QStringList codes;
        for (int i = 0; i < 60; ++i)
            codes << u"K%1"_s.arg(i);
        const Fixture f(codes);
        f.open();
        f.window->hover({41, 100});
        f.window->hover({40, 100});
        QTRY_VERIFY(!f.highlightedText().isEmpty());

        // when
        f.press(Qt::Key_End);

        // then
        QTRY_COMPARE(f.highlightedText(), u"K59"_s);
        f.window->drawFrame();
        QCOMPARE(f.highlightedText(), u"K59"_s);

        // when
        f.press(Qt::Key_Home);

        // then
        QTRY_COMPARE(f.highlightedText(), u"Ingen"_s);
        f.window->drawFrame();
        QCOMPARE(f.highlightedText(), u"Ingen"_s);
    }

    void shouldHaveOneEndWithoutCodes()
    {
        // given
        const Fixture f;
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Space);
        QTRY_COMPARE(f.highlightedText(), u"Ingen"_s);

        // when
        f.press(Qt::Key_End);

        // then
        QCOMPARE(f.highlightedText(), u"Ingen"_s);
    }

    void shouldOpenAtTheTopWithoutItsCodeInTheMenu()
    {
        // given
        const Fixture f({u"a"_s}, u"slettet"_s);

        // when
        QAccessible::queryAccessibleInterface(f.item("picker"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());

        // then
        QTRY_COMPARE(f.highlightedText(), u"Ingen"_s);
    }

    void shouldNotTakeTheFocusByAClick()
    {
        // given
        const Fixture f({u"a"_s});

        // when
        f.open();

        // then
        QCOMPARE(f.highlightedText(), QString());

        // when
        f.press(Qt::Key_Escape);

        // then
        QTRY_VERIFY(f.entries().isEmpty());
        QTRY_VERIFY(f.item("elsewhere")->hasActiveFocus());
    }

    void shouldScrollAMenuThatIsTallerThanTheWindow()
    {
        // given
        QStringList codes;
        for (int i = 0; i < 200; ++i)
            codes << u"K%1"_s.arg(i);
        const Fixture f(codes);
        f.open();
        const auto last = [&]() -> const QQuickItem * {
            const auto entries = f.entries();
            const auto found =
                std::find_if(entries.cbegin(), entries.cend(), [](const QQuickItem *entry) {
                    return entry->property("label") == u"K199"_s;
                });
            return found != entries.cend() ? *found : nullptr;
        };
        QTRY_VERIFY(last());

        // when
        for (int i = 0; i < 205 && !last()->property("highlighted").toBool(); ++i)
            f.press(Qt::Key_Down);

        // then
        QTRY_VERIFY(
            QRectF(0, 0, 300, 240)
                .contains(last()->mapRectToScene(QRectF(0, 0, last()->width(), last()->height()))));

        // when
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.code(), u"K199"_s);
    }

    void shouldOfferAssistiveTechnologyAllEntries()
    {
        // given more than the window has room for
        QStringList codes{u"K0"_s};
        for (int i = 2; i <= 200; ++i)
            codes << u"K%1"_s.arg(i);
        const Fixture f(codes);
        const auto told = [&f] {
            QStringList names;
            QList<QAccessibleInterface *> left{
                QAccessible::queryAccessibleInterface(f.window.get())};
            while (!left.isEmpty()) {
                QAccessibleInterface *const each = left.takeFirst();
                if (each->role() == QAccessible::MenuItem)
                    names << each->text(QAccessible::Name);
                for (int i = 0; i < each->childCount(); ++i)
                    left << each->child(i);
            }
            return names;
        };

        // when
        f.open();

        // then
        QTRY_COMPARE(told().size(), 201);
        QCOMPARE(told(), f.texts());
        QCOMPARE(told().constLast(), u"K200"_s);
    }

    void shouldBeNamedForAssistiveTechnology()
    {
        // given
        const Fixture f({u"a"_s, u"b"_s});
        QAccessibleInterface *const picker =
            QAccessible::queryAccessibleInterface(f.item("picker"));

        // then
        QCOMPARE(picker->role(), QAccessible::ButtonMenu);
        QCOMPARE(picker->text(QAccessible::Name), u"Projektkode: Ingen"_s);

        // when
        picker->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QTRY_COMPARE(f.entries().size(), 3);
        QAccessibleInterface *const entry =
            QAccessible::queryAccessibleInterface(f.entries().at(1));
        QCOMPARE(entry->role(), QAccessible::MenuItem);
        QCOMPARE(entry->text(QAccessible::Name), u"a"_s);
        QVERIFY(!entry->state().checked);
        QVERIFY(QAccessible::queryAccessibleInterface(f.entries().at(0))->state().checked);

        // when
        entry->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QCOMPARE(f.code(), u"a"_s);
        QTRY_VERIFY(f.entries().isEmpty());
        QCOMPARE(picker->text(QAccessible::Name), u"Projektkode: a"_s);
    }
};

QTEST_MAIN(TestProjectCodePicker)
#include "tst_projectcodepicker.moc"
