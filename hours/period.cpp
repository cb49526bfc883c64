#include "hours/period.h"

#include <QString>

#include <algorithm>

namespace
{

/// The number that @p text is, if it is plain digits.
std::optional<int> numberFrom(QStringView text)
{
    // QStringView::toInt() takes signs, blanks and other digits, too.
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    if (text.isEmpty() || !std::all_of(text.begin(), text.end(), isDigit))
        return std::nullopt;
    return text.toInt();
}

/// The number in the @p length characters of @p text from @p start.
std::optional<int> partFrom(QStringView text, qsizetype start, qsizetype length)
{
    return numberFrom(text.mid(start, length));
}

/// A day that a program can be asked for: its year has four digits.
std::optional<QDate> checked(const QDate &day)
{
    constexpr int lastYear = 9999;
    if (!day.isValid() || day.year() < 1 || day.year() > lastYear)
        return std::nullopt;
    return day;
}

} // namespace

Period monthOf(QDate day)
{
    return {QDate(day.year(), day.month(), 1), QDate(day.year(), day.month(), day.daysInMonth())};
}

std::optional<QDate> dayFrom(QStringView text)
{
    if (text.size() != 10 || text[4] != u'-' || text[7] != u'-')
        return std::nullopt;
    const std::optional<int> year = partFrom(text, 0, 4);
    const std::optional<int> month = partFrom(text, 5, 2);
    const std::optional<int> day = partFrom(text, 8, 2);
    if (!year || !month || !day)
        return std::nullopt;
    return checked(QDate(*year, *month, *day));
}

std::optional<Period> monthFrom(QStringView text)
{
    if (text.size() != 7)
        return std::nullopt;
    const std::optional<QDate> first = dayFrom(text.toString() + QStringLiteral("-01"));
    if (!first)
        return std::nullopt;
    return monthOf(*first);
}

std::optional<Period> weekFrom(QStringView text)
{
    constexpr int daysOfAWeek = 7;
    if (text.size() != 8 || text[4] != u'-' || text[5] != u'W')
        return std::nullopt;
    const std::optional<int> year = partFrom(text, 0, 4);
    const std::optional<int> week = partFrom(text, 6, 2);
    if (!year || !week || *year < 1 || *week < 1)
        return std::nullopt;
    // The fourth of January always lies in the first week.
    const QDate inFirst(*year, 1, 4);
    const QDate first = inFirst.addDays(1 - inFirst.dayOfWeek() + daysOfAWeek * (*week - 1));
    int yearOfWeek = 0;
    if (first.weekNumber(&yearOfWeek) != *week || yearOfWeek != *year)
        return std::nullopt;
    const QDate last = first.addDays(daysOfAWeek - 1);
    if (!checked(first) || !checked(last))
        return std::nullopt;
    return Period{first, last};
}
