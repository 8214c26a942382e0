#include <kygraph/KyStaPnt.h>

#include <kygraph/KyChart.h>
#include <kygraph/KyMessages.h>

#include "internal/KyFail.h"
#include "internal/KyPsy.h"

#include <cmath>

namespace Psy = Ky::Psy;
using Psy::kNaN;

namespace {

// The two inputs of a setter, for error texts that name them.
struct Inputs {
    const wchar_t* nameA;
    double a;
    const wchar_t* nameB;
    double b;
};

constexpr const wchar_t* kTdb = L"干球温度 %g °C";
constexpr const wchar_t* kTwb = L"湿球温度 %g °C";
constexpr const wchar_t* kTdp = L"露点温度 %g °C";
constexpr const wchar_t* kRH = L"相对湿度 %g";
constexpr const wchar_t* kD = L"含湿量 %g g/kg";
constexpr const wchar_t* kH = L"焓 %g kJ/kg";
constexpr const wchar_t* kPv = L"水蒸气分压力 %g Pa";

// A refusal reads "状态点参数不合法（<input A>，<input B>）：<reason>". reason is a complete clause;
// it may carry up to three numbers. Numbers are written with the digits that tell them apart
// from the limits they break.
constexpr const wchar_t* kRefused = L"状态点参数不合法（%ls，%ls）：%ls";

bool IsTdbInRange(double t) { return t >= CKyStaPnt::kMinTdb && t <= CKyStaPnt::kMaxTdb; }
// A dry bulb derived from the pair may miss an end of the range by rounding (a state set at
// exactly -100 °C and read back by (h, d)); 1e-9 K of margin keeps such states reachable.
bool IsDerivedTdbInRange(double t) { return t >= CKyStaPnt::kMinTdb - 1e-9 && t <= CKyStaPnt::kMaxTdb + 1e-9; }
// Such a dry bulb is stored as the end itself, so that every state reads back inside the
// range and any other setter accepts what it reads.
double SnapDerivedTdb(double t)
{
    if (t < CKyStaPnt::kMinTdb && IsDerivedTdbInRange(t)) return CKyStaPnt::kMinTdb;
    if (t > CKyStaPnt::kMaxTdb && IsDerivedTdbInRange(t)) return CKyStaPnt::kMaxTdb;
    return t;
}

// The excess of RH over 1 accepted as rounding in a state of dry bulb t, enthalpy h and humidity
// ratio w (kg/kg): kRHTolerance, plus the rounding of a w derived from h - cpa t, which is far
// larger where w is tiny (8.8e-9 kg/kg at -99.5 °C: 4e-9 of it).
double RHRounding(const Psy::Coef& c, double t, double h, double w)
{
    return CKyStaPnt::kRHTolerance + (w > 0.0 ? Psy::WRounding(c, h, t) / w : 0.0);
}
}  // namespace

CKyStaPnt::CKyStaPnt()
    : m_dTdb(kNaN), m_dD(kNaN), m_dH(kNaN), m_dPv(kNaN), m_dPs(kNaN), m_dTwbGiven(kNaN), m_dB(kNaN),
      m_eFormulation(Ky::FORMULATION_CHART), m_bValid(false)
{
}

CKyStaPnt::CKyStaPnt(const CKyStaPnt& other) = default;

const CKyStaPnt& CKyStaPnt::operator=(const CKyStaPnt& other)
{
    CKyObject::operator=(other);
    m_dTdb = other.m_dTdb;
    m_dD = other.m_dD;
    m_dH = other.m_dH;
    m_dPv = other.m_dPv;
    m_dPs = other.m_dPs;
    m_dTwbGiven = other.m_dTwbGiven;
    m_dB = other.m_dB;
    m_eFormulation = other.m_eFormulation;
    m_bValid = other.m_bValid;
    m_strName = other.m_strName;
    m_refusal = other.m_refusal;
    return *this;
}

