#include "../support/reckonedtime.h"
#include "../support/teststore.h"
#include "model/livequery.h"
#include "model/projectcode.h"
#include "model/systemclock.h"
#include "model/tasktemplate.h"
#include "timer/timermanager.h"
#include "views/row/taskrowviewmodel.h"
#include "views/row/timeentry.h"
#include "views/sidebar/projectcodelistviewmodel.h"
#include "views/sidebar/templatelistviewmodel.h"

#include <QProcess>
#include <QTest>

#include <optional>
#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

QString strangeName(const QString &kind)
{
    if (kind == "a megabyte without a blank"_L1)
        return u"abc_"_s.repeated(250'000);
    if (kind == "a megabyte of accents"_L1)
        return u'e' + u"\u0301"_s.repeated(500'000);
    QString controls;
    for (char16_t character = 1; character < 0xa0; ++character) {
        if (character < 0x20 || character >= 0x7f)
            controls += QChar(character);
    }
    return u'a' + controls + u'b';
}

} // namespace

class TestBadInput : public QObject
{
    Q_OBJECT

private:
    std::mt19937 m_random;

    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(m_random); }

    QString randomEntry()
    {
        static const QStringList pieces{
            u":"_s, u":"_s, u":"_s, u"::"_s, u"+"_s, u"-"_s, u"0"_s, u"00"_s, u"1"_s, u"7"_s,
            u"30"_s, u"59"_s, u"60"_s, u"90"_s, u" "_s, u"\t"_s, u"\n"_s, u"\r"_s, u"\u00a0"_s,
            u"\u2003"_s, u"\u200b"_s, u"\ufeff"_s, u"."_s, u","_s, u"x"_s, u"e3"_s, u"0x1"_s,
            u"\u0661"_s, u"\uff11"_s, u"\u2212"_s, u"\U0001F600"_s, QString(QChar(0)),
            QString(QChar(0xd800)), QString(QChar(0xdc00)), u"9223372036854775807"_s,
            u"9223372036854775808"_s, u"-9223372036854775808"_s, u"-9223372036854775809"_s,
            // As many hours and minutes as there can be, and one more.
            u"2562047788015215"_s, u"2562047788015216"_s, u"153722867280912930"_s,
            u"153722867280912931"_s, u"-153722867280912930"_s, u"-153722867280912931"_s,
            u"99999999999999999999999999"_s};
        QString entry;
        const int length = below(9);
        for (int i = 0; i < length; ++i) {
            if (below(4) == 0)
                entry += QString::number(static_cast<qint64>(m_random()) << below(32));
            else
                entry += pieces[below(static_cast<int>(pieces.size()))];
        }
        return entry;
    }

private Q_SLOTS:
    // Every run is to be the same.
    void init() { m_random.seed(20261121); }

    void shouldReadATimeAsItIsReckonedOtherwise()
    {
        // given
        int zero = 0;
        int fatal = 0;
        for (int time = 0; time < 100'000; ++time) {
            const QString entry = randomEntry();
            const std::optional<qint64> expected = reckonedSeconds(entry);
            if (!expected) {
                ++fatal;
                continue;
            }
            zero += *expected == 0;

            // then
            QVERIFY2(secondsOfTimeEntry(entry) == *expected, qPrintable(QDebug::toString(entry)));
        }

        // Many of each kind, or there is nothing in this.
        QVERIFY2(zero > 1'000 && zero < 90'000, qPrintable(QString::number(zero)));
        QVERIFY2(fatal > 1'000 && fatal < 50'000, qPrintable(QString::number(fatal)));
    }

    void shouldEndOnATimeThatDoesNotFitWithAllBeforeItOnDisk()
    {
        // given
        const FakeClock clock;
        int ends = 0;
        while (ends < 40) {
            const QString entry = randomEntry();
            // These cannot be given on a command line.
            if (reckonedSeconds(entry) || entry.contains(QChar(0)) || !entry.isValidUtf16())
                continue;
            ++ends;
            TestStore store(clock);
            store.close();

            // when
            QProcess probe;
            probe.start(QStringLiteral(ENTRYPROBE), {store.path(), entry});
            QVERIFY(probe.waitForFinished());

            // then
            QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
            QCOMPARE(probe.exitCode(), 1);
            QCOMPARE(probe.readAllStandardOutput(), QByteArray());
            const QByteArray message = probe.readAllStandardError();
            QVERIFY2(message.startsWith("Integer overflow: "), message.constData());
            store.open();
            LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
            QCOMPARE(tasks.results().size(), 1);
            const Task *const task = tasks.results().constFirst();
            QCOMPARE(task->name(), u"Netop navngivet"_s);
            QCOMPARE(task->accumulatedSeconds(), 90);
            QVERIFY(!task->isRunning());
        }
    }

    void shouldSayWhichTaskEndsTheProgramAtEachStart()
    {
        // given two times of today that fit alone and not together
        const QTemporaryDir home;
        const QString path = home.filePath(u"dk.tulo.TimeTracker/store.sqlite"_s);
        const SystemClock clock;
        constexpr qint64 larger = 6'000'000'000'000'000'000;
        {
            ModelContainer container(path, clock);
            for (const auto &[name, seconds] :
                 {std::pair(u"Den første"_s, larger - 1), std::pair(u"Den største"_s, larger)}) {
                auto task = std::make_unique<Task>(clock, name, clock.now(), std::nullopt);
                task->setAccumulatedSeconds(seconds);
                container.mainContext().insert(std::move(task));
            }
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, home.path());
        environment.insert(u"XDG_DATA_HOME"_s, home.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, home.path());
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s,
                           u"unix:path="_s + home.path() + u"/bus"_s);
        const QString day = clock.calendar().dayOf(clock.now()).toString(Qt::ISODate);

        for (int start = 0; start < 2; ++start) {
            // when
            QProcess program;
            program.setProcessEnvironment(environment);
            program.start(QStringLiteral(PROGRAM), {});
            QVERIFY(program.waitForFinished());

            // then
            QCOMPARE(program.exitStatus(), QProcess::NormalExit);
            QCOMPARE(program.exitCode(), 1);
            const QString said = QString::fromUtf8(program.readAllStandardError());
            QVERIFY2(said.contains(u"Integer overflow: the sum does not fit in 64 bits\n"_s),
                     qPrintable(said));
            QVERIFY2(said.contains(u"\"Den største\" of "_s + day), qPrintable(said));
            QVERIFY2(said.contains(u'"' + path + u'"'), qPrintable(said));
        }

        // then nothing of it has been lost
        ModelContainer container(path, clock);
        LiveQuery<Task> tasks(container.mainContext(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().size(), 2);
        QCOMPARE(tasks.results().constLast()->accumulatedSeconds(), larger);
    }

    void shouldEnterATimeThatFits()
    {
        // given
        const FakeClock clock;
        TestStore store(clock);
        store.close();

        // when
        QProcess probe;
        probe.start(QStringLiteral(ENTRYPROBE),
                    {store.path(), u"2562047788015215:30:07"_s}); // the longest time that there is
        QVERIFY(probe.waitForFinished());

        // then
        QCOMPARE(probe.readAllStandardOutput(), QByteArray("9223372036854775807\n"));
        QCOMPARE(probe.exitCode(), 0);
    }

    void shouldKeepStrangeTextsAsTheyWereEntered_data()
    {
        QTest::addColumn<QString>("entered");
        QTest::addColumn<QString>("kept");

        const auto same = [](const char *kind, const QString &text) {
            QTest::newRow(kind) << text << text;
        };
        for (const char *kind :
             {"a megabyte without a blank", "a megabyte of accents", "control characters"})
            same(kind, strangeName(QString::fromLatin1(kind)));
        same("SQL", u"'; DROP TABLE Task; --"_s);
        same("placeholders", u"? ?1 :a @b $c %s %n %1"_s);
        same("markup", u"<b>&amp;<img src='file:///dev/zero'/><script>"_s);
        same("NUL", u"a"_s + QChar(0) + u"b"_s);
        same("NUL first", QChar(0) + u"b"_s);
        same("line breaks inside", u"a\nb\r\nc\u2028d"_s);
        same("other directions", u"\u202eabc\u2066\u05d0\u0627"_s);
        same("joined emoji", u"\U0001F469\u200d\U0001F4BB"_s);
        same("no characters", u"a\ufdd0\uffff\U0010ffffb"_s);
        // There is no way to write half a character down, so a question mark is.
        QTest::newRow("the first half of a character")
            << u"a"_s + QChar(0xd83d) + u"b"_s << u"a?b"_s;
        QTest::newRow("the second half of a character")
            << u"a"_s + QChar(0xde00) + u"b"_s << u"a?b"_s;
        QTest::newRow("blanks and breaks around") << u" \t\n\u2028a\u3000\r\n"_s << u"a"_s;
    }
    void shouldKeepStrangeTextsAsTheyWereEntered()
    {
        QFETCH(QString, entered);
        QFETCH(QString, kept);

        // given
        const FakeClock clock;
        TestStore store(clock, {1h, 1h});
        Task *const task = store.insertTask({});

        // when
        {
            TimerManager timer(clock, 1h);
            ProjectCodeMenuModel codeMenu(store.context());
            TaskRowViewModel row(*task, timer, codeMenu);
            row.startNameEditing();
            row.setEditedName(entered);
            row.commitNameEdit();
            task->setProjectCode(entered);

            TemplateListViewModel templates(store.context());
            templates.startAdding();
            templates.setNewTemplateName(entered);
            templates.addTemplate();

            ProjectCodeListViewModel codes(store.context());
            codes.startAdding();
            codes.setNewCode(entered);
            codes.setNewName(entered);
            codes.addProjectCode();
        }
        QVERIFY(store.context().save());
        store.reopen();

        // then
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().size(), 1);
        QVERIFY(tasks.results().constFirst()->name() == kept);
        QVERIFY(tasks.results().constFirst()->projectCode()->contains(kept));
        LiveQuery<TaskTemplate> templates(store.context(), allRecords(), QueryOrder::Store);
        QCOMPARE(templates.results().size(), 1);
        QVERIFY(templates.results().constFirst()->name().contains(kept));
        LiveQuery<ProjectCode> codes(store.context(), allRecords(), QueryOrder::Store);
        QCOMPARE(codes.results().size(), 1);
        QVERIFY(codes.results().constFirst()->code().contains(kept));
        QVERIFY(codes.results().constFirst()->name().contains(kept));
    }
};

QTEST_GUILESS_MAIN(TestBadInput)
#include "tst_badinput.moc"
