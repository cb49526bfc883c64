#include "model/arithmetic.h"

#include "model/fatalerror.h"

#include <cmath>

namespace
{
[[noreturn]] void fail(const char *message, const FatalAdvice &advice)
{
    fatalError(message, advice ? advice() : std::string());
}
} // namespace

qint64 checkedSum(qint64 a, qint64 b, const FatalAdvice &advice)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        fail("Integer overflow: the sum does not fit in 64 bits", advice);
    return sum;
}

qint64 checkedProduct(qint64 a, qint64 b)
{
    qint64 product = 0;
    if (__builtin_mul_overflow(a, b, &product))
        fatalError("Integer overflow: the product does not fit in 64 bits");
    return product;
}

qint64 truncatedToInt(double value, const FatalAdvice &advice)
{
    // -2^63 is an integer of 64 bits, 2^63 is the first number that is not.
    constexpr double minimum = -0x1p63;
    constexpr double limit = 0x1p63;
    if (!std::isfinite(value))
        fail("Double value cannot be converted to Int because it is either infinite or NaN",
             advice);
    if (value < minimum)
        fail("Double value cannot be converted to Int because the result would be less than "
             "Int.min",
             advice);
    if (value >= limit)
        fail("Double value cannot be converted to Int because the result would be greater "
             "than Int.max",
             advice);
    return static_cast<qint64>(value);
}
