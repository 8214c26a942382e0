#include <kygraph/KyGOverlaySetting.h>

namespace {

tagKyLineStyle LineStyle(COLORREF color, int penStyle, int width, int textHeight)
{
    tagKyLineStyle s;
    s.crColor = color;
    s.nPenStyle = penStyle;
    s.nWidth = width;
    s.nTextHeight = textHeight;
    return s;
}

}  // namespace

CKyGOverlaySetting::CKyGOverlaySetting()
    : m_bShowSameTwb(0), m_bDimSameTwb(1), m_dTwbInterval(5.0),
      m_SameTwbStyle(LineStyle(RGB(0, 128, 160), PS_DASH, 1, 7)), m_bShowSameV(0), m_bDimSameV(1),
      m_dVInterval(0.01), m_SameVStyle(LineStyle(RGB(150, 90, 30), PS_DOT, 1, 7)), m_nDensityThreshold(2000),
      m_dDensityCell(6.0), m_ZoneStyle(LineStyle(RGB(0, 0, 0), PS_SOLID, 1, 8)), m_nZoneAlpha(56),
      m_LegendStyle(LineStyle(RGB(96, 96, 96), PS_SOLID, 1, 8))
{
    m_DataStyle.crColor = RGB(30, 90, 200);
    m_DataStyle.dSize = 3.0;
    m_DataStyle.nTextHeight = 7;
}

CString CKyGOverlaySetting::toString() const { return CString(L"CKyGOverlaySetting"); }
