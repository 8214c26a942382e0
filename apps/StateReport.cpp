#include "StateReport.h"

#include "FormulationNames.h"
#include "StateProperties.h"

#include <kygraph/StringUtils.h>

#include <cmath>
#include <cstdio>

std::string StateReport::Text(const CKyStaPnt& pnt)
{
    std::string out = "moist air at " + StringUtils::DblToStr(pnt.GetB(), 0).ToUtf8() + " Pa, " +
                      FormulationNames::Of(pnt.GetFormulation()).report + " formulation\n";
    for (const StateProperties::Property& r : StateProperties::All()) {
        char line[128];
        // A dew point does not exist for dry air: "none", not a number.
        const double v = r.get(pnt);
        std::snprintf(line, sizeof line, "  %-22s %-4s %12s %s\n", r.name, r.key,
                      std::isfinite(v) ? StringUtils::DblToStr(v, r.decimals).ToUtf8().c_str() : "none", std::isfinite(v) ? r.unit : "");
        out += line;
    }
    return out;
}

nlohmann::ordered_json StateReport::Json(const CKyStaPnt& pnt)
{
    nlohmann::ordered_json o = nlohmann::ordered_json::object();
    for (const StateProperties::Property& r : StateProperties::All()) {
        const double v = r.get(pnt);
        o[r.key] = std::isfinite(v) ? nlohmann::ordered_json(v) : nlohmann::ordered_json();
    }
    return o;
}
