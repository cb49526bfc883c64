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
                QCOMPARE(chooseBackend({true, tray, settled}), Backend::StatusNotifier);
        }
    }

    void shouldGiveAHostTimeToCome()
    {
        QCOMPARE(chooseBackend({false, true, false}), Backend::None);
        QCOMPARE(chooseBackend({false, false, false}), Backend::None);
    }

    void shouldBeATrayIconWhereNoHostComes()
    {
        QCOMPARE(chooseBackend({false, true, true}), Backend::XEmbed);
    }

    void shouldBeTheClockWindowWhereNothingComes()
    {
        QCOMPARE(chooseBackend({false, false, true}), Backend::ClockWindow);
    }
};

QTEST_GUILESS_MAIN(TestBackendChoice)
#include "tst_backendchoice.moc"
