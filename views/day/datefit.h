#pragma once

#include <QFont>
#include <QString>

/// How a date is shown in a row with little room.
struct DateFit {
    /// The date, with a line break after the weekday where it takes two lines.
    QString text;
    /// Width of each of the four gaps that can close, in pixels.
    qreal gap;
    /// Width that is left for the text, in pixels. A wider text wraps at its blanks.
    qreal textWidth;
    /// The font's size.
    int pixelSize;

    bool operator==(const DateFit &) const = default;
};

/// Fits @p date, "mandag 3. marts 2025", in @p font's pixel size if possible, into @p room pixels
/// together with four gaps: first the gaps close from 16 to 4, then the date breaks after the
/// weekday, for which its font shrinks down to 12. Where that is not enough, it wraps at its
/// blanks, and its font shrinks, down to 9, until its longest word fits.
DateFit fitDate(const QString &date, const QFont &font, qreal room);
