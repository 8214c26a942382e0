#include <kygraph/KyGChartSetting.h>

CKyGChartSetting* CKyGChartSetting::GetKyGChartSetting()
{
    // Built on first use and destroyed at unload. Its construction reaches only the state
    // model, never the chart, so the chart may build it from its own constructor.
    static CKyGChartSetting instance;
    return &instance;
}

CKyGChartSetting::CKyGChartSetting()
    : m_dLeftMargin(20.0), m_dRightMargin(20.0), m_dBottomMargin(30.0), m_dTopMargin(50.0), m_dTLength(4.0),
      m_dDLength(10.0), m_dDrawScale(1.0)
{
}

CKyGChartSetting::CKyGChartSetting(const CKyGChartSetting& other) = default;

CKyGChartSetting::~CKyGChartSetting() = default;

CString CKyGChartSetting::toString() const { return CString(L"CKyGChartSetting"); }

double CKyGChartSetting::GetTRangeLength() const
{
    // The live draw scale, even for a snapshot: intended.
    return m_RangeSetting.GetTRange() * m_dTLength * GetKyGChartSetting()->GetDrawScale();
}

double CKyGChartSetting::GetDRangeLength() const
{
    return m_RangeSetting.GetDRange() * m_dDLength * GetKyGChartSetting()->GetDrawScale();
}

double CKyGChartSetting::GetDrawScale() const { return m_dDrawScale; }

void CKyGChartSetting::SetDrawScale(double scale)
{
    if (!(scale >= 0.5)) return;  // also refuses NaN
    m_dDrawScale = scale;
}
