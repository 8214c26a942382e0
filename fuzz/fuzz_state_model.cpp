// Fuzz target: the state model with arbitrary numbers. A sequence of calls drawn from the
// input goes to the nine setters of CKyStaPnt, the pressure and formulation of CKyChart, CKyAS
// and the CKyProcess builders, and every getter is read after each. Besides the sanitizers it
// checks what callers rely on: a refused call leaves its object exactly as it was, and an
// accepted state answers finite properties inside the model's domain.
#include "FuzzValues.h"

#include <kygraph/KyAS.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyProcess.h>
#include <kygraph/KyStaPnt.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace {

using fuzz::AnyDouble;
using fuzz::AnyInt;
using fuzz::AnyText;

// What the last call was, printed when an invariant breaks.
char g_call[160];

// Aborts with what broke, the last call and, when given, every property of the point.
void Require(bool ok, const char* what, const CKyStaPnt* p = nullptr)
{
    if (ok) return;
    std::fprintf(stderr, "state model invariant broken: %s\nafter %s\n", what, g_call);
    if (p)
        std::fprintf(stderr, "tdb %.17g twb %.17g tdp %.17g rh %.17g d %.17g h %.17g pv %.17g ps %.17g B %.17g\n",
                     p->GetTdb(), p->GetTwb(), p->GetTdp(), p->GetRH(), p->GetD(), p->GetH(), p->GetPv(), p->GetPs(),
                     p->GetB());
    std::abort();
}

