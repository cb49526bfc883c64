#include "tests/support/qmltest.h"

#include <QAccessible>
#include <QQuickItem>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using qmltest::centre;

namespace
{

constexpr auto Entry = R"(
    import QtQuick
    import TimeTracker.Views.Controls
    Rectangle {
        objectName: "root"
        color: "#102030"
        property int deletions: 0
        property int taps: 0
        property bool isShown: false
        PlainButton {
            anchors.fill: parent
            onClicked: ++parent.taps
        }
        HoverMark {
            objectName: "mark"
            x: 20; y: 20
            text: "Slet skabelon Møde"
            isShown: parent.isShown
            onClicked: ++parent.deletions
        }
    })";

} // namespace

class TestHoverMark : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        guard = std::make_unique<qmltest::WarningsAreFailures>();
        window = std::make_unique<qmltest::Window>(QByteArray(Entry), QSize(60, 60));
    }

    void cleanup()
    {
        window.reset();
        guard.reset();
    }

    void shouldBeDrawnOnlyWhileShown()
    {
        const QPointF onDisc = mark()->mapToScene({mark()->width() / 2, 3});
        QCOMPARE(window->colorAt(onDisc), QColor(0x10, 0x20, 0x30));
        root()->setProperty("isShown", true);
        QTRY_VERIFY(window->colorAt(onDisc) != QColor(0x10, 0x20, 0x30));
        QCOMPARE(mark()->size(), QSizeF(16, 16));
    }

    void shouldLeaveClicksToWhatLiesUnderItWhileNotShown()
    {
        click();
        QCOMPARE(root()->property("taps").toInt(), 1);
        QCOMPARE(root()->property("deletions").toInt(), 0);
        root()->setProperty("isShown", true);
        click();
        QCOMPARE(root()->property("taps").toInt(), 1);
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldLeaveTouchesToWhatLiesUnderItWhileNotShown()
    {
        const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
        QTest::touchEvent(window.get(), finger.get()).press(0, centre(mark()));
        QTest::touchEvent(window.get(), finger.get()).release(0, centre(mark()));
        QTRY_COMPARE(root()->property("taps").toInt(), 1);
        QCOMPARE(root()->property("deletions").toInt(), 0);
    }

    void shouldBeFoundAndPressedByNameWhileNotShown()
    {
        QAccessibleInterface *const found = QAccessible::queryAccessibleInterface(mark());
        QVERIFY(found);
        QCOMPARE(found->role(), QAccessible::Button);
        QCOMPARE(found->text(QAccessible::Name), u"Slet skabelon Møde"_s);
        QVERIFY(!found->state().invisible);
        QVERIFY(!found->state().disabled);
        found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldBeReachedByTab()
    {
        QTest::keyClick(window.get(), Qt::Key_Tab);
        QTest::keyClick(window.get(), Qt::Key_Tab);
        QVERIFY(mark()->hasActiveFocus());
        QTest::keyClick(window.get(), Qt::Key_Space);
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

private:
    QQuickItem *root() const { return window->rootObject(); }
    QQuickItem *mark() const { return window->item(u"mark"_s); }
    void click() const { QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(mark())); }

    std::unique_ptr<qmltest::WarningsAreFailures> guard;
    std::unique_ptr<qmltest::Window> window;
};

QTEST_MAIN(TestHoverMark)
#include "tst_hovermark.moc"
