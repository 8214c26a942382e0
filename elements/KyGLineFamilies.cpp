#include <kygraph/KyGLineFamilies.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGSameTwb.h>
#include <kygraph/KyGSameV.h>
#include <kygraph/KyGValueStepper.h>
#include <kygraph/KyStaPnt.h>

#include <algorithm>
#include <cmath>

namespace {

// A line of these families costs hundreds of state-model calls; more lines than this would
// take seconds and fill the chart solid, so a family ends here whatever its interval.
constexpr int kMaxLines = 200;

// The first multiple of step at or above lo (lo itself when step is not usable).
double FirstMultiple(double lo, double step)
{
    if (!(step > 0.0) || !std::isfinite(step) || !std::isfinite(lo)) return lo;
    return std::ceil(lo / step - 1e-9) * step;
}

}  // namespace

CKyGLineFamilies::CKyGLineFamilies(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGLineFamilies::toString() const { return CString(L"CKyGLineFamilies"); }

int CKyGLineFamilies::Draw(CDC* /*pDC*/)
{
    m_nLines = 0;
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    const CKyGOverlaySetting& ov = set->m_OverlaySetting;
    const CKyGRangeSetting& range = set->m_RangeSetting;
    const double tLo = std::min(range.GetMinT(), range.GetMaxT());
    const double tHi = std::max(range.GetMinT(), range.GetMaxT());

    if (ov.m_bShowSameTwb) {
        // Wet bulbs reach below the lowest dry bulb at the dry edge of the chart.
        const double step = ov.m_dTwbInterval;
        for (const auto& s : CKyGValueStepper::Stepped(FirstMultiple(tLo - 15.0, step), tHi, step)) {
            if (m_nLines >= kMaxLines) break;
            CKyGSameTwb line;
            line.SetValue(s.value);
            line.SetDimEnable(ov.m_bDimSameTwb);
            chart->Draw(&line);  // a wet bulb no state has is left out
            ++m_nLines;
        }
    }
    if (ov.m_bShowSameV) {
        CKyStaPnt lo, hi;
        if (lo.SetBy_DandTdb(std::max(0.0, std::min(range.GetMinD(), range.GetMaxD())), tLo) &&
            hi.SetBy_TdbandRH(tHi, 1.0)) {
            const double step = ov.m_dVInterval;
            int n = 0;
            for (const auto& s : CKyGValueStepper::Stepped(FirstMultiple(lo.GetV(), step), hi.GetV(), step)) {
                if (n++ >= kMaxLines) break;
                CKyGSameV line;
                line.SetValue(s.value);
                line.SetDimEnable(ov.m_bDimSameV);
                chart->Draw(&line);
                ++m_nLines;
            }
        }
    }
    return 1;
}
