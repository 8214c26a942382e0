#include "ProcessStepBuilder.h"

#include "DecimalNumber.h"

#include <kygraph/KyProcess.h>

#include <cmath>

namespace {

std::string T(double v) { return DecimalNumber::Text(std::round(v * 100.0) / 100.0); }

// Bisection and Newton steps are bounded; these tolerances are far below what a chart shows.
constexpr int kMaxIterations = 100;
constexpr double kTdbTolerance = 1e-9;  // K

}  // namespace

CKyAS ProcessStepBuilder::RatioOf(double ratio)
{
    CKyAS eps;
    if (std::isinf(ratio)) eps.SetType(ratio > 0 ? CKyAS::AS_POSITIVE_INF : CKyAS::AS_NEGATIVE_INF);
    else eps.SetValue(ratio);
    return eps;
}

bool ProcessStepBuilder::Build(const SceneStep& st, const Inputs& in, CKyStaPnt& end, Failure& failure)
{
    CKyProcess scratch;
    const CString name = L"step";
    CKyStaPnt out;
    auto model = [&](bool ok, const char* key) {
        if (!ok) failure = {key, scratch.GetLastErrorString().ToUtf8()};
        return ok;
    };
    bool ok = false;
    switch (st.type) {
    case SceneStep::Mixing: {
        const double ma = st.fraction ? *st.fraction : st.massA.value_or(0);
        const double mb = st.fraction ? 1.0 - *st.fraction : st.massB.value_or(0);
        ok = model(scratch.AddMixing(name, in.from, ma, in.other, mb, &out), st.fraction ? "fraction" : "");
        break;
    }
    case SceneStep::Sensible:
        ok = model(scratch.AddSensible(name, in.from, in.tdb.value_or(0), &out), "tdb");
        break;
    case SceneStep::CoolingDehumidify:
        ok = Coil(st, in, out, failure);
        break;
    case SceneStep::AdiabaticHumidify:
        if (st.rh) {
            ok = model(scratch.AddAdiabaticHumidify(name, in.from, *st.rh / 100.0, &out), "rh");
        } else if (!(in.d.value_or(0) > in.from.GetD())) {
            failure = {"d", "d " + T(in.d.value_or(0)) + " g/kg is not above the entering " + T(in.from.GetD()) + " g/kg: a humidifier adds moisture"};
        } else if (!(ok = out.SetBy_HandD(in.from.GetH(), *in.d))) {
            failure = {"d", out.GetLastErrorString().ToUtf8()};
        }
        break;
    case SceneStep::SteamHumidify:
        if (st.rh) {
            std::string error;
            ok = SteamToRH(in.from, *st.rh, st.tSteam.value_or(100.0), out, error);
            if (!ok) failure = {"rh", error};
        } else {
            ok = model(scratch.AddSteamHumidify(name, in.from, in.d.value_or(0), st.tSteam.value_or(100.0), &out), "d");
        }
        break;
    case SceneStep::Ratio: {
        std::optional<double> tdb = in.tdb;
        if (st.dt0) tdb = in.from.GetTdb() - *st.dt0;
        std::string error;
        ok = RatioEnd(in.from, st.ratio.value_or(0), st.d, st.h, st.rh, tdb, out, error);
        if (!ok) failure = {st.dt0 ? "dt0" : st.tdb || st.tdbOf ? "tdb" : st.d ? "d" : st.h ? "h" : "rh", error};
        break;
    }
    case SceneStep::Path:
    case SceneStep::kTypeCount:
        failure = {"", "a path has no builder"};
        break;
    }
    if (ok) end = out;
    return ok;
}

bool ProcessStepBuilder::Coil(const SceneStep& st, const Inputs& in, CKyStaPnt& end, Failure& failure)
{
    const CKyStaPnt& from = in.from;
    CKyStaPnt out;
    const char* key = "to";
    if (st.adp) {
        key = "adp";
        CKyStaPnt adp;
        if (!adp.SetBy_TdbandRH(*st.adp, 1.0)) {
            failure = {key, adp.GetLastErrorString().ToUtf8()};
            return false;
        }
        if (!std::isfinite(from.GetTdp())) {
            failure = {key, "the entering air is dry (it has no dew point): a coil cannot dehumidify it"};
            return false;
        }
        if (!(*st.adp < from.GetTdp())) {
            failure = {key, "the apparatus dew point " + T(*st.adp) + " °C is not below the entering dew point " + T(from.GetTdp()) +
                                " °C: the coil would not dehumidify"};
            return false;
        }
        // The leaving air is entering air that bypassed the coil mixed with air at the ADP.
        const double bf = st.bf.value_or(0);
        if (!out.SetBy_HandD(bf * from.GetH() + (1 - bf) * adp.GetH(), bf * from.GetD() + (1 - bf) * adp.GetD())) {
            failure = {"bf", out.GetLastErrorString().ToUtf8()};
            return false;
        }
    } else if (st.rh) {
        key = in.tdb ? "tdb" : "d";
        const bool set = in.tdb ? out.SetBy_TdbandRH(*in.tdb, *st.rh / 100.0) : out.SetBy_DandRH(in.d.value_or(0), *st.rh / 100.0);
        if (!set) {
            failure = {key, out.GetLastErrorString().ToUtf8()};
            return false;
        }
    } else {
        out = in.other;
    }
    if (!(out.GetTdb() < from.GetTdb())) {
        failure = {key, "the coil would leave at " + T(out.GetTdb()) + " °C, not colder than it enters (" + T(from.GetTdb()) + " °C)"};
        return false;
    }
    if (out.GetD() > from.GetD()) {
        failure = {key, "the coil would leave with " + T(out.GetD()) + " g/kg, more moisture than it enters with (" + T(from.GetD()) + " g/kg)"};
        return false;
    }
    CKyProcess scratch;
    if (!scratch.AddCoolingDehumidify(L"coil", from, out)) {
        failure = {key, scratch.GetLastErrorString().ToUtf8()};
        return false;
    }
    end = out;
    return true;
}

