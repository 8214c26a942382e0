#include <kygraph/KyGSameT.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/StringUtils.h>

CKyGSameT::CKyGSameT(CKyGChart* pChart) : CKyGSameLine(pChart, -30.0) {}

int CKyGSameT::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double t = m_dValue;

    // A: the left end, on the chart's left edge.
    CKyStaPnt p1;
    if (!p1.SetBy_DandTdb(range.GetMinD(), t)) return FailWith(p1);
    CPoint a;
    if (!chart->Convert(p1, a)) return 0;

    // B: the saturation point, or where the isotherm leaves through the right or top edge.
    CKyStaPnt p2;
    if (!p2.SetBy_TdbandRH(t, 1.0)) return FailWith(p2);
    CPoint b;
    if (!chart->Convert(p2, b)) {
        // A failed fallback draws to wherever the failed mapping left B: intended.
        if (p2.SetBy_DandTdb(range.GetMaxD(), t)) {
            chart->Convert(p2, b);
            const CPoint o = chart->GetChartOrigin();
            // Based on the left edge's x rather than A's: A lies on that edge.
            if (b.y < o.y) b = CutAtTopEdge(o.x, a.y, b, o.y);
        }
    }
    pen.Line(a, b);

    if (m_bDimEnable) {
        // Right-aligned against the left end and centred on it.
        const CString text = StringUtils::DblToStr(t, 0);
        const CSize size = pen.Measure(text);
        pen.Text(a - CSize(size.cx, size.cy / 2), 0.0, text);
    }
    return 1;
}
