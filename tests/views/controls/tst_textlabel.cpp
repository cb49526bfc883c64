#include "tests/support/qmltest.h"
#include "views/controls/theme.h"

#include <QAccessible>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QQuickItem>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QByteArray qml(const QByteArray &type, const QByteArray &properties)
{
    return R"(
        import QtQuick
        import TimeTracker.Views.Controls
        Rectangle { color: "white"; )" +
           type + R"( { objectName: "label"; x: 10; y: 10; )" + properties + "} }";
}

} // namespace

class TestTextLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldShowItsTextInThePrimaryColour()
    {
        qmltest::WarningsAreFailures guard;
        // given a letter that is all ink
        qmltest::Window window(qml("TextLabel", "text: \"\u2588\u2588\u2588\""));

        // then
        const QQuickItem *label = window.item(u"label"_s);
        QCOMPARE(label->property("font").value<QFont>().pixelSize(), 13);
        QCOMPARE(window.colorAt(qmltest::centre(label)), Theme().primary());
    }

    void shouldShowMarkupAsItIs()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml("TextLabel", "text: \"<b>fed</b>\""));
        const QQuickItem *label = window.item(u"label"_s);

        // then it is as wide as the characters of the tags make it
        const QFontMetricsF metrics(label->property("font").value<QFont>());
        QVERIFY(qAbs(label->width() - metrics.horizontalAdvance(u"<b>fed</b>"_s)) < 2);
    }

    void shouldBeATextToAssistiveTechnology()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml("TextLabel", "text: \"I alt:\""));
        QQuickItem *label = window.item(u"label"_s);

        // when
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(label);

        // then
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::StaticText);
        QCOMPARE(accessible->text(QAccessible::Name), u"I alt:"_s);
        label->setProperty("text", u"I dag"_s);
        QCOMPARE(accessible->text(QAccessible::Name), u"I dag"_s);
    }

    void shouldShowTheWholeTextOfAnElidedOne()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(
            qml("ElidingLabel", "text: \"Et langt navn på en opgave\"; width: 60"));
        window.hover({150, 100});

        // when
        window.hover({30, 15});

        // then
        QTRY_VERIFY(tip(window));
        QCOMPARE(tip(window)->property("text").toString(), u"Et langt navn på en opgave"_s);
        window.hover({150, 100});
        QTRY_VERIFY(!tip(window));
    }

    void shouldShowNoTooltip_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("properties");
        QTest::newRow("not elided")
            << QByteArray("ElidingLabel") << QByteArray("text: \"Kort\"; width: 150");
        QTest::newRow("not wanted")
            << QByteArray("TextLabel")
            << QByteArray(
                   "text: \"Et langt navn på en opgave\"; width: 60; elide: Text.ElideRight");
    }

    void shouldShowNoTooltip()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, properties);
        qmltest::WarningsAreFailures guard;
        // given a second handler, which shows that the pointer has arrived
        qmltest::Window window(
            qml(type, properties + "; HoverHandler { objectName: \"arrived\" }"));
        window.hover({150, 100});

        // when
        window.hover({30, 15});

        // then
        QTRY_VERIFY(window.findChild<QObject *>(u"arrived"_s)->property("hovered").toBool());
        for (const QObject *object : window.findChildren<QObject *>())
            QVERIFY(!object->inherits("QQuickToolTip"));
    }

    void shouldNotKeepThePointerFromTheButtonAroundIt()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Item {
                PlainButton {
                    objectName: "button"
                    property int clicks: 0
                    onClicked: ++clicks
                    contentItem: ElidingLabel {
                        width: 60
                        text: "Et langt navn på en opgave"
                    }
                    width: 60
                }
            })");
        window.hover({150, 100});
        QQuickItem *button = window.item(u"button"_s);

        // when
        window.hover(qmltest::centre(button));

        // then
        QTRY_VERIFY(button->property("hovered").toBool());
        QTRY_VERIFY(tip(window));
        QTest::mouseClick(&window, Qt::LeftButton, {}, qmltest::centre(button));
        QCOMPARE(button->property("clicks").toInt(), 1);
    }

    void shouldStandAtTheLeadingEdgeAlsoFromRightToLeft_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::newRow("text") << QByteArray("TextLabel");
        QTest::newRow("eliding text") << QByteArray("ElidingLabel");
        QTest::newRow("figures") << QByteArray("MonospacedLabel");
        QTest::newRow("field") << QByteArray("TextEntry");
    }
    void shouldStandAtTheLeadingEdgeAlsoFromRightToLeft()
    {
        QFETCH(QByteArray, type);
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml(type, "width: 150; text: \"פגישה\""));

        // then
        QCOMPARE(window.item(u"label"_s)->property("effectiveHorizontalAlignment").toInt(),
                 int(Qt::AlignLeft));
    }

    void shouldExplainFromTheLeadingEdge()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml("ElidingLabel", "text: \"פגישה עם הלקוח החדש\"; width: 60"));

        // when
        window.hover({150, 100});
        window.hover({30, 15});

        // then
        QTRY_VERIFY(tip(window));
        QCOMPARE(tip(window)->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
    }

    void shouldShowAnEndlessTextAsFarAsTheWindowHoldsIt_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << u"lille møde "_s.repeated(1000);
        QTest::newRow("one word") << u"m"_s.repeated(10'000);
    }
    void shouldShowAnEndlessTextAsFarAsTheWindowHoldsIt()
    {
        QFETCH(QString, text);
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml("ElidingLabel", "width: 60"), {500, 300});
        window.item(u"label"_s)->setProperty("text", text);
        window.hover({450, 250});

        // when
        window.hover({30, 15});

        // then it fills the window
        QTRY_VERIFY(tip(window));
        const auto place = [&window] {
            const QQuickItem *const frame = tip(window)->parentItem();
            return frame->mapRectToScene(QRectF(QPointF(), frame->size()));
        };
        QTRY_VERIFY(place().width() > 400);
        QVERIFY(QRectF(0, 0, 500, 300).contains(place()));
        QVERIFY(place().height() > 250);
        QVERIFY(tip(window)->property("truncated").toBool());

        // when the pointer moves where the tooltip lies over the label
        QVERIFY(place().contains(QPointF(32, 16)));
        window.hover({32, 16});

        // then it still points at the label
        QVERIFY(tip(window));
    }

    void shouldShrinkFiguresThatHaveTooLittleRoom()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml("MonospacedLabel", "text: \"1000000:00:00\"; width: 60"));
        QQuickItem *label = window.item(u"label"_s);

        // then
        QVERIFY(label->implicitWidth() > 60);
        QVERIFY(label->property("contentWidth").toDouble() <= 60);
        QVERIFY(label->property("contentWidth").toDouble() > 50);
        label->setProperty("text", u"01:02"_s);
        QCOMPARE(label->property("contentWidth").toDouble(), label->implicitWidth());
    }

    void shouldUseTheFixedFontWhenMonospaced()
    {
        qmltest::WarningsAreFailures guard;
        // given
        qmltest::Window window(qml("MonospacedLabel", "text: \"01:02:05\"; font.pixelSize: 14"));
        QQuickItem *label = window.item(u"label"_s);

        // then
        QCOMPARE(label->property("font").value<QFont>().family(),
                 QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
        const qreal width = label->width();
        label->setProperty("text", u"11:11:11"_s);
        QCOMPARE(label->width(), width);
        QCOMPARE(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name),
                 u"11:11:11"_s);
    }

private:
    static QQuickItem *tip(const qmltest::Window &window)
    {
        QQuickItem *item = qmltest::findItem(window.contentItem(), u"helpTip"_s);
        return item && item->isVisible() ? item : nullptr;
    }
};

QTEST_MAIN(TestTextLabel)
#include "tst_textlabel.moc"
