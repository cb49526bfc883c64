#pragma once

#include <QFont>
#include <QString>

/// How a text is shown in a row with little room.
struct DateFit {
    /// Width of each of the four gaps that can close, in pixels.
    qreal gap;
    /// Width that is left for the text, in pixels. A wider text wraps at its blanks.
    qreal textWidth;
    /// The font's size.
    int pixelSize;

    bool operator==(const DateFit &) const = default;
};

/// Fits @p text, in @p font's pixel size if possible, into @p room pixels together with four gaps:
/// first the gaps close from 16 to 4, then the text wraps, then its font shrinks, down to 9, until
/// its longest word fits.
DateFit fitDate(const QString &text, const QFont &font, qreal room);