// Equal as stored: NaN equals the same NaN, and 0.0 differs from -0.0.
bool Same(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

// Everything a caller can read from a point.
struct Reading {
    static constexpr std::size_t kTdp = 2;  // index of the dew point in values
    std::array<double, 11> values;
    bool valid;
    Ky::_Formulation form;
    CString name;

    explicit Reading(const CKyStaPnt& p)
        : values{p.GetTdb(), p.GetTwb(), p.GetTdp(), p.GetRH(), p.GetD(), p.GetH(),
                 p.GetPv(),  p.GetPs(),  p.GetV(),   p.GetRho(), p.GetB()},
          valid(p.IsValid()), form(p.GetFormulation()), name(p.GetName())
    {
    }
    bool operator==(const Reading& o) const
    {
        for (std::size_t i = 0; i < values.size(); ++i)
            if (!Same(values[i], o.values[i])) return false;
        return valid == o.valid && form == o.form && name == o.name;
    }
};

// What every accepted state must answer. The tolerances are those the setters accept (RH) or
// far wider than any solver's (temperatures), so that only real faults trip them.
void CheckState(const CKyStaPnt& p)
{
    const Reading r(p);
    const double tdb = p.GetTdb();
    // Dry air, or air drier than saturation at -100 °C, has no dew point the model can give.
    static const double pvFloor = [] {
        CKyStaPnt sat;
        sat.SetBy_TdbandRH(CKyStaPnt::kMinTdb, 1.0);
        return sat.GetPv();
    }();
    bool finite = true;
    for (std::size_t i = 0; i < r.values.size(); ++i)
        finite = finite && (std::isfinite(r.values[i]) || (i == Reading::kTdp && p.GetPv() < pvFloor));
    const struct {
        bool ok;
        const char* what;
    } checks[] = {
        {r.valid, "an accepted state is valid"},
        {finite, "an accepted state's properties are finite"},
        {tdb >= CKyStaPnt::kMinTdb - 1e-6 && tdb <= CKyStaPnt::kMaxTdb + 1e-6, "dry bulb within the model's range"},
        {p.GetD() >= 0.0, "moisture content not negative"},
        {p.GetPv() >= 0.0 && p.GetPv() < p.GetB(), "vapour pressure within 0..B"},
        {p.GetRH() >= 0.0 && p.GetRH() <= 1.0 + 2 * CKyStaPnt::kRHTolerance, "relative humidity within 0..1"},
        {p.GetTwb() <= tdb + 1e-6, "wet bulb not above dry bulb"},
        {!(p.GetTdp() > tdb + 1e-6), "dew point not above dry bulb"},
        {p.GetV() > 0.0 && p.GetRho() > 0.0, "specific volume and density positive"},
    };
    for (const auto& c : checks) Require(c.ok, c.what, &p);
}

// Each setter with the getters that read its two inputs back.
using Setter = bool (CKyStaPnt::*)(double, double);
using Getter = double (CKyStaPnt::*)() const;
struct SetterCase {
    Setter set;
    Getter first;
    Getter second;
};
constexpr SetterCase kSetters[] = {
    {&CKyStaPnt::SetBy_TdbandRH, &CKyStaPnt::GetTdb, &CKyStaPnt::GetRH},
    {&CKyStaPnt::SetBy_TdbandTwb, &CKyStaPnt::GetTdb, &CKyStaPnt::GetTwb},
    {&CKyStaPnt::SetBy_HandD, &CKyStaPnt::GetH, &CKyStaPnt::GetD},
    {&CKyStaPnt::SetBy_HandTdb, &CKyStaPnt::GetH, &CKyStaPnt::GetTdb},
    {&CKyStaPnt::SetBy_DandTdb, &CKyStaPnt::GetD, &CKyStaPnt::GetTdb},
    {&CKyStaPnt::SetBy_DandRH, &CKyStaPnt::GetD, &CKyStaPnt::GetRH},
    {&CKyStaPnt::SetBy_HandRH, &CKyStaPnt::GetH, &CKyStaPnt::GetRH},
    {&CKyStaPnt::SetBy_TdbandTdp, &CKyStaPnt::GetTdb, &CKyStaPnt::GetTdp},
    {&CKyStaPnt::SetBy_TdbandPv, &CKyStaPnt::GetTdb, &CKyStaPnt::GetPv},
};

// A property of p read back as given: equal up to what the solvers and the RH tolerance leave.
// A dry bulb solved within the model's 1e-9 K margin outside its range is taken as the end
// itself, and in very dry air that shift moves d (so RH) far more than a solver's residual.
bool ReadsBack(const CKyStaPnt& p, double got, double given)
{
    const bool atEnd = p.GetTdb() == CKyStaPnt::kMinTdb || p.GetTdb() == CKyStaPnt::kMaxTdb;
    return std::fabs(got - given) <= (atEnd ? 1e-4 : 1e-6) * std::max(1.0, std::fabs(given));
}

void SetPoint(FuzzedDataProvider& in, CKyStaPnt& p)
{
    const std::size_t index = in.ConsumeIntegralInRange<std::size_t>(0, std::size(kSetters) - 1);
    const SetterCase& c = kSetters[index];
    const double a = AnyDouble(in);
    const double b = AnyDouble(in);
    std::snprintf(g_call, sizeof g_call, "setter %zu (%.17g, %.17g)", index, a, b);
    const Reading before(p);
    if (!(p.*c.set)(a, b)) {
        Require(Reading(p) == before, "a refused setter leaves the point as it was");
        Require(!p.GetLastErrorString().IsEmpty(), "a refused setter says why");
        return;
    }
    CheckState(p);
    Require(ReadsBack(p, (p.*c.first)(), a) && ReadsBack(p, (p.*c.second)(), b), "an accepted setter's inputs read back",
            &p);
    if (c.set == &CKyStaPnt::SetBy_HandD) Require(p.GetH() == a && p.GetD() == b, "h and d are kept exactly");
}

void SetGlobals(FuzzedDataProvider& in)
{
    CKyChart* g = CKyChart::InstanceGloble();
    const double b = g->GetGlobleB();
    const Ky::_Formulation f = g->GetFormulation();
    if (in.ConsumeBool()) {
        const double pa = AnyDouble(in);
        if (g->SetGlobleB(pa))
            Require(pa == g->GetGlobleB() && pa >= CKyChart::kMinB && pa <= CKyChart::kMaxB, "accepted pressure stored");
        else
            Require(Same(b, g->GetGlobleB()), "a refused pressure keeps the previous one");
    } else if (!g->SetFormulation(static_cast<Ky::_Formulation>(AnyInt(in)))) {
        Require(f == g->GetFormulation(), "a refused formulation keeps the previous one");
    }
}

void UseRatio(FuzzedDataProvider& in, CKyAS& as, const CKyStaPnt& from, const CKyStaPnt& to)
{
    const CKyAS::_EnKyASType type = as.GetType();
    const double value = as.GetValue();
    bool ok = false;
    switch (in.ConsumeIntegralInRange(0, 2)) {
    case 0: ok = as.SetValue(AnyDouble(in)); break;
    case 1: ok = as.SetType(static_cast<CKyAS::_EnKyASType>(AnyInt(in))); break;
    default: ok = as.SetByStates(from, to); break;
    }
    if (!ok) Require(as.GetType() == type && Same(as.GetValue(), value), "a refused ratio keeps the previous one");
    Require(as.GetType() == CKyAS::AS_FINITE || as.GetType() == CKyAS::AS_POSITIVE_INF ||
                as.GetType() == CKyAS::AS_NEGATIVE_INF,
            "a ratio has a known kind");
    Require(!std::isnan(as.GetValue()), "a ratio has a value");
    const CKyAS copy(as);
    Require(copy.GetType() == as.GetType() && Same(copy.GetValue(), as.GetValue()), "a copied ratio is equal");
    Require(copy.OutputString(AnyInt(in)).GetLength() > 2, "a ratio has a text");
}

// One builder call; on refusal the process and the end point must be untouched, on success
// the end state must meet the builder's end condition.
void Build(FuzzedDataProvider& in, CKyProcess& proc, CKyStaPnt* pts, std::size_t n, const CKyAS& as)
{
    const CString name = in.ConsumeBool() ? AnyText(in, 4) : CString(L"p");
    const CKyStaPnt& a = pts[in.ConsumeIntegralInRange<std::size_t>(0, n - 1)];
    const CKyStaPnt& b = pts[in.ConsumeIntegralInRange<std::size_t>(0, n - 1)];
    CKyStaPnt end;
    end.SetName(CString(L"end"));
    const Reading endBefore(end);
    const int paths = proc.GetPathCount();
    bool ok = false;
    bool hasEnd = true;
    // The end condition: the property that must read back as want, exactly or as a solver
    // leaves it; and a property the builder keeps from the start.
    Getter reached = nullptr, kept = nullptr;
    double want = 0.0;
    bool exact = true;
    const int builder = in.ConsumeIntegralInRange(0, 6);
    std::snprintf(g_call, sizeof g_call, "builder %d", builder);
    switch (builder) {
    case 0: {
        const double ma = AnyDouble(in);
        ok = proc.AddMixing(name, a, ma, b, AnyDouble(in), &end);
        break;
    }
    case 1:
        want = AnyDouble(in);
        ok = proc.AddSensible(name, a, want, &end);
        reached = &CKyStaPnt::GetTdb, kept = &CKyStaPnt::GetD, exact = false;
        break;
    case 2: ok = proc.AddCoolingDehumidify(name, a, b); hasEnd = false; break;
    case 3:
        want = AnyDouble(in);
        ok = proc.AddAdiabaticHumidify(name, a, want, &end);
        reached = &CKyStaPnt::GetRH, kept = &CKyStaPnt::GetH, exact = false;
        break;
    case 4:
        want = AnyDouble(in);
        ok = proc.AddSteamHumidify(name, a, want, AnyDouble(in), &end);
        reached = &CKyStaPnt::GetD;
        break;
    case 5: {
        const auto target = static_cast<CKyProcess::_EnKyTarget>(in.ConsumeIntegralInRange(-1, 3));
        want = AnyDouble(in);
        std::snprintf(g_call, sizeof g_call, "ratio process from (h %.17g, d %.17g) along %.17g (kind %d) to %.17g (target %d)",
                      a.GetH(), a.GetD(), as.GetValue(), static_cast<int>(as.GetType()), want, static_cast<int>(target));
        ok = proc.AddRatioProcess(name, a, as, target, want, &end);
        reached = target == CKyProcess::TARGET_D ? &CKyStaPnt::GetD
                  : target == CKyProcess::TARGET_H ? &CKyStaPnt::GetH
                                                   : &CKyStaPnt::GetRH;
        exact = target != CKyProcess::TARGET_RH;
        break;
    }
    default: {
        CKyStaPntArray path;
        const int count = in.ConsumeIntegralInRange(0, 3);
        for (int i = 0; i < count; ++i) path.Add(pts[in.ConsumeIntegralInRange<std::size_t>(0, n - 1)]);
        ok = proc.AddPath(name, path);
        hasEnd = false;
        break;
    }
    }
    if (!ok) {
        Require(proc.GetPathCount() == paths, "a refused builder adds no path");
        Require(Reading(end) == endBefore, "a refused builder leaves the end point untouched");
        return;
    }
    Require(proc.GetPathCount() == paths + 1, "an accepted builder adds one path");
    if (!hasEnd) return;
    CheckState(end);
    Require(end.GetB() == a.GetB(), "a process keeps the pressure of its start");
    if (reached) {
        const double got = (end.*reached)();
        if (builder != 5)
            std::snprintf(g_call, sizeof g_call, "builder %d from (h %.17g, d %.17g) to %.17g", builder, a.GetH(),
                          a.GetD(), want);
        Require(exact ? got == want : ReadsBack(end, got, want), "a builder reaches its end condition", &end);
    }
    if (kept) Require((end.*kept)() == (a.*kept)(), "a builder keeps what it holds constant", &end);
    if (builder == 0) {
        const auto between = [](double v, double x, double y) {
            const double tol = 1e-9 * std::max({1.0, std::fabs(x), std::fabs(y)});
            return v >= std::min(x, y) - tol && v <= std::max(x, y) + tol;
        };
        Require(between(end.GetH(), a.GetH(), b.GetH()) && between(end.GetD(), a.GetD(), b.GetD()),
                "a mixture lies between its streams", &end);
    }
}

void ReadProcess(const CKyProcess& proc)
{
    CKyPathMap paths;
    CKyStaPntArray points;
    proc.GetAllProcess(paths);
    proc.GetAllPnt(points);
    Require(paths.GetCount() == proc.GetPathCount(), "every path is listed");
    for (const CKyStaPnt& p : points) CheckState(p);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider in(data, size);
    CKyChart::InstanceGloble()->ResetDefaults();

    CKyStaPnt pts[3];
    CKyAS as;
    CKyProcess proc;
    for (int op = 0; op < 48 && in.remaining_bytes() > 0; ++op) {
        CKyStaPnt& p = pts[in.ConsumeIntegralInRange(0, 2)];
        switch (in.ConsumeIntegralInRange(0, 7)) {
        case 0: SetGlobals(in); break;
        case 1: p.SetName(AnyText(in)); break;
        case 2: p = pts[in.ConsumeIntegralInRange(0, 2)]; break;
        case 3: UseRatio(in, as, pts[0], p); break;
        case 4: Build(in, proc, pts, 3, as); break;
        case 5: {
            const CKyProcess copy(proc);
            ReadProcess(copy);
            if (in.ConsumeBool()) proc.RemoveAll();
            break;
        }
        default: SetPoint(in, p); break;
        }
    }
    ReadProcess(proc);
    CKyChart::InstanceGloble()->ResetDefaults();
    return 0;
}
