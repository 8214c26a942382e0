// FormulationNames: the state model's formulations with every name people see for them: the
// key of scene files, the command line and the viewer ("chart", "ashrae", "realgas"), the
// words of the state report and the label of the viewer's choice.
#pragma once

#include <kygraph/KyTypes.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class FormulationNames {
public:
    struct Entry {
        Ky::_Formulation formulation;
        const char* key;     // "ashrae"
        const char* report;  // "ASHRAE 2017", as `kygraph state` names it
        const char* label;   // "ASHRAE 2017, ideal gas", as the viewer offers it
    };

    // Every formulation, the model's default first.
    static const std::vector<Entry>& All();
    static const Entry& Of(Ky::_Formulation f);
    static const char* Key(Ky::_Formulation f) { return Of(f).key; }
    // The formulation named key; empty when none is.
    static std::optional<Ky::_Formulation> FromKey(std::string_view key);
    // "chart, ashrae, realgas", as a message lists them; last joins the last two.
    static std::string KeyList(const char* separator = ", ", const char* last = ", ");
};
