#include <kygraph/KyGChartFrame.h>

#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>

#include <cstdint>

namespace {

// y0 - rows * h without overflow, for the rows of the title block.
int RowUp(int y0, int rows, int h) { return Ky::ClampToInt(std::int64_t{y0} - std::int64_t{rows} * h); }

}  // namespace

CKyGChartFrame::CKyGChartFrame(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGChartFrame::toString() const { return CString(L"CKyGChartFrame"); }

int CKyGChartFrame::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;  // nothing to place the frame on
    CResourceModule::Scope scope(KyGraphModule());

    const CKyGChartSetting* set = &Settings();
    const CKyGStyleSetting& styles = set->m_StyleSetting;
    const double s = Frame().Scale();
    const CStyledPen frame = Pen(pDC, styles.m_FrameStyle);
    const CStyledPen dPen = Pen(pDC, styles.m_SameDStyle);
    const CStyledPen tPen = Pen(pDC, styles.m_SameTStyle);

    const CPoint O = chart->GetOrigin();
    const CPoint M = chart->GetChartMaxPoint();
    const CPoint A = chart->GetChartOrigin();
    const CPoint B = chart->GetMinTAndMinDPnt();
    const CPoint E = chart->GetMaxTAndMaxDPnt();
    const int halfBodyWidth = (E - A).cx / 2;

    if (m_bTitleEnable) {
        const CPoint P = B + CSize(halfBodyWidth, 0);
        const CString kcal = LoadText(IDS_FORMULA_KCAL);
        const CSize row = frame.Measure(kcal);
        const int w = row.cx, h = row.cy;
        const int x0 = Ky::SatSub(P.x, w / 2);
        const int y0 = P.y;
        const int x1 = Ky::SatAdd(x0, w);

        frame.Line(CPoint(x0, y0), CPoint(x1, y0));
        frame.Text(CPoint(x0, RowUp(y0, 2, h)), 0.0, kcal);
        frame.Text(CPoint(x0, RowUp(y0, 3, h)), 0.0, LoadText(IDS_FORMULA_KJ));

        const double b = Frame().B();
        CString pressure;
        pressure.Format(LoadText(IDS_PRESSURE_FORMAT).GetString(), b, b * 0.0075);
        frame.Text(CPoint(x0, RowUp(y0, 5, h)), 0.0, pressure);

        // Centred by the width in the font the DC holds now, not in the frame's font:
        // intended, the title is centred only when the two agree.
        const CString title = LoadText(IDS_CHART_TITLE);
        const int tw = pDC ? pDC->GetTextExtent(title).cx : 0;
        frame.Text(CPoint(Ky::SatSub(Ky::SatAdd(x0, w / 2), tw / 2), RowUp(y0, 7, h)), 0.0, title);

        frame.Line(CPoint(x0, RowUp(y0, 8, h)), CPoint(x1, RowUp(y0, 8, h)));
    }

    frame.Line(O, CPoint(O.x, M.y));
    frame.Line(CPoint(O.x, M.y), M);
    frame.Line(M, CPoint(M.x, O.y));
    frame.Line(CPoint(M.x, O.y), O);

    const CString dTitle = LoadText(IDS_D_AXIS_TITLE);
    const CSize dSize = dPen.Measure(dTitle);
    dPen.Text(CPoint(Ky::SatSub(Ky::SatAdd(A.x, halfBodyWidth), dSize.cx / 2),
                     Ky::SatSub(Ky::TruncToInt(A.y - 6.0 * s), dSize.cy)),
              0.0, dTitle);

    dPen.Line(A, E);

    // The right edge stops where the maximum-d line meets the saturation curve; when that
    // point cannot be placed it runs down to the body's bottom-right corner instead.
    CKyStaPnt saturated;
    CPoint S;
    const double maxD = set->m_RangeSetting.GetMaxD();
    if (!saturated.SetBy_DandRH(maxD, 1.0) || !chart->Convert(saturated, S)) S = CPoint(E.x, B.y);
    dPen.Line(E, S);

    dPen.Line(A, B);

    // Starts at the middle of the left edge rather than centred along it: intended.
    const CString tTitle = LoadText(IDS_T_AXIS_TITLE);
    const CSize tSize = tPen.Measure(tTitle);
    tPen.Text(CPoint(Ky::SatSub(Ky::TruncToInt(A.x - 6.0 * s), tSize.cy), Ky::SatAdd(A.y, (B - A).cy / 2)), 90.0,
              tTitle);
    return 1;
}