bool ProcessStepBuilder::SteamToRH(const CKyStaPnt& from, double rhPercent, double tSteam, CKyStaPnt& end, std::string& error)
{
    const double target = rhPercent / 100.0;
    if (!(target > from.GetRH())) {
        error = "rh " + T(rhPercent) + " % is not above the entering " + T(from.GetRH() * 100.0) + " %: a humidifier adds moisture";
        return false;
    }
    // RH grows with the steam added; a d the model refuses lies beyond saturation.
    CKyStaPnt out;
    auto reached = [&](double d) {
        CKyProcess scratch;
        CKyStaPnt e;
        if (!scratch.AddSteamHumidify(L"steam", from, d, tSteam, &e)) return true;
        if (e.GetRH() >= target) return true;
        out = e;
        return false;
    };
    double lo = from.GetD(), hi = from.GetD() + 1.0;
    for (int i = 0; i < kMaxIterations && !reached(hi); ++i) lo = hi, hi = from.GetD() + 2 * (hi - from.GetD());
    for (int i = 0; i < kMaxIterations && hi - lo > 1e-12; ++i) {
        const double mid = 0.5 * (lo + hi);
        (reached(mid) ? hi : lo) = mid;
    }
    CKyProcess scratch;
    if (!scratch.AddSteamHumidify(L"steam", from, lo, tSteam, &out) || std::fabs(out.GetRH() - target) > 1e-6) {
        error = "steam never brings the air to " + T(rhPercent) + " %";
        return false;
    }
    end = out;
    return true;
}

bool ProcessStepBuilder::RatioEnd(const CKyStaPnt& from, double ratio, const std::optional<double>& d,
                                  const std::optional<double>& h, const std::optional<double>& rh,
                                  const std::optional<double>& tdb, CKyStaPnt& end, std::string& error)
{
    if (tdb) return RatioToTdb(from, ratio, *tdb, end, error);
    CKyProcess scratch;
    const bool ok = d    ? scratch.AddRatioProcess(L"ratio", from, RatioOf(ratio), CKyProcess::TARGET_D, *d, &end)
                    : h  ? scratch.AddRatioProcess(L"ratio", from, RatioOf(ratio), CKyProcess::TARGET_H, *h, &end)
                    : rh ? scratch.AddRatioProcess(L"ratio", from, RatioOf(ratio), CKyProcess::TARGET_RH, *rh / 100.0, &end)
                         : false;
    if (!ok) error = d || h || rh ? scratch.GetLastErrorString().ToUtf8() : "a ratio needs an end condition";
    return ok;
}

bool ProcessStepBuilder::RatioToTdb(const CKyStaPnt& from, double ratio, double tdb, CKyStaPnt& end, std::string& error)
{
    const std::string never = "the ratio line from " + T(from.GetTdb()) + " °C, " + T(from.GetD()) + " g/kg never reaches " +
                              T(tdb) + " °C inside the model";
    CKyStaPnt out;
    if (std::isinf(ratio)) {
        // Constant d: heating (+inf) must end warmer, cooling (-inf) colder.
        if ((ratio > 0) != (tdb > from.GetTdb()) || !out.SetBy_DandTdb(from.GetD(), tdb)) {
            error = never;
            return false;
        }
        end = out;
        return true;
    }
    // Along h = h0 + e (d - d0) / 1000 the dry bulb is t = (h - r d/1000) / (cpa + cpv d/1000) for
    // the ideal-gas relations; that gives the first d, and Newton steps on the model's own dry
    // bulb take it the rest of the way (the real gas differs slightly).
    const bool chart = from.GetFormulation() == Ky::FORMULATION_CHART;
    const double cpa = chart ? 1.01 : 1.006, r = chart ? 2500.0 : 2501.0, cpv = chart ? 1.84 : 1.86;
    const double h0 = from.GetH(), d0 = from.GetD(), e = ratio;
    auto tOf = [&](double d) { return (h0 + e * (d - d0) / 1000.0 - r * d / 1000.0) / (cpa + cpv * d / 1000.0); };
    const double denom = e - r - cpv * tdb;
    if (std::fabs(denom) < 1e-9) {
        error = never;
        return false;
    }
    double d = (cpa * tdb - h0 + e * d0 / 1000.0) * 1000.0 / denom;
    for (int i = 0; i < kMaxIterations; ++i) {
        CKyProcess scratch;
        if (!(d >= 0.0) || !scratch.AddRatioProcess(L"ratio", from, RatioOf(ratio), CKyProcess::TARGET_D, d, &out)) {
            error = never;
            return false;
        }
        const double diff = out.GetTdb() - tdb;
        if (std::fabs(diff) < kTdbTolerance) break;
        const double step = 1e-3;
        const double slope = (tOf(d + step) - tOf(d)) / step;
        if (!(std::fabs(slope) > 1e-12)) break;
        d -= diff / slope;
    }
    if (!(std::fabs(out.GetTdb() - tdb) < 1e-6)) {
        error = never;
        return false;
    }
    end = out;
    return true;
}
