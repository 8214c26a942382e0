// Typed values drawn from a fuzz input for the targets that build their calls field by field.
// Numbers favour what numeric code gets wrong (NaN, infinities, denormals, huge magnitudes,
// signed zero, the ends of the int range) but also fall often enough where real states and
// settings lie, so that the fuzzer gets past the first refusal.
#pragma once

#include <kygraph/String.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <climits>
#include <cstdint>
#include <limits>

namespace fuzz {

inline double AnyDouble(FuzzedDataProvider& in)
{
    using L = std::numeric_limits<double>;
    static constexpr double kEdges[] = {
        L::quiet_NaN(), -L::quiet_NaN(), L::infinity(), -L::infinity(), 0.0, -0.0, L::denorm_min(),
        -L::denorm_min(), L::min(), L::max(), L::lowest(), L::epsilon(), 1e300, -1e300, 1e-300, 1e9, -1e9,
        0.5, 1.0, -1.0, 1.0 + 1e-9, 100.0, -100.0, 200.0, 101325.0, 50000.0, 110000.0, 2147483648.0,
        -2147483649.0};
    switch (in.ConsumeIntegralInRange(0, 4)) {
    case 0: return in.PickValueInArray(kEdges);
    case 1: return std::bit_cast<double>(in.ConsumeIntegral<std::uint64_t>());
    case 2: return in.ConsumeFloatingPointInRange(-150.0, 250.0);  // temperatures, d, h
    case 3: return in.ConsumeProbability<double>() * 1.2;          // relative humidity fractions
    default: return in.ConsumeIntegralInRange(-20, 120) * 0.5;    // round values people type
    }
}

inline int AnyInt(FuzzedDataProvider& in)
{
    static constexpr int kEdges[] = {INT_MIN, INT_MIN + 1, -65536, -1, 0, 1, 2, 3, 4, 5, 7, 10, 100, 65536,
                                     INT_MAX - 1, INT_MAX};
    switch (in.ConsumeIntegralInRange(0, 2)) {
    case 0: return in.PickValueInArray(kEdges);
    case 1: return in.ConsumeIntegral<int>();
    default: return in.ConsumeIntegralInRange(-2, 40);
    }
}

// Arbitrary bytes taken as UTF-8, invalid sequences included.
inline CString AnyText(FuzzedDataProvider& in, std::size_t maxBytes = 24)
{
    return CString::FromUtf8(in.ConsumeRandomLengthString(maxBytes));
}

}  // namespace fuzz
