#include <kygraph/KyGRangeSetting.h>

#include <kygraph/KyGChartSetting.h>

#include <cmath>
#include <limits>

// m_dValidMinD is deliberately left to zero-initialisation.
double CKyGRangeSetting::m_dValidMinT = -80.0;
double CKyGRangeSetting::m_dValidMaxT = 90.0;
double CKyGRangeSetting::m_dValidMinD;
double CKyGRangeSetting::m_dValidMaxD = 200.0;

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
}

CKyGRangeSetting::CKyGRangeSetting()
    : m_dMinT(-30.0), m_dMaxT(65.0), m_dMinD(0.0), m_dMaxD(50.0),
      m_dMinDMaxTH(kNaN), m_dMinDMaxTD(kNaN),
      m_dMinDMinTH(kNaN), m_dMinDMinTD(kNaN),
      m_dMaxDMaxTH(kNaN), m_dMaxDMaxTD(kNaN)
{
    CalStaPnt();
}

CKyGRangeSetting::CKyGRangeSetting(const CKyGRangeSetting& other) = default;

CKyGRangeSetting& CKyGRangeSetting::operator=(const CKyGRangeSetting& other) = default;

CKyGRangeSetting::~CKyGRangeSetting() = default;

CString CKyGRangeSetting::toString() const { return CString(L"CKyGRangeSetting"); }

int CKyGRangeSetting::SetMinT(double dMinT)
{
    m_dMinT = dMinT;
    return CalStaPnt();
}

int CKyGRangeSetting::SetMaxT(double dMaxT)
{
    m_dMaxT = dMaxT;
    return CalStaPnt();
}

int CKyGRangeSetting::SetMinD(double dMinD)
{
    m_dMinD = dMinD;
    return CalStaPnt();
}

int CKyGRangeSetting::SetMaxD(double dMaxD)
{
    m_dMaxD = dMaxD;
    return CalStaPnt();
}

double CKyGRangeSetting::GetTRange() const { return std::fabs(m_dMaxT - m_dMinT); }

double CKyGRangeSetting::GetDRange() const { return std::fabs(m_dMaxD - m_dMinD); }

CKyStaPnt CKyGRangeSetting::GetMinDMinTStaPnt() const { return m_MinDMinTStaPnt; }

CKyStaPnt CKyGRangeSetting::GetMinDMaxTStaPnt() const { return m_MinDMaxTStaPnt; }

CKyStaPnt CKyGRangeSetting::GetMaxDMaxTStaPnt() const { return m_MaxDMaxTStaPnt; }

int CKyGRangeSetting::IsRangeValid(double, double, double, double)
{
    // The arguments are ignored on purpose: the singleton's current range is what counts.
    const CKyGRangeSetting& range = CKyGChartSetting::GetKyGChartSetting()->m_RangeSetting;
    CKyStaPnt pnt;
    if (!pnt.SetBy_DandTdb(range.GetMinD(), range.GetMinT())) return 0;
    if (!pnt.SetBy_DandTdb(range.GetMaxD(), range.GetMaxT())) return 0;
    return 1;
}

int CKyGRangeSetting::CalStaPnt()
{
    // A failing setter leaves its point as it was, so the cached h and d stay in step.
    if (!m_MinDMaxTStaPnt.SetBy_DandTdb(m_dMinD, m_dMaxT)) return 0;
    m_dMinDMaxTH = m_MinDMaxTStaPnt.GetH();
    m_dMinDMaxTD = m_MinDMaxTStaPnt.GetD();

    if (!m_MinDMinTStaPnt.SetBy_DandTdb(m_dMinD, m_dMinT)) return 0;
    m_dMinDMinTH = m_MinDMinTStaPnt.GetH();
    m_dMinDMinTD = m_MinDMinTStaPnt.GetD();

    if (!m_MaxDMaxTStaPnt.SetBy_DandTdb(m_dMaxD, m_dMaxT)) return 0;
    m_dMaxDMaxTH = m_MaxDMaxTStaPnt.GetH();
    m_dMaxDMaxTD = m_MaxDMaxTStaPnt.GetD();
    return 1;
}
