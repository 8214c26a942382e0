#include "StateCommand.h"

#include "CommandLine.h"
#include "HostLanguage.h"
#include "DecimalNumber.h"
#include "FormulationNames.h"
#include "StateReport.h"

#include <kygraph/KyChart.h>

#include <cmath>
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
    m_altitudeOption = m_cmd->add_option("--altitude", m_altitude, "Altitude, m, in place of --pressure: the standard atmosphere's pressure")
                           ->check(CommandLine::Decimal())
                           ->excludes(m_pressureOption);
    std::vector<std::string> formulations;
    for (const FormulationNames::Entry& e : FormulationNames::All()) formulations.push_back(e.key);
    m_cmd->add_option("--formulation", m_formulation, "Moist-air relations: " + FormulationNames::KeyList(", ", " or "))
        ->check(CLI::IsMember(formulations))
        ->capture_default_str();
    m_cmd->add_flag("--json", m_json, "One JSON object instead of a table");
    HostLanguage::AddOption(*m_cmd, m_lang);
    m_cmd->footer("Pairs: " + StateInput::SupportedPairs() +
                  "\nExamples:\n"
                  "  kygraph state --tdb 25 --rh 60\n"
                  "  kygraph state --tdb 33.2 --twb 26.4 --pressure 84000 --json\n"
                  "  kygraph state --tdb 20 --rh 45 --altitude 2000");
}

int StateCommand::Run()
{
    HostLanguage::Choose(m_lang, std::nullopt);
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
        // Percent is easy to mistake for a fraction: say how such a value is read.
        if (prop == StateInput::RH && m_values[i] > 0.0 && m_values[i] <= 1.0)
            std::cerr << "kygraph: note: --rh " << DecimalNumber::Text(m_values[i]) << " is read as " << DecimalNumber::Text(m_values[i])
                      << " %; relative humidity is in percent (--rh " << DecimalNumber::Text(std::round(m_values[i] * 1e8) / 1e6) << " for "
                      << DecimalNumber::Text(std::round(m_values[i] * 1e8) / 1e6) << " %)\n";
        input.Set(prop, m_values[i]);
    }
    CKyChart* model = CKyChart::InstanceGloble();
    if (m_pressureOption->count() > 0 && !model->SetGlobleB(m_pressure)) {
        CommandLine::Error("--pressure: " + DecimalNumber::Text(m_pressure) + " is out of range " + DecimalNumber::Text(CKyChart::kMinB) + ".." +
                           DecimalNumber::Text(CKyChart::kMaxB));
        return CommandLine::kExitUsage;
    }
    if (m_altitudeOption->count() > 0) {
        const double b = CKyChart::StandardPressure(m_altitude);
        if (!(m_altitude >= CKyChart::kMinAltitude && m_altitude <= CKyChart::kMaxAltitude)) {
            CommandLine::Error("--altitude: " + DecimalNumber::Text(m_altitude) + " is out of range " + DecimalNumber::Text(CKyChart::kMinAltitude) +
                               ".." + DecimalNumber::Text(CKyChart::kMaxAltitude) + " m");
            return CommandLine::kExitUsage;
        }
        if (!model->SetGlobleB(b)) {
            CommandLine::Error("--altitude: " + DecimalNumber::Text(m_altitude) + " m gives " + DecimalNumber::Text(std::round(b)) +
                               " Pa, below the lowest pressure the model takes (" + DecimalNumber::Text(CKyChart::kMinB) + " Pa)");
            return CommandLine::kExitUsage;
        }
    }
    model->SetFormulation(FormulationNames::FromKey(m_formulation).value_or(Ky::FORMULATION_CHART));
    CKyStaPnt pnt;
    std::string error;
    if (!input.Resolve(pnt, error)) {
        CommandLine::Error(error);
        return CommandLine::kExitUsage;
    }
    std::cout << (m_json ? StateReport::Json(pnt).dump() + "\n" : StateReport::Text(pnt));
    return CommandLine::kExitOk;
}
