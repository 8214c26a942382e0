// The vapour-pressure ruler above the chart and the enthalpy ruler along the saturation
// curve: every tick, label and segment in drawing order, placed from the state model.
#include "FurnitureFixture.h"

#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>

#include <cmath>
#include <numbers>
#include <string>

namespace {

// The tick values of a ruler scale: the multiples of step above lo and below hi, then hi
// itself. From a negative start off the grid the first multiple is passed over, as the
// chart's line families do.
std::vector<double> Grid(double lo, double hi, double step)
{
    long long k = static_cast<long long>(std::floor(lo / step)) + 1;
    if (lo < 0 && std::fmod(lo, step) != 0.0) ++k;
    std::vector<double> values;
    for (; k * step < hi; ++k) values.push_back(k * step);
    values.push_back(hi);
    return values;
}

bool IsMultiple(double v, double of) { return std::fmod(v, of) == 0.0; }

CString Number(double v) { return CString(std::to_wstring(static_cast<long long>(v))); }

}  // namespace

TEST(RulerGrid, PassesOverTheFirstMultipleFromANegativeStart)
{
    EXPECT_EQ(Grid(-29.6, -26.5, 1.0), (std::vector<double>{-28, -27, -26.5}));
    EXPECT_EQ(Grid(0.0, 1.2, 0.5), (std::vector<double>{0.5, 1.0, 1.2}));
}

TEST_F(Furniture, DRulerTicksAndLabelsOfBothScales)
{
    for (const double minD : {0.0, 10.0}) {
        SCOPED_TRACE(minD);
        set->m_RangeSetting.SetMinD(minD);
        Attach(1000, 800);
        const double s = set->GetDrawScale();
        const int th = Ky::TruncToInt(7 * s);
        const CKyGRangeSetting& range = set->m_RangeSetting;
        const double pvMin = range.GetMinDMaxTStaPnt().GetPv(), pvMax = range.GetMaxDMaxTStaPnt().GetPv();
        const double b = CKyChart::InstanceGloble()->GetGlobleB();
        CPoint L = chart->GetChartOrigin(), R = chart->GetMaxTAndMaxDPnt();
        L.y = Ky::TruncToInt(L.y - 25 * s);
        R.y = Ky::TruncToInt(R.y - 25 * s);
        const int W = R.x - L.x;
        const auto tickEnd = [&](int x, bool longTick, int dir) {
            return CPoint(x, Ky::TruncToInt(L.y + dir * (longTick ? 6 : 3) * s));
        };

        CKyGDRuler ruler;
        ASSERT_EQ(DrawAlone(ruler), 1);
        Walk walk(Records());

        walk.Line(L, CPoint(L.x, L.y + Ky::TruncToInt(-6 * s)));
        CSize ext = Extent(th, L"10^2Pa");
        walk.Text(L + CSize(-ext.cx / 2, Ky::TruncToInt(-6 * s - ext.cy / 2)), L"10^2Pa", th, 0);
        walk.Line(L, R);
        ext = Extent(th, L"水蒸汽分压力");
        walk.Text(L + CSize(W / 2 - ext.cx / 2, Ky::TruncToInt(-12 * s - ext.cy)), L"水蒸汽分压力", th, 0);
        const std::vector<double> pa = Grid(pvMin / 100, pvMax / 100, 0.5);
        for (double p : pa) {
            // Placed by d over the span, as though the axis began at d = 0: intended.
            const double d = 622 * (p * 100) / (b - p * 100);
            const int x = L.x + Ky::TruncToInt(d / (range.GetMaxD() - range.GetMinD()) * W);
            const CPoint end = tickEnd(x, IsMultiple(p, 1.0) || p == pa.back(), -1);
            walk.Line(CPoint(x, L.y), end);
            if (IsMultiple(p, 5.0)) {
                const CSize e = Extent(th, Number(p));
                walk.Text(end + CSize(-e.cx / 2, -e.cy), Number(p), th);
            }
        }

        walk.Line(L, CPoint(L.x, Ky::TruncToInt(L.y + 6 * s)));
        ext = Extent(th, L"mmHg");
        walk.Text(L + CSize(-ext.cx / 2, Ky::TruncToInt(6 * s)), L"mmHg", th, 0);
        walk.Line(L, R);
        const double qmin = pvMin * 0.0075;
        const std::vector<double> mm = Grid(qmin, pvMax * 0.0075, 0.5);
        for (double q : mm) {
            const int x = L.x + Ky::TruncToInt((q - qmin) * (W / (mm.back() - qmin)));
            const CPoint end = tickEnd(x, IsMultiple(q, 1.0) || q == mm.back(), +1);
            if (IsMultiple(q, 5.0)) walk.Text(end + CSize(-Extent(th, Number(q)).cx / 2, 0), Number(q), th);
            walk.Line(CPoint(x, L.y), end);
        }
        walk.End();
        EXPECT_EQ(Records().back().pts.at(0).x, R.x);  // the mmHg scale ends exactly at the right end
    }
}

