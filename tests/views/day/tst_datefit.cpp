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
        QCOMPARE(fitDate(m_date, font(16), whole + 64), (DateFit{16, whole, 16}));
        QCOMPARE(fitDate(m_date, font(16), whole + 500), (DateFit{16, whole, 16}));
    }

    void shouldCloseTheGapsFirst()
    {
        const qreal whole = width(m_date, 16);
        QCOMPARE(fitDate(m_date, font(16), whole + 40), (DateFit{10, whole, 16}));
        QCOMPARE(fitDate(m_date, font(16), whole + 16), (DateFit{4, whole, 16}));
    }

    void shouldWrapThen()
    {
        const qreal whole = width(m_date, 16);
        QCOMPARE(fitDate(m_date, font(16), whole + 15), (DateFit{4, whole - 1, 16}));
        const qreal word = width(u"september"_s, 16);
        QCOMPARE(fitDate(m_date, font(16), word + 16), (DateFit{4, word, 16}));
    }

    void shouldShrinkTheFontAtLast()
    {
        const qreal word = width(u"september"_s, 12);
        const DateFit fit = fitDate(m_date, font(16), word + 16);
        QCOMPARE(fit.pixelSize, 12);
        QCOMPARE(fit.textWidth, word);
    }

    void shouldNotShrinkTheFontBelowNine() { QCOMPARE(fitDate(m_date, font(16), 20).pixelSize, 9); }

    void shouldTryNoSizeWhereThereIsNoRoomYet()
    {
        QCOMPARE(fitDate(m_date, font(16), 0), (DateFit{4, 0, 16}));
    }
};

QTEST_MAIN(TestDateFit)
#include "tst_datefit.moc"
