#include "tests/support/qmltest.h"
#include "views/controls/theme.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using qmltest::centre;

namespace
{

/// Two buttons of 44 x 44 in an item that counts the keys that reach it.
constexpr auto TwoButtons = R"(
    import QtQuick
    import TimeTracker.Views.Controls
    Rectangle {
        id: root
        objectName: "root"
        color: "white"
        focus: true
        property var keys: []
        Keys.onPressed: event => {
            if (![Qt.Key_Tab, Qt.Key_Control].includes(event.key))
                keys = keys.concat(event.key);
        }
        PlainButton {
            id: first
            property string helpText: "Hjælp til den første"
            objectName: "first"
            x: 20; y: 20
            width: 44; height: 44
            label: "Første"
            contentItem: Item { }
            LazyHelpTip {
                text: first.helpText
                isNeeded: first.hovered && !first.pressed
            }
        }
        SymbolButton {
            objectName: "second"
            x: 100; y: 20
            implicitWidth: 44; implicitHeight: 44
            label: "Anden"
            symbol: "play.fill"
            symbolSize: 20
            symbolColor: "white"
            circleColor: Theme.brandAccent
        }
    })";

constexpr auto DisabledButtonInArea = R"(
    import QtQuick
    import TimeTracker.Views.Controls
    Rectangle {
        HelpArea {
            objectName: "area"
            x: 20; y: 20
            width: 44; height: 44
            text: "Ingen opgaver"
            SymbolButton { anchors.fill: parent; enabled: false; symbol: "play.fill" }
        }
    })";

} // namespace

class TestPlainButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        guard = std::make_unique<qmltest::WarningsAreFailures>();
        window = std::make_unique<qmltest::Window>(QByteArray(TwoButtons), QSize(200, 120));
        // Away from the buttons, wherever the last test left the pointer.
        window->hover({195, 115});
    }

    void cleanup()
    {
        window.reset();
        guard.reset();
    }

    void shouldClickOnItsWholeRectangle()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));

        // when
        for (const QPoint &point : {QPoint(20, 20), QPoint(63, 20), QPoint(20, 63), QPoint(63, 63)})
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, point);
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, {19, 40});
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, {64, 40});
        QTest::mouseClick(window.get(), Qt::RightButton, {}, {40, 40});

        // then
        QCOMPARE(clicked.size(), 4);
    }

    void shouldTakeClicksInTwentyByTwentyThoughItIsSmaller()
    {
        // given a button of 12 x 12
        window = std::make_unique<qmltest::Window>(QByteArray(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Item {
                SymbolButton { objectName: "first"; x: 50; y: 50; symbol: "xmark"; symbolSize: 9 }
            })"));
        QCOMPARE(first()->size(), QSizeF(12, 12));
        QSignalSpy clicked(first(), SIGNAL(clicked()));

        // when
        for (const QPoint &point : {QPoint(46, 46), QPoint(65, 46), QPoint(46, 65), QPoint(65, 65)})
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, point);

        // then
        QCOMPARE(clicked.size(), 4);

        // when
        for (const QPoint &point : {QPoint(41, 56), QPoint(70, 56), QPoint(56, 41), QPoint(56, 70)})
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, point);

        // then
        QCOMPARE(clicked.size(), 4);
    }

    void shouldLeaveClicksToTheNearestOfSmallButtons()
    {
        // given a field and two buttons of 12 x 12, all 4 apart
        window = std::make_unique<qmltest::Window>(QByteArray(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Item {
                TextEntry { objectName: "field"; x: 10; y: 40; width: 40; height: 32 }
                Row {
                    x: 54; y: 50
                    spacing: 4
                    SymbolButton { objectName: "first"; symbol: "checkmark"; symbolSize: 9 }
                    SymbolButton { objectName: "second"; symbol: "xmark"; symbolSize: 9 }
                }
            })"));
        QSignalSpy first(this->first(), SIGNAL(clicked()));
        QSignalSpy second(this->second(), SIGNAL(clicked()));
        const auto click = [this](int x) {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, {x, 56});
        };

        // when
        click(50);
        click(67);

        // then
        QCOMPARE(first.size(), 2);
        QCOMPARE(second.size(), 0);

        // when
        click(69);
        click(87);

        // then
        QCOMPARE(first.size(), 2);
        QCOMPARE(second.size(), 2);

        // when
        click(49);

        // then
        QVERIFY(window->item(u"field"_s)->hasActiveFocus());
        QCOMPARE(first.size(), 2);
    }

    void shouldTakeNoClicksWhileItIsNotShown()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        first()->setProperty("isShown", false);

        // when
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(first()));

        // then
        QCOMPARE(clicked.size(), 0);

        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QVERIFY(first()->hasActiveFocus());
    }

    void shouldNotTakeTheFocusByAClick()
    {
        // given
        QVERIFY(root()->hasActiveFocus());

        // when
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(first()));

        // then
        QVERIFY(root()->hasActiveFocus());
        QVERIFY(!first()->hasActiveFocus());
    }

    void shouldTakeTheFocusByTab()
    {
        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QVERIFY(first()->hasActiveFocus());

        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QVERIFY(second()->hasActiveFocus());

        // when
        QTest::keyClick(window.get(), Qt::Key_Backtab, Qt::ShiftModifier);

        // then
        QVERIFY(first()->hasActiveFocus());
    }

    void shouldShowARingForTheKeyboardsFocusAlone()
    {
        // given
        const QColor ring = Theme().brandAccent();
        QCOMPARE(window->colorAt({18, 42}), QColor(Qt::white));

        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QTRY_COMPARE(window->colorAt({18, 42}), ring);
        QCOMPARE(window->colorAt({65.5, 42}), ring);
        QCOMPARE(window->colorAt({42, 18}), ring);
        QCOMPARE(window->colorAt({42, 65.5}), ring);

        // when
        first()->setFocus(false);
        first()->forceActiveFocus(Qt::MouseFocusReason);

        // then
        QVERIFY(first()->hasActiveFocus());
        QTRY_COMPARE(window->colorAt({18, 42}), QColor(Qt::white));
    }

    void shouldBePressedBySpace()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // when
        QTest::keyClick(window.get(), Qt::Key_Space);

        // then
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(root()->property("keys").toList().size(), 0);
    }

    void shouldTakeASpaceBarHeldDownForOnePress()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        QTest::keyClick(window.get(), Qt::Key_Tab);
        const auto send = [this](QEvent::Type type, bool isRepeat) {
            QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, u" "_s, isRepeat);
            QCoreApplication::sendEvent(window.get(), &event);
        };

        // when the window system repeats the key as X does
        send(QEvent::KeyPress, false);
        for (int i = 0; i < 5; ++i) {
            send(QEvent::KeyRelease, true);
            send(QEvent::KeyPress, true);
        }

        // then
        QCOMPARE(clicked.size(), 0);

        // when the key is let go
        send(QEvent::KeyRelease, false);

        // then
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(root()->property("keys").toList().size(), 0);
    }

    void shouldLeaveOtherKeysToTheView_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        const auto row = [](const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers) {
            QTest::newRow(name) << key << modifiers;
        };
        row("Up", Qt::Key_Up, {});
        row("Down", Qt::Key_Down, {});
        row("Left", Qt::Key_Left, {});
        row("Right", Qt::Key_Right, {});
        row("Escape", Qt::Key_Escape, {});
        row("Return", Qt::Key_Return, {});
        row("Ctrl+Return", Qt::Key_Return, Qt::ControlModifier);
        row("Ctrl+Enter", Qt::Key_Enter, Qt::ControlModifier);
        row("Ctrl+T", Qt::Key_T, Qt::ControlModifier);
        row("Ctrl+Space", Qt::Key_Space, Qt::ControlModifier);
    }

    void shouldLeaveOtherKeysToTheView()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);

        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        QTest::keyClick(window.get(), Qt::Key_Tab);
        QVERIFY(first()->hasActiveFocus());

        // when
        QTest::keyClick(window.get(), key, modifiers);

        // then
        QCOMPARE(clicked.size(), 0);
        QCOMPARE(root()->property("keys").toList(), QVariantList{int(key)});
    }

    void shouldIgnoreClicksAndKeysWhileDisabled()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        first()->setEnabled(false);

        // when
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(first()));
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QCOMPARE(clicked.size(), 0);
        QVERIFY(second()->hasActiveFocus());
    }

    void shouldMakeNoShortcutOfItsLabel()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        first()->setProperty("label", u"Slet R&D & sa&lg"_s);

        // when
        for (const Qt::Key key : {Qt::Key_D, Qt::Key_Space, Qt::Key_L})
            QTest::keyClick(window.get(), key, Qt::AltModifier);

        // then
        QCOMPARE(clicked.size(), 0);
        QCOMPARE(QAccessible::queryAccessibleInterface(first())->text(QAccessible::Name),
                 u"Slet R&D & sa&lg"_s);
    }

    void shouldSayThatItIsDisabled()
    {
        // given
        const QAccessibleInterface *const accessible =
            QAccessible::queryAccessibleInterface(first());
        QCOMPARE(accessible->text(QAccessible::Description), QString());

        // when
        first()->setEnabled(false);

        // then
        QCOMPARE(accessible->text(QAccessible::Description), u"Ikke tilgængelig"_s);

        // when
        first()->setEnabled(true);

        // then
        QCOMPARE(accessible->text(QAccessible::Description), QString());
    }

    void shouldBeAButtonToAssistiveTechnology()
    {
        // given
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(first());
        QVERIFY(accessible);

        // then
        QCOMPARE(accessible->role(), QAccessible::Button);
        QCOMPARE(accessible->text(QAccessible::Name), u"Første"_s);
        QVERIFY(accessible->state().focusable);
        QCOMPARE(accessible->childCount(), 0);
    }

    void shouldBePressedByAssistiveTechnology()
    {
        // given
        QSignalSpy clicked(first(), SIGNAL(clicked()));
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(first());
        QVERIFY(accessible && accessible->actionInterface());
        QVERIFY(accessible->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction()));

        // when
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QCOMPARE(clicked.size(), 1);

        // when
        first()->setEnabled(false);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QCOMPARE(clicked.size(), 1);
    }

    void shouldShowItsHelpAfter600Milliseconds()
    {
        // given nothing is there before the pointer is
        QCOMPARE(tips(), 0);
        QElapsedTimer clock;
        clock.start();

        // when
        window->hover(centre(first()));

        // then
        QTRY_VERIFY(shownTip());
        // Qt lets such a timer end a twentieth early.
        QVERIFY2(clock.elapsed() >= 570, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(shownTip()->property("text").toString(), u"Hjælp til den første"_s);
        QVERIFY(shownTip()->mapToScene({}).y() >= 64);

        // when
        window->hover({195, 115});

        // then
        QTRY_VERIFY(!shownTip());
        QTRY_COMPARE(tips(), 0);
    }

    void shouldHideItsHelpWhenPressed()
    {
        // given
        window->hover(centre(first()));
        QTRY_VERIFY(shownTip());

        // when
        QTest::mousePress(window.get(), Qt::LeftButton, {}, centre(first()));

        // then
        QTRY_VERIFY(!shownTip());

        // The button is let go for the tests that follow.
        QTest::mouseRelease(window.get(), Qt::LeftButton, {}, centre(first()));
    }

    void shouldLeaveEscapeToTheViewWhileItsHelpIsShown()
    {
        // given
        window->hover(centre(first()));
        QTRY_VERIFY(shownTip());

        // when
        QTest::keyClick(window.get(), Qt::Key_Escape);

        // then
        QCOMPARE(root()->property("keys").toList(), QVariantList{int(Qt::Key_Escape)});
    }

    void shouldKeepItsHelpInsideTheWindow()
    {
        // given a button in the lower right corner, with more text than the window is wide
        window->hover({5, 5});
        first()->setPosition({150, 70});
        first()->setProperty("helpText", u"Et langt ord og endnu et og så videre til enden"_s);

        // when
        window->hover(centre(first()));

        // then
        QTRY_VERIFY(shownTip());
        const QQuickItem *popup = shownTip()->parentItem();
        const QRectF shown = popup->mapRectToScene(QRectF(0, 0, popup->width(), popup->height()));
        QVERIFY(QRectF(0, 0, 200, 120).contains(shown));
        QVERIFY(shown.bottom() <= 70);
    }

    void shouldWrapALongHelpAndKeepItsMarkup()
    {
        // given
        window->resize(600, 300);
        first()->setProperty("helpText", u"<b>fed</b> "_s.repeated(20));

        // when
        window->hover(centre(first()));

        // then
        QTRY_VERIFY(shownTip());
        QVERIFY(shownTip()->width() <= 320);
        QVERIFY(shownTip()->property("lineCount").toInt() > 1);
        QCOMPARE(shownTip()->property("textFormat").toInt(), int(Qt::PlainText));
    }

    void shouldShowTheHelpOfAnAreaThoughItsButtonIsDisabled()
    {
        // given
        window = std::make_unique<qmltest::Window>(QByteArray(DisabledButtonInArea));
        window->hover({5, 5});

        // when
        window->hover({42, 42});

        // then
        QTRY_VERIFY(shownTip());
        QCOMPARE(shownTip()->property("text").toString(), u"Ingen opgaver"_s);

        // when
        window->hover({5, 5});

        // then
        QTRY_VERIFY(!shownTip());
    }

    void shouldShowNoEmptyHelp()
    {
        // given
        window = std::make_unique<qmltest::Window>(QByteArray(DisabledButtonInArea));
        window->hover({5, 5});
        window->hover({42, 42});
        QTRY_VERIFY(shownTip());

        // when
        window->item(u"area"_s)->setProperty("text", QString());

        // then
        QTRY_COMPARE(tips(), 0);
    }

    void shouldDrawASymbolOnACircle()
    {
        // given
        const QColor accent = Theme().brandAccent();

        // then
        QCOMPARE(window->colorAt({122, 42}), QColor(Qt::white)); // the triangle
        QCOMPARE(window->colorAt({122, 24}), accent);            // the circle above it
        QCOMPARE(window->colorAt({103, 42}), accent);
        QCOMPARE(window->colorAt({101, 21}), QColor(Qt::white)); // a corner
    }

    void shouldTakeTheSymbolsSizeWhenGivenNone()
    {
        // given
        window = std::make_unique<qmltest::Window>(QByteArray(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Item { SymbolButton { objectName: "second"; symbol: "plus"; symbolSize: 10 } })"));

        // then
        QCOMPARE(second()->size(), QSizeF(14, 14));
    }

private:
    QQuickItem *root() const { return window->item(u"root"_s); }
    QQuickItem *first() const { return window->item(u"first"_s); }
    QQuickItem *second() const { return window->item(u"second"_s); }
    /// The text of the tooltip that is to be seen; null if none is.
    QQuickItem *shownTip() const
    {
        QQuickItem *tip = qmltest::findItem(window->contentItem(), u"helpTip"_s);
        return tip && tip->isVisible() ? tip : nullptr;
    }
    /// How many tooltips exist, shown or not.
    qsizetype tips() const
    {
        qsizetype count = 0;
        const QList<QObject *> objects = window->findChildren<QObject *>();
        for (const QObject *object : objects)
            count += object->inherits("QQuickToolTip");
        return count;
    }

    std::unique_ptr<qmltest::WarningsAreFailures> guard;
    std::unique_ptr<qmltest::Window> window;
};

QTEST_MAIN(TestPlainButton)
#include "tst_plainbutton.moc"
