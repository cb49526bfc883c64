#include "model/livequery.h"
#include "tests/support/teststore.h"
#include "views/sidebar/projectcodelistviewmodel.h"
#include "views/sidebar/templatelistviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const QString NoBreakSpace(QChar(0xa0));

QStringList names(TemplateListViewModel &section)
{
    QStringList names;
    for (QObject *object : section.rows()->objects())
        names << static_cast<TaskTemplate *>(object)->name();
    return names;
}

QStringList codes(ProjectCodeListViewModel &section)
{
    QStringList codes;
    for (QObject *object : section.rows()->objects())
        codes << static_cast<ProjectCode *>(object)->displayName();
    return codes;
}

} // namespace

class TestSectionViewModels : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        TaskTemplate *taskTemplate(int row)
        {
            return static_cast<TaskTemplate *>(templates.rows()->objects().at(row));
        }
        ProjectCode *code(int row)
        {
            return static_cast<ProjectCode *>(codes.rows()->objects().at(row));
        }
        void addTemplate(const QString &name)
        {
            templates.startAdding();
            templates.setNewTemplateName(name);
            templates.addTemplate();
        }
        void addCode(const QString &code, const QString &name = {})
        {
            codes.startAdding();
            codes.setNewCode(code);
            codes.setNewName(name);
            codes.addProjectCode();
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TemplateListViewModel templates{store.context()};
        ProjectCodeListViewModel codes{store.context()};
    };

