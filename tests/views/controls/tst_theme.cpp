#include "resources/brandcolors.h"
#include "tests/support/qmltest.h"
#include "views/controls/theme.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QPalette paletteOf(const char *text, const char *window, const char *base)
{
    QPalette palette;
    palette.setColor(QPalette::WindowText, QColor(QLatin1StringView(text)));
    palette.setColor(QPalette::Text, QColor(QLatin1StringView(text)));
    palette.setColor(QPalette::Window, QColor(QLatin1StringView(window)));
    palette.setColor(QPalette::Base, QColor(QLatin1StringView(base)));
    return palette;
}

const QPalette Light = paletteOf("#000000", "#efefef", "#ffffff");
const QPalette Dark = paletteOf("#ffffff", "#2d2d2d", "#1e1e1e");

/// Greys of the desktops in use.
void addDesktops()
{
    QTest::addColumn<QPalette>("palette");
    QTest::addColumn<bool>("isDark");
    QTest::newRow("plain light") << Light << false;
    QTest::newRow("white") << paletteOf("#2e3436", "#fafafa", "#ffffff") << false;
    QTest::newRow("bluish light") << paletteOf("#232629", "#eff0f1", "#fcfcfc") << false;
    QTest::newRow("beige") << paletteOf("#1a1a1a", "#d6d2d0", "#ffffff") << false;
    QTest::newRow("medium grey") << paletteOf("#000000", "#a0a0a0", "#c0c0c0") << false;
    QTest::newRow("plain dark") << Dark << true;
    QTest::newRow("lighter dark") << paletteOf("#eeeeec", "#353535", "#2d2d2d") << true;
    QTest::newRow("flat dark") << paletteOf("#ffffff", "#323232", "#323232") << true;
    QTest::newRow("bluish dark") << paletteOf("#fcfcfc", "#2a2e32", "#1b1e20") << true;
    QTest::newRow("black") << paletteOf("#ffffff", "#000000", "#000000") << true;
}

QColor tinted(const QColor &color, const QColor &under, double opacity)
{
    return QColor::fromRgbF(
        static_cast<float>(color.redF() * opacity + under.redF() * (1 - opacity)),
        static_cast<float>(color.greenF() * opacity + under.greenF() * (1 - opacity)),
        static_cast<float>(color.blueF() * opacity + under.blueF() * (1 - opacity)));
}

} // namespace

class TestTheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QGuiApplication::setPalette(Light); }

    void shouldMeasureContrast()
    {
        // then
        QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
        QCOMPARE(contrastRatio(Qt::red, Qt::red), 1.0);
        QVERIFY(qAbs(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) - 4.478) < 0.001);
        QVERIFY(qAbs(contrastRatio(Qt::blue, Qt::white) - 8.592) < 0.001);
    }

    void shouldBrandReadably_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QColor>("other");
        QTest::addColumn<double>("ratio");
        const auto add = [](const char *name, const BrandColor &color) {
            const auto row = [name](const char *what, QRgb rgb, const QColor &other, double ratio) {
                QTest::addRow("%s, %s", name, what) << QColor(rgb) << other << ratio;
            };
            row("light under white text", color.light, Qt::white, 4.5);
            row("light as text on grey", color.light, QColor(0xef, 0xef, 0xef), 4.5);
            row("light as text on beige", color.light, QColor(0xd6, 0xd2, 0xd0), 4.5);
            row("light on itself at 15 %", color.light,
                tinted(QColor(color.light), QColor(0xef, 0xef, 0xef), 0.15), 4.5);
            row("dark under white text", color.dark, Qt::white, 3);
            row("dark as text on #1e1e1e", color.dark, QColor(0x1e, 0x1e, 0x1e), 4.5);
            row("dark as text on #2d2d2d", color.dark, QColor(0x2d, 0x2d, 0x2d), 4.5);
            row("dark on itself at 15 %", color.dark,
                tinted(QColor(color.dark), QColor(0x2d, 0x2d, 0x2d), 0.15), 3);
        };
        add("BrandAccent", BrandAccent);
        add("BrandBackground", BrandBackground);
    }

    void shouldBrandReadably()
    {
        QFETCH(QColor, color);
        QFETCH(QColor, other);
        QFETCH(double, ratio);
        const double measured = contrastRatio(color, other);
        QVERIFY2(measured >= ratio, qPrintable(QString::number(measured)));
    }

    void shouldKnowTheAppearance_data() { addDesktops(); }

    void shouldKnowTheAppearance()
    {
        QFETCH(QPalette, palette);
        QFETCH(bool, isDark);

        // given
        QGuiApplication::setPalette(palette);

        // when
        const Theme theme;

        // then
        QCOMPARE(theme.isDark(), isDark);
        QCOMPARE(theme.brandAccent(), QColor(isDark ? BrandAccent.dark : BrandAccent.light));
        QCOMPARE(theme.brandBackground(),
                 QColor(isDark ? BrandBackground.dark : BrandBackground.light));
        QCOMPARE(theme.primary(), palette.color(QPalette::WindowText));
    }

    void shouldKeepEverythingReadable_data() { addDesktops(); }

    void shouldKeepEverythingReadable()
    {
        QFETCH(QPalette, palette);

        // given
        QGuiApplication::setPalette(palette);

        // when
        const Theme theme;

        // then
        for (const QColor &background :
             {theme.windowBackground(), theme.controlBackground(), theme.textBackground()}) {
            QVERIFY(contrastRatio(theme.primary(), background) >= 4.5);
            QVERIFY(contrastRatio(theme.secondary(), background) >= 4.5);
            QVERIFY(contrastRatio(theme.tertiary(), background) >= 3);
        }
        for (const QColor &background : {theme.windowBackground(), theme.controlBackground()}) {
            QVERIFY(contrastRatio(theme.brandAccent(), background) >= 4.5);
            QVERIFY(contrastRatio(theme.red(), background) >= 3);
            QVERIFY(contrastRatio(theme.green(), background) >= 3);
            QVERIFY(contrastRatio(theme.primary(), background) >
                    contrastRatio(theme.secondary(), background));
            QVERIFY(contrastRatio(theme.secondary(), background) >
                    contrastRatio(theme.tertiary(), background));
        }
    }

    void shouldLeaveAReadableBackgroundAsItIs()
    {
        // then
        QCOMPARE(Theme().windowBackground(), QColor(0xef, 0xef, 0xef));

        // when
        QGuiApplication::setPalette(Dark);

        // then
        QCOMPARE(Theme().windowBackground(), QColor(0x2d, 0x2d, 0x2d));
    }

    void shouldDimBy65And50Percent()
    {
        // given black on #efefef
        const Theme theme;

        // then
        QCOMPARE(theme.secondary(), QColor(84, 84, 84));
        QCOMPARE(theme.tertiary().red(), 120);
    }

    void shouldTellWindowAndControlsApart()
    {
        // given each palette
        for (const QPalette &palette : {Light, Dark}) {
            QGuiApplication::setPalette(palette);

            // when
            const Theme theme;

            // then
            QVERIFY(theme.windowBackground() != theme.controlBackground());
        }
    }

    void shouldTellTextFieldsFromTheirGround_data() { addDesktops(); }

    void shouldTellTextFieldsFromTheirGround()
    {
        QFETCH(QPalette, palette);

        // given
        QGuiApplication::setPalette(palette);

        // when
        const Theme theme;

        // then
        const double ratio = contrastRatio(theme.textBackground(), theme.controlBackground());
        QVERIFY2(ratio >= 1.25, qPrintable(QString::number(ratio)));
    }

    void shouldLeaveTextFieldsAsThePaletteHasThemWhereTheyAreToldApart()
    {
        // given
        QGuiApplication::setPalette(paletteOf("#ffffff", "#404040", "#101010"));

        // then
        QCOMPARE(Theme().textBackground(), QColor(0x10, 0x10, 0x10));
    }

    void shouldFollowThePaletteWhileRunning()
    {
        // given
        Theme theme;
        QSignalSpy changed(&theme, &Theme::changed);

        // when
        QGuiApplication::setPalette(Dark);

        // then
        QTRY_COMPARE(changed.size(), 1);
        QVERIFY(theme.isDark());
        QCOMPARE(theme.primary(), QColor(Qt::white));
        QCOMPARE(theme.brandAccent(), QColor(BrandAccent.dark));
    }

    void shouldRedrawWhatUsesItWhenThePaletteChanges()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Rectangle { color: Theme.brandAccent; Divider { y: 50; width: 100 } })");
        QCOMPARE(window.colorAt({10, 10}), QColor(BrandAccent.light));
        const QColor lightDivider = window.colorAt({10, 50});

        // when
        QGuiApplication::setPalette(Dark);

        // then
        QTRY_COMPARE(window.colorAt({10, 10}), QColor(BrandAccent.dark));
        QVERIFY(window.colorAt({10, 50}) != lightDivider);
    }

    void shouldDrawADividerOnePixelHigh()
    {
        // given
        qmltest::WarningsAreFailures guard;
        qmltest::Window window(R"(
            import QtQuick
            import TimeTracker.Views.Controls
            Rectangle { color: "white"; Divider { y: 50; width: 100 } })");

        // then
        QCOMPARE(window.colorAt({10, 50}), Theme().separator());
        QCOMPARE(window.colorAt({99, 50}), Theme().separator());
        QCOMPARE(window.colorAt({10, 49}), QColor(Qt::white));
        QCOMPARE(window.colorAt({10, 51}), QColor(Qt::white));
        QCOMPARE(window.colorAt({100, 50}), QColor(Qt::white));
    }

    void shouldGiveThePlatformsFixedFont()
    {
        QCOMPARE(Theme().monospacedFamily(),
                 QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
        QVERIFY(!Theme().monospacedFamily().isEmpty());
    }
};

QTEST_MAIN(TestTheme)
#include "tst_theme.moc"
