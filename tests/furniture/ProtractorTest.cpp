// The heat-moisture-ratio protractor: its fixed frame, every graduation of both scales laid
// along the ray the chart's own mapping gives that ratio, and its failure and sub-pixel cases.
#include "FurnitureFixture.h"

#include <kygraph/KyGASChart.h>

#include <cmath>
#include <numbers>
#include <set>

namespace {

class Protractor : public Furniture {
protected:
    double k = 1.0;
    int th = 7;
    CPoint M;

    void Measure()
    {
        k = set->GetDrawScale();
        th = Ky::TruncToInt(7 * k);
        const int inset = Ky::TruncToInt(-74 * k);
        M = CPoint(chart->GetChartMaxPoint().x + inset, chart->GetOrigin().y + inset);
    }
    CRect Square(double side) const
    {
        const int half = Ky::TruncToInt(side * k) / 2;
        return CRect(M.x - half, M.y - half, M.x + half, M.y + half);
    }
    // A tick of length len * k on the outer (50 k) or inner (45 k) circle along (dx, dy), with
    // its text beyond the tick or inside it.
    void Graduation(Walk& walk, double dx, double dy, double len, const CString& label, bool outer) const
    {
        const double r = (outer ? 50 : 45) * k, sign = outer ? 1 : -1;
        const CPoint p1(Ky::TruncToInt(M.x + dx * r), Ky::TruncToInt(M.y + dy * r));
        const CPoint p2(Ky::TruncToInt(p1.x + dx * sign * len * k), Ky::TruncToInt(p1.y + dy * sign * len * k));
        walk.Line(p1, p2);
        const CSize ext = Extent(th, label);
        CPoint at(p2.x, p2.y - ext.cy / 2);
        if (!outer) at = CPoint(Ky::TruncToInt(at.x - dx * ext.cx), Ky::TruncToInt(at.y - dy * ext.cx));
        walk.Text(at, label, th, Ky::TruncToInt(std::atan(-dy / dx) * 180 / std::numbers::pi) * 10);
    }
    // The diameter, outer arc, centre tick, the two centre circles and "-∞".
    void FrameSteps(Walk& walk) const
    {
        const CPoint bottom(M.x, Ky::TruncToInt(M.y + 50 * k)), top(M.x, Ky::TruncToInt(M.y - 50 * k));
        walk.Line(bottom, top);
        walk.Arc(Square(100), bottom, top);
        walk.Line(CPoint(M.x + Ky::TruncToInt(6 * k), M.y), CPoint(M.x - Ky::TruncToInt(6 * k), M.y));
        // Moved down by 2k and back up, each step truncated: the centre whenever 2k is whole.
        const CPoint a(M.x, Ky::TruncToInt(Ky::TruncToInt(M.y + 2 * k) - 2 * k));
        walk.Arc(Square(4), a, M);
        walk.Arc(Square(4), M, a);
        // Built on the centre's x for both axes, as intended.
        walk.Arc(Square(8), CPoint(M.x, Ky::TruncToInt(M.x + 4 * k)), CPoint(M.x, Ky::TruncToInt(M.x - 4 * k)));
        Graduation(walk, 0.0, 1.0, 6, L"-\u221E", true);
    }
    // The unit direction on the chart of ratio dh kJ/kg per g/kg from the range's corner
    // state at minimum d and maximum temperature.
    void Ray(double dh, double& dx, double& dy) const
    {
        const CKyStaPnt ref = set->m_RangeSetting.GetMinDMaxTStaPnt();
        CKyStaPnt b;
        ASSERT_TRUE(b.SetBy_HandD(ref.GetH() + dh, ref.GetD() + 1.0));
        CPoint pa = Pixel(ref), pb;
        ASSERT_EQ(chart->GetPoint(b.GetH(), b.GetD(), pb), 1);
        const double rx = pb.x - pa.x, ry = pb.y - pa.y;
        dx = rx / std::hypot(rx, ry);
        dy = ry / std::hypot(rx, ry);
    }
};

const std::set<int> kKJNumbered{-10000, 0, 1000, 2000, 3000, 4000, 5000, 10000};
const std::set<int> kKcalNumbered{-2500, 0, 500, 1000, 2500};
const std::set<int> kKcalMajor{-2500, 0, 500, 1000, 1500, 2000, 2500};  // 1500 and 2000 unnumbered

}  // namespace

