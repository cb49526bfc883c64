#include "tests/support/qmltest.h"

#include <QQuickItem>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using qmltest::centre;

namespace
{

constexpr auto List = R"(
    import QtQuick
    import QtQuick.Templates as T
    import TimeTracker.Views.Controls
    ListView {
        objectName: "list"
        model: 20
        delegate: PlainButton { width: ListView.view.width; height: 20; label: "Knap" }
        T.ScrollBar.vertical: OverlayScrollBar { objectName: "bar" }
    })";

} // namespace

class TestOverlayScrollBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        guard = std::make_unique<qmltest::WarningsAreFailures>();
        window = std::make_unique<qmltest::Window>(QByteArray(List), QSize(60, 100));
    }

    void cleanup()
    {
        window.reset();
        guard.reset();
    }

    void shouldLieOverTheRightEdge()
    {
        // given
        const QQuickItem *const bar = window->item(u"bar"_s);

        // then
        QCOMPARE(bar->mapRectToScene(QRectF(0, 0, bar->width(), bar->height())),
                 QRectF(54, 0, 6, 100));
        const QColor background = window->colorAt({30, 90});
        QVERIFY(window->colorAt({57, 5}) != background);
        QCOMPARE(window->colorAt({57, 90}), background);
    }

    void shouldBeThereOnlyWhileThereIsSomethingToScroll()
    {
        // given
        QVERIFY(window->item(u"bar"_s)->isVisible());

        // when
        list()->setProperty("model", 5);

        // then
        QTRY_VERIFY(!window->item(u"bar"_s)->isVisible());

        // when
        list()->setProperty("model", 6);

        // then
        QTRY_VERIFY(window->item(u"bar"_s)->isVisible());
    }

    void shouldScrollWhenDragged()
    {
        // when
        QTest::mousePress(window.get(), Qt::LeftButton, {}, {57, 5});
        QTest::mouseMove(window.get(), {57, 30});
        QTest::mouseMove(window.get(), {57, 55});
        QTest::mouseRelease(window.get(), Qt::LeftButton, {}, {57, 55});

        // then the content has moved by half its height, as the handle has by half the bar's
        const double y = list()->property("contentY").toDouble();
        QVERIFY2(y > 190 && y < 210, qPrintable(QString::number(y)));
    }

    void shouldStayLargeEnoughToBeSeen()
    {
        // given
        list()->setProperty("model", 10000);
        const QQuickItem *const handle =
            window->item(u"bar"_s)->property("contentItem").value<QQuickItem *>();

        // then
        QTRY_VERIFY(handle->height() >= 14 && handle->height() < 20);
    }

    void shouldNotTakeTheKeyboard()
    {
        // when
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre(window->item(u"bar"_s)));

        // then
        QVERIFY(!window->item(u"bar"_s)->hasActiveFocus());
    }

private:
    QQuickItem *list() const { return window->item(u"list"_s); }

    std::unique_ptr<qmltest::WarningsAreFailures> guard;
    std::unique_ptr<qmltest::Window> window;
};

QTEST_MAIN(TestOverlayScrollBar)
#include "tst_overlayscrollbar.moc"
