#include <kygraph/KyGSameD.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/StringUtils.h>

CKyGSameD::CKyGSameD(CKyGChart* pChart) : CKyGSameLine(pChart, 0.0) {}

int CKyGSameD::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double d = m_dValue;

    // A: the lower end, on the saturation curve or, below the minimum temperature, on the
    // bottom edge. Dry air is the left edge itself and needs no state.
    CPoint a;
    if (d <= 0.0) {
        a = chart->GetMinTAndMinDPnt();
    } else {
        // A d that is not a number lands here and is refused by the state model.
        CKyStaPnt p;
        if (!p.SetBy_DandRH(d, 1.0)) return FailWith(p);
        if (!chart->Convert(p, a)) {
            if (!p.SetBy_DandTdb(d, range.GetMinT())) return 0;
            if (!chart->Convert(p, a)) return 0;
        }
    }
    // B: straight up to the top edge.
    const CPoint b(a.x, chart->GetChartOrigin().y);
    pen.Line(a, b);

    if (m_bDimEnable) {
        // Centred above the top end.
        const CString text = StringUtils::DblToStr(d, 1);
        const CSize size = pen.Measure(text);
        pen.Text(b - CSize(size.cx / 2, size.cy), 0.0, text);
    }
    return 1;
}
