#include <kygraph/KyGStyleSetting.h>

CKyGStyleSetting::CKyGStyleSetting()
{
    const COLORREF grey = RGB(128, 128, 128);
    m_SameDStyle.crColor = RGB(111, 127, 63);
    m_SameHStyle.crColor = RGB(63, 111, 63);
    m_SameTStyle.crColor = RGB(255, 191, 127);
    m_SameRHStyle.crColor = RGB(103, 82, 165);
    m_SameASStyle.crColor = RGB(0, 41, 165);
    m_SameASStyle.nWidth = 2;
    m_ProcessStyle.crColor = RGB(255, 0, 0);
    m_ProcessStyle.nWidth = 2;
    m_ASChartStyle.crColor = grey;
    m_FrameStyle.crColor = grey;
    m_FrameStyle.nWidth = 2;
    m_FrameStyle.nTextHeight = 10;
    m_SpareStyle.crColor = grey;
}

CKyGStyleSetting::CKyGStyleSetting(const CKyGStyleSetting& other) = default;

CKyGStyleSetting& CKyGStyleSetting::operator=(const CKyGStyleSetting& other) = default;

CKyGStyleSetting::~CKyGStyleSetting() = default;

CString CKyGStyleSetting::toString() const { return CString(L"CKyGStyleSetting"); }
