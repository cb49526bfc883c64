#include "views/controls/theme.h"

#include "resources/brandcolors.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double ReadableText = 4.5;
constexpr double ReadableHint = 3.0;
constexpr double ToldApart = 1.25;

QColor mix(const QColor &over, const QColor &under, double share)
{
    const auto channel = [share](int a, int b) { return qRound(a * share + b * (1 - share)); };
    return {channel(over.red(), under.red()), channel(over.green(), under.green()),
            channel(over.blue(), under.blue())};
}

/// The mix of `over` and `under` with the smallest share of `over`, from `share` upwards, that
/// `isGood` accepts; `over` itself when none is.
template<typename Predicate>
QColor firstMix(const QColor &over, const QColor &under, int share, Predicate isGood)
{
    for (; share < 100; ++share) {
        const QColor candidate = mix(over, under, share / 100.0);
        if (isGood(candidate))
            return candidate;
    }
    return over;
}

/// The brand colours are fixed and desktops' greys are not: on a medium grey the accent could not
/// be read, so the background gives way.
QColor backgroundFor(const QColor &foreground, const QColor &background, bool isDark)
{
    return firstMix(isDark ? Qt::black : Qt::white, background, 0, [&](const QColor &candidate) {
        return contrastRatio(foreground, candidate) >= ReadableText;
    });
}

} // namespace

bool isDarkPalette(const QPalette &palette)
{
    return relativeLuminance(palette.color(QPalette::Active, QPalette::WindowText)) >
           relativeLuminance(palette.color(QPalette::Active, QPalette::Window));
}

double relativeLuminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrastRatio(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({relativeLuminance(a), relativeLuminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Theme::Theme(QObject *parent)
    : QObject(parent)
{
    derive(QGuiApplication::palette());
    qGuiApp->installEventFilter(this);
}

bool Theme::eventFilter(QObject *watched, QEvent *event)
{
    const bool isRelevant = event->type() == QEvent::ApplicationPaletteChange ||
                            event->type() == QEvent::ApplicationFontChange;
    if (watched == qGuiApp && isRelevant) {
        derive(QGuiApplication::palette());
        Q_EMIT changed();
    }
    return false;
}

void Theme::derive(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText).toRgb();
    const QColor window = palette.color(QPalette::Active, QPalette::Window).toRgb();
    const QColor base = palette.color(QPalette::Active, QPalette::Base).toRgb();

    m_isDark = isDarkPalette(palette);
    m_brandAccent = QColor(BrandAccent.value(m_isDark));
    m_brandBackground = QColor(BrandBackground.value(m_isDark));
    m_red = m_isDark ? QColor(0xff, 0x6b, 0x6b) : QColor(0xb8, 0x1f, 0x28);
    m_green = m_isDark ? QColor(0x4c, 0xc2, 0x6a) : QColor(0x1d, 0x6f, 0x36);

    // Header, footer and side column lie between the window and the palette's text fields. Where
    // these are too much like them, text fields are given some of the text's colour.
    m_primary = text;
    m_windowBackground = backgroundFor(m_brandAccent, window, m_isDark);
    m_controlBackground = backgroundFor(m_brandAccent, mix(base, window, 0.5), m_isDark);
    m_textBackground = firstMix(text, base, 0, [&](const QColor &candidate) {
        return contrastRatio(candidate, m_controlBackground) >= ToldApart;
    });

    const auto dimmed = [&](int share, double contrast) {
        return firstMix(text, m_windowBackground, share, [&](const QColor &candidate) {
            return contrastRatio(candidate, m_windowBackground) >= contrast &&
                   contrastRatio(candidate, m_controlBackground) >= contrast &&
                   contrastRatio(candidate, m_textBackground) >= contrast;
        });
    };
    m_secondary = dimmed(65, ReadableText);
    m_tertiary = dimmed(50, ReadableHint);
    m_separator = mix(text, m_windowBackground, 0.2);

    m_monospacedFamily = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}
