#include "tests/support/qmltest.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QStyleHints>
#include <QTest>
#include <QWheelEvent>

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
            label: "Slet skabelon Møde"
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
        // given
        const QPointF onDisc = mark()->mapToScene({mark()->width() / 2, 3});
        QCOMPARE(window->colorAt(onDisc), QColor(0x10, 0x20, 0x30));

        // when
        root()->setProperty("isShown", true);

        // then
        QTRY_VERIFY(window->colorAt(onDisc) != QColor(0x10, 0x20, 0x30));
        QCOMPARE(mark()->size(), QSizeF(16, 16));

        // when
        root()->setProperty("isShown", false);

        // then
        QTRY_COMPARE(window->colorAt(onDisc), QColor(0x10, 0x20, 0x30));
    }

    void shouldLeaveClicksToWhatLiesUnderItWhileNotShown()
    {
        // when
        click();

        // then
        QCOMPARE(root()->property("taps").toInt(), 1);
        QCOMPARE(root()->property("deletions").toInt(), 0);

        // when
        root()->setProperty("isShown", true);
        click();

        // then
        QCOMPARE(root()->property("taps").toInt(), 1);
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldLeaveTouchesToWhatLiesUnderItWhileNotShown()
    {
        // given
        const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());

        // when
        QTest::touchEvent(window.get(), finger.get()).press(0, centre(mark()));
        QTest::touchEvent(window.get(), finger.get()).release(0, centre(mark()));

        // then
        QTRY_COMPARE(root()->property("taps").toInt(), 1);
        QCOMPARE(root()->property("deletions").toInt(), 0);
    }

    void shouldBeFoundAndPressedByNameWhileNotShown()
    {
        // given
        QAccessibleInterface *const found = QAccessible::queryAccessibleInterface(mark());
        QVERIFY(found);

        // then
        QCOMPARE(found->role(), QAccessible::Button);
        QCOMPARE(found->text(QAccessible::Name), u"Slet skabelon Møde"_s);
        QVERIFY(!found->state().invisible);
        QVERIFY(!found->state().disabled);

        // when
        found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        // then
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldBeReachedByTab()
    {
        // when
        QTest::keyClick(window.get(), Qt::Key_Tab);
        QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QVERIFY(mark()->hasActiveFocus());

        // when
        QTest::keyClick(window.get(), Qt::Key_Space);

        // then
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldTakeNoClickThatWasMeantForWhatWasThereBefore()
    {
        // given a click beside the mark
        root()->setProperty("isShown", true);
        const QPoint point = centre(mark());
        mark()->setY(mark()->y() + 20);
        clickAt(point, 1000);
        QCOMPARE(root()->property("taps").toInt(), 1);

        // when the mark moves there and the pointer rests
        mark()->setY(mark()->y() - 20);
        clickAt(point, 1000 + interval() - 1);

        // then neither the mark nor what lies under it is clicked, how often so ever
        clickAt(point, 1000 + interval() - 1);
        QCOMPARE(root()->property("deletions").toInt(), 0);
        QCOMPARE(root()->property("taps").toInt(), 1);

        // when the double click's time is over
        clickAt(point, 1000 + interval());

        // then
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldTakeNoClickBeforeItHasLearntOfThePointer()
    {
        // given what a frame tells of: the entry is not drawn as hovered yet
        const QPoint point = centre(mark());
        mark()->setY(mark()->y() + 20);
        clickAt(point, 1000);
        mark()->setY(mark()->y() - 20);

        // when
        clickAt(point, 1100);

        // then
        QCOMPARE(root()->property("deletions").toInt(), 0);
        QCOMPARE(root()->property("taps").toInt(), 1);
    }

    void shouldTakeTheClickOfAPointerThatHasMoved()
    {
        // given
        root()->setProperty("isShown", true);
        const QPoint point = centre(mark());
        mark()->setY(mark()->y() + 20);
        clickAt(point, 1000);
        mark()->setY(mark()->y() - 20);

        // when
        send(QEvent::MouseMove, point + QPoint(6, 0), 1100);
        clickAt(point + QPoint(6, 0), 1101);

        // then
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldTakeAHandThatTremblesForOneThatRests()
    {
        // given
        root()->setProperty("isShown", true);
        const QPoint point = centre(mark());
        mark()->setY(mark()->y() + 20);
        clickAt(point, 1000);
        mark()->setY(mark()->y() - 20);

        // when
        send(QEvent::MouseMove, point + QPoint(1, 1), 1100);
        clickAt(point + QPoint(1, 1), 1101);

        // then
        QCOMPARE(root()->property("deletions").toInt(), 0);
        QCOMPARE(root()->property("taps").toInt(), 1);
    }

    void shouldTakeNoClickWhenItHasJustBeenScrolledUnderThePointer()
    {
        // given a pointer that has rested for long
        root()->setProperty("isShown", true);
        const QPoint point = centre(mark());
        mark()->setY(mark()->y() + 20);
        send(QEvent::MouseMove, point, 1000);

        // when
        QWheelEvent wheel(point, window->mapToGlobal(point), {}, {0, -120}, {}, {},
                          Qt::NoScrollPhase, false);
        wheel.setTimestamp(5000);
        QCoreApplication::sendEvent(window.get(), &wheel);
        mark()->setY(mark()->y() - 20);
        clickAt(point, 5100);

        // then
        QCOMPARE(root()->property("deletions").toInt(), 0);

        // when the double click's time is over
        clickAt(point, 5000 + interval());

        // then
        QCOMPARE(root()->property("deletions").toInt(), 1);
    }

    void shouldTakeBothClicksOfADoubleClickWhereItHasBeen()
    {
        // given
        root()->setProperty("isShown", true);

        // when
        clickAt(centre(mark()), 1000);
        clickAt(centre(mark()), 1100);

        // then
        QCOMPARE(root()->property("deletions").toInt(), 2);
    }

private:
    static quint64 interval()
    {
        return quint64(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    }
    void send(QEvent::Type type, const QPoint &point, quint64 time) const
    {
        const bool isPress = type == QEvent::MouseButtonPress;
        const bool isMove = type == QEvent::MouseMove;
        QMouseEvent event(type, point, point, window->mapToGlobal(point),
                          isMove ? Qt::NoButton : Qt::LeftButton,
                          isPress ? Qt::LeftButton : Qt::NoButton, {});
        event.setTimestamp(time);
        QCoreApplication::sendEvent(window.get(), &event);
    }
    void clickAt(const QPoint &point, quint64 time) const
    {
        send(QEvent::MouseButtonPress, point, time);
        send(QEvent::MouseButtonRelease, point, time);
    }
    QQuickItem *root() const { return window->rootObject(); }
    QQuickItem *mark() const { return window->item(u"mark"_s); }
    void click() const { QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(mark())); }

    std::unique_ptr<qmltest::WarningsAreFailures> guard;
    std::unique_ptr<qmltest::Window> window;
};

QTEST_MAIN(TestHoverMark)
#include "tst_hovermark.moc"