CKyStaPnt::~CKyStaPnt() = default;

CString CKyStaPnt::toString() const { return CString(L"CKyStaPnt"); }

bool CKyStaPnt::SetName(const CString& name)
{
    m_strName = name;
    return true;
}

bool CKyStaPnt::Refuse(Ky::_ErrorStatus status, const wchar_t* nameA, double a, const wchar_t* nameB, double b,
                       const wchar_t* reason, double x, double y, double z)
{
    CKyObject::SetError(CString(), status);
    const auto local = CKyMessages::Localize;
    m_refusal = Refusal{local(kRefused), local(nameA), a, local(nameB), b, local(reason), x, y, z};
    return false;
}

CString CKyStaPnt::GetLastErrorString() const
{
    if (!m_refusal.reason) return CKyObject::GetLastErrorString();
    using Ky::Detail::WithNumbers;
    const Refusal& r = m_refusal;
    return Ky::Detail::Format(r.sentence, WithNumbers(r.nameA, {r.a}).c_str(),
                              WithNumbers(r.nameB, {r.b}).c_str(), WithNumbers(r.reason, {r.x, r.y, r.z}).c_str());
}

void CKyStaPnt::SetError(const CString& text, Ky::_ErrorStatus status)
{
    m_refusal.reason = nullptr;
    CKyObject::SetError(text, status);
}

void CKyStaPnt::SetLastErrorString(const wchar_t* text)
{
    m_refusal.reason = nullptr;
    CKyObject::SetLastErrorString(text);
}

bool CKyStaPnt::Commit(const State& s)
{
    m_dTdb = s.tdb;
    m_dD = s.d;
    m_dH = s.h;
    m_dPv = s.pv;
    m_dPs = s.ps;
    m_dTwbGiven = s.twb;
    m_dB = s.b;
    m_eFormulation = s.form;
    m_bValid = true;
    if (m_errorStatus != Ky::ERR_OK) {  // a success clears the reason of an earlier refusal
        m_strLastError.Empty();
        m_errorStatus = Ky::ERR_OK;
        m_refusal.reason = nullptr;
    }
    return true;
}

// ---- checks shared by the setters; each returns false after refusing ----

#define KY_REFUSE(status, ...) return Refuse(status, in.nameA, in.a, in.nameB, in.b, __VA_ARGS__)

// The whole of a candidate state is checked here before it is committed: dry bulb in range,
// d >= 0, pv < B and RH <= 1 + RHRounding. Setters check their own inputs first so that the
// text names the input at fault; this catches what follows from the pair.
// Where d is so large that no dry air is left to the rounding (pv a few ulps below B), the
// real gas's enthalpy divides by zero: there is no air there to answer for.
#define KY_CHECK_H_FINITE(s)                                                                              \
    do {                                                                                                  \
        if (!std::isfinite((s).h))                                                                        \
            KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"在 -100～200 °C 且水蒸气分压力低于大气压力的范围内无此状态。"); \
    } while (0)

#define KY_CHECK_STATE(s)                                                                              \
    do {                                                                                               \
        if (!IsDerivedTdbInRange((s).tdb))                                                             \
            KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"由此得出的干球温度 %g °C 超出 -100～200 °C 的计算范围。", \
                      (s).tdb);                                                                        \
        if (!((s).d >= 0.0)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"由此得出的含湿量 %g g/kg 为负。", (s).d); \
        KY_CHECK_H_FINITE(s);                                                                          \
        if (!((s).pv < (s).b))                                                                         \
            KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"水蒸气分压力 %g Pa 不小于大气压力 %g Pa。", (s).pv, (s).b); \
        const double rhTol_ = RHRounding(Psy::CoefOf((s).form), (s).tdb, (s).h, (s).d / 1000.0);       \
        if (!((s).pv <= (s).ps * (1.0 + rhTol_)))                                                      \
            KY_REFUSE(Ky::ERR_SUPERSATURATED, L"由此得出的相对湿度 %g 超过 1 与舍入容差 %g 之和（过饱和）。", \
                      (s).pv / (s).ps, rhTol_);                                                        \
    } while (0)