private Q_SLOTS:
    void shouldListTemplatesBySortOrder()
    {
        // given
        Fixture f;
        f.store.insert<TaskTemplate>(u"c"_s, 2);
        f.store.insert<TaskTemplate>(u"a"_s, 0);
        TaskTemplate *const b = f.store.insert<TaskTemplate>(u"b"_s, 1);

        // then
        QCOMPARE(names(f.templates), (QStringList{u"a"_s, u"b"_s, u"c"_s}));

        // when
        b->setSortOrder(5);

        // then
        QCOMPARE(names(f.templates), (QStringList{u"a"_s, u"c"_s, u"b"_s}));
    }

    void shouldSayThatThereIsNoneOnlyWhileTheFormIsClosed()
    {
        // given
        Fixture f;
        QSignalSpy changed(&f.templates, &SectionViewModel::showEmptyTextChanged);

        // then
        QVERIFY(f.templates.showEmptyText());

        // when
        f.templates.startAdding();

        // then
        QVERIFY(!f.templates.showEmptyText());

        // when
        f.templates.cancelAdding();

        // then
        QVERIFY(f.templates.showEmptyText());
        QVERIFY(changed.count() >= 2);

        // when
        f.addTemplate(u"Møde"_s);

        // then
        QVERIFY(!f.templates.showEmptyText());

        // when
        f.templates.deleteTemplate(f.taskTemplate(0));

        // then
        QVERIFY(f.templates.showEmptyText());
    }

    void shouldAddATrimmedTemplateAtTheEndAndCloseTheForm()
    {
        // given
        Fixture f;
        f.addTemplate(u"Frokost"_s);
        QSignalSpy added(&f.templates, &SectionViewModel::added);

        // when
        f.addTemplate(u"  Møde  "_s);

        // then
        QCOMPARE(names(f.templates), (QStringList{u"Frokost"_s, u"Møde"_s}));
        QCOMPARE(f.taskTemplate(1)->sortOrder(), 1);
        QCOMPARE(f.taskTemplate(1)->createdAt(), f.clock.now());
        QVERIFY(!f.templates.isAdding());
        QCOMPARE(f.templates.newTemplateName(), QString());
        QCOMPARE(added, (QList<QVariantList>{{1}}));

        // when another of that name is added
        f.addTemplate(u"Møde"_s);

        // then
        QCOMPARE(names(f.templates), (QStringList{u"Frokost"_s, u"Møde"_s, u"Møde"_s}));
    }

    void shouldNotAddATemplateOfBlanks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("spaces") << u"   "_s;
        QTest::newRow("tab") << u"\t"_s;
        QTest::newRow("no-break spaces") << NoBreakSpace + NoBreakSpace;
        QTest::newRow("all of Unicode") << u" \u1680\u2000\u2007\u202f\u205f\u3000"_s;
    }
    void shouldNotAddATemplateOfBlanks()
    {
        QFETCH(QString, text);

        // given
        Fixture f;
        f.templates.startAdding();
        f.templates.setNewTemplateName(text);

        // then
        QVERIFY(!f.templates.canAdd());

        // when
        f.templates.addTemplate();

        // then
        QVERIFY(f.templates.isAdding());
        QCOMPARE(f.templates.newTemplateName(), text);
        QVERIFY(names(f.templates).isEmpty());
    }

    void shouldTrimOnlyBlanksAtTheEnds_data()
    {
        QTest::addColumn<QString>("entered");
        QTest::addColumn<QString>("stored");
        QTest::newRow("no-break space") << NoBreakSpace + u"Møde"_s << u"Møde"_s;
        QTest::newRow("tabs") << u"\tKaffe\tog kage\t"_s << u"Kaffe\tog kage"_s;
        QTest::newRow("line breaks stay") << u" \nMøde\n "_s << u"\nMøde\n"_s;
        QTest::newRow("a line break alone") << u"\n"_s << u"\n"_s;
        QTest::newRow("emoji") << u" 👩‍💻 "_s << u"👩‍💻"_s;
        QTest::newRow("right to left") << u" اجتماع "_s << u"اجتماع"_s;
        QTest::newRow("long") << u" "_s + QString(10000, u'å') << QString(10000, u'å');
    }
    void shouldTrimOnlyBlanksAtTheEnds()
    {
        QFETCH(QString, entered);
        QFETCH(QString, stored);

        // given
        Fixture f;

        // when
        f.addTemplate(entered);

        // then
        QCOMPARE(names(f.templates), QStringList{stored});

        // when
        f.addCode(entered, entered);

        // then
        QCOMPARE(f.code(0)->code(), stored);
        QCOMPARE(f.code(0)->name(), stored);
    }

    void shouldListWhatWasAddedAfterARestart()
    {
        // given
        const FakeClock clock;
        TestStore store(clock);
        {
            TemplateListViewModel templates(store.context());
            templates.startAdding();
            templates.setNewTemplateName(u"Møde"_s);
            templates.addTemplate();
        }

        // when
        store.reopen();
        TemplateListViewModel templates(store.context());

        // then
        QCOMPARE(names(templates), QStringList{u"Møde"_s});
    }

    void shouldCountTheListForTheOrderOfANewTemplate()
    {
        // given three, the middle one deleted
        Fixture f;
        for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
            f.addTemplate(name);
        f.templates.deleteTemplate(f.taskTemplate(1));

        // when another is added
        f.addTemplate(u"d"_s);

        // then two have the same order, and both are listed
        QCOMPARE(names(f.templates), (QStringList{u"a"_s, u"c"_s, u"d"_s}));
        QCOMPARE(f.taskTemplate(1)->sortOrder(), 2);
        QCOMPARE(f.taskTemplate(2)->sortOrder(), 2);
    }

    void shouldTellWhereARecordWasAdded()
    {
        // given an order with a gap
        Fixture f;
        f.store.insert<TaskTemplate>(u"last"_s, 10);
        QSignalSpy added(&f.templates, &SectionViewModel::added);

        // when
        f.addTemplate(u"first"_s);

        // then
        QCOMPARE(added, (QList<QVariantList>{{0}}));
    }

    void shouldEmptyTheFormEachTimeItIsOpened()
    {
        // given
        Fixture f;
        QSignalSpy started(&f.templates, &SectionViewModel::addingStarted);
        f.templates.startAdding();
        f.templates.setNewTemplateName(u"Halv"_s);

        // when
        f.templates.startAdding();

        // then
        QVERIFY(f.templates.isAdding());
        QCOMPARE(f.templates.newTemplateName(), QString());
        QCOMPARE(started.count(), 2);

        // when
        f.templates.setNewTemplateName(u"Halv"_s);
        f.templates.cancelAdding();

        // then
        QVERIFY(!f.templates.isAdding());
        QCOMPARE(f.templates.newTemplateName(), QString());

        // given a form of two fields
        f.codes.startAdding();
        f.codes.setNewCode(u"1"_s);
        f.codes.setNewName(u"2"_s);

        // when
        f.codes.startAdding();

        // then
        QCOMPARE(f.codes.newCode() + f.codes.newName(), QString());

        // when
        f.codes.setNewCode(u"1"_s);
        f.codes.setNewName(u"2"_s);
        f.codes.cancelAdding();

        // then
        QVERIFY(!f.codes.isAdding());
        QCOMPARE(f.codes.newCode() + f.codes.newName(), QString());
    }

    void shouldAddATrimmedCodeWithItsNameAtTheEnd()
    {
        // given
        Fixture f;
        f.addCode(u"4711"_s);

        // when
        f.addCode(u"\t4712 "_s, u" Support "_s);

        // then
        QCOMPARE(codes(f.codes), (QStringList{u"4711"_s, u"4712 – Support"_s}));
        QCOMPARE(f.code(1)->sortOrder(), 1);
        QVERIFY(!f.codes.isAdding());
        QCOMPARE(f.codes.newCode() + f.codes.newName(), QString());
    }

    void shouldNotAddACodeOfBlanks()
    {
        // given
        Fixture f;
        f.codes.startAdding();
        f.codes.setNewCode(u"  "_s);
        f.codes.setNewName(u"Support"_s);

        // then
        QVERIFY(!f.codes.canAdd());

        // when
        f.codes.addProjectCode();

        // then
        QVERIFY(f.codes.isAdding());
        QCOMPARE(f.codes.newCode(), u"  "_s);
        QCOMPARE(f.codes.newName(), u"Support"_s);
        QVERIFY(codes(f.codes).isEmpty());
    }

    void shouldStoreANameOfBlanksAsNone()
    {
        // given
        Fixture f;

        // when
        f.addCode(u"4711"_s, u"  "_s + NoBreakSpace);

        // then
        QCOMPARE(f.code(0)->name(), QString());
        QCOMPARE(f.code(0)->displayName(), u"4711"_s);
    }

    void shouldKeepTheCaseOfACode()
    {
        // given
        Fixture f;

        // when
        f.addCode(u"abc"_s);

        // then
        QCOMPARE(f.code(0)->code(), u"abc"_s);
    }

    void shouldAddACodeThatThereIsAlready()
    {
        // given
        Fixture f;
        f.addCode(u"4711"_s);

        // when
        f.addCode(u"4711"_s);

        // then
        QCOMPARE(codes(f.codes), (QStringList{u"4711"_s, u"4711"_s}));
        QVERIFY(f.code(0)->id() != f.code(1)->id());
    }

    void shouldLeaveTasksAloneWhenTheirCodeIsDeleted()
    {
        // given
        Fixture f;
        f.addCode(u"4711"_s);
        const Task *const task =
            f.store.insert<Task>(u"Møde"_s, f.clock.now(), std::optional<QString>(u"4711"_s));

        // when
        f.codes.deleteProjectCode(f.code(0));

        // then
        QVERIFY(codes(f.codes).isEmpty());
        QCOMPARE(task->projectCode(), std::optional<QString>(u"4711"_s));
    }

    void shouldFollowRecordsAddedAndDeletedElsewhere()
    {
        // given
        Fixture f;
        ProjectCodeListViewModel other(f.store.context());

        // when
        f.addCode(u"4711"_s);

        // then
        QCOMPARE(codes(other), QStringList{u"4711"_s});

        // when
        other.deleteProjectCode(f.code(0));

        // then
        QVERIFY(codes(f.codes).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSectionViewModels)
#include "tst_sectionviewmodels.moc"