TEST_F(Furniture, HRulerTicksFollowTheSaturationCurve)
{
    for (const CSize window : {CSize(580, 500), CSize(1000, 800)}) {
        Attach(window.cx, window.cy);
        const double s = set->GetDrawScale();
        SCOPED_TRACE(s);
        const int th = Ky::TruncToInt(7 * s);
        const double a = chart->GetHAngle();
        const int escapement = Ky::TruncToInt(90 - a * 180 / std::numbers::pi) * 10;
        const auto along = [&](CPoint p, double k) {
            return CPoint(Ky::TruncToInt(p.x + std::cos(a) * k * s), Ky::TruncToInt(p.y + std::sin(a) * k * s));
        };
        const auto saturation = [&](double h) {
            CKyStaPnt p;
            EXPECT_TRUE(p.SetBy_HandRH(h, 1.0)) << h;
            return Pixel(p);
        };
        CKyStaPnt first, last;
        ASSERT_TRUE(first.SetBy_TdbandRH(set->m_RangeSetting.GetMinT(), 1.0));
        ASSERT_TRUE(last.SetBy_DandRH(set->m_RangeSetting.GetMaxD(), 1.0));
        const CPoint A = Pixel(first);
        const CPoint S = along(A, 18);

        CKyGHRuler ruler;
        ASSERT_EQ(DrawAlone(ruler), 1);
        Walk walk(Records());

        walk.Line(S, A);
        walk.Text(along(S, -6), L"kJ/kg.干空气", th, escapement);
        CPoint prev = S;
        const std::vector<double> kj = Grid(first.GetH(), last.GetH(), 1.0);
        for (double h : kj) {
            SCOPED_TRACE(h);
            const CPoint c0 = saturation(h), c = along(c0, 18);
            const bool end = h == kj.back();
            CPoint t = along(c, (IsMultiple(h, 5.0) || end) ? -6 : -3);
            if (IsMultiple(h, 10.0)) {
                walk.Text(t, Number(h), th, escapement);
                t = c0;  // every tenth tick runs on to the curve
            }
            if (end) t = c0;
            walk.Line(c, t);
            walk.Line(prev, c);
            prev = c;
        }

        const CPoint E = S + CSize(Ky::TruncToInt(std::cos(a) * 6 * s), Ky::TruncToInt(std::sin(a) * 6 * s));
        walk.Line(S, E);
        walk.Text(E, L"kcal/kg.干空气", th, escapement);
        prev = S;
        const std::vector<double> kcal = Grid(first.GetH() * 0.2389, last.GetH() * 0.2389, 0.5);
        for (double g : kcal) {
            SCOPED_TRACE(g);
            const CPoint c = along(saturation(g / 0.2389), 18);
            const CPoint t = along(c, (IsMultiple(g, 1.0) || g == kcal.back()) ? 6 : 3);
            if (IsMultiple(g, 1.0)) walk.Text(t, Number(g), th, escapement);
            walk.Line(c, t);
            walk.Line(prev, c);
            prev = c;
        }
        walk.End();
    }
}