#define KY_CHECK_FINITE()                                                                         \
    do {                                                                                          \
        if (!std::isfinite(in.a) || !std::isfinite(in.b))                                         \
            KY_REFUSE(Ky::ERR_INVALID_INPUT, L"输入值必须是有限数。");                           \
    } while (0)

#define KY_CHECK_TDB(t)                                                                                    \
    do {                                                                                                   \
        if (!IsTdbInRange(t)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"干球温度超出 -100～200 °C 的计算范围。"); \
    } while (0)

#define KY_CHECK_RH(rh)                                                                                  \
    do {                                                                                                 \
        if ((rh) < 0.0) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"相对湿度 %g 为负。", rh);                      \
        if ((rh) > 1.0 + kRHTolerance)                                                                  \
            KY_REFUSE(Ky::ERR_SUPERSATURATED, L"相对湿度 %g 超过 1 与舍入容差 %g 之和（过饱和）。", rh, kRHTolerance); \
    } while (0)

#define KY_CHECK_D(d)                                                                   \
    do {                                                                                \
        if ((d) < 0.0) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"含湿量 %g g/kg 为负。", d);  \
    } while (0)

namespace {
struct Globals {
    double b;
    Ky::_Formulation form;
    const Psy::Coef* c;
};
inline Globals ReadGlobals()
{
    const CKyChart* g = CKyChart::InstanceGloble();
    const Ky::_Formulation f = g->GetFormulation();
    return {g->GetGlobleB(), f, &Psy::CoefOf(f)};
}
}  // namespace

CKyStaPnt::State CKyStaPnt::State::AtTdbW(double tdb, double w, double b, Ky::_Formulation form)
{
    const Psy::Coef& c = Psy::CoefOf(form);
    return State{tdb, 1000.0 * w, Psy::Enthalpy(c, tdb, w, b), Psy::PvFromW(c, w, b),
                 Psy::SatPartial(c, tdb, b), kNaN, b, form};
}

CKyStaPnt::State CKyStaPnt::State::AtTdbPv(double tdb, double pv, double ps, double b, Ky::_Formulation form)
{
    const Psy::Coef& c = Psy::CoefOf(form);
    const double w = Psy::WFromPv(c, pv, b);
    return State{tdb, 1000.0 * w, Psy::Enthalpy(c, tdb, w, b), pv, ps, kNaN, b, form};
}

