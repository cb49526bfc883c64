#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"
#include "timer/timermanager.h"
#include "views/controls/theme.h"
#include "views/menubar/menubarlabelviewmodel.h"

#include <QQuickItem>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The label as it is drawn.
class TestMenuBarLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldShowTheSymbolAloneAndThenTheClockBesideIt()
    {
        // given
        const qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store(clock, {1h, 1h});
        TimerManager timer(clock, 1h);
        Task *const task = store.insertTask(u"A"_s);
        task->setAccumulatedSeconds(3725);
        MenuBarLabelViewModel viewModel(timer, store.context());
        qmltest::Window window(QUrl(u"qrc:/qt/qml/TimeTracker/Views/MenuBar/MenuBarLabel.qml"_s),
                               {{u"viewModel"_s, QVariant::fromValue(&viewModel)}});
        const QQuickItem *const label = window.rootObject();
        const QQuickItem *const symbol = window.item(u"labelSymbol"_s);
        const QQuickItem *const text = window.item(u"labelText"_s);

        // then
        QCOMPARE(symbol->property("name").toString(), u"timer"_s);
        QVERIFY(!text->isVisible());
        QCOMPARE(label->implicitWidth(), symbol->width());

        // when
        task->start();

        // then
        QVERIFY(text->isVisible());
        QCOMPARE(text->property("text").toString(), u"01:02:05"_s);
        QCOMPARE(symbol->property("name").toString(), u"timer"_s);
        QTRY_COMPARE(text->x(), symbol->x() + symbol->width() + 4);
        const auto middle = [](const QQuickItem *item) { return item->y() + item->height() / 2; };
        QVERIFY(std::abs(middle(text) - middle(symbol)) <= 0.5);
        const QFont font = text->property("font").value<QFont>();
        QCOMPARE(font.pixelSize(), 13);
        QCOMPARE(font.weight(), QFont::Normal);
        QCOMPARE(font.family(), Theme().monospacedFamily());
    }
};

QTEST_MAIN(TestMenuBarLabel)
#include "tst_menubarlabel.moc"
