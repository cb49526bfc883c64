#include "app/appearance/appearance.h"
#include "model/projectcode.h"
#include "model/tasktemplate.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"
#include "timer/timermanager.h"
#include "views/controls/symbolimage.h"
#include "views/controls/theme.h"
#include "views/day/contentviewmodel.h"

#include <QGuiApplication>
#include <QHash>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr double ReadableText = 4.5;
constexpr double ReadableHint = 3.0;
/// For what is faint by design, and said elsewhere in words, too.
constexpr double ToldApart = 1.5;

/// The two colours that a part of a picture is made of: the one that fills most of it, and what
/// stands out most from that.
struct Colors {
    QColor ground;
    QColor ink;
    double contrast;
};

Colors colorsIn(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    const auto most = std::max_element(counts.cbegin(), counts.cend());
    Colors colors{QColor(most.key()), QColor(most.key()), 1};
    for (auto color = counts.cbegin(); color != counts.cend(); ++color) {
        if (const double contrast = contrastRatio(colors.ground, QColor(color.key()));
            contrast > colors.contrast) {
            colors.ink = QColor(color.key());
            colors.contrast = contrast;
        }
    }
    return colors;
}

/// Where an item's own text or symbol is drawn, in the window.
QRectF inkRect(const QQuickItem &item)
{
    const QSizeF whole = item.size();
    QSizeF ink = whole;
    if (!qobject_cast<const SymbolImage *>(&item)) {
        ink = whole.boundedTo(
            {item.property("contentWidth").toDouble(), item.property("contentHeight").toDouble()});
    }
    const auto alignment = Qt::Alignment(item.property("effectiveHorizontalAlignment").toInt() |
                                         item.property("verticalAlignment").toInt());
    const auto start = [](double slack, bool isAtEnd, bool isCentred) {
        return isAtEnd ? slack : isCentred ? slack / 2 : 0;
    };
    const QPointF place(start(whole.width() - ink.width(), alignment.testFlag(Qt::AlignRight),
                              alignment.testFlag(Qt::AlignHCenter)),
                        start(whole.height() - ink.height(), alignment.testFlag(Qt::AlignBottom),
                              alignment.testFlag(Qt::AlignVCenter)));
    return item.mapRectToScene({place, ink});
}

double shownOpacity(const QQuickItem *item)
{
    double opacity = 1;
    for (; item; item = item->parentItem())
        opacity *= item->isVisible() ? item->opacity() : 0;
    return opacity;
}

void collect(QQuickItem *item, QList<QQuickItem *> &found)
{
    const bool hasText = !item->property("text").toString().isEmpty() &&
                         (item->inherits("QQuickText") || item->inherits("QQuickTextInput"));
    const auto *symbol = qobject_cast<const SymbolImage *>(item);
    // What is disabled need not be readable.
    if (item->isEnabled() && shownOpacity(item) > 0 && (hasText || symbol))
        found.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        collect(child, found);
}

} // namespace

/// What can be read of the whole window, by the colours of its pixels.
class TestContrast : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        Fixture()
        {
            store.insert<ProjectCode>(u"ACME-1"_s, u"Fornyelse"_s);
            store.insert<TaskTemplate>(u"Standup"_s);
            store.insertTask(u"Tilbud til kunden"_s, 0);
            auto *running = store.insert<Task>(u"Møde"_s, clock.now(), u"ACME-1"_s, 1);
            store.insertTask({}, 2);
            running->start();
            clock.advance(754);
            window = std::make_unique<qmltest::Window>(
                R"(import QtQuick
                import TimeTracker.Views.Controls
                import TimeTracker.Views.Day
                Rectangle {
                    id: root
                    required property ContentViewModel viewModel
                    color: Theme.windowBackground
                    ContentView {
                        anchors.fill: parent
                        viewModel: root.viewModel
                    }
                })",
                QSize(650, 450), QVariantMap{{u"viewModel"_s, QVariant::fromValue(&day)}});
        }

        qmltest::WarningsAreFailures guard;
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        ContentViewModel day{timer, store.context()};
        std::unique_ptr<qmltest::Window> window;
    };

    /// Fails for whatever of the window cannot be read.
    static void readAll(qmltest::Window &window, int atLeast)
    {
        const QImage picture = window.picture();
        const Theme theme;
        QList<QQuickItem *> items;
        collect(window.contentItem(), items);
        QStringList unreadable;
        int read = 0;
        for (const QQuickItem *item : items) {
            const double ratio = picture.devicePixelRatio();
            const QRectF place = inkRect(*item).intersected(QRectF({}, window.size()));
            const QRect pixels(qRound(place.x() * ratio), qRound(place.y() * ratio),
                               qRound(place.width() * ratio), qRound(place.height() * ratio));
            if (pixels.isEmpty())
                continue;
            const Colors colors = colorsIn(picture.copy(pixels));
            const auto color = item->property("color").value<QColor>();
            const bool isSymbol = qobject_cast<const SymbolImage *>(item);
            // A dark window's brand colours have to bear white and to be read on it; neither can
            // reach more.
            const bool isOnItsBrand = theme.isDark() && (colors.ground == theme.brandAccent() ||
                                                         colors.ground == theme.brandBackground() ||
                                                         item->objectName() == "badgeText"_L1);
            const double enough = isSymbol && shownOpacity(item) < 1 ? ToldApart
                                  : isSymbol || isOnItsBrand || color == theme.tertiary()
                                      ? ReadableHint
                                      : ReadableText;
            ++read;
            const QString line = u"%1 %2: %3 on %4, %5"_s
                                     .arg(QString::fromLatin1(item->metaObject()->className()),
                                          item->property(isSymbol ? "name" : "text").toString(),
                                          colors.ink.name(), colors.ground.name())
                                     .arg(colors.contrast);
            if (colors.contrast < enough)
                unreadable << line;
        }
        QVERIFY2(unreadable.isEmpty(), qPrintable(unreadable.join(u'\n')));
        QVERIFY2(read >= atLeast, qPrintable(QString::number(read)));
    }

    static void addAppearances()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::addColumn<bool>("isDark");
        QTest::newRow("light") << QPalette() << false;
        QTest::newRow("dark") << darkPalette() << true;
    }

