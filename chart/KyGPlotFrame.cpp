#include <kygraph/KyGPlotFrame.h>

#include <kygraph/KyChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/Saturate.h>

#include <cmath>

namespace {

// A usable denominator of a linear mapping: degenerate or broken ranges fail the mapping.
bool UsableDenominator(double v) { return std::isfinite(v) && v != 0.0; }

double Diff(int a, int b) { return static_cast<double>(a) - static_cast<double>(b); }

}  // namespace

CKyGPlotFrame::CKyGPlotFrame(const CKyGChartSetting& set, CPoint origin, double tanH)
    : m_pSettings(&set), m_dScale(set.GetDrawScale()), m_dTanH(tanH), m_ptOrigin(origin),
      m_dB(CKyChart::InstanceGloble()->GetGlobleB()), m_eFormulation(CKyChart::InstanceGloble()->GetFormulation())
{
    const double s = m_dScale;
    // The range lengths of set itself: its GetTRangeLength and GetDRangeLength read the
    // singleton's draw scale, which is the same number unless set is a chart's own settings.
    const double tLength = set.m_RangeSetting.GetTRange() * set.m_dTLength * s;
    const double dLength = set.m_RangeSetting.GetDRange() * set.m_dDLength * s;
    m_ptMinTMinD = origin + CSize(Ky::TruncToInt(set.m_dLeftMargin * s), Ky::TruncToInt(-set.m_dBottomMargin * s));
    // The y offset is truncated as one sum on purpose.
    m_ptChartOrigin = origin + CSize(Ky::TruncToInt(set.m_dLeftMargin * s),
                                     Ky::TruncToInt(-(tLength + set.m_dBottomMargin * s)));
    m_ptMaxTMaxD = m_ptChartOrigin + CSize(Ky::TruncToInt(dLength), 0);
}

int CKyGPlotFrame::PointOf(double h, double d, CPoint& pt) const
{
    const CKyGRangeSetting& range = m_pSettings->m_RangeSetting;
    const double dSpan = range.GetMaxDMaxTD() - range.GetMinDMaxTD();
    if (!UsableDenominator(dSpan)) return 0;
    const double rd = (d - range.GetMinDMaxTD()) / dSpan;
    if (!(rd >= 0)) return 0;
    pt.x = Ky::TruncToInt(m_ptChartOrigin.x + rd * Diff(m_ptMaxTMaxD.x, m_ptChartOrigin.x));

    const double hSpan = range.GetMinDMaxTH() - range.GetMinDMinTH();
    if (!UsableDenominator(hSpan)) return 0;
    const double rh = (h - range.GetMinDMinTH()) / hSpan;
    if (!(rh >= 0)) return 0;  // pt.x stays written, as callers expect
    pt.y = Ky::TruncToInt(m_ptMinTMinD.y - rh * Diff(m_ptMinTMinD.y, m_ptChartOrigin.y) +
                          m_dTanH * Diff(pt.x, m_ptMinTMinD.x));
    return 1;
}

CKyGPlotFrame::Mapping CKyGPlotFrame::GetMapping() const
{
    const CKyGRangeSetting& range = m_pSettings->m_RangeSetting;
    return Mapping{range.GetMinDMaxTD(), range.GetMaxDMaxTD(), range.GetMinDMinTH(), range.GetMinDMaxTH(),
                   m_dTanH,           m_ptChartOrigin,        m_ptMaxTMaxD,         m_ptMinTMinD};
}

int CKyGPlotFrame::HOf(const CPoint& pt, double& h) const
{
    const CKyGRangeSetting& range = m_pSettings->m_RangeSetting;
    const double height = Diff(m_ptMinTMinD.y, m_ptChartOrigin.y);
    if (!UsableDenominator(height)) return 0;
    const double r = (m_dTanH * Diff(pt.x, m_ptMinTMinD.x) + Diff(m_ptMinTMinD.y, pt.y)) / height;
    if (!(r >= 0)) return 0;
    h = range.GetMinDMinTH() + (range.GetMinDMaxTH() - range.GetMinDMinTH()) * r;
    return 1;
}

int CKyGPlotFrame::DOf(const CPoint& pt, double& d) const
{
    const CKyGRangeSetting& range = m_pSettings->m_RangeSetting;
    const double width = Diff(m_ptMaxTMaxD.x, m_ptChartOrigin.x);
    if (!UsableDenominator(width)) return 0;
    const double r = Diff(pt.x, m_ptChartOrigin.x) / width;
    if (!(r >= 0)) return 0;
    d = range.GetMinD() + range.GetDRange() * r;
    return 1;
}
