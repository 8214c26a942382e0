// The one place where doubles become int pixel coordinates, and where int coordinates are
// added: NaN and infinities never reach an int cast and no sum overflows (both would be
// undefined behaviour). Every truncation in the chart goes through TruncToInt.
#pragma once

#include <climits>
#include <cmath>
#include <cstdint>

namespace Ky {

// Truncates toward zero like a C cast for every value an int can hold; values beyond the
// int range saturate at INT_MIN / INT_MAX and NaN becomes 0.
inline int TruncToInt(double v)
{
    if (!(v == v)) return 0;
    if (v >= 2147483647.0) return INT_MAX;
    if (v <= -2147483648.0) return INT_MIN;
    return static_cast<int>(v);
}

inline int ClampToInt(std::int64_t v)
{
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

inline int SatAdd(int a, int b) { return ClampToInt(static_cast<std::int64_t>(a) + b); }
inline int SatSub(int a, int b) { return ClampToInt(static_cast<std::int64_t>(a) - b); }

}  // namespace Ky
