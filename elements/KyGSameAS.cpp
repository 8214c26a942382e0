#include <kygraph/KyGSameAS.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/Saturate.h>

#include <cmath>

namespace {

constexpr double kHalfPi = 1.5707963267948966;

}  // namespace

CKyGSameAS::CKyGSameAS(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGSameAS::toString() const { return CString(L"CKyGSameAS"); }

int CKyGSameAS::Draw(CDC* pDC)
{
    const CKyGChartSetting* set = &Settings();
    const tagKyLineStyle style = set->m_StyleSetting.m_SameASStyle;
    const double textHeight = style.nTextHeight * Frame().Scale();

    // Drawn as the host set the ends: nothing converted or clipped.
    DrawLine(pDC, m_ptStart, m_ptEnd, style.nPenStyle, style.nWidth, style.crColor);
    if (m_bDimEnable == 0) return 1;

    const int kind = m_Value.GetType();
    const CString text = m_Value.OutputString(1);
    const CSize extent = GetTextExtent(pDC, Ky::TruncToInt(textHeight), text);
    const CPoint upper = m_ptStart.y < m_ptEnd.y ? m_ptStart : m_ptEnd;   // equal y: the end
    const CPoint lower = m_ptStart.y >= m_ptEnd.y ? m_ptStart : m_ptEnd;  // equal y: the start

    // An unknown kind is labelled at the start point, horizontally.
    CPoint anchor = m_ptStart;
    double angle = 0.0;
    switch (kind) {
    case CKyAS::AS_FINITE:
        anchor = upper;
        anchor.y = Ky::SatSub(anchor.y, extent.cy);
        break;
    case CKyAS::AS_POSITIVE_INF:
    case CKyAS::AS_NEGATIVE_INF:
        anchor = kind == CKyAS::AS_POSITIVE_INF ? upper : lower;
        // Half the text height, not its width, and an angle in radians handed to a primitive
        // that takes degrees (so the label tilts by one degree only): both intended.
        anchor.x = Ky::TruncToInt(anchor.x - extent.cy / 2.0);
        angle = kind == CKyAS::AS_POSITIVE_INF ? kHalfPi : -kHalfPi;
        break;
    default:
        break;
    }
    DrawTextW(pDC, anchor, textHeight, angle, style.crColor, text);
    return 1;
}

double CKyGSameAS::CalculateAng(CPoint pt, double ratio)
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    CKyStaPnt a;
    if (!chart->Convert(pt, a)) return 0.0;
    // One more g/kg of moisture at ratio kJ/kg.
    CKyStaPnt b;
    if (!b.SetBy_HandD(a.GetH() + ratio / 1000.0, a.GetD() + 1.0)) return 0.0;
    CPoint p;
    if (!chart->GetPoint(b.GetH(), b.GetD(), p)) return 0.0;

    // Doubles, so the differences of extreme pixels cannot overflow.
    const double dx = static_cast<double>(p.x) - pt.x;
    const double dy = static_cast<double>(p.y) - pt.y;
    const double length = std::sqrt(dx * dx + dy * dy);
    if (!(length > 0.0) || !std::isfinite(length)) return 0.0;  // no direction at all
    const double ux = dx / length;
    const double uy = dy / length;
    // Moisture grows to the right, so ux > 0; a step straight up or down is the vertical.
    if (ux == 0.0) return uy < 0.0 ? kHalfPi : -kHalfPi;
    return std::atan(-uy / ux);
}
