// StateCommand: `kygraph state --tdb 25 --rh 60 [--pressure PA] [--formulation chart|ashrae|realgas]
// [--json]`: every property of the state given by any supported pair.
#pragma once

#include "StateInput.h"

#include <CLI/CLI.hpp>

#include <array>
#include <string>

class StateCommand {
public:
    explicit StateCommand(CLI::App& app);

    bool Selected() const { return m_cmd->parsed(); }
    int Run();

private:
    CLI::App* m_cmd;
    std::string m_lang;  // --lang: en or zh; "" when not given
    std::array<double, StateInput::kPropCount> m_values{};
    std::array<CLI::Option*, StateInput::kPropCount> m_options{};
    double m_pressure = 0.0;
    CLI::Option* m_pressureOption = nullptr;
    double m_altitude = 0.0;
    CLI::Option* m_altitudeOption = nullptr;
    std::string m_formulation = "chart";
    bool m_json = false;
};
