// Solvers of the moist-air relations (see internal/KyPsy.h).
#include "internal/KyPsy.h"

#include <cmath>

namespace Ky::Psy {

namespace {

// Newton's method safeguarded by a bracket, for an increasing f with a root in [lo, hi]
// (the signs at the ends are assumed, not evaluated, to save transcendental calls). A step
// that would leave the bracket, or a non-finite value, bisects instead, so the iteration
// cannot run away; each evaluation narrows the bracket. Ends when the Newton correction at an
// evaluated point is below tol, or the bracket is narrower than tol; NaN after maxIter
// evaluations. The correction f/f' measured where f was evaluated is the distance to the root
// to first order, so the answer is within about tol of it; a short step alone is not enough:
// near a pole of f (pv close to B) or across the kink of ln pws at the triple point the steps
// shrink only linearly, and a short step can leave an error of a thousand times its length.
template <class F>
double SolveIncreasing(F&& f, double lo, double hi, double x, double tol, int maxIter)
{
    for (int i = 0; i < maxIter; ++i) {
        double slope = 0.0;
        const double fx = f(x, slope);
        if (fx > 0.0) {
            hi = x;
        } else if (fx < 0.0) {
            lo = x;
        } else if (fx == 0.0) {
            return x;
        } else {
            hi = x;  // NaN: treat as beyond the root (only happens where pws >= B)
        }
        const double step = fx / slope;
        double next = x - step;
        if (next >= lo && next <= hi) {
            if (std::fabs(step) < tol) return next;
        } else {
            next = 0.5 * (lo + hi);
            if (hi - lo < tol) return next;
        }
        x = next;
    }
    return kNaN;
}

// First guess of 1/T (1/K) for the saturation temperature at alpha = ln(p / Pa): least-squares
// fits of 1/T against ln pws over the range of each equation, worst error 0.048 K over water
// (0.01..200 °C, cubic) and 0.025 K over ice (-100..0.01 °C, quadratic). Newton then needs
// two steps to reach the last bits.
inline double GuessInvTsat(double alpha, bool water)
{
    if (water)
        return 4.8137230020e-03 + alpha * (-1.7769350624e-04 + alpha * (1.0522864824e-07 + alpha * -6.5029356830e-08));
    return 4.7043572808e-03 + alpha * (-1.6279876996e-04 + alpha * 3.3525254975e-08);
}

// Newton step tolerance of the saturation temperature, K. Near the root ln pws is almost
// linear in 1/T, so after a step of 1e-5 K the error left is below 1e-12 K.
constexpr double kSatTolK = 1e-5;
constexpr int kSatMaxIter = 30;

// Wet-bulb tolerance, K: the last Newton correction, so the error left is about 1e-11 K, far
// tighter than the usual 1e-3 K of psychrometric codes. Newton is quadratic, so reaching it
// costs one evaluation more than a tolerance of 1e-5 K would.
constexpr double kWetBulbTolK = 1e-11;
constexpr int kWetBulbMaxIter = 60;

// Dry bulb of a given (h, RH): tolerance in K, as for the wet bulb.
constexpr double kHRHTolK = 1e-11;
constexpr int kHRHMaxIter = 80;

// A solved temperature for a state exactly at an end of the range may land a rounding error
// outside it; within 1e-9 K it is taken as the end itself.
inline double SnapToRange(double t)
{
    if (t < kMinT && t >= kMinT - 1e-9) return kMinT;
    if (t > kMaxT && t <= kMaxT + 1e-9) return kMaxT;
    return t;
}

}  // namespace

double SatTemperature(double p)
{
    if (!(p > 0.0) || !std::isfinite(p)) return kNaN;
    static const double kLnTripleIce = LnPws(kTripleK * (1.0 - 1e-15));
    static const double kLnTripleWater = LnPws(kTripleK);
    static const double kLnMin = LnPws(kMinT + kT0);
    static const double kLnMax = LnPws(kMaxT + kT0);
    const double alpha = std::log(p);
    // The ends of the range are accepted with a rounding margin (1e-12 in ln p, 1e-10 K).
    if (!(alpha >= kLnMin - 1e-12 && alpha <= kLnMax + 1e-12)) return kNaN;
    // pws is discontinuous at the triple point by 4e-6 Pa (eqs. 5 and 6 meet only that
    // closely); a pressure inside the gap saturates at the triple point itself.
    if (alpha >= kLnTripleIce && alpha < kLnTripleWater) return kTripleC;
    const bool water = alpha >= kLnTripleWater;
    const double lo = water ? kTripleK : kMinT + kT0 - 1.0;
    const double hi = water ? kMaxT + kT0 + 1.0 : kTripleK;
    double T = 1.0 / GuessInvTsat(alpha, water);
    // Newton in u = 1/T, where ln pws is nearly linear; the bracket keeps T on its branch.
    for (int i = 0; i < kSatMaxIter; ++i) {
        double slope = 0.0;
        const double f = LnPws(T, &slope) - alpha;
        // du = -f / (d ln pws / du) = f / (slope T²), and T_new = 1 / (1/T + du)
        const double u = 1.0 / T + f / (slope * T * T);
        double next = 1.0 / u;
        if (!(next >= lo && next <= hi)) next = next < lo ? 0.5 * (T + lo) : 0.5 * (T + hi);
        const bool done = std::fabs(next - T) < kSatTolK;
        T = next;
        if (done) return SnapToRange(T - kT0);
    }
    return kNaN;
}

double SatTemperature(const Coef& c, double p, double B)
{
    double t = SatTemperature(p);
    if (!c.real) return t;
    // f pws(t) = p: f varies a thousand times more slowly with t than pws, so each pass of
    // t = Tsat(p / f(t)) gains three digits; four reach the last bits from f = 1.
    for (int i = 0; i < 6 && t == t; ++i) {
        const double q = p / Real::Enhancement(t, Pws(t), B);
        double next = SatTemperature(q);
        // Saturation at the cold end within rounding (f moves q by more than 1e-12 there).
        static const double kPwsMin = Pws(kMinT);
        if (next != next && q >= kPwsMin * (1.0 - 1e-9)) next = kMinT;
        const bool done = std::fabs(next - t) < 1e-12;
        t = next;
        if (done) break;
    }
    return t;
}

namespace {

// The enthalpy of the condensate on the wick at t* °C, kJ/kg, and its slope cw: liquid water
// on the water branch, ice on the other (ASHRAE 2017 eqs. 33 and 35: 4.186 t*, and ice at
// hg0 - a0Ice + 2.1 t*, -333.4 + 2.1 t* for the chart).
inline double Condensate(const Coef& c, bool water, double ts, double& cw)
{
    cw = water ? kCw : kCice;
    return water ? kCw * ts : (c.hg0 - c.a0Ice) + kCice * ts;
}

}  // namespace

double WFromWetBulb(const Coef& c, double t, double twb, double B)
{
    const double pws = Pws(twb);
    const double p = SatPartial(c, twb, pws, B);
    if (!(p < B)) return kNaN;
    const double ws = WFromPv(c, p, B);
    double cw = 0.0;
    const double hw = Condensate(c, twb >= 0.0, twb, cw);
    // The balance h(t, W) + (Ws* - W) hw* = h(t*, Ws*) solved for W.
    if (c.real) return Real::WFromHT(Real::Enthalpy(twb, ws, B) - ws * hw, t, B, hw);
    const double a0 = twb >= 0.0 ? c.hg0 : c.a0Ice;
    return ((a0 + (c.cpv - cw) * twb) * ws - c.cpa * (t - twb)) / (a0 + c.cpv * t - cw * twb);
}

double WetBulb(const Coef& c, double t, double W, double B, double ps)
{
    // Saturated air (and air within rounding of it) is its own wet bulb.
    const double wsT = ps < B ? WFromPv(c, ps, B) : HUGE_VAL;
    if (W >= wsT) return t;
    // Branch: the liquid-water balance when it has a root at or above 0 °C, otherwise ice
    // (KyStaPnt.h states the convention; the setter by wet bulb applies the same test).
    const bool water = t >= 0.0 && W >= WFromWetBulb(c, t, 0.0, B);
    const double h = Enthalpy(c, t, W, B);
    const double k = c.ratio * B;
    // g(t*) = h(t*, Ws*) - h - (Ws* - W) hw(t*): increasing, zero at the wet bulb. Its slope is
    // exact for the ideal gas; for the real gas the ideal-gas slope with f pws for pws is within
    // 0.3 %, so Newton still gains more than two digits a step.
    auto g = [&](double ts, double& slope) {
        double s = 0.0;
        const double pws = std::exp(LnPws(ts + kT0, &s));
        const double p = SatPartial(c, ts, pws, B);
        const double den = B - p;
        if (!(den > 0.0)) { slope = 1.0; return HUGE_VAL; }
        const double ws = c.ratio * p / den;
        const double dws = k * p * s / (den * den);
        double cw = 0.0;
        const double hw = Condensate(c, water, ts, cw);
        slope = c.cpa + c.cpv * ws + dws * (c.hg0 + c.cpv * ts - hw) - (ws - W) * cw;
        return Enthalpy(c, ts, ws, B) - h - (ws - W) * hw;
    };
    const double hi = water ? t : (t < 0.0 ? t : 0.0);
    const double lo = water ? 0.0 : kWetBulbFloorC;
    // First step from the top of the bracket, where Ws is known from ps (no exp needed) when
    // the bracket top is the dry bulb: g(t) = (wsT - W)(hg(t) - hw(t)).
    double x = hi;
    if (hi == t && ps < B) {
        const double s = LnPwsSlope(t + kT0);
        const double den = B - ps;
        const double dws = k * ps * s / (den * den);
        double cw = 0.0;
        const double hw = Condensate(c, water, t, cw);
        const double slope = c.cpa + c.cpv * wsT + dws * (c.hg0 + c.cpv * t - hw) - (wsT - W) * cw;
        x = t - (wsT - W) * (c.hg0 + c.cpv * t - hw) / slope;
        if (!(x > lo)) x = 0.5 * (lo + hi);
    }
    const double r = SolveIncreasing(g, lo, hi, x, kWetBulbTolK, kWetBulbMaxIter);
    return r >= kWetBulbFloorC ? r : kNaN;
}

double TdbFromHRH(const Coef& c, double h, double rh, double B)
{
    // H(t) = h(t, W(t)) - h with W(t) = ratio rh ps / (B - rh ps): increasing. Its slope is
    // exact for the ideal gas and within 0.3 % for the real gas, as for the wet bulb.
    const double k = c.ratio * B;
    double tPrev = kNaN, fPrev = kNaN;
    auto H = [&](double t, double& slope) {
        double s = 0.0;
        const double pws = std::exp(LnPws(t + kT0, &s));
        const double pv = rh * SatPartial(c, t, pws, B);
        const double den = B - pv;
        if (!(den > 0.0)) { slope = 1.0; return HUGE_VAL; }
        const double w = c.ratio * pv / den;
        const double dw = k * pv * s / (den * den);
        slope = c.cpa + c.cpv * w + dw * (c.hg0 + c.cpv * t);
        const double f = Enthalpy(c, t, w, B) - h;
        if (c.real) {
            // With the ideal slope Newton gains only the 0.3 % it misses by a step; the secant
            // through the last evaluation is the real slope to the step's size, so the steps
            // shrink quadratically again. Short steps keep the analytic slope: the secant's
            // difference of two enthalpies would be rounding there.
            const double dt = t - tPrev, sec = (f - fPrev) / dt;
            if (std::fabs(dt) > 1e-6 && std::fabs(dt) < 1.0 && sec > 0.5 * slope && sec < 2.0 * slope) slope = sec;
            tPrev = t;
            fPrev = f;
        }
        return f;
    };
    // Dry air at the same h bounds t from above (moisture only lowers t at given h).
    // The real gas's dry air lies within 3 K of the ideal one's over the range (0.13 K at 90 °C).
    double hi = c.real ? h / c.cpa + 3.0 : h / c.cpa;
    if (!(hi <= kMaxT + 1.0)) hi = kMaxT + 1.0;
    const double lo = kMinT - 1.0;
    if (!(hi > lo)) return kNaN;
    // The real gas starts from the ideal gas's root, within a few tenths of a kelvin and found
    // at a fifth of the cost of one real evaluation a step.
    double x = hi;
    if (c.real) {
        const double ideal = TdbFromHRH(kAshrae, h, rh, B);
        if (ideal > lo && ideal < hi) x = ideal;
    }
    const double r = SnapToRange(SolveIncreasing(H, lo, hi, x, kHRHTolK, kHRHMaxIter));
    return (r >= kMinT && r <= kMaxT) ? r : kNaN;
}

}  // namespace Ky::Psy
