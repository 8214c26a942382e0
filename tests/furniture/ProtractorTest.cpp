// The heat-moisture-ratio protractor: its fixed frame, its numbered graduations, and every
// tick laid along the ray that the chart's own mapping gives its ratio.
#include "FurnitureFixture.h"

#include <kygraph/KyGASChart.h>
#include <kygraph/KyStaPnt.h>

#include <cmath>
#include <set>

namespace {

class Protractor : public Furniture {
protected:
    CPoint M;  // the centre, 74 pixels in from the drawing's right and bottom edges at scale 1

    void Locate()
    {
        const int inset = Ky::TruncToInt(-74 * s);
        M = CPoint(chart->GetChartMaxPoint().x + inset, chart->GetOrigin().y + inset);
    }
    CRect Square(double side) const
    {
        const int half = Ky::TruncToInt(side * s) / 2;
        return CRect(M.x - half, M.y - half, M.x + half, M.y + half);
    }
    // Diameter, outer arc, centre tick, the two centre circles and the "-∞" graduation.
    std::vector<std::string> FrameSteps() const
    {
        const CPoint bottom(M.x, Ky::TruncToInt(M.y + 50 * s)), top(M.x, Ky::TruncToInt(M.y - 50 * s));
        const CPoint tip(M.x, Ky::TruncToInt(bottom.y + 6 * s));
        // Moved down by 2s and back up, each step truncated: the centre itself whenever 2s is whole.
        const CPoint a(M.x, Ky::TruncToInt(Ky::TruncToInt(M.y + 2 * s) - 2 * s));
        const int th = Ky::TruncToInt(7 * s);
        return {Line(bottom, top), Arc(Square(100), bottom, top),
                Line({M.x + Ky::TruncToInt(6 * s), M.y}, {M.x - Ky::TruncToInt(6 * s), M.y}), Arc(Square(4), a, M),
                Arc(Square(4), M, a),
                // Built on the centre's x for both axes, as intended.
                Arc(Square(8), {M.x, Ky::TruncToInt(M.x + 4 * s)}, {M.x, Ky::TruncToInt(M.x - 4 * s)}),
                Line(bottom, tip), Text({tip.x, tip.y - Extent(th, L"-\u221E").cy / 2}, L"-\u221E", th, -900)};
    }
};

const std::set<int> kKJMajor{-10000, 0, 1000, 2000, 3000, 4000, 5000, 10000};
const std::set<int> kKcalMajor{-2500, 0, 500, 1000, 1500, 2000, 2500};

}  // namespace

TEST_F(Protractor, TicksFollowTheChartsRaysAndOnlyTheListedOnesAreNumbered)
{
    for (const CSize window : {CSize(580, 500), CSize(1000, 800)}) {
        Attach(window.cx, window.cy);
        Locate();
        CKyGASChart protractor;
        ASSERT_EQ(DrawAlone(protractor), 1);
        const std::vector<std::string> drawn = Drawn(), frame = FrameSteps();
        ASSERT_EQ(drawn.size(), 8 + 2 * 201 + 5 + 2 * 101 + 2u);
        EXPECT_EQ(std::vector<std::string>(drawn.begin(), drawn.begin() + 8), frame);

        // Each ratio's ray runs from the range's corner state at minimum d and maximum T to
        // the state one g/kg further with the ratio's enthalpy change.
        const CKyStaPnt ref = set->m_RangeSetting.GetMinDMaxTStaPnt();
        const CPoint pa = Pixel(ref);
        const auto tick = [&](double dh, double radius, double len) {
            CKyStaPnt b;
            CPoint pb;
            EXPECT_TRUE(b.SetBy_HandD(ref.GetH() + dh, ref.GetD() + 1.0));
            EXPECT_EQ(chart->GetPoint(b.GetH(), b.GetD(), pb), 1);
            const double rx = pb.x - pa.x, ry = pb.y - pa.y, n = std::sqrt(rx * rx + ry * ry);
            const CPoint p1(Ky::TruncToInt(M.x + rx / n * radius * s), Ky::TruncToInt(M.y + ry / n * radius * s));
            return Line(p1, {Ky::TruncToInt(p1.x + rx / n * len * s), Ky::TruncToInt(p1.y + ry / n * len * s)});
        };
        for (int i = 0, eps = -10000; eps <= 10000; ++i, eps += 100)
            EXPECT_EQ(drawn[8 + 2 * i], tick(eps / 1000.0, 50, kKJMajor.count(eps) ? 6 : eps % 500 ? 2 : 4)) << eps;
        for (int i = 0, eps = -2500; eps <= 2500; ++i, eps += 50) {  // inwards; the zero radius follows 0
            const double len = kKcalMajor.count(eps) ? -6 : eps % 100 ? -2 : -4;
            EXPECT_EQ(drawn[415 + 2 * i + (eps > 0)], tick(eps / 1000.0 * 4.1855, 45, len)) << eps;
        }

        std::vector<std::wstring> texts;
        for (const CDrawRecord& r : Records())
            if (r.kind == CDrawRecord::Text && !r.text.IsEmpty()) texts.push_back(r.text.str());
        EXPECT_EQ(texts, (std::vector<std::wstring>{L"-\u221E", L"-10000", L"0", L"1000", L"2000", L"3000", L"4000", L"5000",
                                                    L"10000", L"\u221E", L"kJ/kg", L"热湿比", L"-2500", L"0", L"500",
                                                    L"1000", L"2500", L"kcal/kg"}));
    }
}

TEST_F(Protractor, UnplaceableReferenceStateLeavesOnlyTheFrameSteps)
{
    Attach(1000, 800);
    Locate();
    set->m_RangeSetting.SetMinT(70.0);  // above the maximum: the corner state is out of range
    CKyGASChart protractor;
    EXPECT_EQ(DrawAlone(protractor), 0);
    EXPECT_EQ(Drawn(), FrameSteps());
}

TEST_F(Protractor, RaysShorterThanAPixelAreLeftOut)
{
    Attach(1000, 800);
    set->m_dDLength = set->m_dTLength = 1e-3;  // the whole range within a pixel
    Locate();
    CKyGASChart protractor;
    EXPECT_EQ(DrawAlone(protractor), 1);
    std::vector<std::string> drawn = Drawn();
    ASSERT_EQ(drawn.size(), 14u);  // then only "∞", the units, the title and the inner arc
    drawn.resize(8);
    EXPECT_EQ(drawn, FrameSteps());
}
