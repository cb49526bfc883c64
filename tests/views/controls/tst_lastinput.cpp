#include "tests/support/qmltest.h"
#include "views/controls/lastinput.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

class TestLastInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldTellThePointerFromTheKeyboard()
    {
        // given
        qmltest::Window window(QByteArray("import QtQuick\nItem {}"));
        window.hover({10, 10});
        LastInput input;
        QSignalSpy changes(&input, &LastInput::isPointerChanged);
        QVERIFY(!input.isPointer());

        // when
        window.hover({11, 10});

        // then
        QVERIFY(input.isPointer());

        // when
        QTest::keyClick(&window, Qt::Key_Down);

        // then
        QVERIFY(!input.isPointer());
        QCOMPARE(changes.size(), 2);
    }

    void shouldTakeAShortcutForTheKeyboard()
    {
        // given
        qmltest::Window window(QByteArray(R"(
            import QtQuick
            Item {
                id: root
                property int presses: 0
                Shortcut { sequence: "End"; onActivated: root.presses++ }
            })"));
        LastInput input;
        input.setIsPointer(true);

        // when
        QTest::keyClick(&window, Qt::Key_End);

        // then
        QCOMPARE(window.rootObject()->property("presses").toInt(), 1);
        QVERIFY(!input.isPointer());
    }

    void shouldKeepWhatItWasTold()
    {
        // given
        LastInput input;

        // when
        input.setIsPointer(true);

        // then
        QVERIFY(input.isPointer());
    }
};

QTEST_MAIN(TestLastInput)
#include "tst_lastinput.moc"
