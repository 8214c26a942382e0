#include <kygraph/KyGSameTwb.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/StringUtils.h>

#include "internal/KyGPlotMap.h"

#include <cmath>

namespace {

constexpr double kStep = 2.0;      // °C of dry bulb between samples; the line is nearly straight
constexpr int kMaxSamples = 160;   // covers the state model's whole temperature span

}  // namespace

CKyGSameTwb::CKyGSameTwb(CKyGChart* pChart) : CKyGSameLine(pChart, 20.0) {}

CString CKyGSameTwb::toString() const { return CString(L"CKyGSameTwb"); }

int CKyGSameTwb::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGChartSetting& set = Settings();
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double twb = m_dValue;

    CKyStaPnt p;
    if (!p.SetBy_TdbandTwb(twb, twb)) return FailWith(p);
    KyGPlotMap map;
    if (!map.Init(*chart, set)) {
        m_strLastError.LoadString(IDS_OUT_OF_DRAW_RANGE);
        return 0;
    }
    // From saturation (t = twb) towards higher dry bulbs until the air is dry or the chart's
    // top is passed.
    const double tTop = std::max(set.m_RangeSetting.GetMinT(), set.m_RangeSetting.GetMaxT()) + 10.0;
    std::vector<KyGPixel> line;
    line.push_back(map.Map(p.GetH(), p.GetD()));
    for (int i = 1; i < kMaxSamples; ++i) {
        const double t = twb + kStep * i;
        CKyStaPnt q;
        if (!q.SetBy_TdbandTwb(t, twb)) {
            // Past dry air: end exactly on d = 0 at this wet bulb.
            CKyStaPnt dry;
            double a = t - kStep, b = t;
            for (int n = 0; n < 30; ++n) {
                const double m = (a + b) / 2.0;
                if (dry.SetBy_TdbandTwb(m, twb)) a = m;
                else b = m;
            }
            if (dry.SetBy_TdbandTwb(a, twb)) line.push_back(map.Map(dry.GetH(), dry.GetD()));
            break;
        }
        line.push_back(map.Map(q.GetH(), q.GetD()));
        if (t > tTop) break;
    }
    const auto pieces = map.ClipPolyline(line);
    for (const auto& piece : pieces) pen.PolyLine(piece);

    if (m_bDimEnable && !pieces.empty() && map.Inside(line.front())) {
        // Left of and above the saturated end, where the isotherm of the same value starts.
        const CString text = StringUtils::DblToStr(twb, std::fabs(twb - std::round(twb)) < 1e-9 ? 0 : 1);
        const CSize ext = pen.Measure(text);
        const CPoint end = pieces.front()[0];
        pen.Text(CPoint(end.x - ext.cx - 2, end.y - ext.cy), 0.0, text);
    }
    return 1;
}
