#include "../../support/fakeclock.h"
#include "model/task.h"
#include "views/row/rowedits.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestRowEdits : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;
    Task m_a{m_clock, u"a"_s, 0, std::nullopt};
    Task m_b{m_clock, u"b"_s, 0, std::nullopt};

private Q_SLOTS:
    void shouldKeepAnOpenEditByItsTask()
    {
        RowEdits edits;
        edits.setEdit(m_a.id(), {true, u"ny"_s, false, {}});
        QVERIFY(edits.edit(m_a.id()).isEditingName);
        QCOMPARE(edits.edit(m_a.id()).editedName, u"ny"_s);
        QVERIFY(!edits.edit(m_b.id()).isOpen());
        edits.setEdit(m_a.id(), {false, u"ny"_s, false, {}});
        QCOMPARE(edits.edit(m_a.id()).editedName, QString());
    }

    void shouldClearTheEditingFlagWhenTheLastEditedTaskLeaves()
    {
        TimerManager timer(m_clock);
        RowEdits edits;
        edits.setTimerManager(&timer);
        timer.setIsEditing(true);
        edits.setEdit(m_a.id(), {true, u"ny"_s, false, {}});
        edits.setEdit(m_b.id(), {false, {}, true, u"1:30"_s});

        edits.keepOnly({&m_a, &m_b});
        QVERIFY(timer.isEditing());
        edits.keepOnly({&m_b});
        QVERIFY(timer.isEditing());
        QVERIFY(!edits.edit(m_a.id()).isOpen());
        edits.keepOnly({});
        QVERIFY(!timer.isEditing());
    }

    void shouldLeaveTheFlagAloneWhenNoEditedTaskLeaves()
    {
        TimerManager timer(m_clock);
        RowEdits edits;
        edits.setTimerManager(&timer);
        timer.setIsEditing(true);
        edits.keepOnly({});
        QVERIFY(timer.isEditing());
    }

    void shouldClearTheFlagWhenTheListGoes()
    {
        TimerManager timer(m_clock);
        {
            RowEdits edits;
            edits.setTimerManager(&timer);
            timer.setIsEditing(true);
            edits.setEdit(m_a.id(), {true, u"ny"_s, false, {}});
        }
        QVERIFY(!timer.isEditing());
    }
};

QTEST_GUILESS_MAIN(TestRowEdits)
#include "tst_rowedits.moc"
