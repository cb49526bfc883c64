#include "model/backupfiles.h"
#include "model/storefiles.h"

#include <SQLiteCpp/Database.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace fs = std::filesystem;

class TestBackupKills : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldLeaveOnlyWholeBackups()
    {
        bool isNumber = false;
        const int wanted = qEnvironmentVariableIntValue("TIMETRACKER_KILLS", &isNumber);
        const int kills = isNumber ? wanted : 20;
        std::mt19937 random(20261122); // NOLINT(cert-msc51-cpp): every run is to be the same
        std::uniform_int_distribution<int> days(0, 3);
        std::uniform_int_distribution<int> milliseconds(0, 20);
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        const fs::path store = QFile::encodeName(path).toStdString();
        QDate day(2026, 1, 1);
        int looked = 0;
        int unfinished = 0;
        for (int kill = 0; kill < kills; ++kill) {
            // given a program that makes a backup of each day
            QProcess program;
            program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            program.start(QStringLiteral(BACKUPPROBE), {path, day.toString(Qt::ISODate)});
            const int ended = days(random);
            for (int lines = 0; lines <= ended;) {
                QVERIFY(program.waitForReadyRead(60'000));
                lines += static_cast<int>(program.readAll().count('\n'));
            }

            // when it is killed at some moment after that
            QTest::qWait(milliseconds(random));
            program.kill();
            QVERIFY(program.waitForFinished());
            unfinished += fs::exists(backupDirectory(store) / "unfinished") ? 1 : 0;

            // then every backup with a name is whole
            for (const BackupFile &backup : backupsOf(store)) {
                SQLite::Database database(backup.path.native(), SQLite::OPEN_READONLY);
                QCOMPARE(database.execAndGet("PRAGMA integrity_check").getString(), "ok");
                QVERIFY(database.execAndGet("SELECT count(*) FROM Task").getInt() > 0);
                ++looked;
            }
            day = backupsOf(store).empty() ? day : backupsOf(store).front().day.addDays(1);
        }
        QVERIFY(looked > 0);
        qInfo("%d kills, %d of them while a backup was made; %d backups, all whole", kills,
              unfinished, looked);
    }
};

QTEST_GUILESS_MAIN(TestBackupKills)
#include "tst_backupkills.moc"