private Q_SLOTS:
    void initTestCase() { QCOMPARE(qGuiApp->devicePixelRatio(), 3.0); }

    void shouldShowADayReadably_data() { addAppearances(); }

    void shouldShowADayReadably()
    {
        QFETCH(QPalette, palette);
        QFETCH(bool, isDark);

        // given
        QGuiApplication::setPalette(palette);
        const Fixture f;
        QCOMPARE(Theme().isDark(), isDark);

        // when
        f.window->hover({1, 1});

        // then
        readAll(*f.window, 60);
    }

    void shouldShowTheMarksUnderThePointerReadably_data() { addAppearances(); }

    void shouldShowTheMarksUnderThePointerReadably()
    {
        QFETCH(QPalette, palette);

        // given
        QGuiApplication::setPalette(palette);
        const Fixture f;

        // when
        f.window->hover(qmltest::centre(f.window->item(u"nameText"_s)));

        // then
        readAll(*f.window, 60);
    }

    void shouldShowAnEmptyDayReadably_data() { addAppearances(); }

    void shouldShowAnEmptyDayReadably()
    {
        QFETCH(QPalette, palette);

        // given
        QGuiApplication::setPalette(palette);
        Fixture f;

        // when
        f.timer.navigateToDate(f.clock.now() + 7 * 24 * 3600.0);

        // then
        QTRY_VERIFY(qmltest::findItem(f.window->contentItem(), u"emptySymbol"_s));
        readAll(*f.window, 40);
    }

    void shouldTellTheFieldsOfTheSideColumnFromTheirGround_data() { addAppearances(); }

    void shouldTellTheFieldsOfTheSideColumnFromTheirGround()
    {
        QFETCH(QPalette, palette);

        // given
        QGuiApplication::setPalette(palette);
        const Fixture f;

        // when
        for (const QString &section : {u"templates"_s, u"projectCodes"_s}) {
            const QQuickItem *const plus =
                qmltest::findItem(f.window->item(section), u"plusButton"_s);
            QTest::mouseClick(f.window.get(), Qt::LeftButton, {}, qmltest::centre(plus));
        }

        // then
        int fields = 0;
        const QList<QQuickItem *> items = qmltest::findItems(f.window->item(u"sideColumn"_s));
        for (const QQuickItem *item : items) {
            if (!item->inherits("QQuickTextInput"))
                continue;
            ++fields;
            // in its padding, and just below it
            const QRectF place = item->mapRectToScene({QPointF(), item->size()});
            const QColor field = f.window->colorAt({place.right() - 3, place.center().y()});
            const QColor ground = f.window->colorAt({place.center().x(), place.bottom() + 1});
            const double ratio = contrastRatio(field, ground);
            QVERIFY2(ratio >= 1.25,
                     qPrintable(u"%1 on %2: %3"_s.arg(field.name(), ground.name()).arg(ratio)));
        }
        QCOMPARE(fields, 3);
    }
};

int main(int argc, char *argv[])
{
    // Large enough for strokes that are wider than what smooths their edges.
    qputenv("QT_SCALE_FACTOR", "3");
    QGuiApplication application(argc, argv);
    TestContrast test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_contrast.moc"
