#include "views/row/namefit.h"

#include <QTest>
#include <QTextLayout>

#include <cmath>

using namespace Qt::StringLiterals;

class TestNameFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldMeasureTheWidestPartThatWrappingLeavesWhole_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("widest");
        QTest::newRow("nothing") << u""_s << u""_s;
        QTest::newRow("blanks alone") << u"   "_s << u""_s;
        QTest::newRow("one word") << u"Møde"_s << u"Møde"_s;
        QTest::newRow("the first") << u"Kundemøde med Åse"_s << u"Kundemøde"_s;
        QTest::newRow("one between") << u"et kundemøde til"_s << u"kundemøde"_s;
        QTest::newRow("the last") << u"til et kundemøde"_s << u"kundemøde"_s;
        QTest::newRow("blanks around it") << u"  kundemøde  "_s << u"kundemøde"_s;
        QTest::newRow("a hyphen") << u"projekt-opfølgning"_s << u"opfølgning"_s;
        QTest::newRow("a blank that keeps together")
            << u"10\u00a0timer i dag"_s << u"10\u00a0timer"_s;
        QTest::newRow("a last letter that reaches far")
            << u"et Unavngivet af dem"_s << u"Unavngivet"_s;
        QTest::newRow("lines") << u"til\nkundemøde\nnu"_s << u"kundemøde"_s;
    }
    void shouldMeasureTheWidestPartThatWrappingLeavesWhole()
    {
        QFETCH(QString, text);
        QFETCH(QString, widest);

        // given
        QFont font;
        font.setPixelSize(14);
        QTextLayout layout(widest, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();

        // then
        QCOMPARE(NameFit::widestWord(text, font), std::ceil(layout.maximumWidth()));
    }
};

QTEST_MAIN(TestNameFit)
#include "tst_namefit.moc"