bool CKyStaPnt::SetBy_TdbandRH(double tdb, double rh)
{
    const Inputs in{kTdb, tdb, kRH, rh};
    KY_CHECK_FINITE();
    KY_CHECK_TDB(tdb);
    KY_CHECK_RH(rh);
    const Globals g = ReadGlobals();
    const double ps = Psy::SatPartial(*g.c, tdb, g.b);
    const double pv = rh * ps;
    if (!(pv < g.b)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"水蒸气分压力 %g Pa 不小于大气压力 %g Pa。", pv, g.b);
    const State s = State::AtTdbPv(tdb, pv, ps, g.b, g.form);
    KY_CHECK_H_FINITE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_TdbandTwb(double tdb, double twb)
{
    const Inputs in{kTdb, tdb, kTwb, twb};
    KY_CHECK_FINITE();
    KY_CHECK_TDB(tdb);
    if (twb > tdb) KY_REFUSE(Ky::ERR_INCONSISTENT, L"湿球温度高于干球温度。");
    if (!(twb >= Psy::kWetBulbFloorC)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"湿球温度低于 -101 °C 的计算范围。");
    const Globals g = ReadGlobals();
    double w = Psy::WFromWetBulb(*g.c, tdb, twb, g.b);
    if (w < 0.0 && w >= -kDTolerance / 1000.0) w = 0.0;
    if (!(w >= 0.0))
        KY_REFUSE(Ky::ERR_INCONSISTENT, L"湿球温度过低，由此得出的含湿量 %g g/kg 为负或无解。", 1000.0 * w);
    // The one wet bulb GetTwb answers for this w: where an ice and a water wet bulb both exist,
    // the water one (see the header). An ice wet bulb that GetTwb would not answer is refused.
    if (twb < 0.0 && tdb >= 0.0) {
        const double w0 = Psy::WFromWetBulb(*g.c, tdb, 0.0, g.b);
        if (w >= w0)
            KY_REFUSE(Ky::ERR_INCONSISTENT,
                      L"由此得出的含湿量 %g g/kg 不低于湿球 0 °C 时的 %g g/kg，此时湿球按水面取 0 °C 及以上，"
                      L"低于 0 °C 的冰面湿球在此不成立。",
                      1000.0 * w, 1000.0 * w0);
    }
    State s = State::AtTdbW(tdb, w, g.b, g.form);
    s.twb = twb;
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_HandD(double h, double d)
{
    const Globals g = ReadGlobals();
    return SetHD(h, d, g.b, g.form);
}

bool CKyStaPnt::SetHD(double h, double d, double b, Ky::_Formulation form)
{
    const Inputs in{kH, h, kD, d};
    KY_CHECK_FINITE();
    KY_CHECK_D(d);
    const Globals g{b, form, &Psy::CoefOf(form)};
    const double w = d / 1000.0;
    State s;
    s.h = h;  // kept exactly as given: the chart maps a pixel to (h, d) and back
    s.d = d;
    s.tdb = Psy::TdbFromHW(*g.c, h, w, g.b);
    s.pv = Psy::PvFromW(*g.c, w, g.b);
    s.twb = kNaN;
    s.b = g.b;
    s.form = g.form;
    if (!IsDerivedTdbInRange(s.tdb))
        KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"由此得出的干球温度 %g °C 超出 -100～200 °C 的计算范围。", s.tdb);
    s.tdb = SnapDerivedTdb(s.tdb);
    s.ps = Psy::SatPartial(*g.c, s.tdb, g.b);
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_HandTdb(double h, double tdb)
{
    const Inputs in{kH, h, kTdb, tdb};
    KY_CHECK_FINITE();
    KY_CHECK_TDB(tdb);
    const Globals g = ReadGlobals();
    double w = Psy::WFromHT(*g.c, h, tdb, g.b);
    if (w < 0.0 && w >= -kDTolerance / 1000.0) w = 0.0;
    if (!(w >= 0.0))
        KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"焓低于同温度干空气的焓 %g kJ/kg，含湿量将为负。",
                  Psy::Enthalpy(*g.c, tdb, 0.0, g.b));
    State s = State::AtTdbW(tdb, w, g.b, g.form);
    s.h = h;  // kept exactly as given
    if (s.pv < s.b && !(s.pv <= s.ps * (1.0 + RHRounding(*g.c, tdb, h, w))))
        KY_REFUSE(Ky::ERR_SUPERSATURATED, L"由此得出的含湿量 %g g/kg 超过该温度下的饱和含湿量 %g g/kg（过饱和）。",
                  s.d, s.ps < s.b ? 1000.0 * Psy::WFromPv(*g.c, s.ps, g.b) : HUGE_VAL);
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_DandTdb(double d, double tdb)
{
    const Globals g = ReadGlobals();
    return SetDT(d, tdb, g.b, g.form);
}

bool CKyStaPnt::SetDT(double d, double tdb, double b, Ky::_Formulation form)
{
    const Inputs in{kD, d, kTdb, tdb};
    KY_CHECK_FINITE();
    KY_CHECK_D(d);
    KY_CHECK_TDB(tdb);
    const Globals g{b, form, &Psy::CoefOf(form)};
    const double w = d / 1000.0;
    State s = State::AtTdbW(tdb, w, g.b, g.form);
    s.d = d;  // kept exactly as given
    if (s.pv < s.b && !(s.pv <= s.ps * (1.0 + RHRounding(*g.c, tdb, s.h, w))))
        KY_REFUSE(Ky::ERR_SUPERSATURATED, L"含湿量超过该温度下的饱和含湿量 %g g/kg（过饱和）。",
                  s.ps < s.b ? 1000.0 * Psy::WFromPv(*g.c, s.ps, g.b) : HUGE_VAL);
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_DandRH(double d, double rh)
{
    const Inputs in{kD, d, kRH, rh};
    KY_CHECK_FINITE();
    KY_CHECK_D(d);
    KY_CHECK_RH(rh);
    if (d == 0.0 || rh == 0.0)
        KY_REFUSE(Ky::ERR_INCONSISTENT, L"含湿量或相对湿度为 0 时不能确定温度（干空气在任何温度下相对湿度都为 0）。");
    const Globals g = ReadGlobals();
    const double w = d / 1000.0;
    State s;
    s.d = d;
    s.pv = Psy::PvFromW(*g.c, w, g.b);
    s.b = g.b;
    s.form = g.form;
    s.twb = kNaN;
    if (!(s.pv < g.b))
        KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"水蒸气分压力 %g Pa 不小于大气压力 %g Pa。", s.pv, g.b);
    // The dry bulb is where pws equals pv / RH: the saturation curve inverted.
    s.tdb = Psy::SatTemperature(*g.c, s.pv / (rh < 1.0 ? rh : 1.0), g.b);
    if (!IsTdbInRange(s.tdb))
        KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"所需的干球温度超出 -100～200 °C 的计算范围。");
    s.ps = Psy::SatPartial(*g.c, s.tdb, g.b);
    s.h = Psy::Enthalpy(*g.c, s.tdb, w, g.b);
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_HandRH(double h, double rh)
{
    const Globals g = ReadGlobals();
    return SetHRH(h, rh, g.b, g.form);
}

bool CKyStaPnt::SetHRH(double h, double rh, double b, Ky::_Formulation form)
{
    const Inputs in{kH, h, kRH, rh};
    KY_CHECK_FINITE();
    KY_CHECK_RH(rh);
    if (rh == 0.0) return SetHD(h, 0.0, b, form);  // dry air: the closed form
    const Globals g{b, form, &Psy::CoefOf(form)};
    const double t = Psy::TdbFromHRH(*g.c, h, rh < 1.0 ? rh : 1.0, g.b);
    if (!IsTdbInRange(t))
        KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"在 -100～200 °C 且水蒸气分压力低于大气压力的范围内无此状态。");
    State s;
    s.h = h;
    s.tdb = t;
    s.ps = Psy::SatPartial(*g.c, t, g.b);
    // d from h and t in closed form, so that GetH returns h exactly and the state is
    // self-consistent; RH then carries the solver's residual (far below 1e-9). The W of
    // (t, RH) is the real gas's starting point.
    const double pvRH = (rh < 1.0 ? rh : 1.0) * s.ps;
    const double w = Psy::WFromHT(*g.c, h, t, g.b, pvRH < g.b ? Psy::WFromPv(*g.c, pvRH, g.b) : kNaN);
    // The real gas's enthalpy has no W for an h far beyond any air (NaN): refused, never read
    // as dry air with that enthalpy.
    if (w != w) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"在 -100～200 °C 且水蒸气分压力低于大气压力的范围内无此状态。");
    s.d = 1000.0 * (w > 0.0 ? w : 0.0);
    s.pv = Psy::PvFromW(*g.c, s.d / 1000.0, g.b);
    s.twb = kNaN;
    s.b = g.b;
    s.form = g.form;
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_TdbandTdp(double tdb, double tdp)
{
    const Inputs in{kTdb, tdb, kTdp, tdp};
    KY_CHECK_FINITE();
    KY_CHECK_TDB(tdb);
    if (tdp > tdb) KY_REFUSE(Ky::ERR_SUPERSATURATED, L"露点温度高于干球温度（过饱和）。");
    if (!(tdp >= kMinTdb)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"露点温度低于 -100 °C 的计算范围。");
    const Globals g = ReadGlobals();
    const double pv = Psy::SatPartial(*g.c, tdp, g.b);
    if (!(pv < g.b)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"水蒸气分压力 %g Pa 不小于大气压力 %g Pa。", pv, g.b);
    const State s =
        State::AtTdbPv(tdb, pv, tdp == tdb ? pv : Psy::SatPartial(*g.c, tdb, g.b), g.b, g.form);
    KY_CHECK_STATE(s);
    return Commit(s);
}

bool CKyStaPnt::SetBy_TdbandPv(double tdb, double pv)
{
    const Inputs in{kTdb, tdb, kPv, pv};
    KY_CHECK_FINITE();
    KY_CHECK_TDB(tdb);
    if (pv < 0.0) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"水蒸气分压力为负。");
    const Globals g = ReadGlobals();
    if (!(pv < g.b)) KY_REFUSE(Ky::ERR_OUT_OF_DOMAIN, L"水蒸气分压力不小于大气压力 %g Pa。", g.b);
    const State s = State::AtTdbPv(tdb, pv, Psy::SatPartial(*g.c, tdb, g.b), g.b, g.form);
    KY_CHECK_STATE(s);
    return Commit(s);
}

