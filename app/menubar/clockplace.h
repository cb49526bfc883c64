#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <optional>

/// The file that keeps where the clock window stands, from run to run.
class ClockPlace
{
public:
    /// Its folder is made when something is kept.
    explicit ClockPlace(QString path = defaultPath());

    /// In XDG_STATE_HOME, if that is a full path, or in the home.
    static QString defaultPath();

    /// The top left corner in logical pixels; nothing if none has been kept or it cannot be read.
    std::optional<QPoint> read() const;
    /// Keeps @p corner. Where it cannot be written, the window begins at its first place again.
    void keep(const QPoint &corner) const;

private:
    QString m_path;
};

/// Where the top left corner of a clock window of @p size goes: to @p kept, moved so that all of it
/// is seen, if a part of it would be on one of the @p screens; else to the bottom right of
/// @p room, far from the buttons of maximised windows.
QPoint clockWindowPosition(const QSize &size, const std::optional<QPoint> &kept,
                           const QList<QRect> &screens, const QRect &room);
