#pragma once

#include <QtGlobal>

#include <functional>
#include <string>

// Whole seconds are counted without wrapping round: a result that does not fit ends the program.

/// Is called when a calculation ends the program, and tells where its values come from and what to
/// do about them.
using FatalAdvice = std::function<std::string()>;

/// @p a + @p b; fatal on overflow.
[[nodiscard]] qint64 checkedSum(qint64 a, qint64 b, const FatalAdvice &advice = {});

/// @p a × @p b; fatal on overflow.
[[nodiscard]] qint64 checkedProduct(qint64 a, qint64 b);

/// Why that sum does not fit: the message of the fatal error; null if it does.
[[nodiscard]] const char *faultOfSum(qint64 a, qint64 b);

/// Why @p value is no whole number of seconds, in the same way.
[[nodiscard]] const char *faultOfConversion(double value);

/// @p value without its fraction (towards zero); fatal if it is not finite or does not fit.
[[nodiscard]] qint64 truncatedToInt(double value, const FatalAdvice &advice = {});
