#include "views/day/datefit.h"

#include <QFontMetricsF>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

class TestDateFit : public QObject
{
    Q_OBJECT

private:
    const QString m_date = u"onsdag 30. september 2026"_s;

    static QFont font(int pixelSize)
    {
        QFont font;
        font.setPixelSize(pixelSize);
        font.setWeight(QFont::Medium);
        return font;
    }
    static qreal width(const QString &text, int pixelSize)
    {
        return std::ceil(QFontMetricsF(font(pixelSize)).horizontalAdvance(text));
    }

private Q_SLOTS:
    void shouldLeaveEverythingAsItIsWhereThereIsRoom()
    {
        const qreal whole = width(m_date, 16);
        QCOMPARE(fitDate(m_date, font(16), whole + 64), (DateFit{m_date, 16, whole, 16}));
        QCOMPARE(fitDate(m_date, font(16), whole + 500), (DateFit{m_date, 16, whole, 16}));
    }

    void shouldCloseTheGapsFirst()
    {
        const qreal whole = width(m_date, 16);
        QCOMPARE(fitDate(m_date, font(16), whole + 40), (DateFit{m_date, 10, whole, 16}));
        QCOMPARE(fitDate(m_date, font(16), whole + 16), (DateFit{m_date, 4, whole, 16}));
    }

    void shouldBreakAfterTheWeekdayThen()
    {
        // given
        const qreal whole = width(m_date, 16);
        const qreal line = width(u"30. september 2026"_s, 16);
        const QString lines = u"onsdag\n30. september 2026"_s;

        // then
        QCOMPARE(fitDate(m_date, font(16), whole + 15), (DateFit{lines, 4, whole - 1, 16}));
        QCOMPARE(fitDate(m_date, font(16), line + 16), (DateFit{lines, 4, line, 16}));
    }

    void shouldShrinkTheFontToTwelveForTwoLines()
    {
        // given
        const qreal line = width(u"30. september 2026"_s, 12);

        // then
        QCOMPARE(fitDate(m_date, font(16), line + 16),
                 (DateFit{u"onsdag\n30. september 2026"_s, 4, line, 12}));
        QCOMPARE(fitDate(m_date, font(16), line + 15), (DateFit{m_date, 4, line - 1, 16}));
    }

    void shouldWrapAtAllBlanksThen()
    {
        const qreal word = width(u"september"_s, 16);
        QCOMPARE(fitDate(m_date, font(16), word + 16), (DateFit{m_date, 4, word, 16}));
    }

    void shouldShrinkTheFontAtLast()
    {
        const qreal word = width(u"september"_s, 12);
        QCOMPARE(fitDate(m_date, font(16), word + 16), (DateFit{m_date, 4, word, 12}));
    }

    void shouldNotShrinkTheFontBelowNine() { QCOMPARE(fitDate(m_date, font(16), 20).pixelSize, 9); }

    void shouldTryNoSizeWhereThereIsNoRoomYet()
    {
        QCOMPARE(fitDate(m_date, font(16), 0), (DateFit{m_date, 4, 0, 16}));
    }
};

QTEST_MAIN(TestDateFit)
#include "tst_datefit.moc"
