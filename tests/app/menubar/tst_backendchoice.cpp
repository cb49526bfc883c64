#include "app/menubar/backendchoice.h"

#include <QTest>

/// Which backend is chosen on which desktop.
class TestBackendChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldBeAStatusNotifierItemWhereverThereIsAHost()
    {
        for (const bool tray : {false, true}) {
            for (const bool settled : {false, true})
                QCOMPARE(chooseBackend({true, false, tray, settled}), Backend::StatusNotifier);
        }
    }

    void shouldBeTheClockWindowWhereTheHostDoesNotReadTheItem()
    {
        for (const bool tray : {false, true})
            QCOMPARE(chooseBackend({true, true, tray, true}), Backend::ClockWindow);
    }

    void shouldGiveAHostTimeToCome()
    {
        QCOMPARE(chooseBackend({false, false, true, false}), Backend::None);
        QCOMPARE(chooseBackend({false, false, false, false}), Backend::None);
    }

    void shouldBeATrayIconWhereNoHostComes()
    {
        QCOMPARE(chooseBackend({false, false, true, true}), Backend::XEmbed);
    }

    void shouldBeTheClockWindowWhereNothingComes()
    {
        QCOMPARE(chooseBackend({false, false, false, true}), Backend::ClockWindow);
    }
};

QTEST_GUILESS_MAIN(TestBackendChoice)
#include "tst_backendchoice.moc"
