#pragma once

#include <QColor>
#include <QObject>
#include <QPalette>
#include <QtQmlIntegration/qqmlintegration.h>

/// The one place for colours and fonts: derived from the application's palette and following it
/// while the program runs.
class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    /// Buttons, highlights, selection.
    Q_PROPERTY(QColor brandAccent READ brandAccent NOTIFY changed)
    /// The start/pause buttons while a task runs.
    Q_PROPERTY(QColor brandBackground READ brandBackground NOTIFY changed)
    /// Text.
    Q_PROPERTY(QColor primary READ primary NOTIFY changed)
    /// Dimmed text; at least 4.5:1 on all three backgrounds.
    Q_PROPERTY(QColor secondary READ secondary NOTIFY changed)
    /// Most dimmed text; at least 3:1 on all three backgrounds.
    Q_PROPERTY(QColor tertiary READ tertiary NOTIFY changed)
    /// The window's own background. Where the accent would not be readable (4.5:1) on the palette's
    /// colour, this one is shifted just far enough.
    Q_PROPERTY(QColor windowBackground READ windowBackground NOTIFY changed)
    /// Header, footer, side column. Shifted like windowBackground.
    Q_PROPERTY(QColor controlBackground READ controlBackground NOTIFY changed)
    /// Text fields; at least 1.25:1 on controlBackground.
    Q_PROPERTY(QColor textBackground READ textBackground NOTIFY changed)
    /// Dividers. Opaque; users lay their own opacity over it.
    Q_PROPERTY(QColor separator READ separator NOTIFY changed)
    Q_PROPERTY(QColor red READ red NOTIFY changed)
    Q_PROPERTY(QColor green READ green NOTIFY changed)
    /// Light text on a dark window.
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    /// Family of the platform's fixed font.
    Q_PROPERTY(QString monospacedFamily READ monospacedFamily NOTIFY changed)

public:
    explicit Theme(QObject *parent = nullptr);

    QColor brandAccent() const { return m_brandAccent; }
    QColor brandBackground() const { return m_brandBackground; }
    QColor primary() const { return m_primary; }
    QColor secondary() const { return m_secondary; }
    QColor tertiary() const { return m_tertiary; }
    QColor windowBackground() const { return m_windowBackground; }
    QColor controlBackground() const { return m_controlBackground; }
    QColor textBackground() const { return m_textBackground; }
    QColor separator() const { return m_separator; }
    QColor red() const { return m_red; }
    QColor green() const { return m_green; }
    bool isDark() const { return m_isDark; }
    QString monospacedFamily() const { return m_monospacedFamily; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// Some or all of the values above are others now.
    void changed();

private:
    void derive(const QPalette &palette);

    QColor m_brandAccent;
    QColor m_brandBackground;
    QColor m_primary;
    QColor m_secondary;
    QColor m_tertiary;
    QColor m_windowBackground;
    QColor m_controlBackground;
    QColor m_textBackground;
    QColor m_separator;
    QColor m_red;
    QColor m_green;
    bool m_isDark = false;
    QString m_monospacedFamily;
};

/// Whether its text is lighter than its window.
bool isDarkPalette(const QPalette &palette);

/// Relative luminance of an opaque colour, 0 (black) to 1 (white), as WCAG defines it.
double relativeLuminance(const QColor &color);

/// Contrast ratio of two opaque colours, 1 to 21, as WCAG defines it.
double contrastRatio(const QColor &a, const QColor &b);
