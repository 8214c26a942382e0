// KYSTAPNTPTY: the state-point properties a label can show, one bit each so that they combine
// into a label-content set. The fixed underlying type makes any int value (combinations,
// unknown codes) a valid value of the enumeration.
#pragma once

enum KYSTAPNTPTY : int {
    PTY_DB = 1,      // dry-bulb temperature
    PTY_WB = 2,      // wet-bulb temperature
    PTY_RH = 4,      // relative humidity
    PTY_H = 8,       // specific enthalpy
    PTY_D = 16,      // moisture content
    PTY_DP = 32,     // dew-point temperature
    PTY_FV = 64,     // as the state model abbreviates FV
    PTY_SV = 128,    // specific volume
    PTY_PH = 256,    // as the state model abbreviates PH
    PTY_PS = 512,    // as the state model abbreviates PS
    PTY_RHO = 1024,  // density
};
