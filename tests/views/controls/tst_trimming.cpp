#include "views/controls/trimming.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestTrimming : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldTrimWhatCountsAsABlank_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("ofBlanks");
        QTest::addColumn<QString>("ofBlanksAndLineBreaks");
        const auto row = [](const char *name, const QString &text, const QString &ofBlanks,
                            const QString &ofBlanksAndLineBreaks) {
            QTest::newRow(name) << text << ofBlanks << ofBlanksAndLineBreaks;
        };
        row("empty", {}, {}, {});
        row("nothing to trim", u"a b"_s, u"a b"_s, u"a b"_s);
        row("spaces", u"  a b "_s, u"a b"_s, u"a b"_s);
        row("tabs", u"\ta\tb\t"_s, u"a\tb"_s, u"a\tb"_s);
        row("only blanks", u" \t "_s, {}, {});
        row("line breaks", u"\na\r\n"_s, u"\na\r\n"_s, u"a"_s);
        row("blanks around line breaks", u" \n a \n "_s, u"\n a \n"_s, u"a"_s);
        row("line separator", u"\u2028a\u2029"_s, u"\u2028a\u2029"_s, u"a"_s);
        row("only line breaks", u"\n\n"_s, u"\n\n"_s, {});
        row("right-to-left text", u" שלום "_s, u"שלום"_s, u"שלום"_s);
        row("emoji", u" 👩‍💻 "_s, u"👩‍💻"_s, u"👩‍💻"_s);
        row("zero-width space is no blank", u"\u200ba"_s, u"\u200ba"_s, u"\u200ba"_s);
    }
    void shouldTrimWhatCountsAsABlank()
    {
        QFETCH(QString, text);
        QFETCH(QString, ofBlanks);
        QFETCH(QString, ofBlanksAndLineBreaks);
        QCOMPARE(trimmedOfBlanks(text), ofBlanks);
        QCOMPARE(trimmedOfBlanksAndLineBreaks(text), ofBlanksAndLineBreaks);
    }

    void shouldTrimEverySpaceSeparator()
    {
        // given
        const QString spaces =
            u" \u00a0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200a\u202f\u205f\u3000"_s;

        // then
        for (const QChar space : spaces) {
            QCOMPARE(trimmedOfBlanks(space + u"a"_s + space), u"a"_s);
            QCOMPARE(trimmedOfBlanksAndLineBreaks(space + u"a"_s + space), u"a"_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestTrimming)
#include "tst_trimming.moc"
