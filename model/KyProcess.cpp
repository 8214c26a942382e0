#include <kygraph/KyProcess.h>

#include "internal/KyFail.h"
#include "internal/KyPsy.h"

#include <cmath>

namespace Psy = Ky::Psy;
using Ky::Detail::Fail;

namespace {

bool SameState(const CKyStaPnt& a, const CKyStaPnt& b)
{
    return a.GetH() == b.GetH() && a.GetD() == b.GetD() && a.GetB() == b.GetB() &&
           a.GetFormulation() == b.GetFormulation() && a.GetName() == b.GetName();
}

bool SameConditions(const CKyStaPnt& a, const CKyStaPnt& b)
{
    return a.GetB() == b.GetB() && a.GetFormulation() == b.GetFormulation();
}

// How many times the search for a relative humidity along a ratio line doubles its step
// (0.01 g/kg · 2^40 covers any reachable d), and how many bisections refine it (enough to
// reach the resolution of a double from any bracket of that search).
constexpr int kRHSearchSteps = 40;
constexpr int kRHBisections = 200;

}  // namespace

CKyProcess::CKyProcess() = default;
CKyProcess::CKyProcess(const CKyProcess& other) = default;

const CKyProcess& CKyProcess::operator=(const CKyProcess& other)
{
    CKyObject::operator=(other);
    m_paths = other.m_paths;
    m_points = other.m_points;
    return *this;
}

CKyProcess::~CKyProcess() = default;

CString CKyProcess::toString() const { return CString(L"CKyProcess"); }

bool CKyProcess::GetAllProcess(CKyPathMap& paths) const
{
    paths.RemoveAll();
    CString name;
    CKyStaPntArray points;
    for (POSITION pos = m_paths.GetStartPosition(); pos != nullptr;) {
        m_paths.GetNextAssoc(pos, name, points);
        paths.SetAt(name, points);
    }
    return true;
}

bool CKyProcess::GetAllPnt(CKyStaPntArray& points) const
{
    points.Copy(m_points);
    return true;
}

void CKyProcess::RemoveAll()
{
    m_paths.RemoveAll();
    m_points.RemoveAll();
}

bool CKyProcess::CheckNewName(const CString& name)
{
    if (name.IsEmpty()) return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程名称不能为空。");
    if (m_paths.PLookup(name) != nullptr)
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”已存在。", name.GetString());
    return true;
}

bool CKyProcess::AddPathUnchecked(const CString& name, const CKyStaPnt* pts, int count)
{
    CKyStaPntArray& path = m_paths[name];
    for (int i = 0; i < count; ++i) {
        CKyStaPnt p = pts[i];
        path.Add(p);
        bool known = false;
        for (const CKyStaPnt& q : m_points) known = known || SameState(q, p);
        if (!known) m_points.Add(p);
    }
    return true;
}

bool CKyProcess::AddPath(const CString& name, const CKyStaPntArray& points)
{
    if (!CheckNewName(name)) return false;
    if (points.IsEmpty())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”没有状态点。", name.GetString());
    for (int i = 0; i < points.GetSize(); ++i)
        if (!points.GetAt(i).IsValid())
            return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的第 %d 个状态点尚未设定。", name.GetString(),
                        i + 1);
    return AddPathUnchecked(name, points.GetData(), points.GetSize());
}

// Copies a state point's refusal into the process, naming the process.
#define KY_FAIL_FROM(pnt)                                                                              \
    return Fail(*this, (pnt).GetLastErrorStatus(), L"过程“%ls”的终点无法计算：%ls", name.GetString(), \
                (pnt).GetLastErrorString().GetString())

