#include "StateCommand.h"

#include "CommandLine.h"
#include "DecimalNumber.h"
#include "StateReport.h"

#include <kygraph/KyChart.h>

#include <cstdio>
#include <iostream>

namespace {

const char* const kDescriptions[StateInput::kPropCount] = {
    "Dry-bulb temperature, °C", "Wet-bulb temperature, °C", "Dew point, °C", "Relative humidity, %",
    "Moisture content, g/kg dry air", "Specific enthalpy, kJ/kg dry air", "Vapour pressure, Pa",
};

}  // namespace

StateCommand::StateCommand(CLI::App& app)
{
    m_cmd = app.add_subcommand("state", "Print every property of a state of moist air given by two of them");
    for (int i = 0; i < StateInput::kPropCount; ++i) {
        const auto prop = static_cast<StateInput::Prop>(i);
        m_options[i] = m_cmd->add_option(std::string("--") + StateInput::Key(prop), m_values[i], kDescriptions[i])
                             ->check(CommandLine::Decimal());
    }
    m_pressureOption = m_cmd->add_option("--pressure", m_pressure, "Atmospheric pressure, Pa (default 101325)")
                           ->check(CommandLine::Decimal());
    m_cmd->add_option("--formulation", m_formulation, "Moist-air relations: chart, ashrae or realgas")
        ->check(CLI::IsMember({"chart", "ashrae", "realgas"}))
        ->capture_default_str();
    m_cmd->add_flag("--json", m_json, "One JSON object instead of a table");
    m_cmd->footer("Pairs: " + StateInput::SupportedPairs() +
                  "\nExamples:\n"
                  "  kygraph state --tdb 25 --rh 60\n"
                  "  kygraph state --tdb 33.2 --twb 26.4 --pressure 84000 --json");
}

int StateCommand::Run()
{
    StateInput input;
    for (int i = 0; i < StateInput::kPropCount; ++i) {
        if (m_options[i]->count() == 0) continue;
        const auto prop = static_cast<StateInput::Prop>(i);
        const StateInput::Limits lim = StateInput::LimitsOf(prop);
        if (!(m_values[i] >= lim.min && m_values[i] <= lim.max)) {
            CommandLine::Error(std::string("--") + StateInput::Key(prop) + ": " + DecimalNumber::Text(m_values[i]) +
                               " is out of range " + DecimalNumber::Text(lim.min) + ".." + DecimalNumber::Text(lim.max));
            return CommandLine::kExitUsage;
        }
        input.Set(prop, m_values[i]);
    }
    CKyChart* model = CKyChart::InstanceGloble();
    if (m_pressureOption->count() > 0 && !model->SetGlobleB(m_pressure)) {
        CommandLine::Error("--pressure: " + DecimalNumber::Text(m_pressure) + " is out of range " + DecimalNumber::Text(CKyChart::kMinB) + ".." +
                           DecimalNumber::Text(CKyChart::kMaxB));
        return CommandLine::kExitUsage;
    }
    model->SetFormulation(m_formulation == "realgas" ? Ky::FORMULATION_REALGAS
                          : m_formulation == "ashrae" ? Ky::FORMULATION_ASHRAE2017
                                                      : Ky::FORMULATION_CHART);
    CKyStaPnt pnt;
    std::string error;
    if (!input.Resolve(pnt, error)) {
        CommandLine::Error(error);
        return CommandLine::kExitUsage;
    }
    std::cout << (m_json ? StateReport::Json(pnt).dump() + "\n" : StateReport::Text(pnt));
    return CommandLine::kExitOk;
}
