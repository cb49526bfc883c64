#include "reckonedtime.h"

#include <QRegularExpression>
#include <QStringList>

#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

__extension__ using Wide = __int128;

constexpr Wide most = std::numeric_limits<qint64>::max();
constexpr Wide least = std::numeric_limits<qint64>::min();

bool fits(Wide number)
{
    return least <= number && number <= most;
}

/// The number that @p piece is, if it is one of 64 bits.
std::optional<Wide> numberOf(const QString &piece)
{
    static const QRegularExpression pattern(u"\\A([+-]?)0*([0-9]*)\\z"_s);
    const QRegularExpressionMatch match = pattern.match(piece);
    if (!match.hasMatch() || !piece.contains(QRegularExpression(u"[0-9]"_s)) ||
        match.capturedLength(2) > 19)
        return std::nullopt;
    Wide number = 0;
    for (const QChar digit : match.captured(2))
        number = number * 10 + (digit.unicode() - '0');
    if (match.captured(1) == u"-"_s)
        number = -number;
    return fits(number) ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<qint64> reckonedSeconds(QString entry)
{
    static const QRegularExpression blanks(
        u"\\A[\\t \\x{a0}\\x{1680}\\x{2000}-\\x{200a}\\x{202f}\\x{205f}\\x{3000}]+|"
        "[\\t \\x{a0}\\x{1680}\\x{2000}-\\x{200a}\\x{202f}\\x{205f}\\x{3000}]+\\z"_s);
    // Regular expressions do not take half characters, which are no numbers whole or half.
    for (QChar &character : entry) {
        if (character.isSurrogate())
            character = u'x';
    }
    entry.remove(blanks);
    std::vector<Wide> numbers;
    for (const QString &piece : entry.split(u':')) {
        if (const std::optional<Wide> number = numberOf(piece))
            numbers.push_back(*number);
    }
    if (numbers.empty() || numbers.size() > 3)
        return 0;
    const bool isMinutes = numbers.size() == 1;
    const Wide hours = isMinutes ? 0 : numbers[0] * 3600;
    const Wide minutes = numbers[isMinutes ? 0 : 1] * 60;
    const Wide seconds = numbers.size() == 3 ? numbers[2] : 0;
    if (!fits(hours) || !fits(minutes) || !fits(hours + minutes) ||
        !fits(hours + minutes + seconds))
        return std::nullopt;
    return static_cast<qint64>(hours + minutes + seconds);
}
