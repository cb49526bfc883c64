#include "../support/fakeclock.h"
#include "../support/teststore.h"
#include "model/arithmetic.h"
#include "model/livequery.h"

#include <SQLiteCpp/Database.h>

#include <QFile>
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

        // when
        const End end = runProbe({way});

        // then
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

        // given
        const FakeClock clock;
        TestStore store(clock);
        store.close();

        // when
        const End end = runProbe({way, store.path()});

        // then
        QCOMPARE(end.how, QProcess::NormalExit);
        QCOMPARE(end.status, 1);

        // when
        store.open();
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);

        // then
        QCOMPARE(tasks.results().size(), 2);
        QCOMPARE(tasks.results().constFirst()->accumulatedSeconds(),
                 std::numeric_limits<qint64>::max());
        QCOMPARE(tasks.results().constLast()->name(), u"Ikke gemt"_s);
    }

    void shouldNameWhatCannotBeWritten()
    {
        // given
        const FakeClock clock;
        TestStore store(clock);
        store.close();

        // when
        const End end = runProbe({u"full-disk"_s, store.path()});

        // then
        QCOMPARE(end.how, QProcess::NormalExit);
        QCOMPARE(end.status, 1);
        QVERIFY2(end.message.startsWith(u"These changes are not in the store \""_s + store.path()),
                 qPrintable(end.message));
        QVERIFY2(end.message.contains("\n  new: task \"Ikke gemt\" of 2026-11-20, 00:00:00\n"_L1),
                 qPrintable(end.message));
        QVERIFY2(end.message.contains("Integer overflow"_L1), qPrintable(end.message));
    }

    void shouldNameTheTaskAndTheStoreThatATimeComesFrom_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("task");
        QTest::addColumn<QString>("values");
        QTest::newRow("too large a time")
            << u"run"_s << u"Integer overflow: the sum does not fit in 64 bits"_s
            << u"\"For lang\" of 2026-11-20"_s
            << u"accumulatedSeconds 9223372036854775807, lastStartTime 1795158000.000"_s;
        QTest::newRow("an infinite start")
            << u"infinite-start"_s
            << u"Double value cannot be converted to Int because it is either infinite or NaN"_s
            << u"\"Uden begyndelse\" of 2026-11-20"_s
            << u"accumulatedSeconds 0, lastStartTime -inf"_s;
    }
    void shouldNameTheTaskAndTheStoreThatATimeComesFrom()
    {
        QFETCH(QString, way);
        QFETCH(QString, message);
        QFETCH(QString, task);
        QFETCH(QString, values);

        // given
        const FakeClock clock;
        TestStore store(clock);
        store.close();

        // when
        const QStringList lines = runProbe({way, store.path()}).message.split(u'\n');

        // then
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(0), message);
        QVERIFY2(lines.at(1).contains(task), qPrintable(lines.at(1)));
        QVERIFY2(lines.at(1).contains(values), qPrintable(lines.at(1)));
        QVERIFY2(lines.at(1).contains(u'"' + store.path() + u'"'), qPrintable(lines.at(1)));
        const qsizetype statement = lines.at(1).indexOf(u"UPDATE "_s);
        QVERIFY(statement >= 0);

        // when what it says is done
        SQLite::Database(QFile::encodeName(store.path()).constData(), SQLite::OPEN_READWRITE)
            .exec(lines.at(1).sliced(statement).toStdString());
        store.open();
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
        Task *const repaired = tasks.results().constFirst();

        // then that puts an end to it, leaving the rest as it was
        QVERIFY(task.contains(repaired->name()));
        QCOMPARE(repaired->formattedTime(), u"00:00:00"_s);
        QVERIFY(!repaired->isRunning());
    }
};

QTEST_GUILESS_MAIN(TestFatalError)
#include "tst_fatalerror.moc"
