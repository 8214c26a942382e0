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

CKyGDrawHstSetting& CKyGDrawHstSetting::operator=(const CKyGDrawHstSetting& other)
{
    CKyObject::operator=(other);
    m_dPressure = other.m_dPressure;
    m_dDInterval = other.m_dDInterval;
    m_dHInterval = other.m_dHInterval;
    m_dTInterval = other.m_dTInterval;
    m_dRHInterval = other.m_dRHInterval;
    m_nSpare = other.m_nSpare;
    m_strCity = other.m_strCity;
    m_bShowASChart = other.m_bShowASChart;
    m_bShowSameT = other.m_bShowSameT;
    m_bShowSameD = other.m_bShowSameD;
    m_bShowSameH = other.m_bShowSameH;
    m_bShowSameRH = other.m_bShowSameRH;
    m_bShowTitle = other.m_bShowTitle;
    m_bWinter = other.m_bWinter;
    m_dSummerOutTdb = other.m_dSummerOutTdb;
    m_dSummerOutTwb = other.m_dSummerOutTwb;
    m_dSummerInTdb = other.m_dSummerInTdb;
    m_dSummerInRH = other.m_dSummerInRH;
    m_dWinterOutTdb = other.m_dWinterOutTdb;
    m_dWinterOutRH = other.m_dWinterOutRH;
    m_dWinterInTdb = other.m_dWinterInTdb;
    m_dWinterInRH = other.m_dWinterInRH;
    return *this;
}

CKyGDrawHstSetting::~CKyGDrawHstSetting() = default;

CString CKyGDrawHstSetting::toString() const { return CString(L"CKyGDrawHstSetting"); }
