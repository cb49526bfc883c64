#include "hours/json.h"
#include "written.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const Period november{{2026, 11, 1}, {2026, 11, 30}};

QString jsonOf(const QList<Key> &keys, const QList<RecordedTask> &tasks)
{
    Report report(keys);
    for (const RecordedTask &task : tasks)
        report.add(task);
    return written([&](TextWriter &writer) { writeJson(report, november, writer); });
}
} // namespace

class TestJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldSayAllOfTheReport()
    {
        QCOMPARE(
            jsonOf({Key::ProjectCode, Key::Day},
                   {{{2026, 11, 2}, u"4711"_s, u"x"_s, 5400}, {{2026, 11, 2}, {}, u"x"_s, 360}}),
            u"{\"from\": \"2026-11-01\", \"to\": \"2026-11-30\", \"rows\": [\n"
            "  {\"day\": \"2026-11-02\", \"projectCode\": \"4711\", \"seconds\": 5400, "
            "\"hours\": 1.50, \"billableHours\": 1.50},\n"
            "  {\"day\": \"2026-11-02\", \"projectCode\": null, \"seconds\": 360, "
            "\"hours\": 0.10, \"billableHours\": 0.25}\n"
            "], \"total\": {\"seconds\": 5760, \"hours\": 1.60, \"billableHours\": 1.75}}\n"_s);
    }

    void shouldHaveNoRowsWithoutTasks()
    {
        QCOMPARE(jsonOf({Key::Task}, {}),
                 u"{\"from\": \"2026-11-01\", \"to\": \"2026-11-30\", \"rows\": [], "
                 "\"total\": {\"seconds\": 0, \"hours\": 0.00, \"billableHours\": 0.00}}\n"_s);
    }

    void shouldKeepAnyName()
    {
        // given
        QString name = u"\"\\/ \u2028 \U0001f600 æ"_s;
        for (char16_t character = 0; character <= 0x20; ++character)
            name += QChar(character);

        // when
        const QJsonDocument read =
            QJsonDocument::fromJson(jsonOf({Key::Task}, {{{2026, 11, 2}, {}, name, 1}}).toUtf8());

        // then
        QCOMPARE(read[u"rows"][0][u"name"].toString(), name);
    }

    void shouldKeepAnEmptyName()
    {
        QVERIFY(
            jsonOf({Key::Task}, {{{2026, 11, 2}, {}, u""_s, 1}}).contains(u"{\"name\": \"\", "));
    }
};

QTEST_GUILESS_MAIN(TestJson)
#include "tst_json.moc"
