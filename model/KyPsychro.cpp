#include <kygraph/KyPsychro.h>

#include "internal/KyPsy.h"

#include <cmath>

namespace Ky {

double StandardAtmPressure(double altitude_m)
{
    if (!(altitude_m >= -500.0 && altitude_m <= 11000.0)) return Psy::kNaN;
    return 101325.0 * std::pow(1.0 - 2.25577e-5 * altitude_m, 5.2559);
}

double SaturationPressure(double t_c)
{
    if (!(t_c >= Psy::kMinT && t_c <= Psy::kMaxT)) return Psy::kNaN;
    return Psy::Pws(t_c);
}

}  // namespace Ky
