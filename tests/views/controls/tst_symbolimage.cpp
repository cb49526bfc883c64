#include "views/controls/symbolimage.h"

#include "tests/support/qmltest.h"

#include <QAccessible>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto Names = {"play.fill",
                        "pause.fill",
                        "play.circle",
                        "pause.circle.fill",
                        "chevron.left",
                        "chevron.right",
                        "clock",
                        "timer",
                        "plus",
                        "tag",
                        "tag.fill",
                        "doc.text",
                        "checkmark",
                        "xmark",
                        "xmark.circle.fill",
                        "minus.circle.fill",
                        "pencil.circle.fill",
                        "power"};

void addNames()
{
    QTest::addColumn<QString>("name");
    for (const char *name : Names)
        QTest::newRow(name) << QString::fromLatin1(name);
}

QString path(const QString &name)
{
    return u":/timetracker/symbols/"_s + name + u".svg"_s;
}

QByteArray qml(const char *properties)
{
    return QByteArray(R"(
        import QtQuick
        import TimeTracker.Views.Controls
        Rectangle {
            color: "white"
            SymbolImage { objectName: "symbol"; x: 20; y: 20; )") +
           properties + "} }";
}

/// The symbol drawn over white without the help of the item.
QImage drawn(const QString &name, int side, const QColor &color)
{
    QImage shape(side, side, QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        QSvgRenderer(path(name)).render(&painter, QRectF(0, 0, side, side));
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shape.rect(), color);
    }
    QImage result(side, side, QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, shape);
    return result;
}

int largestDifference(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, qAbs(qRed(p) - qRed(q)), qAbs(qGreen(p) - qGreen(q)),
                                qAbs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

} // namespace

class TestSymbolImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldDrawEachSymbolSharplyInItsColour_data() { addNames(); }

    void shouldDrawEachSymbolSharplyInItsColour()
    {
        QFETCH(QString, name);

        // given a box of 24 at (20, 20), which lies on whole pixels at each scale
        qmltest::WarningsAreFailures guard;
        const QColor color(200, 30, 60);
        qmltest::Window window(qml("name: \"" + name.toUtf8() +
                                   "\"; fontSize: 18.5; "
                                   "color: \"#c81e3c\""));

        // when
        const QImage picture = window.picture().convertToFormat(QImage::Format_RGB32);

        // then it is what a drawing at the screen's own resolution is, pixel by pixel
        const qreal scale = picture.devicePixelRatio();
        const int corner = qRound(20 * scale);
        const int side = qRound(24 * scale);
        QImage shown = picture.copy(corner, corner, side, side);
        shown.setDevicePixelRatio(1);
        const QImage expected = drawn(name, side, color);
        QVERIFY(largestDifference(expected, drawn(name, side, Qt::white)) > 150);
        QVERIFY2(largestDifference(shown, expected) <= 2,
                 qPrintable(QString::number(largestDifference(shown, expected))));
    }

    void shouldBeCentredInItsBox_data() { addNames(); }

    void shouldBeCentredInItsBox()
    {
        QFETCH(QString, name);

        // given
        const int side = 240;
        QImage image = drawn(name, side, Qt::black);

        // when
        QRect extent;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                if (qGray(image.pixel(x, y)) < 128)
                    extent |= QRect(x, y, 1, 1);
            }
        }

        // then nothing touches the edge, and the middle is off by 6 % at most
        QVERIFY(QRect(4, 4, side - 8, side - 8).contains(extent));
        const QPoint offset = extent.center() - QPoint(side / 2, side / 2);
        QVERIFY2(offset.manhattanLength() <= 15,
                 qPrintable(u"%1 %2"_s.arg(offset.x()).arg(offset.y())));
    }

    void shouldCutTheGlyphOutOfItsCircle_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QPoint>("inGlyph");
        QTest::newRow("minus") << u"minus.circle.fill"_s << QPoint(120, 120);
        QTest::newRow("xmark") << u"xmark.circle.fill"_s << QPoint(120, 120);
        QTest::newRow("pencil") << u"pencil.circle.fill"_s << QPoint(120, 120);
        QTest::newRow("pause") << u"pause.circle.fill"_s << QPoint(94, 120);
    }

    void shouldCutTheGlyphOutOfItsCircle()
    {
        QFETCH(QString, name);
        QFETCH(QPoint, inGlyph);

        // given
        const QImage image = drawn(name, 240, Qt::black);

        // then
        QCOMPARE(image.pixelColor(inGlyph), QColor(Qt::white));
        QCOMPARE(image.pixelColor(120, 30), QColor(Qt::black));
    }

    void shouldConsistOfFilledPathsForThemedIcons_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("timer") << u"timer"_s;
        QTest::newRow("power") << u"power"_s;
    }

    void shouldConsistOfFilledPathsForThemedIcons()
    {
        QFETCH(QString, name);

        // given
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);

        // then
        int paths = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            QVERIFY(xml.name() == "svg"_L1 || xml.name() == "path"_L1);
            QVERIFY(!xml.attributes().hasAttribute("stroke"_L1));
            paths += xml.name() == "path"_L1;
        }
        QVERIFY(!xml.hasError());
        QVERIFY(paths > 0);
    }

    void shouldTakeItsSizeFromTheFontSize_data()
    {
        QTest::addColumn<qreal>("fontSize");
        QTest::addColumn<qreal>("side");
        QTest::newRow("9") << 9.0 << 12.0;
        QTest::newRow("10") << 10.0 << 14.0;
        QTest::newRow("12") << 12.0 << 16.0;
        QTest::newRow("14") << 14.0 << 18.0;
        QTest::newRow("16") << 16.0 << 20.0;
        QTest::newRow("20") << 20.0 << 26.0;
        QTest::newRow("40") << 40.0 << 50.0;
    }

    void shouldTakeItsSizeFromTheFontSize()
    {
        QFETCH(qreal, fontSize);

        // given
        SymbolImage symbol;

        // when
        symbol.setProperty("fontSize", fontSize);

        // then
        QTEST(symbol.implicitWidth(), "side");
        QTEST(symbol.implicitHeight(), "side");
    }

    void shouldCentreItsBoxInALargerItem()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(
            qml("name: \"plus\"; fontSize: 18.5; color: \"black\"; width: 48; height: 32"));

        // when
        const QImage picture = window.picture().convertToFormat(QImage::Format_RGB32);

        // then
        const qreal scale = picture.devicePixelRatio();
        const int side = qRound(24 * scale);
        QImage shown = picture.copy(qRound(32 * scale), qRound(24 * scale), side, side);
        shown.setDevicePixelRatio(1);
        QVERIFY(largestDifference(shown, drawn(u"plus"_s, side, Qt::black)) <= 2);
    }

    void shouldRedrawWhenItsColourOrNameChanges()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("name: \"minus.circle.fill\"; fontSize: 18.5; color: \"red\""));
        QQuickItem *symbol = window.item(u"symbol"_s);
        QCOMPARE(window.colorAt({32, 25}), QColor(Qt::red));

        // when
        symbol->setProperty("color", QColor(Qt::blue));

        // then
        QTRY_COMPARE(window.colorAt({32, 25}), QColor(Qt::blue));
        QCOMPARE(window.colorAt({32, 32}), QColor(Qt::white));

        // when
        symbol->setProperty("name", u"plus"_s);

        // then
        QTRY_COMPARE(window.colorAt({32, 32}), QColor(Qt::blue));
    }

    void shouldTakeATranslucentColour()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(
            qml("name: \"minus.circle.fill\"; fontSize: 18.5; color: Qt.rgba(0, 0, 0, 0.5)"));

        // then
        const int red = window.colorAt({32, 25}).red();
        QVERIFY2(red >= 126 && red <= 129, qPrintable(QString::number(red)));
    }

    void shouldWarnOnceAboutAnUnknownName()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Row { SymbolImage { name: "no.such" } SymbolImage { name: "no.such" } })");

        // when
        const QImage picture = window.picture();

        // then
        QCOMPARE(guard.expected(), QStringList{u"SymbolImage: no symbol \"no.such\""_s});
        QImage empty = picture;
        empty.fill(Qt::white);
        QCOMPARE(picture, empty);
    }

    void shouldDrawNothingWithoutAName()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml(""));

        // then
        QCOMPARE(window.colorAt({28, 28}), QColor(Qt::white));
    }

    void shouldNotBeSeenByAssistiveTechnology()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(qml("name: \"plus\""));

        // when
        QAccessibleInterface *root = QAccessible::queryAccessibleInterface(&window);

        // then
        QVERIFY(root);
        QCOMPARE(root->childCount(), 0);
    }
};

QTEST_MAIN(TestSymbolImage)
#include "tst_symbolimage.moc"
