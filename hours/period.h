#pragma once

#include <QDate>
#include <QStringView>

#include <optional>

/// Days from the first to the last, both included.
struct Period {
    QDate first;
    QDate last;

    bool operator==(const Period &) const = default;
};

/// The month that @p day lies in.
Period monthOf(QDate day);

/// The day that @p text is, "2026-11-22"; nothing if there is no such day.
std::optional<QDate> dayFrom(QStringView text);
/// The month that @p text is, "2026-11"; nothing if there is no such month.
std::optional<Period> monthFrom(QStringView text);
/// The week from Monday to Sunday that @p text is by ISO 8601, "2026-W47"; nothing if there is no
/// such week.
std::optional<Period> weekFrom(QStringView text);
