#include <kygraph/KyGSameV.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/StringUtils.h>

#include "internal/KyGPlotMap.h"

#include <cmath>

namespace {

constexpr int kSamples = 16;     // points along a line; it is close to straight
constexpr int kBisections = 48;  // halvings of the dry-bulb interval, to well below 1e-9 °C

// The dry bulb at moisture content d where the specific volume is v, by bisection over what
// the state model accepts (v grows with t at fixed d). NaN when v lies outside.
double TdbAt(double d, double v, double tMax)
{
    CKyStaPnt p;
    double a = CKyStaPnt::kMinTdb, b = tMax;
    if (!p.SetBy_DandTdb(d, b) || p.GetV() < v) return std::nan("");
    if (!p.SetBy_DandTdb(d, a)) {
        // Below saturation at d: start the search at the dew point.
        CKyStaPnt s;
        if (!s.SetBy_DandRH(d, 1.0)) return std::nan("");
        a = s.GetTdb();
        if (!p.SetBy_DandTdb(d, a)) return std::nan("");
    }
    if (p.GetV() > v) return std::nan("");
    for (int i = 0; i < kBisections; ++i) {
        const double m = (a + b) / 2.0;
        if (p.SetBy_DandTdb(d, m) && p.GetV() < v) a = m;
        else b = m;
    }
    return (a + b) / 2.0;
}

}  // namespace

CKyGSameV::CKyGSameV(CKyGChart* pChart) : CKyGSameLine(pChart, 0.85) {}

CString CKyGSameV::toString() const { return CString(L"CKyGSameV"); }

int CKyGSameV::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGChartSetting& set = Settings();
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double v = m_dValue;
    KyGPlotMap map;
    if (!map.Init(*chart, set)) {
        m_strLastError.LoadString(IDS_OUT_OF_DRAW_RANGE);
        return 0;
    }
    const CKyGRangeSetting& range = set.m_RangeSetting;
    const double tMax = std::min(CKyStaPnt::kMaxTdb, std::max(range.GetMinT(), range.GetMaxT()) + 40.0);

    // Where the line meets saturation: v grows along the saturation curve with t.
    CKyStaPnt s;
    double a = CKyStaPnt::kMinTdb, b = tMax;
    // Saturated air exists only below the boiling point at the pressure in effect.
    if (!s.SetBy_TdbandRH(b, 1.0)) {
        double lo = a, hi = b;
        for (int i = 0; i < kBisections; ++i) {
            const double m = (lo + hi) / 2.0;
            if (s.SetBy_TdbandRH(m, 1.0)) lo = m;
            else hi = m;
        }
        b = lo;
    }
    if (!s.SetBy_TdbandRH(b, 1.0) || s.GetV() < v || !s.SetBy_TdbandRH(a, 1.0) || s.GetV() > v ||
        !std::isfinite(TdbAt(0.0, v, tMax))) {
        m_strLastError.LoadString(IDS_POINT_INVALID);
        return 0;
    }
    for (int i = 0; i < kBisections; ++i) {
        const double m = (a + b) / 2.0;
        if (s.SetBy_TdbandRH(m, 1.0) && s.GetV() < v) a = m;
        else b = m;
    }
    s.SetBy_TdbandRH(a, 1.0);
    const double dSat = s.GetD();

    std::vector<KyGPixel> line;
    for (int i = 0; i <= kSamples; ++i) {
        const double d = dSat * i / kSamples;
        const double t = i == kSamples ? s.GetTdb() : TdbAt(d, v, tMax);
        CKyStaPnt q;
        if (std::isfinite(t) && q.SetBy_DandTdb(std::min(d, dSat), t)) line.push_back(map.Map(q.GetH(), q.GetD()));
    }
    const auto pieces = map.ClipPolyline(line);
    for (const auto& piece : pieces) pen.PolyLine(piece);

    if (m_bDimEnable && !pieces.empty() && !line.empty() && map.Inside(line.back())) {
        // Below and right of the saturated end, where the supersaturated side of the chart is
        // empty.
        const CString text = StringUtils::DblToStr(v, 2);
        const CPoint end = pieces.back()[pieces.back().GetSize() - 1];
        pen.Text(CPoint(end.x + 2, end.y + 2), 0.0, text);
    }
    return 1;
}
