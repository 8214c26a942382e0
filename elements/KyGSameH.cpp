#include <kygraph/KyGSameH.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>
#include <kygraph/StringUtils.h>

#include <cmath>

CKyGSameH::CKyGSameH(CKyGChart* pChart) : CKyGSameLine(pChart, 0.0) {}

// Read from the range's cached corner enthalpies, so that the pipeline's stepping loop copies
// no state point; they follow the range at once when it changes.
double CKyGSameH::GetMinValue() { return CKyGChartSetting::GetKyGChartSetting()->m_RangeSetting.GetMinDMinTH(); }

double CKyGSameH::GetMaxValue() { return CKyGChartSetting::GetKyGChartSetting()->m_RangeSetting.GetMaxDMaxTH(); }

int CKyGSameH::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double h = m_dValue;
    const double angle = chart->GetHAngle();  // radians below the horizontal

    // B: the lower-right end, where the line meets the bottom edge, else the right edge, else
    // the saturation curve.
    CKyStaPnt pb;
    if (!pb.SetBy_HandTdb(h, range.GetMinT()) && !pb.SetBy_HandD(h, range.GetMaxD()) && !pb.SetBy_HandRH(h, 1.0))
        return FailWith(pb);
    CPoint b;
    if (!chart->Convert(pb, b)) return 0;
    const CPoint o = chart->GetChartOrigin();
    // Takes over the point's (normally empty) error text: intended.
    if (b.y < o.y) return FailWith(pb);

    // A: the upper-left end, on the left edge, else cut at the top edge along the line.
    CKyStaPnt pa;
    CPoint a;
    if (!pa.SetBy_HandD(h, range.GetMinD()) || !chart->Convert(pa, a)) {
        // A horizontal enthalpy direction (or none at all) never meets the top edge.
        if (!(std::fabs(angle) > 1e-9)) {
            m_strLastError.LoadString(IDS_OUT_OF_DRAW_RANGE);
            return 0;
        }
        // A nearly horizontal direction puts the cut far off: saturated, not overflowed.
        a = CPoint(Ky::TruncToInt(b.x - (static_cast<double>(b.y) - o.y) / std::tan(angle)), o.y);
    }
    pen.Line(a, b);

    if (m_bDimEnable) {
        // The radian angle goes to a primitive that takes degrees, so the label turns by its
        // whole-number part only: intended (the pipeline never labels these lines).
        const CString text = StringUtils::DblToStr(h, 2);
        const CSize size = pen.Measure(text);
        pen.Text(b + CSize(0, size.cy / 2), angle, text);
    }
    return 1;
}
