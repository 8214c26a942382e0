#include <kygraph/KyGValueStepper.h>

#include <cmath>

namespace {

int LabelFor(double v) { return std::fmod(v, 5.0) == 0.0 ? 1 : 0; }

bool UsableStep(double step) { return std::isfinite(step) && step > 0.0; }

// The one stepping loop: from v, up to cap times while more(v), the next multiple of step,
// handed to take, which returns the value to go on from.
template <class More, class Take>
void Walk(double v, double step, double perUnit, int cap, More more, Take take)
{
    const double grid = step * perUnit;
    for (int n = 0; n < cap && more(v); ++n) {
        double next = perUnit == 1.0 ? v + step - std::fmod(v, step)
                                     : v + (grid - std::fmod(v * perUnit, grid)) / perUnit;
        if (!(next > v)) {
            next = v + step;
            if (!(next > v)) return;
        }
        v = take(next);
    }
}

}  // namespace

std::vector<CKyGValueStepper::Step> CKyGValueStepper::Stepped(double first, double max, double step, int cap)
{
    std::vector<Step> steps;
    if (cap < 1) return steps;
    steps.push_back({first, LabelFor(first)});
    if (!UsableStep(step)) return steps;
    // The "max >= v - 1e-9" form stops on NaN as well.
    Walk(first, step, 1.0, cap - 1, [max](double v) { return max >= v - 1e-9; }, [&steps](double v) {
        steps.push_back({v, LabelFor(v)});
        return v;
    });
    return steps;
}

std::vector<double> CKyGValueStepper::Ticks(double lo, double hi, double step, int cap, double perUnit)
{
    std::vector<double> ticks;
    if (!std::isfinite(lo) || !std::isfinite(hi) || !UsableStep(step) || !UsableStep(perUnit)) return ticks;
    Walk(lo, step, perUnit, cap, [hi](double v) { return v < hi; }, [hi, &ticks](double v) {
        ticks.push_back(v > hi ? hi : v);
        return ticks.back();
    });
    return ticks;
}

double CKyGValueStepper::FirstMultiple(double lo, double step)
{
    if (!UsableStep(step) || !std::isfinite(lo)) return lo;
    return std::ceil(lo / step - 1e-9) * step;
}

std::vector<double> CKyGValueStepper::RelativeHumidities(double intervalPercent)
{
    std::vector<double> values;
    const double increment = intervalPercent / 100.0;
    double phi = 0.05;
    while (phi - 1e-9 <= 1.0 && static_cast<int>(values.size()) < kMaxCurves - 1) {
        values.push_back(phi);
        const double next = phi + increment;
        if (!(next > phi)) break;
        phi = next;
    }
    // The saturation curve, unless the sequence already ended within 1e-5 of it.
    if (std::fabs(phi - 1.0) > 1e-5) values.push_back(1.0);
    return values;
}
