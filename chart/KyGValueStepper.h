// CKyGValueStepper: the value sequences the full redraw hands to the line families, kept
// apart from the drawing so that the sequences can be checked on their own.
//
// Stepped families (constant-d lines, isotherms, constant-h lines): the first value, then
// v + step - fmod(v, step) while max >= v - 1e-9, so values after the first snap onto
// multiples of step and one value past max is always included (intended: the elements cope
// with it). Relative-humidity curves: 0.05 upward by interval/100 while within 1.0 (+1e-9),
// then 1.0 unless the last value lies within 1e-5 of it; a sequence landing on 1.0 lists it
// twice (intended).
//
// Guards that valid settings never meet: a step that rounding keeps from advancing (0.1 from
// 0.5) advances by plain addition instead; a value that cannot advance at all ends the
// sequence; a step that is not finite and positive gives the first value only; no stepped
// sequence holds more than kMaxValues values, no relative-humidity one more than kMaxCurves.
#pragma once

#include <kygraph/KyExport.h>

#include <vector>

class KYGRAPH_API CKyGValueStepper {
public:
    struct Step {
        double value;
        int label;  // 1 when value is an exact multiple of 5 (fmod(value, 5.0) == 0.0)
    };

    // More lines than any screen can show: a family ends here whatever its settings.
    static constexpr int kMaxValues = 4096;
    // A relative-humidity curve costs a state point and a mapping every 0.2 °C, up to 1500 of
    // each where a straight line costs one, so that family ends sooner: 4096 curves took
    // seconds to draw. 256 still hold every curve of an interval down to 0.4 %.
    static constexpr int kMaxCurves = 256;

    static std::vector<Step> Stepped(double first, double max, double step);
    // Relative humidities as fractions for an interval in percent.
    static std::vector<double> RelativeHumidities(double intervalPercent);
};
