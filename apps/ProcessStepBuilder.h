// ProcessStepBuilder: the state one step of an air-handling process ends in, from the inputs
// an engineer gives: a mixing by fresh-air fraction or two flows, heating or cooling to a dry
// bulb, a cooling coil by its leaving state, by leaving RH or by apparatus dew point and
// bypass factor, steam or spray humidification to a d or an RH, a heat-moisture ratio to a d,
// h, RH, dry bulb or a temperature difference from the state it starts in. The state model's
// own builders do the work where they can; this class turns the other inputs into theirs.
#pragma once

#include "Scene.h"

#include <kygraph/KyAS.h>
#include <kygraph/KyStaPnt.h>

#include <optional>
#include <string>

class ProcessStepBuilder {
public:
    // What a step refers to, with names already resolved to states and values.
    struct Inputs {
        CKyStaPnt from;               // the entering state; a of a mixing
        CKyStaPnt other;              // b of a mixing; the coil's leaving state given as "to"
        std::optional<double> tdb;    // end dry bulb, °C (given or taken from a named state)
        std::optional<double> d;      // end moisture content, g/kg (likewise)
    };

    // Why a step could not be built: the key of the input at fault ("" for the step as a
    // whole) and a one-line message naming it.
    struct Failure {
        std::string key;
        std::string message;
    };

    // The end state of step st (the mixture of a mixing). False with failure filled when the
    // inputs give no state of moist air or contradict the kind of step; end is then unchanged.
    static bool Build(const SceneStep& st, const Inputs& in, CKyStaPnt& end, Failure& failure);

    // The state reached from `from` along ratio (kJ/kg, ±inf for constant d) at the one end
    // condition given: d g/kg, h kJ/kg, rh percent or a dry bulb tdb °C.
    static bool RatioEnd(const CKyStaPnt& from, double ratio, const std::optional<double>& d,
                         const std::optional<double>& h, const std::optional<double>& rh,
                         const std::optional<double>& tdb, CKyStaPnt& end, std::string& error);

    static CKyAS RatioOf(double ratio);

private:
    static bool Coil(const SceneStep& st, const Inputs& in, CKyStaPnt& end, Failure& failure);
    static bool SteamToRH(const CKyStaPnt& from, double rhPercent, double tSteam, CKyStaPnt& end, std::string& error);
    static bool RatioToTdb(const CKyStaPnt& from, double ratio, double tdb, CKyStaPnt& end, std::string& error);
};
