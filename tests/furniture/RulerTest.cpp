// The vapour-pressure ruler above the chart and the enthalpy ruler along the saturation
// curve: every tick, label and segment in drawing order, placed from the state model.
#include "FurnitureFixture.h"

#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>
#include <kygraph/KyStaPnt.h>

#include <cmath>
#include <numbers>

namespace {

// A scale's tick values: the multiples of step above lo and below hi, then hi. From a
// negative start off the grid the first multiple is passed over, as the line families do.
std::vector<double> Grid(double lo, double hi, double step)
{
    long long k = static_cast<long long>(std::floor(lo / step)) + 1 + (lo < 0 && std::fmod(lo, step) != 0.0);
    std::vector<double> values;
    for (; k * step < hi; ++k) values.push_back(k * step);
    values.push_back(hi);
    return values;
}
bool IsMultiple(double v, double of) { return std::fmod(v, of) == 0.0; }
CString Number(double v) { return CString(std::to_wstring(static_cast<long long>(v))); }

}  // namespace

TEST_F(Furniture, DRulerLongAndShortTicksAndLabelsOfBothScales)
{
    for (const double minD : {0.0, 10.0}) {  // the 10^2 Pa ticks stand at d over the span: intended
        set->m_RangeSetting.SetMinD(minD);
        Attach(1000, 800);
        const CKyGRangeSetting& range = set->m_RangeSetting;
        const double pvMin = range.GetMinDMaxTStaPnt().GetPv(), pvMax = range.GetMaxDMaxTStaPnt().GetPv();
        const double b = CKyChart::InstanceGloble()->GetGlobleB(), qmin = pvMin * 0.0075;
        const int th = Ky::TruncToInt(7 * s);
        CPoint L = chart->GetChartOrigin(), R = chart->GetMaxTAndMaxDPnt();
        L.y = Ky::TruncToInt(L.y - 25 * s);
        R.y = Ky::TruncToInt(R.y - 25 * s);
        const int W = R.x - L.x;
        const auto end = [&](int x, bool longTick, int dir) {
            return CPoint(x, Ky::TruncToInt(L.y + dir * (longTick ? 6 : 3) * s));
        };
        const CSize pa = Extent(th, L"10^2Pa"), title = Extent(th, L"水蒸汽分压力"), mm = Extent(th, L"mmHg");
        std::vector<std::string> expected{
            Line(L, {L.x, L.y + Ky::TruncToInt(-6 * s)}),
            Text(L + CSize(-pa.cx / 2, Ky::TruncToInt(-6 * s - pa.cy / 2)), L"10^2Pa", th), Line(L, R),
            Text(L + CSize(W / 2 - title.cx / 2, Ky::TruncToInt(-12 * s - title.cy)), L"水蒸汽分压力", th)};
        const std::vector<double> ps = Grid(pvMin / 100, pvMax / 100, 0.5);
        for (double p : ps) {
            const double d = 622 * (p * 100) / (b - p * 100);
            const CPoint tip = end(L.x + Ky::TruncToInt(d / (range.GetMaxD() - range.GetMinD()) * W),
                                   IsMultiple(p, 1.0) || p == ps.back(), -1);
            expected.push_back(Line({tip.x, L.y}, tip));
            const CSize e = Extent(th, Number(p));
            if (IsMultiple(p, 5.0)) expected.push_back(Text(tip + CSize(-e.cx / 2, -e.cy), Number(p), th));
        }
        expected.insert(expected.end(), {Line(L, {L.x, Ky::TruncToInt(L.y + 6 * s)}),
                                         Text(L + CSize(-mm.cx / 2, Ky::TruncToInt(6 * s)), L"mmHg", th), Line(L, R)});
        const std::vector<double> qs = Grid(qmin, pvMax * 0.0075, 0.5);
        for (double q : qs) {
            const CPoint tip = end(L.x + Ky::TruncToInt((q - qmin) * (W / (qs.back() - qmin))),
                                   IsMultiple(q, 1.0) || q == qs.back(), +1);
            const CSize e = Extent(th, Number(q));
            if (IsMultiple(q, 5.0)) expected.push_back(Text(tip - CSize(e.cx / 2, 0), Number(q), th));
            expected.push_back(Line({tip.x, L.y}, tip));
        }
        CKyGDRuler ruler;
        ASSERT_EQ(DrawAlone(ruler), 1);
        EXPECT_EQ(Drawn(), expected) << "minimum d " << minD;
        EXPECT_EQ(Records().back().pts.at(1), end(R.x, true, +1));  // ends exactly at the right end
    }
}

TEST_F(Furniture, HRulerEveryTenthKJTickReachesTheSaturationCurve)
{
    for (const CSize window : {CSize(580, 500), CSize(1000, 800)}) {
        Attach(window.cx, window.cy);
        const int th = Ky::TruncToInt(7 * s);
        const double a = chart->GetHAngle();
        const int esc = Ky::TruncToInt(90 - a * 180 / std::numbers::pi) * 10;
        const auto along = [&](CPoint p, double k) {
            return CPoint(Ky::TruncToInt(p.x + std::cos(a) * k * s), Ky::TruncToInt(p.y + std::sin(a) * k * s));
        };
        CKyStaPnt first, last, q;
        ASSERT_TRUE(first.SetBy_TdbandRH(set->m_RangeSetting.GetMinT(), 1.0));
        ASSERT_TRUE(last.SetBy_DandRH(set->m_RangeSetting.GetMaxD(), 1.0));
        const CPoint A = Pixel(first), S = along(A, 18);
        const CPoint E = S + CSize(Ky::TruncToInt(std::cos(a) * 6 * s), Ky::TruncToInt(std::sin(a) * 6 * s));

        std::vector<std::string> expected{Line(S, A), Text(along(S, -6), L"kJ/kg.干空气", th, esc)};
        CPoint prev = S;
        const std::vector<double> kj = Grid(first.GetH(), last.GetH(), 1.0);
        for (double h : kj) {
            EXPECT_TRUE(q.SetBy_HandRH(h, 1.0));
            const CPoint c0 = Pixel(q), c = along(c0, 18);  // 18 pixels out along the enthalpy direction
            CPoint t = along(c, (IsMultiple(h, 5.0) || h == kj.back()) ? -6 : -3);
            if (IsMultiple(h, 10.0)) expected.push_back(Text(t, Number(h), th, esc));
            if (IsMultiple(h, 10.0) || h == kj.back()) t = c0;
            expected.insert(expected.end(), {Line(c, t), Line(prev, c)});
            prev = c;
        }
        expected.insert(expected.end(), {Line(S, E), Text(E, L"kcal/kg.干空气", th, esc)});
        prev = S;
        const std::vector<double> kcal = Grid(first.GetH() * 0.2389, last.GetH() * 0.2389, 0.5);
        for (double g : kcal) {
            EXPECT_TRUE(q.SetBy_HandRH(g / 0.2389, 1.0));
            const CPoint c = along(Pixel(q), 18), t = along(c, (IsMultiple(g, 1.0) || g == kcal.back()) ? 6 : 3);
            if (IsMultiple(g, 1.0)) expected.push_back(Text(t, Number(g), th, esc));
            expected.insert(expected.end(), {Line(c, t), Line(prev, c)});
            prev = c;
        }
        CKyGHRuler ruler;
        ASSERT_EQ(DrawAlone(ruler), 1);
        EXPECT_EQ(Drawn(), expected) << "scale " << s;
    }
}
