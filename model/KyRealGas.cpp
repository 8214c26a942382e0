// The real-gas relations of moist air (see internal/KyRealGas.h for the sources).
#include "internal/KyRealGas.h"

#include "internal/KyPsy.h"

#include <cmath>

namespace Ky::Psy::Real {

namespace {

constexpr double kR = 8.314472;                // J/(mol K), ASHRAE 2017 ch. 1
constexpr double kMa = 0.028966;               // kg/mol, dry air, ASHRAE 2017 ch. 1
constexpr double kMw = kRatio * kMa;           // kg/mol, water, so that W and xw agree exactly

// Everything of the virial equation that depends on T alone, so that the solvers below, which
// vary W at fixed T, pay for the three exponentials once. Second virial coefficients B in
// m³/mol, third C in m⁶/mol²; "H" is B - T dB/dT and C - T/2 dC/dT, what enters the enthalpy.
struct Virial {
    double T;
    double baa, baw, bww, caaa, caaw, caww, cwww;
    double baaH, bawH, bwwH, caaaH, caawH, cawwH, cwwwH;
    double haIdeal;  // J/kg dry air, ideal-gas dry air ([HW83b] eq. 13 without its virial term)
    double hwIdeal;  // J/kg vapour, ideal-gas water vapour ([HW83a] eq. 19 without its virial term)
};

Virial VirialAt(double t)
{
    Virial v;
    const double T = t + kT0, u = 1.0 / T;
    v.T = T;
    // [HW83b] eq. 10: Baa = sum a_k / T^k; B - T dB/dT = sum (1 + k) a_k / T^k.
    constexpr double a0 = 0.349568e-4, a1 = -0.668772e-2, a2 = -0.210141e1, a3 = 0.924746e2;
    v.baa = a0 + u * (a1 + u * (a2 + u * a3));
    v.baaH = a0 + u * (2.0 * a1 + u * (3.0 * a2 + u * 4.0 * a3));
    // [HW83b] eq. 11: Caaa; C - T/2 dC/dT = sum (1 + k/2) c_k / T^k.
    constexpr double c0 = 0.125975e-8, c1 = -0.190905e-6, c2 = 0.632467e-4;
    v.caaa = c0 + u * (c1 + u * c2);
    v.caaaH = c0 + u * (1.5 * c1 + u * 2.0 * c2);
    // [HW83b] eq. 15: Baw.
    constexpr double w0 = 0.32366097e-4, w1 = -0.141138e-1, w2 = -0.1244535e1, w4 = -0.2348789e4;
    v.baw = w0 + u * (w1 + u * (w2 + u * u * w4));
    v.bawH = w0 + u * (2.0 * w1 + u * (3.0 * w2 + u * u * 5.0 * w4));
    // [HW83b] eq. 16: Caaw.
    constexpr double e0 = 0.482737e-9, e1 = 0.105678e-6, e2 = -0.656394e-4, e3 = 0.294442e-1, e4 = -0.319317e1;
    v.caaw = e0 + u * (e1 + u * (e2 + u * (e3 + u * e4)));
    v.caawH = e0 + u * (1.5 * e1 + u * (2.0 * e2 + u * (2.5 * e3 + u * 3.0 * e4)));
    // [HW83b] eq. 17: Caww = -1e-6 exp(q(1/T)); T dC/dT = -C (q1 u + 2 q2 u² + 3 q3 u³).
    constexpr double q0 = -0.10728876e2, q1 = 0.347802e4, q2 = -0.383383e6, q3 = 0.33406e8;
    v.caww = -1e-6 * std::exp(q0 + u * (q1 + u * (q2 + u * q3)));
    v.cawwH = v.caww * (1.0 + 0.5 * u * (q1 + u * (2.0 * q2 + u * 3.0 * q3)));
    // [HW83b] eqs. 19, 20 from [HW83a] eqs. 15, 16: Bww = RT B', Cwww = (RT)² (C' + B'²), with
    // B' = 0.70e-8 - 0.147184e-8 exp(1734.29/T) 1/Pa and C' = 0.104e-14 - 0.335297e-17
    // exp(3645.09/T) 1/Pa². Their T-derivatives are written out: Bww - T dBww/dT
    // = -R T² dB'/dT, Cwww - T/2 dCwww/dT = -(R²T³/2)(dC'/dT + 2 B' dB'/dT).
    const double x1 = 0.147184e-8 * std::exp(1734.29 * u), x2 = 0.335297e-17 * std::exp(3645.09 * u);
    const double bp = 0.70e-8 - x1, cp = 0.104e-14 - x2;
    const double T2dbp = x1 * 1734.29, T2dcp = x2 * 3645.09;  // T² dB'/dT, T² dC'/dT
    const double RT = kR * T;
    v.bww = RT * bp;
    v.bwwH = -kR * T2dbp;
    v.cwww = RT * RT * (cp + bp * bp);
    v.cwwwH = -0.5 * kR * RT * (T2dcp + 2.0 * bp * T2dbp);
    // [HW83b] eq. 13, ideal part, J/mol, per kg of dry air.
    v.haIdeal = (-0.79078691e4 +
                 T * (0.28709015e2 + T * (0.26431805e-2 + T * (-0.10405863e-4 + T * (0.18660410e-7 + T * -0.97843331e-11))))) /
                kMa;
    // [HW83a] eq. 19, ideal part, J/kg of vapour.
    v.hwIdeal = 0.199798e7 +
                T * (0.18035706e4 + T * (0.36400463 + T * (-0.14677622e-2 + T * (0.28726608e-5 + T * -0.17508262e-8))));
    return v;
}

// d(haIdeal + W hwIdeal)/dT, J/(kg K): the slope the enthalpy solver steps with. The virial
// term's share of the true slope is below 0.3 %, so the steps still shrink a hundredfold each.
double IdealSlope(double T, double W)
{
    const double dha = (0.28709015e2 + T * (2.0 * 0.26431805e-2 + T * (3.0 * -0.10405863e-4 + T * (4.0 * 0.18660410e-7 + T * 5.0 * -0.97843331e-11)))) / kMa;
    const double dhw = 0.18035706e4 + T * (2.0 * 0.36400463 + T * (3.0 * -0.14677622e-2 + T * (4.0 * 0.28726608e-5 + T * 5.0 * -0.17508262e-8)));
    return dha + W * dhw;
}

// The mixture at mole fraction xw of vapour: molar volume v (m³/mol) from [HW83b] eq. 1,
// p v = RT (1 + Bm/v + Cm/v²), with Bm and Cm by eqs. 2 and 3, and the virial part of its
// molar enthalpy, RT [(Bm - T dBm/dT)/v + (Cm - T/2 dCm/dT)/v²] (J/mol, eq. 29).
struct Mixture {
    double v;
    double hVirial;
};

Mixture MixtureAt(const Virial& c, double xw, double B)
{
    const double xa = 1.0 - xw;
    const double bm = xa * xa * c.baa + 2.0 * xa * xw * c.baw + xw * xw * c.bww;
    const double cm = xa * xa * xa * c.caaa + 3.0 * xa * xa * xw * c.caaw + 3.0 * xa * xw * xw * c.caww + xw * xw * xw * c.cwww;
    const double bmH = xa * xa * c.baaH + 2.0 * xa * xw * c.bawH + xw * xw * c.bwwH;
    const double cmH = xa * xa * xa * c.caaaH + 3.0 * xa * xa * xw * c.caawH + 3.0 * xa * xw * xw * c.cawwH + xw * xw * xw * c.cwwwH;
    const double RT = kR * c.T;
    // The pressure series v = v0 + Bm + (Cm - Bm²)/v0 is within (Bm/v0)³, about 1e-9, of the
    // root; Bm/v is about 1e-3 at these pressures, so one fixed-point step leaves 1e-12 of v,
    // and of the virial part of h, itself a thousandth of h, nothing.
    const double v0 = RT / B;
    double v = v0 + bm + (cm - bm * bm) / v0;
    v = v0 * (1.0 + (bm + cm / v) / v);
    return {v, RT * (bmH + cmH / v) / v};
}

double XwFromW(double W) { return W / (kRatio + W); }

// h (kJ/kg dry air) at T of c, humidity ratio W: [HW83b] eq. 29 per kg of dry air.
double EnthalpyAt(const Virial& c, double W, double B)
{
    const double xw = XwFromW(W);
    const Mixture m = MixtureAt(c, xw, B);
    return (c.haIdeal + W * c.hwIdeal + m.hVirial / ((1.0 - xw) * kMa)) / 1000.0;
}

constexpr int kMaxIter = 40;

}  // namespace

namespace {

// [G76] eq. 4's exponent, ln f, with the ITS-90 coefficients of [H98].
double LnEnhancement(bool water, double t, double pws, double B)
{
    const double alpha = water ? 3.53624e-4 + t * (2.9328363e-5 + t * (2.6168979e-7 + t * 8.5813609e-9))
                               : 3.64449e-4 + t * (2.9367585e-5 + t * (4.8874766e-7 + t * 4.3669918e-9));
    const double lnBeta = water ? -1.07588e1 + t * (6.3268134e-2 + t * (-2.5368934e-4 + t * 6.3405286e-7))
                                : -1.0728876e1 + t * (7.6215115e-2 + t * (-1.7540413e-4 + t * 2.1689756e-6));
    return alpha * (1.0 - pws / B) + std::exp(lnBeta) * (B / pws - 1.0);
}

}  // namespace

double Enhancement(double t, double pws, double B)
{
    if (!(pws < B)) return 1.0;
    const bool water = OverWater(t + kT0);
    if (water) return std::exp(LnEnhancement(true, t, pws, B));
    // The two fits differ by 1.2e-4 at the triple point, and xws must not step there: a step
    // down makes d(t*) fall and two wet bulbs answer one state. The ice fit is shifted to meet
    // the water fit at the triple point (a tenth of its own uncertainty at 0 °C, none at -100).
    static const double kPwsTp = Pws(kTripleC);
    const double shift = LnEnhancement(true, kTripleC, kPwsTp, B) - LnEnhancement(false, kTripleC, kPwsTp, B);
    return std::exp(LnEnhancement(false, t, pws, B) + shift);
}

double Enthalpy(double t, double W, double B) { return EnthalpyAt(VirialAt(t), W, B); }

double SpecificVolume(double t, double W, double B)
{
    const double xw = XwFromW(W);
    return MixtureAt(VirialAt(t), xw, B).v / ((1.0 - xw) * kMa);
}

double TdbFromHW(double h, double W, double B)
{
    // Start from the ideal-gas closed form of ASHRAE 2017 eq. 32, within a few kelvin.
    double t = (h - 2501.0 * W) / (1.006 + 1.86 * W);
    for (int i = 0; i < kMaxIter; ++i) {
        if (!(t >= kMinT - 1.0 && t <= kMaxT + 1.0)) {
            // Clamp once to the range's margin: a root beyond it is refused by the caller.
            const double end = t < kMinT ? kMinT - 1.0 : kMaxT + 1.0;
            if (t != t || i > 0) return kNaN;
            t = end;
        }
        const double f = EnthalpyAt(VirialAt(t), W, B) - h;
        const double step = 1000.0 * f / IdealSlope(t + kT0, W);
        t -= step;
        if (!(std::fabs(step) > 1e-12 * (1.0 + std::fabs(t)))) return t == t ? t : kNaN;
    }
    return kNaN;
}

double WFromHT(double h, double t, double B, double k, double guess)
{
    const Virial c = VirialAt(t);
    const double hDry = EnthalpyAt(c, 0.0, B);
    // dh/dW without the virial term, kJ/kg: the step of the iteration below.
    const double slope = c.hwIdeal / 1000.0 - k;
    double W = (h - hDry) / slope;
    if (!(W > 0.0)) return W;  // dry air or below it: the caller refuses a negative W
    if (guess > 0.0 && guess < 1e6) W = guess;
    double wPrev = 0.0, fPrev = hDry - h;  // dry air: the secant's first point
    for (int i = 0; i < kMaxIter; ++i) {
        if (!(W < 1e6)) return kNaN;
        const double f = EnthalpyAt(c, W, B) - k * W - h;
        // The secant through the last point is the real slope, which the ideal one misses by
        // 0.3 %: the steps shrink superlinearly instead of by 0.003 each.
        // Within 1e-9 of the last point the difference would be rounding: the ideal slope then.
        const double dW = W - wPrev, sec = (f - fPrev) / dW;
        const bool useSec = std::fabs(dW) > 1e-9 * W && sec > 0.5 * slope && sec < 2.0 * slope;
        const double step = f / (useSec ? sec : slope);
        wPrev = W;
        fPrev = f;
        W -= step;
        // Relative to W, or to the rounding of h where W is tiny (cold air, 1e-11 kg/kg).
        if (!(std::fabs(step) > 1e-15 * (W + (std::fabs(h) + 1.0) / slope))) return W;
    }
    return kNaN;
}

}  // namespace Ky::Psy::Real
