// Enumerations shared by the state model and its callers.
#pragma once

namespace Ky {

// Kinds of error a state-model object can record with SetError.
enum _ErrorStatus : int {
    ERR_OK = 0,
    ERR_INVALID_INPUT = 1,    // NaN, infinite or malformed argument
    ERR_OUT_OF_DOMAIN = 2,    // outside the model's validity range
    ERR_SUPERSATURATED = 3,   // relative humidity above 1
    ERR_NO_CONVERGENCE = 4,   // an iterative solver did not converge
    ERR_INCONSISTENT = 5,     // the inputs contradict each other
};

// The set of moist-air relations a state point is computed with.
enum _Formulation : int {
    FORMULATION_CHART = 0,       // the chart's own: 1.01 t + 0.001 d (2500 + 1.84 t), 622
    FORMULATION_ASHRAE2017 = 1,  // ASHRAE Handbook - Fundamentals (2017), chapter 1, ideal gas
    FORMULATION_REALGAS = 2,     // Hyland and Wexler (1983): enhancement factor and virial terms,
                                 // the basis of the ASHRAE tables of moist air
};

}  // namespace Ky