bool CKyProcess::AddMixing(const CString& name, const CKyStaPnt& a, double massA, const CKyStaPnt& b,
                           double massB, CKyStaPnt* pMix)
{
    if (!CheckNewName(name)) return false;
    if (!a.IsValid() || !b.IsValid())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"混合过程“%ls”的状态点尚未设定。", name.GetString());
    if (!SameConditions(a, b))
        return Fail(*this, Ky::ERR_INCONSISTENT, L"混合过程“%ls”的两个状态点大气压力或计算公式不同。",
                    name.GetString());
    if (!(massA >= 0.0 && massB >= 0.0 && std::isfinite(massA) && std::isfinite(massB)) || massA + massB == 0.0)
        return Fail(*this, Ky::ERR_INVALID_INPUT,
                    L"混合过程“%ls”的风量 %g 与 %g 不合法：应为非负有限数且不全为 0。", name.GetString(), massA,
                    massB);
    // Fractions of the larger flow first, so that huge flows cannot overflow the sum.
    const double m = massA > massB ? massA : massB;
    const double fa = (massA / m) / (massA / m + massB / m);
    const double fb = 1.0 - fa;
    CKyStaPnt mix;
    if (!mix.SetHD(fa * a.GetH() + fb * b.GetH(), fa * a.GetD() + fb * b.GetD(), a.GetB(), a.GetFormulation()))
        KY_FAIL_FROM(mix);
    const CKyStaPnt pts[3] = {a, mix, b};
    AddPathUnchecked(name, pts, 3);
    if (pMix) *pMix = mix;
    return true;
}

bool CKyProcess::AddSensible(const CString& name, const CKyStaPnt& from, double tdbTo, CKyStaPnt* pEnd)
{
    if (!CheckNewName(name)) return false;
    if (!from.IsValid())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的起点尚未设定。", name.GetString());
    CKyStaPnt end;
    if (!end.SetDT(from.GetD(), tdbTo, from.GetB(), from.GetFormulation())) KY_FAIL_FROM(end);
    const CKyStaPnt pts[2] = {from, end};
    AddPathUnchecked(name, pts, 2);
    if (pEnd) *pEnd = end;
    return true;
}

bool CKyProcess::AddCoolingDehumidify(const CString& name, const CKyStaPnt& from, const CKyStaPnt& to)
{
    if (!CheckNewName(name)) return false;
    if (!from.IsValid() || !to.IsValid())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的状态点尚未设定。", name.GetString());
    if (!SameConditions(from, to))
        return Fail(*this, Ky::ERR_INCONSISTENT, L"过程“%ls”的两个状态点大气压力或计算公式不同。",
                    name.GetString());
    if (!(to.GetD() <= from.GetD() && to.GetTdb() < from.GetTdb() && to.GetH() <= from.GetH()))
        return Fail(*this, Ky::ERR_INCONSISTENT,
                    L"过程“%ls”不是冷却去湿：终点（%g °C，%g g/kg）应比起点（%g °C，%g g/kg）温度低、含湿量不增。",
                    name.GetString(), to.GetTdb(), to.GetD(), from.GetTdb(), from.GetD());
    const CKyStaPnt pts[2] = {from, to};
    return AddPathUnchecked(name, pts, 2);
}

bool CKyProcess::AddAdiabaticHumidify(const CString& name, const CKyStaPnt& from, double rhTo, CKyStaPnt* pEnd)
{
    if (!CheckNewName(name)) return false;
    if (!from.IsValid())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的起点尚未设定。", name.GetString());
    if (!(rhTo >= from.GetRH() - CKyStaPnt::kRHTolerance))  // also refuses NaN
        return Fail(*this, Ky::ERR_INCONSISTENT,
                    L"过程“%ls”：加湿后的相对湿度 %g 不应低于起点的相对湿度 %g。", name.GetString(), rhTo,
                    from.GetRH());
    CKyStaPnt end;
    if (!end.SetHRH(from.GetH(), rhTo, from.GetB(), from.GetFormulation())) KY_FAIL_FROM(end);
    const CKyStaPnt pts[2] = {from, end};
    AddPathUnchecked(name, pts, 2);
    if (pEnd) *pEnd = end;
    return true;
}

