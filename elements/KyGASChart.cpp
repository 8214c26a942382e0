#include <kygraph/KyGASChart.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>
#include <kygraph/StringUtils.h>

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace {

constexpr double kOuterRadius = 50.0;  // kJ/kg scale, at draw scale 1
constexpr double kInnerRadius = 45.0;  // kcal/kg scale
constexpr double kMajorTick = 6.0;
constexpr double kMediumTick = 4.0;
constexpr double kMinorTick = 2.0;

// One graduated half circle: ratios -limit..+limit by step, in units of kJPerUnit kJ per kg
// of ratio unit. Major ticks stand on multiples of major that are -limit, +limit or within
// 0..majorTop; medium ones on the other multiples of medium. Numbers are left off where
// quietFrom < |ratio| < limit.
struct Scale {
    int limit;
    int step;
    int medium;
    int major;
    int majorTop;
    int quietFrom;
    double kJPerUnit;
    int outer;
};

constexpr Scale kKJScale{10000, 100, 500, 1000, 5000, 5000, 1.0, 1};
// 4.1855 kJ per kcal is the chart's own factor and is kept.
constexpr Scale kKcalScale{2500, 50, 100, 500, 2500, 1000, 4.1855, 0};

}  // namespace

CKyGASChart::CKyGASChart(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGASChart::toString() const { return CString(L"CKyGASChart"); }

bool CKyGASChart::DrawLabelLine(CDC* pDC, CPoint ptCenter, double dx, double dy, double length, CString text,
                                int outer)
{
    const CStyledPen pen = Pen(pDC, Settings().m_StyleSetting.m_ASChartStyle);
    const double k = pen.Scale();
    const double radius = (outer ? kOuterRadius : kInnerRadius) * k;
    const double sign = outer ? 1.0 : -1.0;

    const CPoint p1(Ky::TruncToInt(ptCenter.x + dx * radius), Ky::TruncToInt(ptCenter.y + dy * radius));
    const CPoint p2(Ky::TruncToInt(p1.x + dx * sign * length), Ky::TruncToInt(p1.y + dy * sign * length));
    pen.Line(p1, p2);

    // Within -90..+90 degrees, so every number reads from left to right along its ray.
    const double angle = std::atan(-dy / dx) * (180.0 / std::numbers::pi);
    const CSize ext = pen.Measure(text);
    CPoint at(p2.x, Ky::SatSub(p2.y, ext.cy / 2));
    if (!outer) {
        // Inwards by the text width along the ray, the width serving both axes.
        at = CPoint(Ky::TruncToInt(at.x - dx * ext.cx), Ky::TruncToInt(at.y - dy * ext.cx));
    }
    pen.Text(at, angle, text);
    return true;
}

int CKyGASChart::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    CResourceModule::Scope scope(KyGraphModule());

    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, Settings().m_StyleSetting.m_ASChartStyle);
    const double k = pen.Scale();

    const int inset = Ky::TruncToInt(-50.0 * k - 24.0 * k);
    const CPoint M(Ky::SatAdd(chart->GetChartMaxPoint().x, inset), Ky::SatAdd(chart->GetOrigin().y, inset));
    // The frame is laid out along the straight-down direction.
    const double dx = 0.0, dy = 1.0;

    const double outerR = kOuterRadius * k;
    const CPoint top(Ky::TruncToInt(M.x - dx * outerR), Ky::TruncToInt(M.y - dy * outerR));
    const CPoint bottom(Ky::TruncToInt(M.x + dx * outerR), Ky::TruncToInt(M.y + dy * outerR));
    pen.Line(bottom, top);
    pen.Arc(GetRect(M, Ky::TruncToInt(100.0 * k), Ky::TruncToInt(100.0 * k)), bottom, top);
    const int centreTick = Ky::TruncToInt(6.0 * k);
    pen.Line(CPoint(Ky::SatAdd(M.x, centreTick), M.y), CPoint(Ky::SatSub(M.x, centreTick), M.y));

    // The small circle's start point is moved down and back up again, so both radial points
    // fall on the centre (a full circle) whenever 2k is whole: reproduced as it stands.
    CPoint a = M;
    a.y = Ky::TruncToInt(M.y + 2.0 * k * dy);
    a.y = Ky::TruncToInt(a.y - 2.0 * k * dy);
    const CPoint b = M;
    const CRect small = GetRect(M, Ky::TruncToInt(4.0 * k), Ky::TruncToInt(4.0 * k));
    pen.Arc(small, a, b);
    pen.Arc(small, b, a);
    // Both radial points are built on the centre's x for both axes: intended, normally a full
    // circle.
    const CPoint a2(M.x, Ky::TruncToInt(M.x + 4.0 * k * dy));
    const CPoint b2(M.x, Ky::TruncToInt(M.x - 4.0 * k * dy));
    pen.Arc(GetRect(M, Ky::TruncToInt(8.0 * k), Ky::TruncToInt(8.0 * k)), a2, b2);

    DrawLabelLine(pDC, M, 0.0, 1.0, kMajorTick * k, CString(L"-\u221E"), 1);

    // One graduated half circle; 0 when a ratio cannot be laid on the chart.
    const auto drawScale = [&](const Scale& scale) {
        const CKyStaPnt ref = range.GetMinDMaxTStaPnt();
        CPoint refPx;
        if (!chart->Convert(ref, refPx)) return 0;
        const double refH = ref.GetH();
        const double refD = ref.GetD();
        CKyStaPnt pnt;
        for (int eps = -scale.limit; eps <= scale.limit; eps += scale.step) {
            if (!pnt.SetBy_HandD(refH + eps / 1000.0 * scale.kJPerUnit, refD + 1.0)) return 0;
            CPoint px;
            if (!chart->GetPoint(pnt.GetH(), pnt.GetD(), px)) return 0;
            const double rx = static_cast<double>(px.x) - refPx.x;
            const double ry = static_cast<double>(px.y) - refPx.y;
            const double len = std::sqrt(rx * rx + ry * ry);
            // One g/kg within a pixel gives the ray no direction: that graduation is left out.
            if (!(len > 0.0) || !std::isfinite(len)) continue;
            const double ux = rx / len, uy = ry / len;

            const int mag = std::abs(eps);
            double tick = kMinorTick;
            if (eps % scale.major == 0 && (mag == scale.limit || (eps >= 0 && eps <= scale.majorTop)))
                tick = kMajorTick;
            else if (eps % scale.medium == 0)
                tick = kMediumTick;
            const bool quiet = scale.quietFrom < mag && mag < scale.limit;
            const CString label = tick == kMajorTick && !quiet ? StringUtils::IntToStr(eps) : CString();
            DrawLabelLine(pDC, M, ux, uy, tick * k, label, scale.outer);

            if (!scale.outer && eps == 0)
                pen.Line(M, M + CSize(Ky::TruncToInt(ux * kInnerRadius * k), Ky::TruncToInt(uy * kInnerRadius * k)));
        }
        return 1;
    };

    if (!drawScale(kKJScale)) return 0;

    DrawLabelLine(pDC, M, 0.0, -1.0, kMajorTick * k, CString(L"\u221E"), 1);
    const CString kjUnit(L"kJ/kg");
    CSize ext = pen.Measure(kjUnit);
    pen.Text(top - ext, 0.0, kjUnit);
    const CString title = LoadText(IDS_ASCHART_TITLE);
    ext = pen.Measure(title);
    pen.Text(CPoint(Ky::SatSub(M.x, Ky::TruncToInt(6.0 * k + 2.0 * k)), Ky::SatSub(M.y, (-ext.cx) / 2)), 90.0, title);

    const double innerR = kInnerRadius * k;
    const CPoint innerBottom(M.x, Ky::TruncToInt(M.y + innerR));
    const CPoint innerTop(M.x, Ky::TruncToInt(M.y - innerR));
    pen.Arc(GetRect(M, Ky::TruncToInt(90.0 * k), Ky::TruncToInt(90.0 * k)), innerBottom, innerTop);

    if (!drawScale(kKcalScale)) return 0;

    const CString kcalUnit(L"kcal/kg");
    ext = pen.Measure(kcalUnit);
    pen.Text(CPoint(Ky::SatSub(M.x, ext.cx), Ky::SatAdd(M.y, Ky::TruncToInt(-(innerR + 2.0 * k)))), 0.0, kcalUnit);
    return 1;
}
