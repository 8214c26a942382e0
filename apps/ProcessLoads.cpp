#include "ProcessLoads.h"

#include <cmath>

double ProcessLoads::LatentHeat(const CKyStaPnt& state)
{
    return state.GetFormulation() == Ky::FORMULATION_CHART ? 2500.0 : 2501.0;
}

double ProcessLoads::MassFlow(double m3h, const CKyStaPnt& at) { return m3h / 3600.0 / at.GetV(); }

ProcessLoads::Row ProcessLoads::Of(const Step& step)
{
    Row r;
    r.dt = step.end.GetTdb() - step.from.GetTdb();
    r.dd = step.end.GetD() - step.from.GetD();
    r.dh = step.end.GetH() - step.from.GetH();
    // Below this a change of d is rounding, and ε would be noise.
    constexpr double kTinyDd = 1e-9, kTinyDh = 1e-9;
    if (std::fabs(r.dd) > kTinyDd) r.ratio = 1000.0 * r.dh / r.dd;
    // The latent part of Δh is the heat that went into the vapour: r0 Δd; the rest is sensible.
    const double latent = LatentHeat(step.end) * r.dd / 1000.0;
    if (std::fabs(r.dh) > kTinyDh && step.type != SceneStep::Mixing) r.shr = (r.dh - latent) / r.dh;
    if (step.massFlow && step.type != SceneStep::Mixing) {
        const double m = *step.massFlow;
        r.total = m * r.dh;
        r.latent = m * latent;
        r.sensible = *r.total - *r.latent;
        r.moisture = m * r.dd / 1000.0 * 3600.0;
    }
    return r;
}

nlohmann::json ProcessLoads::Json(const Row& r)
{
    auto opt = [](const std::optional<double>& v) { return v ? nlohmann::json(*v) : nlohmann::json(); };
    return nlohmann::json{{"dt", r.dt},          {"dd", r.dd},         {"dh", r.dh},
                          {"ratio", opt(r.ratio)}, {"shr", opt(r.shr)}, {"sensible", opt(r.sensible)},
                          {"latent", opt(r.latent)}, {"total", opt(r.total)}, {"moisture", opt(r.moisture)}};
}
