#include "app/menubar/clockplace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

ClockPlace::ClockPlace(QString path)
    : m_path(std::move(path))
{
}

QString ClockPlace::defaultPath()
{
    QString stateHome = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(stateHome))
        stateHome = QDir::homePath() + u"/.local/state"_s;
    return stateHome + u'/' + QCoreApplication::applicationName() + u"/clock-window"_s;
}

std::optional<QPoint> ClockPlace::read() const
{
    QFile file(m_path);
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    constexpr qint64 LongestLine = 64;
    const QList<QByteArray> numbers = file.readLine(LongestLine).trimmed().split(' ');
    if (numbers.size() != 2)
        return std::nullopt;
    bool isX = false;
    bool isY = false;
    const QPoint corner(numbers[0].toInt(&isX), numbers[1].toInt(&isY));
    return isX && isY ? std::optional(corner) : std::nullopt;
}

void ClockPlace::keep(const QPoint &corner) const
{
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QByteArray::number(corner.x()) + ' ' + QByteArray::number(corner.y()) + '\n');
    file.commit();
}

QPoint clockWindowPosition(const QSize &size, const std::optional<QPoint> &kept,
                           const QList<QRect> &screens, const QRect &room)
{
    const auto within = [&size](const QPoint &corner, const QRect &rect) {
        const QPoint last = rect.bottomRight() + QPoint(1, 1) - QPoint(size.width(), size.height());
        return QPoint(std::max(rect.left(), std::min(corner.x(), last.x())),
                      std::max(rect.top(), std::min(corner.y(), last.y())));
    };
    if (kept) {
        for (const QRect &screen : screens) {
            if (screen.intersects(QRect(*kept, size)))
                return within(*kept, screen);
        }
    }
    return within(room.bottomRight(), room);
}
