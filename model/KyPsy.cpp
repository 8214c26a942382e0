// Solvers of the moist-air relations (see internal/KyPsy.h).
#include "internal/KyPsy.h"

#include <cmath>

namespace Ky::Psy {

namespace {

// Newton's method safeguarded by a bracket, for an increasing f with a root in [lo, hi]
// (the signs at the ends are assumed, not evaluated, to save transcendental calls). A step
// that would leave the bracket, or a non-finite value, bisects instead, so the iteration
// cannot run away; each evaluation narrows the bracket. Ends when a step shorter than tol is
// confirmed by the sign of f just beyond it (Newton converges quadratically, so the error
// left is then far below tol) or the bracket is narrower than tol; NaN after maxIter
// evaluations.
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
        double next = x - fx / slope;
        if (next >= lo && next <= hi) {
            if (std::fabs(next - x) < tol) {
                // A short step means convergence only once Newton is quadratic. Near a pole of
                // f (pv close to B) the steps start short and grow as x moves away from the
                // pole; so the root must lie just beyond next, or the iteration goes on from
                // there. In the quadratic regime the error left is of order tol², so a probe a
                // thousandth of tol beyond next finds the root at once.
                const double reach = 1e-3 * tol;
                const double probe = next < x ? next - reach : next + reach;
                if (!(probe > lo && probe < hi)) return next;  // the bracket holds it that close
                double probeSlope = 0.0;
                const double fp = f(probe, probeSlope);
                ++i;
                if (next < x ? fp <= 0.0 : !(fp < 0.0)) return next;  // NaN is beyond the root
                (next < x ? hi : lo) = probe;
                next = probe;
            }
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

// Wet-bulb step tolerance, K. A Newton step below 1e-5 K means the iteration is deep in its
// quadratic regime: the error left is of order 1e-11 K (the round-trip tests hold it below
// 1e-10 K over the whole domain), far tighter than the usual 1e-3 K of psychrometric codes.
constexpr double kWetBulbTolK = 1e-5;
constexpr int kWetBulbMaxIter = 60;

// Dry bulb of a given (h, RH): step tolerance in K, as for the wet bulb.
constexpr double kHRHTolK = 1e-5;
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

double WFromWetBulb(const Coef& c, double t, double twb, double B)
{
    const double p = Pws(twb);
    if (!(p < B)) return kNaN;
    const double ws = WFromPv(c, p, B);
    const bool water = twb >= 0.0;
    const double a0 = water ? c.hg0 : c.a0Ice;
    const double cw = water ? kCw : kCice;
    return ((a0 + (c.cpv - cw) * twb) * ws - c.cpa * (t - twb)) / (a0 + c.cpv * t - cw * twb);
}

double WetBulb(const Coef& c, double t, double W, double B, double ps)
{
    // Saturated air (and air within rounding of it) is its own wet bulb.
    const double wsT = ps < B ? WFromPv(c, ps, B) : HUGE_VAL;
    if (W >= wsT) return t;
    // Branch: the liquid-water balance when it has a root at or above 0 °C, otherwise ice.
    // Where both balances have a root (a wet bulb just below 0 °C) the water one is taken: the
    // two differ by the latent heat of fusion, and liquid water is what a wick holds first.
    bool water = t >= 0.0;
    if (water) {
        static const double kPws0 = Pws(0.0);
        const double ws0 = kPws0 < B ? WFromPv(c, kPws0, B) : HUGE_VAL;
        const double w0 = (c.hg0 * ws0 - c.cpa * t) / (c.hg0 + c.cpv * t);
        water = W >= w0;
    }
    const double a0 = water ? c.hg0 : c.a0Ice;
    const double cw = water ? kCw : kCice;
    const double a1 = c.cpv - cw;
    const double k = c.ratio * B;
    const double dconst = a0 + c.cpv * t;
    // g(t*) = (a0 + a1 t*) Ws(t*) - cpa (t - t*) - W (a0 + cpv t - cw t*): increasing, zero at
    // the wet bulb (the balance multiplied out, so that no division can change sign).
    auto g = [&](double ts, double& slope) {
        double s = 0.0;
        const double p = std::exp(LnPws(ts + kT0, &s));
        const double den = B - p;
        if (!(den > 0.0)) { slope = 1.0; return HUGE_VAL; }
        const double ws = c.ratio * p / den;
        const double dws = k * p * s / (den * den);
        slope = a1 * ws + (a0 + a1 * ts) * dws + c.cpa + W * cw;
        return (a0 + a1 * ts) * ws - c.cpa * (t - ts) - W * (dconst - cw * ts);
    };
    const double hi = water ? t : (t < 0.0 ? t : 0.0);
    const double lo = water ? 0.0 : kWetBulbFloorC;
    // First step from the top of the bracket, where Ws is known from ps (no exp needed) when
    // the bracket top is the dry bulb.
    double x = hi;
    if (hi == t && ps < B) {
        const double s = LnPwsSlope(t + kT0);
        const double den = B - ps;
        const double ws = wsT;
        const double dws = k * ps * s / (den * den);
        const double slope = a1 * ws + (a0 + a1 * t) * dws + c.cpa + W * cw;
        const double gt = (a0 + a1 * t) * ws - W * (dconst - cw * t);
        x = t - gt / slope;
        if (!(x > lo)) x = 0.5 * (lo + hi);
    }
    const double r = SolveIncreasing(g, lo, hi, x, kWetBulbTolK, kWetBulbMaxIter);
    return r >= kWetBulbFloorC ? r : kNaN;
}

double TdbFromHRH(const Coef& c, double h, double rh, double B)
{
    // H(t) = cpa t + W(t) (hg0 + cpv t) - h with W(t) = ratio rh pws / (B - rh pws): increasing.
    const double k = c.ratio * B;
    auto H = [&](double t, double& slope) {
        double s = 0.0;
        const double pv = rh * std::exp(LnPws(t + kT0, &s));
        const double den = B - pv;
        if (!(den > 0.0)) { slope = 1.0; return HUGE_VAL; }
        const double w = c.ratio * pv / den;
        const double dw = k * pv * s / (den * den);
        slope = c.cpa + c.cpv * w + dw * (c.hg0 + c.cpv * t);
        return c.cpa * t + w * (c.hg0 + c.cpv * t) - h;
    };
    // Dry air at the same h bounds t from above (moisture only lowers t at given h).
    double hi = h / c.cpa;
    if (hi > kMaxT + 1.0) hi = kMaxT + 1.0;
    const double lo = kMinT - 1.0;
    if (!(hi > lo)) return kNaN;
    const double r = SnapToRange(SolveIncreasing(H, lo, hi, hi, kHRHTolK, kHRHMaxIter));
    return (r >= kMinT && r <= kMaxT) ? r : kNaN;
}

}  // namespace Ky::Psy
