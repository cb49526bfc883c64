#include "../support/fakeclock.h"
#include "model/projectcode.h"
#include "model/tasktemplate.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldShowACodeWithoutANameAlone()
    {
        const FakeClock clock;
        QCOMPARE(ProjectCode(clock, u"4711"_s, u""_s).displayName(), u"4711"_s);
    }

    void shouldShowCodeAndNameWithAnEnDash()
    {
        const FakeClock clock;
        QCOMPARE(ProjectCode(clock, u"4711"_s, u"Support"_s).displayName(),
                 u"4711 \u2013 Support"_s);
    }

    void shouldShowANameOfSpacesAfterTheDash()
    {
        const FakeClock clock;
        QCOMPARE(ProjectCode(clock, u"4711"_s, u"  "_s).displayName(), u"4711 \u2013   "_s);
    }

    void shouldTakeCodesAndNamesAsTheyAre()
    {
        // given
        const FakeClock clock;
        const ProjectCode code(clock, u" ab\t"_s, u" x "_s, 3);
        const TaskTemplate taskTemplate(clock, u" Møde "_s, 5);

        // then
        QCOMPARE(code.code(), u" ab\t"_s);
        QCOMPARE(code.name(), u" x "_s);
        QCOMPARE(code.sortOrder(), 3);
        QCOMPARE(code.createdAt(), clock.now());
        QVERIFY(!code.id().isNull());
        QCOMPARE(taskTemplate.name(), u" Møde "_s);
        QCOMPARE(taskTemplate.sortOrder(), 5);
        QCOMPARE(taskTemplate.createdAt(), clock.now());
        QVERIFY(!taskTemplate.id().isNull());
    }

    void shouldTellOfANewSortOrderAndNotOfTheSameOne()
    {
        // given
        const FakeClock clock;
        TaskTemplate taskTemplate(clock, u"Møde"_s, 5);
        QSignalSpy sortOrder(&taskTemplate, &Record::sortOrderChanged);
        QSignalSpy changed(&taskTemplate, &Record::changed);

        // when
        taskTemplate.setSortOrder(5);
        taskTemplate.setSortOrder(6);

        // then
        QCOMPARE(sortOrder.count(), 1);
        QCOMPARE(changed.count(), 1);
    }

    void shouldSortFirstUnlessToldOtherwise()
    {
        const FakeClock clock;
        QCOMPARE(ProjectCode(clock, u"a"_s, u""_s).sortOrder(), 0);
        QCOMPARE(TaskTemplate(clock, u"a"_s).sortOrder(), 0);
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
