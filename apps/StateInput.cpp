#include "StateInput.h"

#include "DecimalNumber.h"

#include <kygraph/KyChart.h>

#include <algorithm>
#include <iterator>

namespace {

struct PropInfo {
    const char* key;
    const char* unit;
    StateInput::Limits limits;
};

// Bounds that catch typing mistakes; the model refuses what is still impossible with its own
// text (a relative humidity of 100 % at a moisture content too high for it, for example).
constexpr PropInfo kProps[StateInput::kPropCount] = {
    {"tdb", "°C", {CKyStaPnt::kMinTdb, CKyStaPnt::kMaxTdb}},
    {"twb", "°C", {CKyStaPnt::kMinTdb, CKyStaPnt::kMaxTdb}},
    {"tdp", "°C", {CKyStaPnt::kMinTdb, CKyStaPnt::kMaxTdb}},
    {"rh", "%", {0.0, 100.0}},
    {"d", "g/kg", {0.0, 1.0e6}},
    {"h", "kJ/kg", {-1.0e6, 1.0e6}},
    {"pv", "Pa", {0.0, CKyChart::kMaxB}},
};

using P = StateInput;

// One row per pair the state model has a setter for; a and b are the setter's argument
// order, rh goes in as a fraction.
struct PairSetter {
    StateInput::Prop a;
    StateInput::Prop b;
    bool (*set)(CKyStaPnt&, double, double);
};

const PairSetter kPairs[] = {
    {P::Tdb, P::RH, [](CKyStaPnt& p, double t, double rh) { return p.SetBy_TdbandRH(t, rh / 100.0); }},
    {P::Tdb, P::Twb, [](CKyStaPnt& p, double t, double twb) { return p.SetBy_TdbandTwb(t, twb); }},
    {P::Tdb, P::Tdp, [](CKyStaPnt& p, double t, double tdp) { return p.SetBy_TdbandTdp(t, tdp); }},
    {P::Tdb, P::Pv, [](CKyStaPnt& p, double t, double pv) { return p.SetBy_TdbandPv(t, pv); }},
    {P::D, P::Tdb, [](CKyStaPnt& p, double d, double t) { return p.SetBy_DandTdb(d, t); }},
    {P::H, P::Tdb, [](CKyStaPnt& p, double h, double t) { return p.SetBy_HandTdb(h, t); }},
    {P::H, P::D, [](CKyStaPnt& p, double h, double d) { return p.SetBy_HandD(h, d); }},
    {P::D, P::RH, [](CKyStaPnt& p, double d, double rh) { return p.SetBy_DandRH(d, rh / 100.0); }},
    {P::H, P::RH, [](CKyStaPnt& p, double h, double rh) { return p.SetBy_HandRH(h, rh / 100.0); }},
};

}  // namespace

const char* StateInput::Key(Prop prop) { return kProps[prop].key; }
const char* StateInput::Unit(Prop prop) { return kProps[prop].unit; }
StateInput::Limits StateInput::LimitsOf(Prop prop) { return kProps[prop].limits; }

std::optional<StateInput::Prop> StateInput::FromKey(std::string_view key)
{
    for (int i = 0; i < kPropCount; ++i)
        if (key == kProps[i].key) return static_cast<Prop>(i);
    return std::nullopt;
}

std::string StateInput::SupportedPairs()
{
    std::string out;
    for (const PairSetter& s : kPairs) {
        if (!out.empty()) out += ", ";
        out += std::string(Key(s.a)) + "+" + Key(s.b);
    }
    return out;
}

bool StateInput::IsSupportedPair(Prop a, Prop b)
{
    return std::any_of(std::begin(kPairs), std::end(kPairs),
                       [&](const PairSetter& s) { return (s.a == a && s.b == b) || (s.a == b && s.b == a); });
}

int StateInput::Count() const
{
    int n = 0;
    for (const auto& v : m_values) n += v.has_value() ? 1 : 0;
    return n;
}

bool StateInput::Resolve(CKyStaPnt& pnt, std::string& error) const
{
    if (Count() != 2) {
        error = "a state needs exactly two of tdb, twb, tdp, rh, d, h, pv; " + std::to_string(Count()) + " given";
        return false;
    }
    for (const PairSetter& s : kPairs) {
        if (!Has(s.a) || !Has(s.b)) continue;
        if (s.set(pnt, Get(s.a), Get(s.b))) return true;
        error = pnt.GetLastErrorString().ToUtf8();
        // The model's text may quote a quantity it could not compute ("nan"); name the inputs
        // instead, which the reader can act on.
        if (error.find("nan") != std::string::npos || error.find("inf") != std::string::npos)
            error = std::string("no state of moist air has ") + Key(s.a) + " " + DecimalNumber::Text(Get(s.a)) + " " +
                    Unit(s.a) + " and " + Key(s.b) + " " + DecimalNumber::Text(Get(s.b)) + " " + Unit(s.b);
        return false;
    }
    std::string given;
    for (int i = 0; i < kPropCount; ++i)
        if (m_values[i]) given += given.empty() ? kProps[i].key : std::string("+") + kProps[i].key;
    error = "the pair " + given + " is not supported; use one of " + SupportedPairs();
    return false;
}
