#pragma once

#include <QtGlobal>

// Whole seconds are counted without wrapping round: a result that does not fit ends the program.

/// @p a + @p b; fatal on overflow.
[[nodiscard]] qint64 checkedSum(qint64 a, qint64 b);

/// @p a × @p b; fatal on overflow.
[[nodiscard]] qint64 checkedProduct(qint64 a, qint64 b);

/// @p value without its fraction (towards zero); fatal if it is not finite or does not fit.
[[nodiscard]] qint64 truncatedToInt(double value);
