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
        PlainButton { width: 60; height: 20; text: "Knap"; objectName: "first" }
        PlainButton { width: 60; height: 20; text: "Knap"; objectName: "second"; y: 20 }
        ListView {
            objectName: "list"
            y: 50
            width: 60; height: 50
            clip: true
            keyNavigationEnabled: false
            model: 5
            delegate: PlainButton { width: 60; height: 20; text: "Knap"; objectName: "entry" }
        }
        PlainButton { width: 60; height: 20; text: "Knap"; objectName: "last"; y: 110 }
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
        QSet<QQuickItem *> reached;
        QQuickItem *last = nullptr;
        for (int i = 0; i < 8; ++i) {
            QTest::keyClick(window.get(), Qt::Key_Tab);
            last = window->activeFocusItem();
            reached.insert(last);
            verifyInSight(last);
        }
        QCOMPARE(reached.size(), 8);
        QCOMPARE(last->objectName(), u"last"_s);
        QCOMPARE(y("area"), 130.0 - 60);
        QCOMPARE(y("list"), 100.0 - 50);
        // and back again
        for (int i = 0; i < 7; ++i) {
            QTest::keyClick(window.get(), Qt::Key_Backtab);
            verifyInSight(window->activeFocusItem());
        }
        QCOMPARE(y("area"), 0.0);
        QCOMPARE(y("list"), 0.0);
    }

    void shouldNotScrollToWhatIsInSight()
    {
        window->item(u"area"_s)->setProperty("contentY", 12);
        window->item(u"second"_s)->forceActiveFocus(Qt::TabFocusReason);
        QCOMPARE(y("area"), 12.0);
    }

private:
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
