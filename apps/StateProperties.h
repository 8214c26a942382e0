// StateProperties: the properties of a state of moist air the program shows, each with its key,
// names, unit, decimals and getter. The table and JSON of `kygraph state`, the viewer's state
// JSON and its readout under the mouse all list these. Relative humidity is in percent.
#pragma once

#include <kygraph/KyStaPnt.h>

#include <nlohmann/json.hpp>

#include <vector>

class StateProperties {
public:
    struct Property {
        const char* key;        // "tdb"
        const char* name;       // "dry-bulb temperature", as `kygraph state` prints it
        const char* unit;       // "°C"
        int decimals;           // as `kygraph state` prints it
        const char* shortName;  // "Dry bulb", the viewer's readout; null: the viewer leaves it out
        int viewerDecimals;     // as the viewer's readout shows it
        double (*get)(const CKyStaPnt&);
    };

    // Every property, in the order they are listed.
    static const std::vector<Property>& All();
    // {"tdb": ..., ...} of the properties the viewer shows; one that does not exist (the dew
    // point of dry air) is null.
    static nlohmann::json ViewerJson(const CKyStaPnt& pnt);
    // The viewer's readout rows: [{"key", "label", "unit", "digits"}, ...].
    static nlohmann::json ViewerRows();
};