TEST_F(Protractor, EveryGraduationLiesAlongItsRatioOnTheChart)
{
    for (const CSize window : {CSize(580, 500), CSize(1120, 960), CSize(1000, 800)}) {
        Attach(window.cx, window.cy);
        Measure();
        SCOPED_TRACE(k);
        CKyGASChart protractor;
        ASSERT_EQ(DrawAlone(protractor), 1);
        Walk walk(Records());
        FrameSteps(walk);

        for (int eps = -10000; eps <= 10000; eps += 100) {
            SCOPED_TRACE(eps);
            double dx, dy;
            Ray(eps / 1000.0, dx, dy);
            const bool numbered = kKJNumbered.count(eps) > 0;
            const double len = numbered ? 6 : eps % 500 == 0 ? 4 : 2;
            Graduation(walk, dx, dy, len, numbered ? CString(std::to_wstring(eps)) : CString(), true);
        }
        Graduation(walk, 0.0, -1.0, 6, L"\u221E", true);
        const CPoint top(M.x, Ky::TruncToInt(M.y - 50 * k));
        walk.Text(top - Extent(th, L"kJ/kg"), L"kJ/kg", th, 0);
        walk.Text(CPoint(M.x - Ky::TruncToInt(8 * k), M.y + Extent(th, L"热湿比").cx / 2), L"热湿比", th, 900);
        walk.Arc(Square(90), CPoint(M.x, Ky::TruncToInt(M.y + 45 * k)), CPoint(M.x, Ky::TruncToInt(M.y - 45 * k)));

        for (int eps = -2500; eps <= 2500; eps += 50) {
            SCOPED_TRACE(eps);
            double dx, dy;
            Ray(eps / 1000.0 * 4.1855, dx, dy);
            const double len = kKcalMajor.count(eps) ? 6 : eps % 100 == 0 ? 4 : 2;
            Graduation(walk, dx, dy, len, kKcalNumbered.count(eps) ? CString(std::to_wstring(eps)) : CString(), false);
            if (eps == 0) {
                // The zero radius, along the constant-enthalpy direction.
                EXPECT_NEAR(std::atan2(dy, dx), chart->GetHAngle(), 0.02);
                walk.Line(M, M + CSize(Ky::TruncToInt(dx * 45 * k), Ky::TruncToInt(dy * 45 * k)));
            }
        }
        walk.Text(CPoint(M.x - Extent(th, L"kcal/kg").cx, M.y + Ky::TruncToInt(-(47 * k))), L"kcal/kg", th, 0);
        walk.End();
    }
}

TEST_F(Protractor, SitsInTheBottomRightCornerOfTheDrawing)
{
    for (const CSize window : {CSize(580, 500), CSize(1120, 960)}) {
        Attach(window.cx, window.cy);
        Measure();
        const int k1 = static_cast<int>(k);  // 1 and 2: whole scales
        EXPECT_EQ(chart->GetChartMaxPoint().x - M.x, 74 * k1);
        EXPECT_EQ(chart->GetOrigin().y - M.y, 74 * k1);
        CKyGASChart protractor;
        DrawAlone(protractor);
        const CDrawRecord& diameter = Records().at(0);
        EXPECT_EQ(diameter.pts.at(0).y - diameter.pts.at(1).y, 100 * k1);
    }
}

TEST_F(Protractor, UnplaceableReferenceStateLeavesOnlyTheFrameSteps)
{
    Attach(1000, 800);
    set->m_RangeSetting.SetMinT(70.0);  // above the maximum: the corner state is out of range
    Measure();
    CKyGASChart protractor;
    EXPECT_EQ(DrawAlone(protractor), 0);
    Walk walk(Records());
    FrameSteps(walk);
    walk.End();
}

TEST_F(Protractor, RaysShorterThanAPixelAreLeftOut)
{
    Attach(1000, 800);
    // One g/kg and the whole enthalpy span now fit in a fraction of a pixel.
    set->m_dDLength = 1e-3;
    set->m_dTLength = 1e-3;
    Measure();
    CKyGASChart protractor;
    EXPECT_EQ(DrawAlone(protractor), 1);
    std::vector<std::wstring> texts;
    for (const CDrawRecord& r : Records())
        if (r.kind == CDrawRecord::Text) texts.push_back(r.text.str());
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"-\u221E", L"\u221E", L"kJ/kg", L"热湿比", L"kcal/kg"}));
    EXPECT_EQ(Records().size(), 14u);
}
