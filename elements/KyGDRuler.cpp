#include <kygraph/KyGDRuler.h>

#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGValueStepper.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Saturate.h>
#include <kygraph/StringUtils.h>

#include <cmath>

namespace {

// More ticks than a scale of 0.5 steps up to any atmospheric pressure can have; a scale
// ends here whatever its bounds.
constexpr int kMaxTicks = 4096;

// Visits the ticks of one scale: each next multiple of 0.5 above lo, the last clamped to hi,
// with whether it is long (whole, or the end) and labelled (a multiple of 5).
template <class Visit>
void ForEachTick(double lo, double hi, Visit visit)
{
    for (double v : CKyGValueStepper::Ticks(lo, hi, 0.5, kMaxTicks, 10.0))
        visit(v, std::fmod(v * 10.0, 10.0) == 0.0 || v == hi, std::fmod(v, 5.0) == 0.0);
}

// y moved up (negative k) or down by k, the sum truncated.
CPoint MovedY(CPoint p, double k) { return CPoint(p.x, Ky::TruncToInt(p.y + k)); }

}  // namespace

CKyGDRuler::CKyGDRuler(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGDRuler::toString() const { return CString(L"CKyGDRuler"); }

int CKyGDRuler::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    CResourceModule::Scope scope(KyGraphModule());

    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, Settings().m_StyleSetting.m_ASChartStyle);
    const double s = pen.Scale();

    const CPoint L = MovedY(chart->GetChartOrigin(), -25.0 * s);
    const CPoint R = MovedY(chart->GetMaxTAndMaxDPnt(), -25.0 * s);
    const int W = Ky::SatSub(R.x, L.x);
    const double pvMin = range.GetMinDMaxTStaPnt().GetPv();
    const double pvMax = range.GetMaxDMaxTStaPnt().GetPv();

    // The 10^2 Pa scale, ticks upward.
    const double pmin = pvMin / 100.0;
    const double pmax = pvMax / 100.0;
    if (!(pmax - pmin > 0.0)) return 0;

    pen.Line(L, L + CSize(0, Ky::TruncToInt(-6.0 * s)));
    const CString paUnit(L"10^2Pa");
    CSize ext = pen.Measure(paUnit);
    pen.Text(L + CSize((-ext.cx) / 2, Ky::TruncToInt(-6.0 * s - ext.cy / 2)), 0.0, paUnit);
    pen.Line(L, R);
    const CString title = LoadText(IDS_DRULER_TITLE);
    ext = pen.Measure(title);
    pen.Text(L + CSize(W / 2 - ext.cx / 2, Ky::TruncToInt(-6.0 * s * 2.0 - ext.cy)), 0.0, title);

    const double b = Frame().B();
    const double dSpan = range.GetMaxD() - range.GetMinD();
    ForEachTick(pmin, pmax, [&](double p, bool longTick, bool labelled) {
        const double pv = p * 100.0;
        if (!(b - pv > 0.0)) return;  // no moisture content at or above the total pressure
        // d over the span, as if the d axis began at 0: intended.
        const double x = 622.0 * pv / (b - pv) / dSpan * W;
        if (!std::isfinite(x)) return;
        const CPoint foot = L + CSize(Ky::TruncToInt(x), 0);
        const CPoint end = MovedY(foot, -(longTick ? 6.0 : 3.0) * s);
        pen.Line(foot, end);
        if (labelled) {
            const CString label = StringUtils::DblToStr(p, 0);
            const CSize size = pen.Measure(label);
            pen.Text(end + CSize((-size.cx) / 2, -size.cy), 0.0, label);
        }
    });

    // The mmHg scale, ticks downward, linear in pressure between the two ends on purpose.
    const double qmin = pvMin * 0.0075;
    const double qmax = pvMax * 0.0075;
    if (!(qmax - qmin > 0.0)) return 0;
    const double perMmHg = W / (qmax - qmin);

    pen.Line(L, CPoint(L.x, Ky::TruncToInt(L.y + 6.0 * s)));
    const CString mmUnit(L"mmHg");
    ext = pen.Measure(mmUnit);
    pen.Text(L + CSize((-ext.cx) / 2, Ky::TruncToInt(6.0 * s)), 0.0, mmUnit);
    pen.Line(L, R);

    ForEachTick(qmin, qmax, [&](double q, bool longTick, bool labelled) {
        const CPoint foot = L + CSize(Ky::TruncToInt((q - qmin) * perMmHg), 0);
        const CPoint end = MovedY(foot, (longTick ? 6.0 : 3.0) * s);
        if (labelled) {
            const CString label = StringUtils::DblToStr(q, 0);
            pen.Text(end + CSize((-pen.Measure(label).cx) / 2, 0), 0.0, label);
        }
        pen.Line(foot, end);
    });
    return 1;
}
