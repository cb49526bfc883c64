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
                QCOMPARE(chooseBackend({true, true, tray, settled}), Backend::StatusNotifier);
        }
    }

    void shouldBeATrayIconAtOnceWhereNoWatcherIs()
    {
        QCOMPARE(chooseBackend({false, false, true, false}), Backend::XEmbed);
        QCOMPARE(chooseBackend({false, false, true, true}), Backend::XEmbed);
    }

    void shouldGiveAWatchersHostTimeToCome()
    {
        QCOMPARE(chooseBackend({true, false, true, false}), Backend::None);
        QCOMPARE(chooseBackend({true, false, false, false}), Backend::None);
        QCOMPARE(chooseBackend({true, false, true, true}), Backend::XEmbed);
    }

    void shouldBeTheClockWindowWhereNothingElseComes()
    {
        QCOMPARE(chooseBackend({false, false, false, false}), Backend::None);
        QCOMPARE(chooseBackend({false, false, false, true}), Backend::ClockWindow);
        QCOMPARE(chooseBackend({true, false, false, true}), Backend::ClockWindow);
    }
};

QTEST_GUILESS_MAIN(TestBackendChoice)
#include "tst_backendchoice.moc"
