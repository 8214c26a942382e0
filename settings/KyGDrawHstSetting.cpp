#include <kygraph/KyGDrawHstSetting.h>

CKyGDrawHstSetting::CKyGDrawHstSetting()
    : m_dPressure(101325.0), m_dDInterval(5.0), m_dHInterval(5.0), m_dTInterval(5.0), m_dRHInterval(10.0),
      m_nSpare(8), m_strCity(L"北京"), m_bShowASChart(1), m_bShowSameT(1), m_bShowSameD(1), m_bShowSameH(1),
      m_bShowSameRH(1), m_bShowTitle(1), m_bWinter(0), m_dSummerOutTdb(33.2), m_dSummerOutTwb(26.4),
      m_dSummerInTdb(25.0), m_dSummerInRH(60.0), m_dWinterOutTdb(-9.8), m_dWinterOutRH(37.0),
      m_dWinterInTdb(20.0), m_dWinterInRH(60.0)
{
}

CKyGDrawHstSetting::CKyGDrawHstSetting(const CKyGDrawHstSetting& other) = default;

CKyGDrawHstSetting& CKyGDrawHstSetting::operator=(const CKyGDrawHstSetting& other) = default;

CKyGDrawHstSetting::~CKyGDrawHstSetting() = default;

CString CKyGDrawHstSetting::toString() const { return CString(L"CKyGDrawHstSetting"); }