bool CKyProcess::AddSteamHumidify(const CString& name, const CKyStaPnt& from, double dTo, double tSteam,
                                  CKyStaPnt* pEnd)
{
    if (!CheckNewName(name)) return false;
    if (!from.IsValid())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的起点尚未设定。", name.GetString());
    if (!(dTo >= from.GetD()) || !std::isfinite(dTo))
        return Fail(*this, Ky::ERR_INCONSISTENT, L"过程“%ls”：加湿后的含湿量 %g g/kg 应为不低于起点 %g g/kg 的有限数。",
                    name.GetString(), dTo, from.GetD());
    if (!(tSteam >= 0.0 && tSteam <= Psy::kMaxT))
        return Fail(*this, Ky::ERR_OUT_OF_DOMAIN, L"过程“%ls”：蒸汽温度 %g °C 超出 0～200 °C。", name.GetString(),
                    tSteam);
    // Each kg of steam brings the vapour enthalpy of the formulation at its temperature (the
    // real gas: its ideal-gas approximation, ASHRAE 2017 eq. 32's 2501 + 1.86 t).
    const Psy::Coef& c = Psy::CoefOf(from.GetFormulation());
    const double hSteam = c.hg0 + c.cpv * tSteam;  // kJ/kg of steam
    CKyStaPnt end;
    if (!end.SetHD(from.GetH() + (dTo - from.GetD()) / 1000.0 * hSteam, dTo, from.GetB(), from.GetFormulation()))
        KY_FAIL_FROM(end);
    const CKyStaPnt pts[2] = {from, end};
    AddPathUnchecked(name, pts, 2);
    if (pEnd) *pEnd = end;
    return true;
}

