#include "../support/teststore.h"
#include "hours/runningprogram.h"
#include "model/storeerror.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

class TestRunningProgram : public QObject
{
    Q_OBJECT

private:
    const Period m_november{{2026, 11, 1}, {2026, 11, 30}};

private Q_SLOTS:
    void shouldGiveUpWaitingForAProgramThatDoesNotAnswer()
    {
        // given
        const FakeClock clock;
        TestStore store(clock);
        const QString path = store.path();
        store.close();
        QProcess silent;
        silent.start(u"/usr/bin/python3"_s, {u"-B"_s, QStringLiteral(STANDIN), path, u"silent"_s});
        QVERIFY(QTest::qWaitFor([&silent] { return silent.canReadLine(); }, 30'000));

        // when
        std::string said;
        int delivered = 0;
        try {
            RunningProgram(QFile::encodeName(path).toStdString(), std::chrono::milliseconds(1))
                .deliver(m_november, [&delivered](const RecordedTask &) { ++delivered; });
        } catch (const StoreError &error) {
            said = error.what();
        }
        silent.kill();
        silent.waitForFinished();

        // then
        QCOMPARE(QString::fromStdString(said),
                 u"TULO Time Tracker is running, but does not answer. End it and try again."_s);
        QCOMPARE(delivered, 0);
    }

    void shouldAskNobodyAboutAStoreThatNobodyHolds()
    {
        // given
        const FakeClock clock;
        TestStore store(clock);
        const QString path = store.path();
        store.close();

        // then
        QVERIFY(!RunningProgram(QFile::encodeName(path).toStdString())
                     .deliver(m_november, [](const RecordedTask &) { QFAIL("delivered"); }));
    }
};

QTEST_GUILESS_MAIN(TestRunningProgram)
#include "tst_runningprogram.moc"
