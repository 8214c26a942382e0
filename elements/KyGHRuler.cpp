#include <kygraph/KyGHRuler.h>

#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGValueStepper.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>
#include <kygraph/StringUtils.h>

#include <cmath>
#include <mutex>
#include <numbers>
#include <unordered_map>

namespace {

// More ticks than any enthalpy span of a drawable chart has; a scale ends here whatever its
// bounds.
constexpr int kMaxTicks = 8192;

constexpr double kKcalPerKJ = 0.2389;

// The saturated state of each enthalpy a tick needs. The same ticks are placed at every
// redraw, each by an iterative solve of the state model, which was a tenth of the redraw: kept
// for the pressure and formulation they were solved at, and dropped when either changes or when
// hosts' ranges pile up too many. Charts may be drawn by several threads: one lock guards them.
class SaturationStates {
public:
    static SaturationStates& Instance()
    {
        static auto* states = new SaturationStates;  // never destroyed: charts may draw during exit
        return *states;
    }
    // The saturated state at enthalpy h at the current pressure and formulation into out;
    // false when the model refuses it.
    bool At(double h, CKyStaPnt& out)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        const CKyChart* global = CKyChart::InstanceGloble();
        if (global->GetGlobleB() != m_b || global->GetFormulation() != m_form || m_states.size() > 4096) {
            m_states.clear();
            m_b = global->GetGlobleB();
            m_form = global->GetFormulation();
        }
        auto [it, added] = m_states.try_emplace(h);
        if (added && !it->second.SetBy_HandRH(h, 1.0)) it->second = CKyStaPnt();
        if (!it->second.IsValid()) return false;
        out = it->second;
        return true;
    }
    void Forget()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_states.clear();
    }

private:
    std::mutex m_mutex;
    double m_b = 0.0;
    Ky::_Formulation m_form = Ky::FORMULATION_CHART;
    std::unordered_map<double, CKyStaPnt> m_states;
};

}  // namespace

CKyGHRuler::CKyGHRuler(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

void CKyGHRuler::ForgetKept() { SaturationStates::Instance().Forget(); }

CString CKyGHRuler::toString() const { return CString(L"CKyGHRuler"); }

int CKyGHRuler::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    CResourceModule::Scope scope(KyGraphModule());

    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, Settings().m_StyleSetting.m_SameHStyle);
    const double s = pen.Scale();

    const double a = chart->GetHAngle();
    const double ca = std::cos(a);
    const double sa = std::sin(a);
    const double textAngle = 90.0 - a * (180.0 / std::numbers::pi);
    // P offset by k along the enthalpy direction, each coordinate truncated separately.
    const auto along = [ca, sa, s](CPoint p, double k) {
        return CPoint(Ky::TruncToInt(p.x + ca * k * s), Ky::TruncToInt(p.y + sa * k * s));
    };

    CKyStaPnt pnt;
    if (!pnt.SetBy_TdbandRH(range.GetMinT(), 1.0)) return 0;
    double hmin = pnt.GetH();
    CPoint A;
    if (!chart->Convert(pnt, A)) return 0;
    if (!pnt.SetBy_DandRH(range.GetMaxD(), 1.0)) return 0;
    double hmax = pnt.GetH();
    const CPoint S = along(A, 18.0);
    if (!(hmax - hmin > 0.0)) return 0;

    // The saturation pixel of enthalpy h (kJ/kg) in c0; false when it cannot be placed, and
    // then the tick is left out.
    SaturationStates& states = SaturationStates::Instance();
    CKyStaPnt saturated;
    const auto saturation = [&](double h, CPoint& c0) { return states.At(h, saturated) && chart->Convert(saturated, c0); };

    // kJ/kg on the inner side: every 5 long, every 10 labelled and drawn on to the curve.
    pen.Line(S, A);
    pen.Text(along(S, -6.0), textAngle, LoadText(IDS_HRULER_KJ));
    CPoint prev = S;
    for (double h : CKyGValueStepper::Ticks(hmin, hmax, 1.0, kMaxTicks)) {
        CPoint c0;
        if (!saturation(h, c0)) continue;
        const CPoint c = along(c0, 18.0);
        CPoint t = along(c, (std::fmod(h, 5.0) == 0.0 || h == hmax) ? -6.0 : -3.0);
        if (std::fmod(h, 10.0) == 0.0) {
            pen.Text(t, textAngle, StringUtils::DblToStr(h, 0));
            t = c0;
        }
        if (std::fabs(h - hmax) <= 1e-9) t = c0;
        pen.Line(c, t);
        pen.Line(prev, c);
        prev = c;
    }

    // kcal/kg on the outer side: every 0.5 short, every whole one long and labelled. The ruler
    // path is drawn a second time along these samples.
    hmin *= kKcalPerKJ;
    hmax *= kKcalPerKJ;
    if (!(hmax - hmin > 0.0)) return 0;
    // Here the offset is truncated before it is added, unlike along().
    const CPoint E = S + CSize(Ky::TruncToInt(ca * 6.0 * s), Ky::TruncToInt(sa * 6.0 * s));
    pen.Line(S, E);
    pen.Text(E, textAngle, LoadText(IDS_HRULER_KCAL));
    prev = S;
    for (double g : CKyGValueStepper::Ticks(hmin, hmax, 0.5, kMaxTicks)) {
        CPoint c0;
        if (!saturation(g / kKcalPerKJ, c0)) continue;
        const CPoint c = along(c0, 18.0);
        const bool whole = std::fmod(g, 1.0) == 0.0;
        const CPoint t = along(c, (whole || g == hmax) ? 6.0 : 3.0);
        if (whole) pen.Text(t, textAngle, StringUtils::DblToStr(g, 0));
        pen.Line(c, t);
        pen.Line(prev, c);
        prev = c;
    }
    return 1;
}
