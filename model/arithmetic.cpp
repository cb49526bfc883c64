#include "model/arithmetic.h"

#include "model/fatalerror.h"

#include <cmath>

qint64 checkedSum(qint64 a, qint64 b, const FatalAdvice &advice)
{
    if (const char *const fault = faultOfSum(a, b))
        fatalError(fault, advice ? advice() : std::string());
    return a + b;
}

qint64 checkedProduct(qint64 a, qint64 b)
{
    qint64 product = 0;
    if (__builtin_mul_overflow(a, b, &product))
        fatalError("Integer overflow: the product does not fit in 64 bits");
    return product;
}

const char *faultOfSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? "Integer overflow: the sum does not fit in 64 bits"
                                              : nullptr;
}

const char *faultOfConversion(double value)
{
    // -2^63 is an integer of 64 bits, 2^63 is the first number that is not.
    constexpr double minimum = -0x1p63;
    constexpr double limit = 0x1p63;
    if (!std::isfinite(value))
        return "Double value cannot be converted to Int because it is either infinite or NaN";
    if (value < minimum)
        return "Double value cannot be converted to Int because the result would be less than "
               "Int.min";
    if (value >= limit)
        return "Double value cannot be converted to Int because the result would be greater "
               "than Int.max";
    return nullptr;
}

qint64 truncatedToInt(double value, const FatalAdvice &advice)
{
    if (const char *const fault = faultOfConversion(value))
        fatalError(fault, advice ? advice() : std::string());
    return static_cast<qint64>(value);
}
