#include "app/windows/keyrepeats.h"

#include <QKeyEvent>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

/// What a window is told of a key.
struct Told {
    QEvent::Type type = QEvent::None;
    bool isAutoRepeat = false;

    bool operator==(const Told &) const = default;
};

/// A window that writes down the keys that reach it, and accepts them or not.
class KeyWindow : public QWindow
{
public:
    QList<Told> told;
    std::unique_ptr<QKeyEvent> last;
    bool accepts = true;

protected:
    void keyPressEvent(QKeyEvent *event) override { take(event); }
    void keyReleaseEvent(QKeyEvent *event) override { take(event); }

private:
    void take(QKeyEvent *event)
    {
        told.append({event->type(), event->isAutoRepeat()});
        last.reset(event->clone());
        event->setAccepted(accepts);
    }
};

} // namespace

/// Repetitions as X sends them and Qt passes them on.
class TestKeyRepeats : public QObject
{
    Q_OBJECT

private:
    static constexpr quint32 Return = 36;
    static constexpr quint32 T = 28;

    /// Whether the window has accepted the key.
    static bool send(KeyWindow &window, QEvent::Type type, quint32 scanCode, quint64 timestamp,
                     bool isAutoRepeat = false)
    {
        QKeyEvent event(type, Qt::Key_Return, Qt::ControlModifier, scanCode, 0xff0d, 4, u"\r"_s,
                        isAutoRepeat);
        event.setTimestamp(timestamp);
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }

private Q_SLOTS:
    void shouldTakeAPressAtTheMomentOfItsReleaseForARepetition()
    {
        // given
        const KeyRepeats repeats;
        KeyWindow window;

        // when Qt sees neither the first repetition nor the second
        send(window, QEvent::KeyPress, Return, 1000);
        send(window, QEvent::KeyRelease, Return, 1500);
        send(window, QEvent::KeyPress, Return, 1500);
        send(window, QEvent::KeyRelease, Return, 1530);
        send(window, QEvent::KeyPress, Return, 1530);
        send(window, QEvent::KeyRelease, Return, 1545);

        // then
        QCOMPARE(window.told, (QList<Told>{{QEvent::KeyPress, false},
                                           {QEvent::KeyRelease, false},
                                           {QEvent::KeyPress, true},
                                           {QEvent::KeyRelease, false},
                                           {QEvent::KeyPress, true},
                                           {QEvent::KeyRelease, false}}));
    }

    void shouldPassARepetitionOnceThatQtHasRecognised()
    {
        // given
        const KeyRepeats repeats;
        KeyWindow window;

        // when
        send(window, QEvent::KeyRelease, Return, 1500, true);
        send(window, QEvent::KeyPress, Return, 1500, true);

        // then
        QCOMPARE(window.told, (QList<Told>{{QEvent::KeyRelease, true}, {QEvent::KeyPress, true}}));
    }

    void shouldTakeOtherPressesForNewOnes_data()
    {
        QTest::addColumn<quint32>("scanCode");
        QTest::addColumn<quint64>("timestamp");
        QTest::newRow("later") << Return << quint64(1501);
        QTest::newRow("another key") << T << quint64(1500);
    }
    void shouldTakeOtherPressesForNewOnes()
    {
        QFETCH(quint32, scanCode);
        QFETCH(quint64, timestamp);

        // given
        const KeyRepeats repeats;
        KeyWindow window;

        // when
        send(window, QEvent::KeyRelease, Return, 1500);
        send(window, QEvent::KeyPress, scanCode, timestamp);

        // then
        QCOMPARE(window.told.constLast(), (Told{QEvent::KeyPress, false}));
    }

    void shouldLeaveKeysAloneThatNoKeyboardHas()
    {
        // given
        const KeyRepeats repeats;
        KeyWindow window;

        // when
        send(window, QEvent::KeyRelease, 0, 1500);
        send(window, QEvent::KeyPress, 0, 1500);

        // then
        QCOMPARE(window.told.constLast(), (Told{QEvent::KeyPress, false}));
    }

    void shouldPassARepetitionOnAsItCame()
    {
        // given
        const KeyRepeats repeats;
        KeyWindow window;
        send(window, QEvent::KeyRelease, Return, 1500);

        // when
        QVERIFY(send(window, QEvent::KeyPress, Return, 1500));

        // then
        QCOMPARE(window.last->key(), int(Qt::Key_Return));
        QCOMPARE(window.last->modifiers(), Qt::ControlModifier);
        QCOMPARE(window.last->nativeScanCode(), Return);
        QCOMPARE(window.last->nativeVirtualKey(), 0xff0du);
        QCOMPARE(window.last->nativeModifiers(), 4u);
        QCOMPARE(window.last->text(), u"\r"_s);
        QCOMPARE(window.last->timestamp(), quint64(1500));

        // when
        window.accepts = false;

        // then
        QVERIFY(!send(window, QEvent::KeyPress, Return, 1500));
    }
};

QTEST_MAIN(TestKeyRepeats)
#include "tst_keyrepeats.moc"
