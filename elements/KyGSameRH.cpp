#include <kygraph/KyGSameRH.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>
#include <kygraph/StringUtils.h>
#include <kygraph/VoArray.h>

#include <cmath>

namespace {

constexpr double kSampleStep = 0.2;  // °C between samples of a curve

// Samples a curve from t0 (°C) may take: up to the highest temperature the state model
// accepts, plus the sample that leaves the chart and one for rounding. Not the chart's range:
// a host that changes the lengths per unit after the chart was built can tilt the isotherms
// so that a curve stays inside the plot area well past the maximum temperature.
int MaxSamples(double t0)
{
    return Ky::TruncToInt(std::ceil((CKyStaPnt::kMaxTdb - t0) / kSampleStep)) + 2;
}

}  // namespace

CKyGSameRH::CKyGSameRH(CKyGChart* pChart) : CKyGSameLine(pChart, 1.0) {}

int CKyGSameRH::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double phi = m_dValue;

    CKyStaPnt p;
    if (!p.SetBy_TdbandRH(range.GetMinT(), phi)) return FailWith(p);
    double t = p.GetTdb();

    const CPoint o = chart->GetChartOrigin();
    const int rightX = chart->GetMaxTAndMaxDPnt().x;
    const int maxSamples = MaxSamples(t);
    CVoArray<CPoint> points;
    points.Reserve(maxSamples);
    // Also read by the label: whatever the last mapping left here, even a failed one.
    CPoint cur;
    CPoint prev;
    for (int n = 0; n < maxSamples; ++n) {
        if (!chart->GetPoint(p.GetH(), p.GetD(), cur)) break;
        if (!points.IsEmpty()) {
            if (cur.y < o.y) {
                cur = CutAtTopEdge(prev.x, prev.y, cur, o.y);
                points.Add(cur);
                break;
            }
            if (cur.x > rightX) {
                // Ends on the curve's own state at the right edge, not on an interpolated
                // pixel; neither result is needed.
                CKyStaPnt edge;
                edge.SetBy_DandRH(range.GetMaxD(), phi);
                chart->Convert(edge, cur);
                points.Add(cur);
                break;
            }
        }
        points.Add(cur);
        prev = cur;
        const double next = t + kSampleStep;
        if (!(next > t)) break;
        t = next;
        if (!p.SetBy_TdbandRH(t, phi)) break;
    }
    pen.PolyLine(points);

    // A curve that never entered the chart has no end to label.
    if (m_bDimEnable && !points.IsEmpty()) {
        // No extent taken: the label starts just right of and below the curve's end.
        const CString text = StringUtils::DblToStr(phi * 100.0, 0) + L"%";
        pen.Text(cur + CSize(1, 1), 0.0, text);
    }
    return 1;
}
