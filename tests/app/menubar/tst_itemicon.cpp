#include "app/menubar/itemicon.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

/// The item's icon, as bars of different kinds get it.
class TestItemIcon : public QObject
{
    Q_OBJECT

private:
    static double luminance(const QColor &colour)
    {
        const auto linear = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    }
    static double contrast(const QColor &a, const QColor &b)
    {
        const double one = luminance(a) + 0.05;
        const double other = luminance(b) + 0.05;
        return std::max(one, other) / std::min(one, other);
    }
    /// What of @p pixmap is drawn between two rows of it.
    static QRect drawn(const IconPixmap &pixmap, int top, int bottom)
    {
        QRect rect;
        for (int y = top; y < bottom; ++y) {
            for (int x = 0; x < pixmap.width; ++x) {
                const int alpha = 4 * (y * pixmap.width + x);
                if (pixmap.pixels[alpha] != 0)
                    rect |= QRect(x, y, 1, 1);
            }
        }
        return rect;
    }
    static void install(const QTemporaryDir &data)
    {
        const QString folder = data.filePath(u"icons/hicolor/symbolic/apps"_s);
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + u"/dk.tulo.TimeTracker-symbolic.svg"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

private Q_SLOTS:
    void init()
    {
        m_cache = std::make_unique<QTemporaryDir>();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CACHE_HOME", m_cache->path().toLocal8Bit());
        qputenv("XDG_DATA_DIRS", m_data->path().toLocal8Bit());
    }

    void shouldKnowWhichBarsRecolourIcons_data()
    {
        QTest::addColumn<bool>("isRecoloured");
        for (const char *process :
             {"gnome-shell", "plasmashell", "kded5", "kded6", "xfce4-panel", "panel-2-systray",
              "panel-10-systra", "panel-100-systr", "wrapper-2.0"})
            QTest::newRow(process) << true;
        for (const char *process : {"lxqt-panel", "waybar", "swaybar", "notification-ar",
                                    "ayatana-indicat", "kded", "panel-3-clock", ""})
            QTest::newRow(process) << false;
    }
    void shouldKnowWhichBarsRecolourIcons()
    {
        QFETCH(const bool, isRecoloured);
        QCOMPARE(itemicon::isRecolouredBy(QString::fromLatin1(QTest::currentDataTag())),
                 isRecoloured);
    }

    void shouldBeANameAloneWhereTheBarRecoloursIt()
    {
        // given
        install(*m_data);

        // when
        const ItemIcon icon = itemicon::forBar(u"plasmashell"_s);

        // then
        QCOMPARE(icon.name, u"dk.tulo.TimeTracker-symbolic"_s);
        QVERIFY(icon.pixmaps.isEmpty());
    }

    void shouldBeAPictureWhereTheBarDoesNotRecolourIt()
    {
        // given
        install(*m_data);

        // when
        const ItemIcon icon = itemicon::forBar(u"lxqt-panel"_s);

        // then
        QVERIFY(QFileInfo(icon.name).isAbsolute());
        QVERIFY(icon.name.startsWith(m_cache->path()));
        QCOMPARE(QImage(icon.name).size(), QSize(48, 48));
        QVERIFY(!icon.pixmaps.isEmpty());
    }

    void shouldBeThePicturesPathAloneWhereTheBarTakesIt()
    {
        // when
        const ItemIcon icon = itemicon::forBar(u"xapp-sn-watcher"_s);

        // then
        QCOMPARE(icon.name, itemicon::forBar(u"lxqt-panel"_s).name);
        QVERIFY(icon.pixmaps.isEmpty());

        // when there is none
        qputenv("XDG_CACHE_HOME", "/proc/nowhere");

        // then
        QVERIFY(!itemicon::forBar(u"xapp-sn-watcher"_s).pixmaps.isEmpty());
    }

    void shouldBeAPictureWhereTheSymbolicIconIsNotInstalled()
    {
        QCOMPARE(itemicon::forBar(u"plasmashell"_s), itemicon::forBar(u"lxqt-panel"_s));
    }

    void shouldNameNoPictureWhereNoneCanBeWritten()
    {
        // given
        qputenv("XDG_CACHE_HOME", "/proc/nowhere");

        // when
        const ItemIcon icon = itemicon::forBar(u"lxqt-panel"_s);

        // then
        QCOMPARE(icon.name, u""_s);
        QVERIFY(!icon.pixmaps.isEmpty());
    }

    void shouldGiveItsPicturesInNetworkByteOrder()
    {
        // given
        const QList<IconPixmap> pixmaps = itemicon::forBar(u"lxqt-panel"_s).pixmaps;

        // then
        QList<int> sizes;
        for (const IconPixmap &pixmap : pixmaps) {
            sizes << pixmap.width;
            QCOMPARE(pixmap.height, pixmap.width);
            QCOMPARE(pixmap.pixels.size(), 4 * pixmap.width * pixmap.width);
        }
        QCOMPARE(sizes, QList<int>({16, 22, 24, 32, 48}));
        // The opaque pixels: alpha first, then the colour, of which green is more than red.
        const QByteArray &pixels = pixmaps.last().pixels;
        int opaque = 0;
        for (qsizetype i = 0; i < pixels.size(); i += 4) {
            if (static_cast<uchar>(pixels[i]) == 255) {
                ++opaque;
                QVERIFY(static_cast<uchar>(pixels[i + 1]) < static_cast<uchar>(pixels[i + 2]));
            }
        }
        QVERIFY(opaque > 100);
        QVERIFY(opaque < 48 * 48 / 2);
    }

    void shouldKnowTheBarThatShowsNothingElse()
    {
        QVERIFY(itemicon::isAllOfItem(u"swaybar"_s));
        QVERIFY(!itemicon::isAllOfItem(u"waybar"_s));
        QVERIFY(!itemicon::isAllOfItem(u""_s));
    }

    void shouldShowHoursAboveMinutes_data()
    {
        QTest::addColumn<QString>("hours");
        QTest::newRow("usual") << u"01"_s;
        QTest::newRow("many") << u"34293"_s;
    }

    void shouldShowHoursAboveMinutes()
    {
        // given
        QFETCH(QString, hours);

        // when
        const ItemIcon icon = itemicon::clock(hours, u"59"_s);

        // then
        QCOMPARE(icon.name, u""_s);
        QCOMPARE(icon.pixmaps.size(), 5);
        QVERIFY(icon != itemicon::clock(hours, u"58"_s));
        for (const IconPixmap &pixmap : icon.pixmaps) {
            const QRect above = drawn(pixmap, 0, pixmap.height / 2);
            const QRect below = drawn(pixmap, pixmap.height / 2, pixmap.height);
            // The minutes are as high as their half allows, and many hours as wide as all of it.
            QVERIFY(!above.isEmpty());
            QVERIFY(hours.size() > 2 ? above.width() > pixmap.width * 3 / 4
                                     : below.height() > pixmap.height / 2 * 3 / 4);
        }
    }

    void shouldBeSeenOnLightAndOnDarkBars()
    {
        // given the picture's own colour
        const QImage picture(itemicon::forBar(u"lxqt-panel"_s).name);
        QColor colour;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (qAlpha(picture.pixel(x, y)) == 255)
                    colour = picture.pixelColor(x, y);
            }
        }
        QVERIFY(colour.isValid());

        // then
        for (const QColor &bar : {QColor(Qt::white), QColor(0x2e, 0x34, 0x36), QColor(Qt::black)})
            QVERIFY2(contrast(colour, bar) >= 3, qPrintable(bar.name()));
    }

private:
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<QTemporaryDir> m_data;
};

QTEST_MAIN(TestItemIcon)
#include "tst_itemicon.moc"
