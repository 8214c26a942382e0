#include "StateReport.h"

#include <kygraph/StringUtils.h>

#include <cmath>
#include <cstdio>

namespace {

struct Row {
    const char* key;
    const char* label;
    const char* unit;
    int decimals;
    double (*get)(const CKyStaPnt&);
};

const Row kRows[] = {
    {"tdb", "dry-bulb temperature", "°C", 2, [](const CKyStaPnt& p) { return p.GetTdb(); }},
    {"twb", "wet-bulb temperature", "°C", 2, [](const CKyStaPnt& p) { return p.GetTwb(); }},
    {"tdp", "dew point", "°C", 2, [](const CKyStaPnt& p) { return p.GetTdp(); }},
    {"rh", "relative humidity", "%", 2, [](const CKyStaPnt& p) { return p.GetRH() * 100.0; }},
    {"d", "moisture content", "g/kg", 3, [](const CKyStaPnt& p) { return p.GetD(); }},
    {"h", "specific enthalpy", "kJ/kg", 2, [](const CKyStaPnt& p) { return p.GetH(); }},
    {"pv", "vapour pressure", "Pa", 1, [](const CKyStaPnt& p) { return p.GetPv(); }},
    {"ps", "saturation pressure", "Pa", 1, [](const CKyStaPnt& p) { return p.GetPs(); }},
    {"v", "specific volume", "m³/kg", 4, [](const CKyStaPnt& p) { return p.GetV(); }},
    {"rho", "density", "kg/m³", 4, [](const CKyStaPnt& p) { return p.GetRho(); }},
};

}  // namespace

std::string StateReport::Text(const CKyStaPnt& pnt)
{
    const Ky::_Formulation f = pnt.GetFormulation();
    std::string out = "moist air at " + StringUtils::DblToStr(pnt.GetB(), 0).ToUtf8() + " Pa, " +
                      (f == Ky::FORMULATION_REALGAS      ? "real-gas (Hyland-Wexler 1983)"
                       : f == Ky::FORMULATION_ASHRAE2017 ? "ASHRAE 2017"
                                                         : "chart") +
                      " formulation\n";
    for (const Row& r : kRows) {
        char line[128];
        // A dew point does not exist for dry air: "none", not a number.
        const double v = r.get(pnt);
        std::snprintf(line, sizeof line, "  %-22s %-4s %12s %s\n", r.label, r.key,
                      std::isfinite(v) ? StringUtils::DblToStr(v, r.decimals).ToUtf8().c_str() : "none", std::isfinite(v) ? r.unit : "");
        out += line;
    }
    return out;
}

nlohmann::ordered_json StateReport::Json(const CKyStaPnt& pnt)
{
    nlohmann::ordered_json o = nlohmann::ordered_json::object();
    for (const Row& r : kRows) {
        const double v = r.get(pnt);
        o[r.key] = std::isfinite(v) ? nlohmann::ordered_json(v) : nlohmann::ordered_json();
    }
    return o;
}
