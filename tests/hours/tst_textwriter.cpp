#include "hours/textwriter.h"
#include "written.h"

#include <QTest>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>

using namespace Qt::StringLiterals;

class TestTextWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldWriteUtf8InItsOrder()
    {
        QString expected;
        const QString text = written([&](TextWriter &writer) {
            for (int i = 0; i < 100'000; ++i) {
                const QString piece = QString::number(i) + u"æ😀\n"_s;
                writer.write(piece);
                expected += piece;
            }
        });
        QCOMPARE(text.size(), expected.size());
        QVERIFY(text == expected);
    }

    void shouldNoticeAFullDisk()
    {
        const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
        QVERIFY(full >= 0);
        TextWriter writer(full);
        writer.write(u"a");
        try {
            writer.finish();
            QFAIL("was written");
        } catch (const WriteError &error) {
            QCOMPARE(error.what(), "Timerne kunne ikke skrives: disken er fuld.");
            QVERIFY(!error.isForWantOfAReader());
        }
        ::close(full);
    }

    void shouldNoticeAReaderThatHasGone()
    {
        std::signal(SIGPIPE, SIG_IGN);
        std::array<int, 2> ends{};
        QCOMPARE(::pipe(ends.data()), 0);
        ::close(ends[0]);
        TextWriter writer(ends[1]);
        writer.write(u"a");
        try {
            writer.finish();
            QFAIL("was written");
        } catch (const WriteError &error) {
            QVERIFY(error.isForWantOfAReader());
        }
        ::close(ends[1]);
    }
};

QTEST_GUILESS_MAIN(TestTextWriter)
#include "tst_textwriter.moc"
