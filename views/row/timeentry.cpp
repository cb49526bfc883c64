#include "views/row/timeentry.h"

#include "model/arithmetic.h"
#include "views/controls/trimming.h"

#include <QList>

#include <algorithm>
#include <optional>

namespace
{

/// A sign, if any, and digits, and nothing else: toLongLong() alone would take blanks too.
std::optional<qint64> wholeNumber(QStringView text)
{
    const QStringView digits =
        text.startsWith(u'+') || text.startsWith(u'-') ? text.sliced(1) : text;
    const bool isNumber = !digits.isEmpty() &&
                          std::all_of(digits.cbegin(), digits.cend(),
                                      [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    return isNumber && fits ? std::optional(number) : std::nullopt;
}

} // namespace

qint64 secondsOfTimeEntry(const QString &entry)
{
    QList<qint64> numbers;
    const QString trimmed = trimmedOfBlanks(entry);
    for (const QStringView part : QStringView(trimmed).split(u':', Qt::SkipEmptyParts)) {
        if (const std::optional<qint64> number = wholeNumber(part))
            numbers << *number;
    }

    switch (numbers.size()) {
    case 1:
        return checkedProduct(numbers[0], 60);
    case 2:
        return checkedSum(checkedProduct(numbers[0], 3600), checkedProduct(numbers[1], 60));
    case 3:
        return checkedSum(
            checkedSum(checkedProduct(numbers[0], 3600), checkedProduct(numbers[1], 60)),
            numbers[2]);
    default:
        return 0;
    }
}
