#include "tests/support/layout.h"
#include "tests/support/qmltest.h"

#include <QColor>
#include <QTest>

using namespace Qt::StringLiterals;

/// The table that tests of views compare a scene with.
class TestLayout : public QObject
{
    Q_OBJECT

private:
    qmltest::Window window{QByteArray(R"(
        import QtQuick
        Item {
            Item {
                objectName: "row"; y: 30; width: 100; height: 20
                Text { objectName: "name"; x: 8; width: 51; text: "nederst"; font.pixelSize: 14 }
            }
            Rectangle { objectName: "row"; width: 100; height: 20; color: "red" }
        })")};

    QStringList deviation(const QString &measure, const QVariant &expected)
    {
        return layout::deviations(window.contentItem(), {{measure, expected}});
    }

private Q_SLOTS:
    void shouldFindNothingWhereTheTableHolds()
    {
        QCOMPARE(layout::deviations(window.contentItem(), {{u"row[0].top"_s, 0},
                                                           {u"row[0].color"_s, QColor(Qt::red)},
                                                           {u"row[1].bottom"_s, 50},
                                                           {u"row[1].top - row[0].bottom"_s, 10},
                                                           {u"row[1]/name.left"_s, 8},
                                                           {u"name.text"_s, u"nederst"_s},
                                                           {u"name.font.pixelSize"_s, 14},
                                                           {u"name.centreX"_s, 33}}),
                 QStringList());
    }

    void shouldTellWhatIsThereInstead()
    {
        QCOMPARE(deviation(u"row[1].top"_s, 31), QStringList{u"row[1].top is 30, not 31"_s});
        QCOMPARE(deviation(u"row[1].top - row[0].bottom"_s, 9),
                 QStringList{u"row[1].top - row[0].bottom is 10, not 9"_s});
        QCOMPARE(deviation(u"name.text"_s, u"øverst"_s),
                 QStringList{u"name.text is nederst, not øverst"_s});
        QCOMPARE(deviation(u"row[0].color"_s, QColor(Qt::blue)),
                 QStringList{u"row[0].color is #ff0000, not #0000ff"_s});
        QCOMPARE(deviation(u"name.centreX"_s, 35).size(), 1);
    }

    void shouldTellWhatIsNotThere()
    {
        QCOMPARE(deviation(u"column.top"_s, 0), QStringList{u"column.top is not there, not 0"_s});
        QCOMPARE(deviation(u"row[2].top"_s, 0).size(), 1);
        QCOMPARE(deviation(u"row[0]/name.top"_s, 0).size(), 1);
        QCOMPARE(deviation(u"row[0].text"_s, u""_s).size(), 1);
        QCOMPARE(deviation(u"row[0].top - column.top"_s, 0).size(), 1);
    }
};

QTEST_MAIN(TestLayout)
#include "tst_layout.moc"
