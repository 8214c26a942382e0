// The real-gas relations of moist air behind Ky::FORMULATION_REALGAS, private to KyArithm:
// the enhancement factor of the saturation pressure and the virial equation of state of
// Hyland and Wexler (1983), the basis of the ASHRAE Handbook - Fundamentals (2017) ch. 1
// Table 2. The ideal-gas formulations never call them.
//
// Sources:
//   [HW83a] Hyland, R. W. and A. Wexler, 1983. Formulations for the thermodynamic properties
//           of the saturated phases of H2O from 173.15 K to 473.15 K. ASHRAE Transactions
//           89(2A): 500-519.
//   [HW83b] Hyland, R. W. and A. Wexler, 1983. Formulations for the thermodynamic properties
//           of dry air from 173.15 K to 473.15 K, and of saturated moist air from 173.15 K to
//           372.15 K, at pressures to 5 MPa. ASHRAE Transactions 89(2A): 520-535.
//   [G76]   Greenspan, L., 1976. Functional equations for the enhancement factors for CO2-free
//           moist air. J. Res. NBS 80A(1): 41-44.
//   [H98]   Hardy, B., 1998. ITS-90 formulations for vapor pressure, frostpoint temperature,
//           dewpoint temperature, and enhancement factors in the range -100 to +100 C. Proc.
//           Third International Symposium on Humidity and Moisture, Teddington: 214-222.
//
// Units: t in °C, T in K, W in kg/kg dry air, h in kJ/kg dry air, p and B in Pa.
#pragma once

namespace Ky::Psy::Real {

// Mw/Mda, the humidity ratio of one mole of vapour per mole of dry air (ASHRAE 2017 eq. 22);
// W = kRatio xw / (1 - xw) defines the humidity ratio from the mole fraction xw.
constexpr double kRatio = 0.621945;

// Enhancement factor f(t, B) >= 1 of the saturation pressure: the saturated mole fraction of
// vapour in air at t °C and B Pa is xws = f pws(t) / B ([HW83b] eq. 18 defines it). Greenspan's
// functional form [G76] eq. 4, ln f = alpha (1 - pws/B) + beta (B/pws - 1) with alpha and
// ln beta cubic in t, with Hardy's ITS-90 coefficients [H98]: over water valid -50..100 °C,
// over ice -100..0 °C, to 2 MPa, within 1e-4 of [HW83b] eq. 18. (Greenspan's own ITS-68
// coefficients leave Ws 0.07 % low against ASHRAE Table 2 at 90 °C; Hardy's stay within
// 0.04 %.) Where pws >= B no saturated moist air exists and f is 1: the fit itself reaches 1
// there, so f is continuous; at 110 kPa the water fit is used 2 K beyond its 100 °C. Switches
// water/ice at the triple point, as pws does.
// pws is the saturation pressure at t (Pa), already known to every caller.
double Enhancement(double t, double pws, double B);

// Specific enthalpy (kJ/kg dry air) of air at t °C, humidity ratio W (kg/kg) and pressure B:
// [HW83b] eq. 29, the ideal-gas enthalpies of dry air ([HW83b] eq. 13) and of vapour ([HW83a]
// eq. 19), mole-fraction weighted, plus the virial term RT [(Bm - T dBm/dT)/v
// + (Cm - T/2 dCm/dT)/v^2] of the mixture ([HW83b] eqs. 2, 3). Zero for dry air at 0 °C and
// 101.325 kPa; vapour referred to liquid water at the triple point, as ASHRAE 2017 Table 2.
double Enthalpy(double t, double W, double B);

// Specific volume (m³/kg dry air): the molar volume of the mixture from the virial equation
// p v / RT = 1 + Bm/v + Cm/v^2 ([HW83b] eq. 1), per mole of dry air.
double SpecificVolume(double t, double W, double B);

// The dry bulb (°C) of air with enthalpy h and humidity ratio W at B: Enthalpy solved for t.
// NaN when no such t lies in -101..201 °C.
double TdbFromHW(double h, double W, double B);

// The humidity ratio W (kg/kg) with Enthalpy(t, W, B) - k W = h, t given: the enthalpy solved
// for W (k = 0), or the wet-bulb balance with k the enthalpy of the condensate (kJ/kg).
// Negative when h lies below the dry air's enthalpy; NaN when no W in 0..1e6 fits (beyond
// any state the model accepts). A positive guess near the answer saves a step or two.
double WFromHT(double h, double t, double B, double k, double guess = __builtin_nan(""));

}  // namespace Ky::Psy::Real