bool CKyProcess::AddRatioProcess(const CString& name, const CKyStaPnt& from, const CKyAS& eps, _EnKyTarget target,
                                 double value, CKyStaPnt* pEnd)
{
    if (!CheckNewName(name)) return false;
    if (!from.IsValid())
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的起点尚未设定。", name.GetString());
    if (!std::isfinite(value))
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的终点参数 %g 不是有限数。", name.GetString(), value);
    const CKyAS::_EnKyASType kind = eps.GetType();
    if (kind != CKyAS::AS_FINITE && kind != CKyAS::AS_POSITIVE_INF && kind != CKyAS::AS_NEGATIVE_INF)
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的热湿比类型 %d 未知。", name.GetString(),
                    static_cast<int>(kind));
    const bool finite = kind == CKyAS::AS_FINITE;
    const double e = eps.GetValue();  // kJ/kg
    const double h0 = from.GetH(), d0 = from.GetD(), b = from.GetB();
    const Ky::_Formulation form = from.GetFormulation();
    double h = 0.0, d = 0.0;
    CKyStaPnt end;
    switch (target) {
    case TARGET_D:
        if (!finite)
            return Fail(*this, Ky::ERR_INCONSISTENT, L"过程“%ls”：热湿比为无穷大时含湿量不变，不能以含湿量为终点。",
                        name.GetString());
        d = value;
        h = h0 + e * (d - d0) / 1000.0;
        break;
    case TARGET_H:
        if (finite && e == 0.0)
            return Fail(*this, Ky::ERR_INCONSISTENT, L"过程“%ls”：热湿比为 0 时焓不变，不能以焓为终点。",
                        name.GetString());
        h = value;
        d = finite ? d0 + 1000.0 * (h - h0) / e : d0;
        if (!finite && (kind == CKyAS::AS_POSITIVE_INF) != (h > h0))
            return Fail(*this, Ky::ERR_INCONSISTENT, L"过程“%ls”：终点焓 %g kJ/kg 与热湿比的方向（%ls）不符。",
                        name.GetString(), h, kind == CKyAS::AS_POSITIVE_INF ? L"+∞" : L"-∞");
        break;
    case TARGET_RH: {
        if (!(value > 0.0 && value <= 1.0 + CKyStaPnt::kRHTolerance))
            return Fail(*this, Ky::ERR_OUT_OF_DOMAIN, L"过程“%ls”：终点相对湿度 %g 应在 0～1 之间且大于 0。",
                        name.GetString(), value);
        if (!finite) {
            // Constant d: the end is (d0, RH), its dry bulb where pws = pv / RH. Heating (+∞)
            // lowers RH, cooling (-∞) raises it.
            const Psy::Coef& c = Psy::CoefOf(form);
            const double pv = Psy::PvFromW(c, d0 / 1000.0, b);
            const double t = Psy::SatTemperature(c, pv / (value < 1.0 ? value : 1.0), b);
            if (!(t == t))
                return Fail(*this, Ky::ERR_OUT_OF_DOMAIN, L"过程“%ls”：含湿量 %g g/kg 时达不到相对湿度 %g。",
                            name.GetString(), d0, value);
            if (!end.SetDT(d0, t, b, form)) KY_FAIL_FROM(end);
            if ((kind == CKyAS::AS_POSITIVE_INF) != (end.GetH() > h0))
                return Fail(*this, Ky::ERR_INCONSISTENT, L"过程“%ls”：终点相对湿度 %g 与热湿比的方向（%ls）不符。",
                            name.GetString(), value, kind == CKyAS::AS_POSITIVE_INF ? L"+∞" : L"-∞");
            h = end.GetH();
            d = d0;
            break;
        }
        // Along h = h0 + e (d - d0)/1000, RH(d) is continuous; march away from d0 in both
        // directions with doubling steps until RH - value changes sign, nearest crossing first,
        // then bisect. RH is evaluated in closed form and may exceed 1 past saturation.
        const Psy::Coef& c = Psy::CoefOf(form);
        auto rhAt = [&](double dd) {
            const double w = dd / 1000.0;
            const double t = Psy::TdbFromHW(c, h0 + e * (dd - d0) / 1000.0, w, b);
            // The states' own margin at the ends of the range: a start at 200 °C derives
            // 200 °C plus a rounding error here, and its RH must not read NaN.
            if (!(t >= Psy::kMinT - Psy::kRangeMarginK && t <= Psy::kMaxT + Psy::kRangeMarginK)) return Psy::kNaN;
            const double pv = Psy::PvFromW(c, w, b);
            return pv < b ? pv / Psy::SatPartial(c, t, b) : Psy::kNaN;
        };
        const double f0 = rhAt(d0) - value;
        double lo = d0, hi = d0;
        bool found = f0 == 0.0;
        double step = 0.01;
        // No search from a start whose RH is unknown: a NaN would pass for a sign change.
        bool upOpen = f0 == f0, downOpen = f0 == f0;
        double dUpPrev = d0, dDownPrev = d0;
        for (int i = 0; i < kRHSearchSteps && !found && (upOpen || downOpen); ++i, step *= 2.0) {
            if (upOpen) {
                const double dd = d0 + step;
                const double f = rhAt(dd) - value;
                if (!(f == f)) upOpen = false;
                else if ((f > 0.0) != (f0 > 0.0)) { lo = dUpPrev; hi = dd; found = true; break; }
                dUpPrev = dd;
            }
            if (downOpen) {
                const double dd = d0 - step > 0.0 ? d0 - step : 0.0;
                const double f = rhAt(dd) - value;
                if (!(f == f)) downOpen = false;
                else if ((f > 0.0) != (f0 > 0.0)) { lo = dd; hi = dDownPrev; found = true; break; }
                if (dd == 0.0) downOpen = false;
                dDownPrev = dd;
            }
        }
        const auto unreachable = [&] {
            return Fail(*this, Ky::ERR_OUT_OF_DOMAIN, L"过程“%ls”：沿热湿比 %g kJ/kg 达不到相对湿度 %g。",
                        name.GetString(), e, value);
        };
        if (!found) return unreachable();
        if (f0 == 0.0) {
            d = d0;
        } else {
            const bool riseAtHi = rhAt(hi) - value > 0.0;
            for (int i = 0; i < kRHBisections && hi - lo > 0.0; ++i) {
                const double mid = 0.5 * (lo + hi);
                if (mid <= lo || mid >= hi) break;
                const double f = rhAt(mid) - value;
                // The line leaves the model's range between the ends of the bracket, so the
                // sign change seen at its ends says nothing about where RH meets value.
                if (!(f == f)) return unreachable();
                if ((f > 0.0) == riseAtHi) hi = mid; else lo = mid;
            }
            // The end that is not supersaturated, so that the state point accepts it.
            d = rhAt(lo) <= rhAt(hi) ? lo : hi;
            if (rhAt(d) > 1.0 + CKyStaPnt::kRHTolerance) d = d == lo ? hi : lo;
        }
        h = h0 + e * (d - d0) / 1000.0;
        break;
    }
    default:
        return Fail(*this, Ky::ERR_INVALID_INPUT, L"过程“%ls”的终点类型 %d 未知。", name.GetString(),
                    static_cast<int>(target));
    }
    if (!end.SetHD(h, d, b, form)) KY_FAIL_FROM(end);
    const CKyStaPnt pts[2] = {from, end};
    AddPathUnchecked(name, pts, 2);
    if (pEnd) *pEnd = end;
    return true;
}
