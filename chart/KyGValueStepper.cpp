#include <kygraph/KyGValueStepper.h>

#include <cmath>

namespace {

int LabelFor(double v) { return std::fmod(v, 5.0) == 0.0 ? 1 : 0; }

}  // namespace

std::vector<CKyGValueStepper::Step> CKyGValueStepper::Stepped(double first, double max, double step)
{
    std::vector<Step> steps;
    steps.push_back({first, LabelFor(first)});
    if (!(std::isfinite(step) && step > 0.0)) return steps;

    double v = first;
    // The "while max >= v - 1e-9" form stops on NaN as well.
    while (max >= v - 1e-9 && static_cast<int>(steps.size()) < kMaxValues) {
        double next = v + step - std::fmod(v, step);
        if (!(next > v)) {
            next = v + step;
            if (!(next > v)) break;
        }
        v = next;
        steps.push_back({v, LabelFor(v)});
    }
    return steps;
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
