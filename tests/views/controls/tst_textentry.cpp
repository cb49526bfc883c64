#include "tests/support/qmltest.h"
#include "views/controls/theme.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using qmltest::centre;

namespace
{

constexpr auto Fields = R"(
    import QtQuick
    import TimeTracker.Views.Controls
    Rectangle {
        objectName: "root"
        color: "#102030"
        focus: true
        property var keys: []
        Keys.onPressed: event => keys = keys.concat(event.key)
        TextEntry {
            objectName: "plain"
            x: 10; y: 10
            width: 100
            Accessible.name: "Opgavenavn"
            placeholderText: "\u2588\u2588"
        }
        TextEntry {
            objectName: "filled"
            x: 10; y: 60
            width: 100
            isFilled: true
            font.pixelSize: 11
            text: "abc"
            Accessible.name: "Navn"
        }
    })";

} // namespace

class TestTextEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        guard = std::make_unique<qmltest::WarningsAreFailures>();
        window = std::make_unique<qmltest::Window>(QByteArray(Fields));
    }

    void cleanup()
    {
        window.reset();
        guard.reset();
    }

    void shouldTakeTheFocusByAClick()
    {
        // when
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(filled()));

        // then
        QVERIFY(filled()->hasActiveFocus());
    }

    void shouldTakeTheFocusByTab()
    {
        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QVERIFY(plain()->hasActiveFocus());

        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QVERIFY(filled()->hasActiveFocus());
    }

    void shouldTakeWhatIsTyped()
    {
        // given
        plain()->forceActiveFocus();

        // when
        for (const char letter : "Frokost")
            if (letter)
                QTest::keyClick(window.get(), letter);

        // then
        QCOMPARE(plain()->property("text").toString(), u"Frokost"_s);
    }

    void shouldShowItsPlaceholderOnlyWhileItIsEmpty()
    {
        // given
        const QPointF inPlaceholder = plain()->mapToScene({6, plain()->height() / 2});
        QCOMPARE(window->colorAt(inPlaceholder), Theme().tertiary());

        // when
        plain()->setProperty("text", u"."_s);

        // then
        QTRY_COMPARE(window->colorAt(inPlaceholder), QColor(0x10, 0x20, 0x30));
    }

    void shouldHaveNoBorderAndNoBackgroundUnlessFilled()
    {
        // given
        const QColor under(0x10, 0x20, 0x30);
        const auto at = [&](QQuickItem *field, qreal x, qreal y) {
            return window->colorAt(field->mapToScene({x, y}));
        };

        // then
        QCOMPARE(at(plain(), 98, 3), under);
        QCOMPARE(at(plain(), 98, plain()->height() / 2), under);
        QCOMPARE(at(filled(), 98, filled()->height() / 2), Theme().textBackground());
        QCOMPARE(at(filled(), 50, 1), Theme().textBackground());
        QCOMPARE(at(filled(), 0, 0), under); // rounded
    }

    void shouldPadItsTextWhenFilled()
    {
        // then
        QCOMPARE(filled()->property("leftPadding").toReal(), 6.0);
        QCOMPARE(filled()->property("rightPadding").toReal(), 6.0);
        QCOMPARE(filled()->property("topPadding").toReal(), 4.0);
        QCOMPARE(filled()->property("bottomPadding").toReal(), 4.0);
        QCOMPARE(filled()->height(), filled()->property("contentHeight").toReal() + 8);
        QCOMPARE(plain()->height(), plain()->property("contentHeight").toReal());
    }

    void shouldShowItsSelection()
    {
        // given
        filled()->forceActiveFocus();

        // when
        QMetaObject::invokeMethod(filled(), "selectAll");

        // then the selection starts where the text does
        const QPointF start = filled()->mapToScene({6.5, 5});
        QTRY_COMPARE(window->colorAt(start), Theme().brandAccent());
    }

    void shouldBeAcceptedByReturn_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
    }

    void shouldBeAcceptedByReturn()
    {
        QFETCH(Qt::Key, key);

        // given
        QSignalSpy accepted(filled(), SIGNAL(accepted()));
        filled()->forceActiveFocus();

        // when
        QTest::keyClick(window.get(), key);

        // then
        QCOMPARE(accepted.size(), 1);
        QCOMPARE(keys(), QVariantList());
    }

    void shouldKeepTheEditorsKeysFromTheView_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("cursor");
        QTest::newRow("Up") << Qt::Key_Up << 1;
        QTest::newRow("Down") << Qt::Key_Down << 1;
        QTest::newRow("Left inside") << Qt::Key_Left << 1;
        QTest::newRow("Left at the start") << Qt::Key_Left << 0;
        QTest::newRow("Right inside") << Qt::Key_Right << 1;
        QTest::newRow("Right at the end") << Qt::Key_Right << 3;
        QTest::newRow("Space") << Qt::Key_Space << 1;
    }

    void shouldKeepTheEditorsKeysFromTheView()
    {
        QFETCH(Qt::Key, key);
        QFETCH(int, cursor);

        // given
        filled()->forceActiveFocus();
        filled()->setProperty("cursorPosition", cursor);

        // when
        QTest::keyClick(window.get(), key);

        // then
        QCOMPARE(keys(), QVariantList());
    }

    void shouldMoveItsCursorByArrows()
    {
        // given
        filled()->forceActiveFocus();
        filled()->setProperty("cursorPosition", 1);

        // when
        QTest::keyClick(window.get(), Qt::Key_Right);

        // then
        QCOMPARE(filled()->property("cursorPosition").toInt(), 2);

        // when
        QTest::keyClick(window.get(), Qt::Key_Left);

        // then
        QCOMPARE(filled()->property("cursorPosition").toInt(), 1);
    }

    void shouldLeaveEscapeToTheView()
    {
        // given
        filled()->forceActiveFocus();

        // when
        QTest::keyClick(window.get(), Qt::Key_Escape);

        // then
        QCOMPARE(keys(), QVariantList{int(Qt::Key_Escape)});
    }

    void shouldKeepLineBreaksOfAPastedText()
    {
        // given
        QGuiApplication::clipboard()->setText(u"en\nto"_s);
        plain()->forceActiveFocus();

        // when
        QTest::keySequence(window.get(), QKeySequence::Paste);

        // then it has them, on one line
        QCOMPARE(plain()->property("text").toString(), u"en\nto"_s);
        QCOMPARE(plain()->height(), plain()->property("contentHeight").toReal());
        QVERIFY(plain()->height() < 30);
    }

    void shouldBeATextFieldToAssistiveTechnology()
    {
        // given
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(plain());
        QVERIFY(accessible);

        // then
        QCOMPARE(accessible->role(), QAccessible::EditableText);
        QCOMPARE(accessible->text(QAccessible::Name), u"Opgavenavn"_s);
        QVERIFY(accessible->state().focusable);

        // when
        filled()->forceActiveFocus();

        // then
        QVERIFY(QAccessible::queryAccessibleInterface(filled())->state().focused);
    }

private:
    QQuickItem *plain() const { return window->item(u"plain"_s); }
    QQuickItem *filled() const { return window->item(u"filled"_s); }
    QVariantList keys() const { return window->item(u"root"_s)->property("keys").toList(); }

    std::unique_ptr<qmltest::WarningsAreFailures> guard;
    std::unique_ptr<qmltest::Window> window;
};

QTEST_MAIN(TestTextEntry)
#include "tst_textentry.moc"
