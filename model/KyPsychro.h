// Free functions of the moist-air model that a host needs without a state point.
#pragma once

#include <kygraph/KyExport.h>

namespace Ky {

// Standard atmospheric pressure, Pa, at altitude_m metres above sea level.
// Source: ASHRAE Handbook - Fundamentals (2017) ch. 1 eq. 3,
//   p = 101.325 (1 - 2.25577e-5 Z)^5.2559 kPa.
// Valid range: -500 m to 11 000 m (the troposphere the equation describes); outside it,
// and for NaN or infinite input, the result is NaN so that CKyChart::SetGlobleB refuses it.
KYARITHM_API double StandardAtmPressure(double altitude_m);

// Saturation pressure of water vapour, Pa, at temperature t_c in °C: over liquid water for
// t_c >= 0.01 °C (the triple point), over ice below. Source: Hyland and Wexler (1983), as in
// ASHRAE Handbook - Fundamentals (2017) ch. 1 eqs. 5 (ice) and 6 (water).
// Valid range: -100 °C to 200 °C; outside it, and for NaN or infinite input, NaN.
KYARITHM_API double SaturationPressure(double t_c);

}  // namespace Ky
