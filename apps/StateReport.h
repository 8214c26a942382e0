// StateReport: every property of a state of moist air with its unit, as the program prints it:
// a table for people or one JSON object for scripts. Relative humidity in percent.
#pragma once

#include <kygraph/KyStaPnt.h>

#include <nlohmann/json.hpp>

#include <string>

class StateReport {
public:
    // One line per property ("dry-bulb temperature   tdb     25.00 °C"), after a line naming
    // the pressure and formulation the state was computed with.
    static std::string Text(const CKyStaPnt& pnt);
    // {"tdb": ..., "twb": ..., "tdp": ..., "rh": ..., "d": ..., "h": ..., "pv": ..., "ps": ...,
    //  "v": ..., "rho": ...} in the units of the table.
    static nlohmann::ordered_json Json(const CKyStaPnt& pnt);
};
