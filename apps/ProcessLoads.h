// ProcessLoads: what one step of an air-handling process does to the air and, given the air
// flow, the heat and moisture it takes: Δt, Δd, Δh, the heat-moisture ratio ε, the sensible
// heat ratio, sensible, latent and total heat and the moisture added or removed. The report
// and the viewer show these per step.
#pragma once

#include "Scene.h"

#include <kygraph/KyStaPnt.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

class ProcessLoads {
public:
    // One applied step: its states and the dry-air mass flow of its process.
    struct Step {
        std::string process;           // "1", "2", ...: which process of the scene
        std::string name;              // the path's name
        SceneStep::Type type = SceneStep::Path;
        CKyStaPnt from, end;           // entering and leaving (the mixture of a mixing)
        std::optional<double> massFlow;  // kg/s of dry air; none when the process has no flow
    };

    // The figures of one step. Heat flows are positive into the air. ratio is empty where
    // Δd is zero (ε is infinite), shr where the total is zero, the kW and kg/h figures where
    // the process has no flow.
    struct Row {
        double dt = 0, dd = 0, dh = 0;  // K, g/kg, kJ/kg
        std::optional<double> ratio;    // kJ/kg
        std::optional<double> shr;      // sensible / total
        std::optional<double> sensible, latent, total;  // kW
        std::optional<double> moisture;  // kg/h
    };

    // A mixing exchanges no heat with the outside: its row is the change of the first air
    // stream, its sensible heat ratio, heat and moisture empty.
    static Row Of(const Step& step);

    // row as {"dt", "dd", "dh", "ratio", "shr", "sensible", "latent", "total", "moisture"}, null
    // where a figure is empty.
    static nlohmann::json Json(const Row& row);

    // The dry-air mass flow, kg/s, of m3h cubic metres per hour of air in state at: m3h / 3600 / v.
    static double MassFlow(double m3h, const CKyStaPnt& at);

    // The latent part of a heat flow: the vapour's heat of evaporation at 0 °C, kJ/kg, in the
    // relations the state was computed with.
    static double LatentHeat(const CKyStaPnt& state);
};
