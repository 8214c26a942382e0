#include <kygraph/KyGStaPnt.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Saturate.h>

namespace {

// Top-left corner of a label of size extent placed on side pos of a dot at p, gap pixels
// from the dot's centre. Doubles throughout, truncated once, so extreme pixels stay defined.
CPoint LabelCorner(CPoint p, CSize extent, double gap, CKyGStaPnt::DimPosition pos)
{
    const double x = p.x, y = p.y, cx = extent.cx, cy = extent.cy;
    switch (pos) {
    case CKyGStaPnt::DimLeft: return CPoint(Ky::TruncToInt(x - (gap + cx)), Ky::TruncToInt(y - cy / 2.0));
    case CKyGStaPnt::DimTop: return CPoint(Ky::TruncToInt(x - cx / 2.0), Ky::TruncToInt(y - (gap + cy)));
    case CKyGStaPnt::DimRight: return CPoint(Ky::TruncToInt(x + gap), Ky::TruncToInt(y - cy / 2.0));
    case CKyGStaPnt::DimBottom: return CPoint(Ky::TruncToInt(x - cx / 2.0), Ky::TruncToInt(y + gap));
    }
    // Any other position puts the label's corner on the dot's centre; intended.
    return p;
}

}  // namespace

CKyGStaPnt::CKyGStaPnt(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGStaPnt::toString() const { return CString(L"CKyGStaPnt"); }

int CKyGStaPnt::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;  // only the chart draws elements, and it sets itself first

    CPoint p;
    if (!chart->Convert(m_Value, p)) {
        m_strLastError = chart->GetLastErrorString();
        return 0;
    }

    const CKyGChartSetting* set = &Settings();
    const tagKyPntStyle style = set->m_StyleSetting.m_StaPntStyle;
    const double k = Frame().Scale();
    const double size = style.dSize * k;
    const double textHeight = style.nTextHeight * k;

    DrawEllipse(pDC, p, size, size, PS_SOLID, 1, style.crColor, 1);
    if (m_bDimEnable == 0) return 1;

    const CString name = m_Value.GetName();
    const CSize extent = GetTextExtent(pDC, Ky::TruncToInt(textHeight), name);
    const double gap = (style.dSize / 2.0) * k * 1.2;
    DrawTextW(pDC, LabelCorner(p, extent, gap, m_DimPosition), textHeight, 0.0, style.crColor, name);
    // The primitives' results are not examined: a placed point counts as drawn.
    return 1;
}
