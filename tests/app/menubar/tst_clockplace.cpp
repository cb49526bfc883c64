#include "app/menubar/clockplace.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// Where the clock window stands.
class TestClockPlace : public QObject
{
    Q_OBJECT

    static void write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

private Q_SLOTS:
    void shouldKeepTheCornerFromRunToRun()
    {
        // given
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"of/its own/clock"_s);

        // when
        ClockPlace(path).keep({-17, 1080});
        ClockPlace(path).keep({40, -3});

        // then
        QCOMPARE(ClockPlace(path).read(), QPoint(40, -3));
        QCOMPARE(QDir(folder.filePath(u"of/its own"_s)).entryList(QDir::Files), {u"clock"_s});
    }

    void shouldReadNothingFromAnythingElse_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("one number") << QByteArray("17\n");
        QTest::newRow("three numbers") << QByteArray("1 2 3\n");
        QTest::newRow("words") << QByteArray("left top\n");
        QTest::newRow("no number that fits") << QByteArray("99999999999999999999 1\n");
        QTest::newRow("bytes") << QByteArray(100'000, '\xff');
    }

    void shouldReadNothingFromAnythingElse()
    {
        // given
        QFETCH(QByteArray, content);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"clock"_s);
        write(path, content);

        // then
        QCOMPARE(ClockPlace(path).read(), std::nullopt);
    }

    void shouldReadNothingWhereThereIsNoFile()
    {
        // given
        const QTemporaryDir folder;

        // then
        QCOMPARE(ClockPlace(folder.filePath(u"none"_s)).read(), std::nullopt);
        QCOMPARE(ClockPlace(folder.path()).read(), std::nullopt);
    }

    void shouldKeepNothingWhereNothingCanBeWritten()
    {
        // given
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        write(path, "17");
        const ClockPlace place(path + u"/clock"_s);

        // when
        place.keep({1, 2});

        // then
        QCOMPARE(place.read(), std::nullopt);
    }

    void shouldLieInTheFolderForStates_data()
    {
        QTest::addColumn<QByteArray>("stateHome");
        QTest::addColumn<QString>("folder");
        const QString ownState = QDir::homePath() + u"/.local/state"_s;
        QTest::newRow("full path") << QByteArray("/a b/state") << u"/a b/state"_s;
        QTest::newRow("relative path") << QByteArray("state") << ownState;
        QTest::newRow("empty") << QByteArray("") << ownState;
    }

    void shouldLieInTheFolderForStates()
    {
        // given
        QFETCH(QByteArray, stateHome);
        QFETCH(QString, folder);
        QCoreApplication::setApplicationName(u"name"_s);

        // when
        qputenv("XDG_STATE_HOME", stateHome);

        // then
        QCOMPARE(ClockPlace::defaultPath(), folder + u"/name/clock-window"_s);
    }

    void shouldPlaceTheWindowWhereAllOfItIsSeen_data()
    {
        QTest::addColumn<std::optional<QPoint>>("kept");
        QTest::addColumn<QPoint>("corner");
        const auto row = [](const char *name, std::optional<QPoint> kept, QPoint corner) {
            QTest::newRow(name) << kept << corner;
        };
        row("first, bottom right of the room", {}, {880, 732});
        row("where it was", QPoint(300, 200), {300, 200});
        row("on the desktop's own bar", QPoint(300, 770), {300, 770});
        row("on the second screen", QPoint(1500, 50), {1500, 50});
        row("partly left", QPoint(-100, 200), {0, 200});
        row("partly below", QPoint(300, 790), {300, 772});
        row("partly right of the second screen", QPoint(1990, 50), {1880, 50});
        row("on a screen that is gone", QPoint(3000, 200), {880, 732});
        row("below the second screen", QPoint(1500, 600), {880, 732});
    }

    void shouldPlaceTheWindowWhereAllOfItIsSeen()
    {
        // given
        QFETCH(std::optional<QPoint>, kept);
        QFETCH(QPoint, corner);

        // then
        QCOMPARE(clockWindowPosition({120, 28}, kept, {{0, 0, 1000, 800}, {1000, 0, 1000, 600}},
                                     {0, 20, 1000, 740}),
                 corner);
    }
};

QTEST_GUILESS_MAIN(TestClockPlace)
#include "tst_clockplace.moc"
