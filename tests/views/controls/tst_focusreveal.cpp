#include "tests/support/qmltest.h"

#include <QQuickItem>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

/// Two buttons, a list of buttons with room for two and a half, and a button below: 60 of the 130
/// pixels are in sight.
constexpr auto Area = R"(
    import QtQuick
    import TimeTracker.Views.Controls
    Flickable {
        id: area
        objectName: "area"
        contentHeight: 130
        FocusReveal {}
        PlainButton { width: 60; height: 20; label: "Knap"; objectName: "first" }
        PlainButton { width: 60; height: 20; label: "Knap"; objectName: "second"; y: 20 }
        ListView {
            objectName: "list"
            y: 50
            width: 60; height: 50
            clip: true
            keyNavigationEnabled: false
            model: 5
            delegate: PlainButton { width: 60; height: 20; label: "Knap"; objectName: "entry" }
        }
        PlainButton { width: 60; height: 20; label: "Knap"; objectName: "last"; y: 110 }
    })";

/// Fields in rows with a margin of 4 around them, of which 60 pixels are in sight.
constexpr auto Rows = R"(
    import QtQuick
    import TimeTracker.Views.Controls
    ListView {
        objectName: "rows"
        topMargin: 4
        bottomMargin: 4
        spacing: 4
        cacheBuffer: 400
        keyNavigationEnabled: false
        model: 6
        FocusReveal {}
        delegate: Item {
            required property int index
            width: 60; height: 30
            TextEntry { objectName: "field" + parent.index; y: 8; width: 60; height: 14; text: "x" }
        }
    })";

} // namespace

class TestFocusReveal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        guard = std::make_unique<qmltest::WarningsAreFailures>();
        window = std::make_unique<qmltest::Window>(QByteArray(Area), QSize(60, 60));
    }

    void cleanup()
    {
        window.reset();
        guard.reset();
    }

    void shouldScrollToWhatTabReaches()
    {
        // given
        QSet<QQuickItem *> reached;
        QQuickItem *last = nullptr;

        // when Tab goes through them all, with each in sight as it is reached
        for (int i = 0; i < 8; ++i) {
            QTest::keyClick(window.get(), Qt::Key_Tab);
            last = window->activeFocusItem();
            reached.insert(last);
            verifyInSight(last);
        }

        // then
        QCOMPARE(reached.size(), 8);
        QCOMPARE(last->objectName(), u"last"_s);
        QCOMPARE(y("area"), 130.0 - 60);
        QCOMPARE(y("list"), 100.0 - 50);

        // when Backtab goes back again
        for (int i = 0; i < 7; ++i) {
            QTest::keyClick(window.get(), Qt::Key_Backtab);
            verifyInSight(window->activeFocusItem());
        }

        // then
        QCOMPARE(y("area"), 0.0);
        QCOMPARE(y("list"), 0.0);
    }

    void shouldNotScrollToWhatIsInSight()
    {
        // given
        window->item(u"area"_s)->setProperty("contentY", 12);

        // when
        window->item(u"second"_s)->forceActiveFocus(Qt::TabFocusReason);

        // then
        QCOMPARE(y("area"), 12.0);
    }

    void shouldNotScrollAListsMarginAway()
    {
        // given
        showRows();
        QCOMPARE(y("rows"), -4.0);

        // when
        window->item(u"field0"_s)->forceActiveFocus(Qt::TabFocusReason);

        // then
        QCOMPARE(y("rows"), -4.0);
    }

    void shouldNotScrollToWhatIsInSightAtTheEdge()
    {
        // given a field whose last pixel is in sight
        showRows();
        window->item(u"rows"_s)->setProperty("contentY", 34 + 8 + 14 - 60);

        // when
        window->item(u"field1"_s)->forceActiveFocus(Qt::TabFocusReason);

        // then
        QCOMPARE(y("rows"), 34.0 + 8 + 14 - 60);

        // when it lies at the upper edge and gets the focus again
        window->item(u"rows"_s)->setProperty("contentY", 34 + 8);
        window->item(u"field2"_s)->forceActiveFocus(Qt::TabFocusReason);
        window->item(u"field1"_s)->forceActiveFocus(Qt::TabFocusReason);

        // then
        QCOMPARE(y("rows"), 34.0 + 8);
    }

    void shouldBringAListsMarginBack()
    {
        // given
        showRows();

        // when
        for (int i = 0; i < 6; ++i)
            QTest::keyClick(window.get(), Qt::Key_Tab);

        // then
        QCOMPARE(window->activeFocusItem()->objectName(), u"field5"_s);
        QCOMPARE(y("rows"), 6.0 * 34 - 4 + 4 - 60);

        // when
        for (int i = 0; i < 5; ++i)
            QTest::keyClick(window.get(), Qt::Key_Backtab);

        // then
        QCOMPARE(window->activeFocusItem()->objectName(), u"field0"_s);
        QCOMPARE(y("rows"), -4.0);
    }

    void shouldScrollBackToTheFieldThatIsTypedIn()
    {
        // given
        showRows();
        QQuickItem *const field = window->item(u"field0"_s);
        field->forceActiveFocus();
        window->item(u"rows"_s)->setProperty("contentY", 100);
        QCOMPARE(y("rows"), 100.0);

        // when
        QTest::keyClick(window.get(), Qt::Key_A);

        // then
        QCOMPARE(y("rows"), -4.0);
        QCOMPARE(field->property("text").toString(), u"xa"_s);
    }

private:
    void showRows()
    {
        window = std::make_unique<qmltest::Window>(QByteArray(Rows), QSize(60, 60));
        // Those out of sight are made later.
        QTRY_VERIFY(qmltest::findItem(window->contentItem(), u"field5"_s));
    }

    double y(const char *name) const
    {
        return window->item(QString::fromLatin1(name))->property("contentY").toDouble();
    }

    void verifyInSight(const QQuickItem *item) const
    {
        const QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        QRectF sight(0, 0, 60, 60);
        if (item->objectName() == "entry"_L1)
            sight &= window->item(u"list"_s)->mapRectToScene(QRectF(0, 0, 60, 50));
        QVERIFY2(sight.contains(place), qPrintable(item->objectName()));
    }

    std::unique_ptr<qmltest::WarningsAreFailures> guard;
    std::unique_ptr<qmltest::Window> window;
};

QTEST_MAIN(TestFocusReveal)
#include "tst_focusreveal.moc"
