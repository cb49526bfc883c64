#pragma once

#include <QString>

// The formats in which recorded time is shown. All take whole seconds, negative ones included.

/// Hours, minutes and seconds, each of at least two digits: "01:02:05". Hours have no limit.
QString clockText(qint64 seconds);

/// Plain decimal hours.
double decimalHours(qint64 seconds);

/// Billable hours: whole quarter hours; a begun quarter counts once more than five minutes of it
/// have passed. Never negative.
double roundedDecimalHours(qint64 seconds);

/// @p hours with two decimals and a full stop, whatever the locale: "7.25".
QString hoursText(double hours);
