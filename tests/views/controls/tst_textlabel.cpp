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
        // given a letter that is all ink
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("TextLabel", "text: \"\u2588\u2588\u2588\""));

        // then
        const QQuickItem *label = window.item(u"label"_s);
        QCOMPARE(label->property("font").value<QFont>().pixelSize(), 13);
        QCOMPARE(window.colorAt(qmltest::centre(label)), Theme().primary());
    }

    void shouldShowMarkupAsItIs()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("TextLabel", "text: \"<b>fed</b>\""));
        const QQuickItem *label = window.item(u"label"_s);

        // then it is as wide as the characters of the tags make it
        const QFontMetricsF metrics(label->property("font").value<QFont>());
        QVERIFY(qAbs(label->width() - metrics.horizontalAdvance(u"<b>fed</b>"_s)) < 2);
    }

    void shouldBeATextToAssistiveTechnology()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("TextLabel", "text: \"I alt:\""));
        QQuickItem *label = window.item(u"label"_s);

        // when
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(label);

        // then
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::StaticText);
        QCOMPARE(accessible->text(QAccessible::Name), u"I alt:"_s);

        // when
        label->setProperty("text", u"I dag"_s);

        // then
        QCOMPARE(accessible->text(QAccessible::Name), u"I dag"_s);
    }

    void shouldShowTheWholeTextOfAnElidedOne()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(
            qml("ElidingLabel", "text: \"Et langt navn på en opgave\"; width: 60"));
        window.hover({150, 100});

        // when
        window.hover({30, 15});

        // then
        QTRY_VERIFY(tip(window));
        QCOMPARE(tip(window)->property("text").toString(), u"Et langt navn på en opgave"_s);

        // when
        window.hover({150, 100});

        // then
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

        // given a second handler, which shows that the pointer has arrived
        qmltest::WarningsAreFailures guard;
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
        // given
        qmltest::WarningsAreFailures guard;
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

        // when
        QTest::mouseClick(&window, Qt::LeftButton, {}, qmltest::centre(button));

        // then
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

        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml(type, "width: 150; text: \"פגישה\""));

        // then
        QCOMPARE(window.item(u"label"_s)->property("effectiveHorizontalAlignment").toInt(),
                 int(Qt::AlignLeft));
    }

    void shouldExplainFromTheLeadingEdge()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("ElidingLabel", "text: \"פגישה עם הלקוח החדש\"; width: 60"));
        window.hover({150, 100});

        // when
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

        // given
        qmltest::WarningsAreFailures guard;
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
        QVERIFY(place().contains(QPointF(32, 16)));

        // when the pointer moves where the tooltip lies over the label
        window.hover({32, 16});

        // then it still points at the label
        QVERIFY(tip(window));
    }

    void shouldShrinkFiguresThatHaveTooLittleRoom()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("MonospacedLabel", "text: \"1000000:00:00\"; width: 60"));
        QQuickItem *label = window.item(u"label"_s);

        // then
        QVERIFY(label->implicitWidth() > 60);
        QVERIFY(label->property("contentWidth").toDouble() <= 60);
        QVERIFY(label->property("contentWidth").toDouble() > 50);

        // when
        label->setProperty("text", u"01:02"_s);

        // then
        QCOMPARE(label->property("contentWidth").toDouble(), label->implicitWidth());
    }

    void shouldUseTheFixedFontWhenMonospaced()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("MonospacedLabel", "text: \"01:02:05\"; font.pixelSize: 14"));
        QQuickItem *label = window.item(u"label"_s);
        const qreal width = label->width();

        // then
        QCOMPARE(label->property("font").value<QFont>().family(),
                 QFontDatabase::systemFont(QFontDatabase::FixedFont).family());

        // when
        label->setProperty("text", u"11:11:11"_s);

        // then
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
