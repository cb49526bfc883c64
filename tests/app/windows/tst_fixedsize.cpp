#include "app/windows/makewindow.h"
#include "tests/support/qmltest.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

using namespace Qt::StringLiterals;

/// A window of a size that only itself changes.
class TestFixedSize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldHaveItsSizeBeforeItIsShownAndFollowIt()
    {
        // given
        const qmltest::WarningsAreFailures guard;
        QQmlEngine engine;
        engine.addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            import TimeTracker.App.Windows
            Window {
                property real wanted: 50
                FixedSize { size: Qt.size(240, wanted) }
            })",
                          QUrl(u"qrc:/test.qml"_s));
        const std::unique_ptr<QObject> root(component.create());
        auto *const window = qobject_cast<QQuickWindow *>(root.get());
        QVERIFY2(window, qPrintable(component.errorString()));

        for (const int height : {50, 120, 30}) {
            // when
            window->setProperty("wanted", height);

            // then
            QCOMPARE(window->size(), QSize(240, height));
            QCOMPARE(window->minimumSize(), window->size());
            QCOMPARE(window->maximumSize(), window->size());

            // when
            window->show();
            QVERIFY(QTest::qWaitForWindowExposed(window, 30'000));

            // then
            QCOMPARE(window->size(), QSize(240, height));
        }
    }
};

QTEST_MAIN(TestFixedSize)
#include "tst_fixedsize.moc"
