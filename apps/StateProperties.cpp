#include "StateProperties.h"

#include <cmath>

const std::vector<StateProperties::Property>& StateProperties::All()
{
    static const std::vector<Property> properties = {
        {"tdb", "dry-bulb temperature", "°C", 2, "Dry bulb", 1, [](const CKyStaPnt& p) { return p.GetTdb(); }},
        {"twb", "wet-bulb temperature", "°C", 2, "Wet bulb", 1, [](const CKyStaPnt& p) { return p.GetTwb(); }},
        {"tdp", "dew point", "°C", 2, "Dew point", 1, [](const CKyStaPnt& p) { return p.GetTdp(); }},
        {"rh", "relative humidity", "%", 2, "RH", 1, [](const CKyStaPnt& p) { return p.GetRH() * 100.0; }},
        {"d", "moisture content", "g/kg", 3, "d", 2, [](const CKyStaPnt& p) { return p.GetD(); }},
        {"h", "specific enthalpy", "kJ/kg", 2, "h", 2, [](const CKyStaPnt& p) { return p.GetH(); }},
        {"pv", "vapour pressure", "Pa", 1, "pv", 0, [](const CKyStaPnt& p) { return p.GetPv(); }},
        {"ps", "saturation pressure", "Pa", 1, nullptr, 0, [](const CKyStaPnt& p) { return p.GetPs(); }},
        {"v", "specific volume", "m³/kg", 4, nullptr, 0, [](const CKyStaPnt& p) { return p.GetV(); }},
        {"rho", "density", "kg/m³", 4, "Density", 3, [](const CKyStaPnt& p) { return p.GetRho(); }},
    };
    return properties;
}

nlohmann::json StateProperties::ViewerJson(const CKyStaPnt& pnt)
{
    nlohmann::json j = nlohmann::json::object();
    for (const Property& p : All()) {
        if (!p.shortName) continue;
        const double v = p.get(pnt);
        j[p.key] = std::isfinite(v) ? nlohmann::json(v) : nlohmann::json();
    }
    return j;
}

nlohmann::json StateProperties::ViewerRows()
{
    nlohmann::json rows = nlohmann::json::array();
    for (const Property& p : All())
        if (p.shortName) rows.push_back({{"key", p.key}, {"label", p.shortName}, {"unit", p.unit}, {"digits", p.viewerDecimals}});
    return rows;
}
