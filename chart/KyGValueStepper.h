// CKyGValueStepper: the one stepping loop behind every sequence of grid values the chart draws
// at: the line families of the full redraw and of the overlays, and the ticks of both rulers.
// Kept apart from the drawing so that the sequences can be checked on their own.
//
// Each step goes from v to the next multiple of step above it, v + step - fmod(v, step), so
// values after the first snap onto the grid (fmod keeps the sign: a negative v off the grid
// lands on the second multiple above it).
// - Line families (Stepped): the first value, then steps while max >= v - 1e-9, so one value
//   past max is always included (intended: the elements cope with it).
// - Ruler ticks (Ticks): the first value left out, steps while v < hi, the last one clamped to
//   hi.
// Relative-humidity curves are not on a grid: 0.05 upward by interval/100 while within 1.0
// (+1e-9), then 1.0 unless the last value lies within 1e-5 of it; a sequence landing on 1.0
// lists it twice (intended).
//
// Guards that valid settings never meet: a step that rounding keeps from advancing (0.1 from
// 0.5) advances by plain addition instead; a value that cannot advance at all ends the
// sequence; a step that is not finite and positive gives no steps; no sequence holds more
// values than its cap.
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

    // first, then each next multiple of step while max >= v - 1e-9; at most cap values.
    static std::vector<Step> Stepped(double first, double max, double step, int cap = kMaxValues);
    // Each next multiple of step above lo while v < hi, the last clamped to hi; at most cap
    // values, none for bounds that are not finite. perUnit > 1 computes each step in units of
    // 1/perUnit (v + (step·perUnit - fmod(v·perUnit, step·perUnit)) / perUnit), whose rounding
    // differs from the plain form's; the partial-pressure ruler counts its ticks in tenths.
    static std::vector<double> Ticks(double lo, double hi, double step, int cap, double perUnit = 1.0);
    // The first multiple of step at or above lo (lo itself when step is not usable).
    static double FirstMultiple(double lo, double step);
    // Relative humidities as fractions for an interval in percent.
    static std::vector<double> RelativeHumidities(double intervalPercent);
};