// ---- getters ----

double CKyStaPnt::GetTdb() const { return m_dTdb; }
double CKyStaPnt::GetD() const { return m_dD; }
double CKyStaPnt::GetH() const { return m_dH; }
double CKyStaPnt::GetPv() const { return m_dPv; }
double CKyStaPnt::GetPs() const { return m_dPs; }
double CKyStaPnt::GetRH() const { return m_dPv / m_dPs; }  // NaN / NaN when unset

double CKyStaPnt::GetV() const
{
    return Psy::SpecificVolume(Psy::CoefOf(m_eFormulation), m_dTdb, m_dD / 1000.0, m_dB);
}

// Moist air per volume: (1 + W) kg of moist air occupy v m³ (ASHRAE 2017 ch. 1 eq. 11).
double CKyStaPnt::GetRho() const { return (1.0 + m_dD / 1000.0) / GetV(); }

double CKyStaPnt::GetTdp() const
{
    if (!m_bValid) return kNaN;
    if (m_dPv >= m_dPs) return m_dTdb;  // saturated
    // NaN for dry air and for a dew point below the -100 °C end of the saturation equation.
    // Near saturation the solver's last bit may land above the dry bulb; the dew point never does.
    const Psy::Coef& c = Psy::CoefOf(m_eFormulation);
    const double tdp = Psy::SatTemperature(c, m_dPv, m_dB);
    // A state saturated within rounding at the cold end keeps its dew point, the dry bulb.
    if (tdp != tdp && m_dPv >= m_dPs * (1.0 - RHRounding(c, m_dTdb, m_dH, m_dD / 1000.0))) return m_dTdb;
    return tdp > m_dTdb ? m_dTdb : tdp;
}

double CKyStaPnt::GetTwb() const
{
    if (!m_bValid) return kNaN;
    if (m_dTwbGiven == m_dTwbGiven) return m_dTwbGiven;  // set by this wet bulb: keep it exactly
    const double twb = Psy::WetBulb(Psy::CoefOf(m_eFormulation), m_dTdb, m_dD / 1000.0, m_dB, m_dPs);
    return twb > m_dTdb ? m_dTdb : twb;  // as for the dew point: never above the dry bulb
}
