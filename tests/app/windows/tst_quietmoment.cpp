#include "app/windows/quietmoment.h"
#include "tests/support/qmltest.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// When a window may take the keyboard for a moment.
class TestQuietMoment : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        qmltest::WarningsAreFailures guard;
        qmltest::Window window{R"(
            import QtQuick
            FocusScope {
                focus: true
                Item { objectName: "plain"; focus: true }
                TextInput { objectName: "field" }
            })"};

        bool isActive() { return QTest::qWaitForWindowActive(&window, 30'000); }
        bool focus(const QString &name)
        {
            window.item(name)->forceActiveFocus();
            return QGuiApplication::focusObject() == window.item(name);
        }
    };

    /// Lets everything happen that is due in the next 20 ms. Timers of up to 20 ms are precise, and
    /// of two that end together, the one that was started first comes first.
    struct Stopwatch {
        Stopwatch()
        {
            timer.setSingleShot(true);
            timer.start(20ms);
        }
        QTimer timer;
        QSignalSpy passed{&timer, &QTimer::timeout};
    };

private Q_SLOTS:
    void shouldComeOnceWhenNothingIsPressed()
    {
        // given
        Fixture f;
        QVERIFY(f.isActive() && f.focus(u"plain"_s));
        QuietMoment moment(1ms);
        QSignalSpy came(&moment, &QuietMoment::came);

        // when
        moment.await();

        // then
        QTRY_COMPARE(came.size(), 1);

        // when
        QVERIFY(f.focus(u"field"_s) && f.focus(u"plain"_s));
        Stopwatch stopwatch;
        QTRY_COMPARE(stopwatch.passed.size(), 1);

        // then
        QCOMPARE(came.size(), 1);
    }

    void shouldCountTheTimeFromTheLastPress_data()
    {
        QTest::addColumn<QEvent::Type>("type");
        QTest::newRow("key") << QEvent::KeyPress;
        QTest::newRow("released key") << QEvent::KeyRelease;
        QTest::newRow("button") << QEvent::MouseButtonPress;
        QTest::newRow("released button") << QEvent::MouseButtonRelease;
    }

    void shouldCountTheTimeFromTheLastPress()
    {
        // given
        QFETCH(QEvent::Type, type);
        Fixture f;
        QVERIFY(f.isActive() && f.focus(u"plain"_s));
        QuietMoment moment(20ms);
        QSignalSpy came(&moment, &QuietMoment::came);
        qsizetype cameBefore = -1;
        moment.await();
        Stopwatch stopwatch;
        connect(&stopwatch.timer, &QTimer::timeout, this, [&] { cameBefore = came.size(); });

        // when
        if (type == QEvent::KeyPress || type == QEvent::KeyRelease) {
            QKeyEvent event(type, Qt::Key_A, {});
            QCoreApplication::sendEvent(&f.window, &event);
        } else {
            QMouseEvent event(type, {1, 1}, {1, 1}, Qt::LeftButton, {}, {});
            QCoreApplication::sendEvent(&f.window, &event);
        }

        // then
        QTRY_COMPARE(came.size(), 1);
        QCOMPARE(cameBefore, 0);
    }

    void shouldWaitUntilATextIsEditedNoLonger()
    {
        // given
        Fixture f;
        QVERIFY(f.isActive() && f.focus(u"field"_s));
        QuietMoment moment(1ms);
        QSignalSpy came(&moment, &QuietMoment::came);

        // when
        moment.await();
        Stopwatch stopwatch;
        QTRY_COMPARE(stopwatch.passed.size(), 1);

        // then
        QCOMPARE(came.size(), 0);

        // when
        QVERIFY(f.focus(u"plain"_s));

        // then
        QTRY_COMPARE(came.size(), 1);
    }

    void shouldWaitUntilAWindowOfTheProgramHasTheKeyboard()
    {
        // given
        Fixture f;
        QVERIFY(f.isActive() && f.focus(u"plain"_s));
        f.window.destroy();
        QVERIFY(!QGuiApplication::focusWindow());
        QuietMoment moment(1ms);
        QSignalSpy came(&moment, &QuietMoment::came);

        // when
        moment.await();
        Stopwatch stopwatch;
        QTRY_COMPARE(stopwatch.passed.size(), 1);

        // then
        QCOMPARE(came.size(), 0);

        // when
        f.window.show();

        // then
        QTRY_COMPARE(came.size(), 1);
    }

    void shouldNotComeAfterItWasStopped()
    {
        // given
        Fixture f;
        QVERIFY(f.isActive() && f.focus(u"plain"_s));
        QuietMoment moment(1ms);
        QSignalSpy came(&moment, &QuietMoment::came);
        moment.await();

        // when
        moment.stop();
        QVERIFY(f.focus(u"field"_s) && f.focus(u"plain"_s));
        Stopwatch stopwatch;
        QTRY_COMPARE(stopwatch.passed.size(), 1);

        // then
        QCOMPARE(came.size(), 0);
    }
};

QTEST_MAIN(TestQuietMoment)
#include "tst_quietmoment.moc"
