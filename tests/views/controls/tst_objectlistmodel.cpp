#include "views/controls/objectlistmodel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

/// Replays what the model announces onto a list of its own, which is right only if the signals
/// describe the change.
class Mirror : public QObject
{
public:
    explicit Mirror(ObjectListModel *model)
        : m_model(model)
    {
        connect(model, &ObjectListModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) {
                    ++inserts;
                    for (int row = first; row <= last; ++row)
                        objects.insert(row, m_model->objects().at(row));
                });
        connect(model, &ObjectListModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    ++removes;
                    objects.remove(first, last - first + 1);
                });
        connect(model, &ObjectListModel::modelReset, this, [this] { ++resets; });
    }

    QList<QObject *> objects;
    int inserts = 0;
    int removes = 0;
    int resets = 0;

private:
    ObjectListModel *m_model;
};

/// A model with `n` objects at hand, watched by the mirror and by Qt's tester.
struct Fixture {
    explicit Fixture(int n = 0)
    {
        for (int i = 0; i < n; ++i)
            all.append(new QObject(&owner));
    }
    /// The objects whose letters stand in `letters`; "a" is the first.
    QList<QObject *> of(const QString &letters) const
    {
        QList<QObject *> result;
        for (const QChar letter : letters)
            result.append(all.at(letter.unicode() - u'a'));
        return result;
    }
    void start(const QString &letters)
    {
        model.setObjects(of(letters));
        mirror.inserts = mirror.removes = 0;
    }

    QObject owner;
    QList<QObject *> all;
    ObjectListModel model;
    Mirror mirror{&model};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
};

} // namespace

class TestObjectListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldApplyTheDifference_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("removes");
        QTest::addColumn<int>("inserts");
        const auto row = [](const char *name, const char *before, const char *after, int removes,
                            int inserts) {
            QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after)
                                << removes << inserts;
        };
        row("nothing", "abc", "abc", 0, 0);
        row("empty to many", "", "abcdef", 0, 1);
        row("many to empty", "abcdef", "", 1, 0);
        row("append", "abc", "abcd", 0, 1);
        row("prepend", "abc", "dabc", 0, 1);
        row("inserts in runs", "abc", "deafgbc", 0, 2);
        row("removes in runs", "abcdefg", "adg", 2, 0);
        row("all others", "abc", "def", 1, 1);
        row("one earlier", "abcde", "eabcd", 1, 1);
        row("one later", "abcde", "bcdea", 1, 1);
        row("reversed", "abcd", "dcba", 1, 1);
        row("mixed", "abcdef", "fgachd", 2, 2);
    }

    void shouldApplyTheDifference()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);

        // given
        Fixture f(26);
        f.start(before);

        // when
        f.model.setObjects(f.of(after));

        // then
        QCOMPARE(f.model.objects(), f.of(after));
        QCOMPARE(f.mirror.objects, f.of(after));
        QCOMPARE(f.mirror.resets, 0);
        QTEST(f.mirror.removes, "removes");
        QTEST(f.mirror.inserts, "inserts");
    }

    void shouldDescribeAnyChange()
    {
        // given
        Fixture f(12);
        std::mt19937 random(20250303);

        for (int round = 0; round < 500; ++round) {
            QList<QObject *> target = f.all;
            std::shuffle(target.begin(), target.end(), random);
            target.resize(std::uniform_int_distribution<>(0, 12)(random));

            // when
            f.model.setObjects(target);

            // then
            QCOMPARE(f.model.objects(), target);
            QCOMPARE(f.mirror.objects, target);
        }
        QCOMPARE(f.mirror.resets, 0);
    }

    void shouldLeaveOutADestroyedObject()
    {
        // given
        Fixture f(3);
        f.start(u"abc"_s);
        QSignalSpy countChanged(&f.model, &ObjectListModel::countChanged);
        const QList<QObject *> rest = f.of(u"ac"_s);

        // when
        delete f.all.at(1);

        // then
        QCOMPARE(f.model.objects(), rest);
        QCOMPARE(f.mirror.objects, rest);
        QCOMPARE(f.mirror.removes, 1);
        QCOMPARE(countChanged.size(), 1);
    }

    void shouldForgetAnObjectThatItNoLongerHolds()
    {
        // given
        Fixture f(3);
        f.start(u"abc"_s);
        f.model.setObjects(f.of(u"ac"_s));
        QSignalSpy countChanged(&f.model, &ObjectListModel::countChanged);

        // when
        delete f.all.at(1);

        // then
        QCOMPARE(f.model.count(), 2);
        QCOMPARE(f.mirror.removes, 1);
        QCOMPARE(countChanged.size(), 0);
    }

    void shouldOutliveTheObjectsAndTheObjectsIt()
    {
        // given
        auto model = std::make_unique<ObjectListModel>();
        auto first = std::make_unique<QObject>();
        QObject second;
        model->setObjects({first.get(), &second});

        // when
        first.reset();

        // then
        QCOMPARE(model->objects(), QList<QObject *>{&second});

        // when it goes before an object that it holds
        model.reset();
    }

    void shouldNotifyItsCountOnlyWhenItChanges()
    {
        // given
        Fixture f(5);
        f.start(u"abc"_s);
        QSignalSpy countChanged(&f.model, &ObjectListModel::countChanged);

        // when
        f.model.setObjects(f.of(u"cab"_s));

        // then
        QCOMPARE(countChanged.size(), 0);

        // when
        f.model.setObjects(f.of(u"cde"_s));

        // then
        QCOMPARE(countChanged.size(), 0);

        // when
        f.model.setObjects(f.of(u"cd"_s));

        // then
        QCOMPARE(countChanged.size(), 1);
        QCOMPARE(f.model.property("count").toInt(), 2);
    }

    void shouldGiveItsObjectsUnderOneRole()
    {
        // given
        Fixture f(2);
        f.start(u"ba"_s);

        // then
        QCOMPARE(f.model.roleNames().values(), QList<QByteArray>{"object"});
        const int role = f.model.roleNames().key("object");
        QCOMPARE(f.model.index(0).data(role).value<QObject *>(), f.all.at(1));
        QCOMPARE(f.model.index(0).data(Qt::DisplayRole), QVariant());
        QCOMPARE(f.model.data(QModelIndex(), role), QVariant());
    }
};

QTEST_GUILESS_MAIN(TestObjectListModel)
#include "tst_objectlistmodel.moc"
