#include "../support/fakeclock.h"
#include "../support/teststore.h"
#include "model/arithmetic.h"
#include "model/livequery.h"

#include <QProcess>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestFatalError : public QObject
{
    Q_OBJECT

private:
    struct End {
        QProcess::ExitStatus how;
        int status;
        QString message;
    };

    static End runProbe(const QStringList &arguments)
    {
        QProcess probe;
        probe.start(QStringLiteral(FATALPROBE), arguments);
        probe.waitForFinished();
        return {probe.exitStatus(), probe.exitCode(),
                QString::fromUtf8(probe.readAllStandardError())};
    }

private Q_SLOTS:
    void shouldEndWithStatus1AndTheMessage_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("message");

        const auto conversion = [](QLatin1StringView why) {
            return u"Double value cannot be converted to Int because "_s + why + u'\n';
        };
        QTest::newRow("NaN") << u"not-a-number"_s << conversion("it is either infinite or NaN"_L1);
        QTest::newRow("infinite") << u"infinite"_s << conversion("it is either infinite or NaN"_L1);
        QTest::newRow("too small")
            << u"below"_s << conversion("the result would be less than Int.min"_L1);
        QTest::newRow("too great")
            << u"above"_s << conversion("the result would be greater than Int.max"_L1);
        QTest::newRow("sum") << u"sum"_s
                             << u"Integer overflow: the sum does not fit in 64 bits\n"_s;
        QTest::newRow("product") << u"product"_s
                                 << u"Integer overflow: the product does not fit in 64 bits\n"_s;
    }
    void shouldEndWithStatus1AndTheMessage()
    {
        QFETCH(QString, way);
        const End end = runProbe({way});
        QCOMPARE(end.how, QProcess::NormalExit);
        QCOMPARE(end.status, 1);
        QTEST(end.message, "message");
    }

    void shouldConvertWhatFits()
    {
        QCOMPARE(truncatedToInt(2.9), 2);
        QCOMPARE(truncatedToInt(-0.5), 0);
        QCOMPARE(truncatedToInt(-2.9), -2);
        QCOMPARE(truncatedToInt(-0x1p63), std::numeric_limits<qint64>::min());
        QCOMPARE(truncatedToInt(0x1.fffffffffffffp62), 0x7ffffffffffffc00);
    }

    void shouldWriteWhatIsUnsavedFirst_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("while a time is shown") << u"run"_s;
        QTest::newRow("while a task is stopped") << u"stop"_s;
    }
    void shouldWriteWhatIsUnsavedFirst()
    {
        QFETCH(QString, way);
        const FakeClock clock;
        TestStore store(clock);
        store.close();

        const End end = runProbe({way, store.path()});
        QCOMPARE(end.how, QProcess::NormalExit);
        QCOMPARE(end.status, 1);

        store.open();
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().size(), 1);
        QCOMPARE(tasks.results().constFirst()->name(), u"Ikke gemt"_s);
    }
};

QTEST_GUILESS_MAIN(TestFatalError)
#include "tst_fatalerror.moc"
