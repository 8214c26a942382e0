#include "FormulationNames.h"

const std::vector<FormulationNames::Entry>& FormulationNames::All()
{
    static const std::vector<Entry> entries = {
        {Ky::FORMULATION_CHART, "chart", "chart", "Chart (1.01 t + 0.001 d (2500 + 1.84 t))"},
        {Ky::FORMULATION_ASHRAE2017, "ashrae", "ASHRAE 2017", "ASHRAE 2017, ideal gas"},
        {Ky::FORMULATION_REALGAS, "realgas", "real-gas (Hyland-Wexler 1983)", "Real gas (Hyland–Wexler 1983)"},
    };
    return entries;
}

const FormulationNames::Entry& FormulationNames::Of(Ky::_Formulation f)
{
    for (const Entry& e : All())
        if (e.formulation == f) return e;
    return All().front();
}

std::optional<Ky::_Formulation> FormulationNames::FromKey(std::string_view key)
{
    for (const Entry& e : All())
        if (key == e.key) return e.formulation;
    return std::nullopt;
}

std::string FormulationNames::KeyList(const char* separator, const char* last)
{
    std::string list;
    for (size_t i = 0; i < All().size(); ++i)
        list += (i == 0 ? "" : i + 1 == All().size() ? last : separator) + std::string(All()[i].key);
    return list;
}
