// The moist-air relations behind CKyStaPnt, private to KyArithm. Inline, because every state
// point runs several of them per setter and the chart sets thousands of points per redraw.
//
// Units: t in °C, T in K, W in kg/kg dry air (the public interface speaks g/kg, d = 1000 W),
// h in kJ/kg dry air, pressures in Pa.
#pragma once

#include <kygraph/KyTypes.h>

#include "KyRealGas.h"

#include <cmath>

namespace Ky::Psy {

constexpr double kT0 = 273.15;           // K at 0 °C
constexpr double kTripleC = 0.01;        // °C, where the saturation curve switches ice/water
constexpr double kTripleK = 273.16;      // K
constexpr double kRda = 287.042;         // J/(kg K), gas constant of dry air (ASHRAE 2017 eq. 26)
constexpr double kMinT = -100.0;         // °C, validity range of the Hyland-Wexler equations
constexpr double kMaxT = 200.0;          // °C
// A temperature derived from other properties may miss an end of the range by rounding; the
// states accept it within this margin, K.
constexpr double kRangeMarginK = 1e-9;
// Lowest wet bulb accepted and returned, °C. The wet bulb of the coldest air in range lies
// 2e-5 K below its dry bulb, so it can fall just under -100 °C; the ice equation is smooth
// enough to extend 1 K that far.
constexpr double kWetBulbFloorC = kMinT - 1.0;
constexpr double kNaN = __builtin_nan("");

// The constants of one formulation:
//   h = cpa t + W (hg0 + cpv t)                        (kJ/kg)
//   W = ratio pv / (B - pv)                            (ratio = Mw/Mda)
// and of its wet-bulb balance (adiabatic saturation, ASHRAE 2017 eqs. 33 and 35 in form):
//   W = ((a0 + (cpv - cw) t*) Ws* - cpa (t - t*)) / (a0 + cpv t - cw t*)
// with a0 = hg0, cw = 4.186 over water (t* >= 0 °C), and a0 = hg0 + latent heat of fusion,
// cw = 2.1 over ice (t* < 0 °C).
struct Coef {
    double cpa;    // kJ/(kg K), dry air
    double hg0;    // kJ/kg, vapour enthalpy at 0 °C
    double cpv;    // kJ/(kg K), vapour
    double ratio;  // kg/kg, Mw/Mda
    double a0Ice;  // kJ/kg, hg0 plus the latent heat of fusion (-enthalpy of ice at 0 °C)
    // The real-gas relations of KyRealGas.h instead of the ideal-gas ones below; the
    // coefficients above then serve the solvers as the ideal-gas approximation they step with.
    bool real;
};
constexpr double kCw = 4.186;     // kJ/(kg K), liquid water
constexpr double kCice = 2.1;     // kJ/(kg K), ice

// The chart's own: 1.01 t + 0.001 d (2500 + 1.84 t), d = 622 pv/(B - pv). Its wet-bulb balance
// uses the same enthalpies, with ice at -333.4 + 2.1 t kJ/kg (ASHRAE 2017 ch. 1, below eq. 35),
// so that the wet bulb agrees with the chart's own isenthalps.
constexpr Coef kChart{1.01, 2500.0, 1.84, 0.622, 2500.0 + 333.4, false};
// ASHRAE 2017 ch. 1: eqs. 22 (0.621945), 32 (1.006, 2501, 1.86), 33 and 35 (2830).
constexpr Coef kAshrae{1.006, 2501.0, 1.86, 0.621945, 2830.0, false};
// Hyland and Wexler (1983); the condensate of its wet-bulb balance is water at 4.186 t and ice
// at -333.4 + 2.1 t kJ/kg (ASHRAE 2017 ch. 1, eq. 33 and below eq. 35).
constexpr Coef kRealGas{1.006, 2501.0, 1.86, Real::kRatio, 2501.0 + 333.4, true};

inline const Coef& CoefOf(Ky::_Formulation f)
{
    return f == Ky::FORMULATION_REALGAS ? kRealGas : f == Ky::FORMULATION_ASHRAE2017 ? kAshrae : kChart;
}

// ---- saturation pressure, Hyland and Wexler (1983), ASHRAE 2017 ch. 1 eqs. 5 and 6 ----
// ln pws = C1/T + C2 + C3 T + C4 T^2 + C5 T^3 (+ C6 T^4) + C7 ln T, pws in Pa, T in K.
namespace hw {
constexpr double kI1 = -5.6745359e3, kI2 = 6.3925247, kI3 = -9.6778430e-3, kI4 = 6.2215701e-7,
                 kI5 = 2.0747825e-9, kI6 = -9.4840240e-13, kI7 = 4.1635019;  // eq. 5, ice
constexpr double kW1 = -5.8002206e3, kW2 = 1.3914993, kW3 = -4.8640239e-2, kW4 = 4.1764768e-5,
                 kW5 = -1.4452093e-8, kW6 = 6.5459673;  // eq. 6, water
}  // namespace hw

// True where eq. 6 (water) applies: at and above the triple point.
inline bool OverWater(double T) { return T >= kTripleK; }

// ln pws(T), pws in Pa, and optionally its slope d(ln pws)/dT in 1/K, at T in K: eq. 6 at and
// above the triple point, eq. 5 below. Valid 173.15..473.15 K; a little beyond is harmless
// arithmetic. Solvers work with the logarithm because it is nearly linear in 1/T (Clausius-
// Clapeyron), so Newton's steps on it are almost exact; the slope costs no extra
// transcendental call once ln T is known.
inline double LnPws(double T, double* slope = nullptr)
{
    using namespace hw;
    const double invT = 1.0 / T;
    const double lnT = std::log(T);
    if (OverWater(T)) {
        if (slope) *slope = -kW1 * invT * invT + kW3 + T * (2.0 * kW4 + T * 3.0 * kW5) + kW6 * invT;
        return kW1 * invT + kW2 + T * (kW3 + T * (kW4 + T * kW5)) + kW6 * lnT;
    }
    if (slope) *slope = -kI1 * invT * invT + kI3 + T * (2.0 * kI4 + T * (3.0 * kI5 + T * 4.0 * kI6)) + kI7 * invT;
    return kI1 * invT + kI2 + T * (kI3 + T * (kI4 + T * (kI5 + T * kI6))) + kI7 * lnT;
}

// d(ln pws)/dT (1/K) at T (K) with no transcendental call at all: the wet-bulb solver needs
// it at the dry bulb, where pws is already known.
inline double LnPwsSlope(double T)
{
    using namespace hw;
    const double invT = 1.0 / T;
    if (OverWater(T)) return -kW1 * invT * invT + kW3 + T * (2.0 * kW4 + T * 3.0 * kW5) + kW6 * invT;
    return -kI1 * invT * invT + kI3 + T * (2.0 * kI4 + T * (3.0 * kI5 + T * 4.0 * kI6)) + kI7 * invT;
}

// Saturation pressure pws (Pa) at t °C, eqs. 5 and 6; the caller has checked t (kMinT..kMaxT).
inline double Pws(double t) { return std::exp(LnPws(t + kT0)); }

// ---- the relations of one formulation ----
// pv is the partial pressure of vapour xw B (ASHRAE 2017 eq. 18 for the real gas as well).
// Humidity ratio W (kg/kg) of vapour at partial pressure pv in air at B (Pa, pv < B):
// ASHRAE 2017 ch. 1 eq. 20 with the formulation's ratio (the chart's d = 622 pv/(B - pv)).
inline double WFromPv(const Coef& c, double pv, double B) { return c.ratio * pv / (B - pv); }
// The same relation solved for pv (Pa); below B for any finite W >= 0.
inline double PvFromW(const Coef& c, double W, double B) { return B * W / (c.ratio + W); }
// The partial pressure of vapour in saturated air at t °C, Pa: pws(t), and for the real gas
// f pws(t) = xws B (ASHRAE 2017 eq. 23 with the enhancement factor f). RH is pv over it
// (ASHRAE 2017 eq. 24: xw / xws). pws is Pws(t), passed by callers that already have it.
inline double SatPartial(const Coef& c, double t, double pws, double B)
{
    return c.real ? Real::Enhancement(t, pws, B) * pws : pws;
}
inline double SatPartial(const Coef& c, double t, double B) { return SatPartial(c, t, Pws(t), B); }
// Specific enthalpy (kJ/kg dry air) at t °C and W kg/kg: ASHRAE 2017 eq. 32 in form, with the
// formulation's coefficients. Valid where the ideal-gas mixture is, -100..200 °C.
inline double Enthalpy(const Coef& c, double t, double W, double B)
{
    return c.real ? Real::Enthalpy(t, W, B) : c.cpa * t + W * (c.hg0 + c.cpv * t);
}
// Dry bulb (°C) from h (kJ/kg) and W (kg/kg): the enthalpy relation solved in closed form (the
// real gas: to the last bits), so that setting by (h, d) keeps h and d exactly and t is off by
// rounding only.
inline double TdbFromHW(const Coef& c, double h, double W, double B)
{
    return c.real ? Real::TdbFromHW(h, W, B) : (h - c.hg0 * W) / (c.cpa + c.cpv * W);
}
// W (kg/kg) from h (kJ/kg) and t (°C), the same relation solved for W; negative when h is
// below the enthalpy of dry air at t. guess, a W close to the answer, speeds the real gas up.
inline double WFromHT(const Coef& c, double h, double t, double B, double guess = kNaN)
{
    return c.real ? Real::WFromHT(h, t, B, 0.0, guess) : (h - c.cpa * t) / (c.hg0 + c.cpv * t);
}
// Absolute rounding error (kg/kg) of a W derived from h at t by WFromHT: h - cpa t cancels
// where W is small, so a few ulps of h and cpa t become a large share of W. Supersaturation
// checks allow it, so that a saturated state set by h reads as saturated.
inline double WRounding(const Coef& c, double h, double t)
{
    // The real gas's enthalpy sums more terms (its polynomials, the virial part): more ulps.
    const double ulps = c.real ? 64.0 : 4.0;
    return ulps * 2.220446049250313e-16 * (std::fabs(h) + c.cpa * std::fabs(t)) / (c.hg0 + c.cpv * t);
}
// Specific volume, m³/kg dry air: v = Rda T (1 + W/ratio) / B (ASHRAE 2017 eq. 26, written with
// the formulation's own ratio so that v and W agree exactly).
inline double SpecificVolume(const Coef& c, double t, double W, double B)
{
    return c.real ? Real::SpecificVolume(t, W, B) : kRda * (t + kT0) * (1.0 + W / c.ratio) / B;
}

// ---- solvers (KyPsy.cpp) ----

// Saturation temperature, °C: the t with pws(t) = p, over water at and above the triple point
// and over ice below it. p in Pa, positive and finite. NaN when the temperature lies outside
// -100..200 °C or the solver fails. Used for the dew (frost) point and for states of given RH.
double SatTemperature(double p);
// The same for the formulation's saturated partial pressure: the t with SatPartial(t) = p at
// B; the dew point of vapour at partial pressure p (ASHRAE 2017 eq. 23 with f for the real gas).
double SatTemperature(const Coef& c, double p, double B);

// Thermodynamic wet bulb, °C, of air at t °C with humidity ratio W at pressure B, where pws(t)
// is ps. NaN when no wet bulb exists in range or the solver fails.
double WetBulb(const Coef& c, double t, double W, double B, double ps);

// Humidity ratio of air at t °C whose wet bulb is twb (ASHRAE 2017 eqs. 33 and 35 in form).
// NaN when pws(twb) >= B.
double WFromWetBulb(const Coef& c, double t, double twb, double B);

// Dry bulb, °C, of air with enthalpy h and relative humidity rh (0 < rh <= 1) at B.
// NaN when no such state lies in -100..200 °C below pv = B, or the solver fails.
double TdbFromHRH(const Coef& c, double h, double rh, double B);

}  // namespace Ky::Psy
