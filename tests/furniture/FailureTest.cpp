// What the furniture does with ranges it cannot draw and with hostile settings: a clean 0
// with nothing drawn where that is the behaviour, and never a hang, a crash or a tick at a
// position that was not a number.
#include "FurnitureFixture.h"

#include <kygraph/KyGASChart.h>
#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>

#include <functional>
#include <limits>

TEST_F(Furniture, RulersWithAnEmptySpanDrawNothing)
{
    Attach(1000, 800);
    const struct {
        const char* name;
        std::function<void()> edit;
        bool dRuler;  // which ruler fails: the vapour-pressure or the enthalpy one
    } cases[] = {
        {"no moisture-content span", [&] { set->m_RangeSetting.SetMaxD(0.0); }, true},
        {"saturation at max d below min T", [&] { set->m_RangeSetting.SetMaxD(0.1); }, false},
        {"min T refused by the model", [&] { set->m_RangeSetting.SetMinT(-150.0); }, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TearDown();
        SetUp();
        Attach(1000, 800);
        c.edit();
        CKyGDRuler d;
        CKyGHRuler h;
        EXPECT_EQ(DrawAlone(c.dRuler ? static_cast<CKyGDrawBase&>(d) : h), 0);
        EXPECT_TRUE(Records().empty());
    }
}

TEST_F(Furniture, DRulerSkipsTicksWithoutAFinitePosition)
{
    Attach(1000, 800);
    // A refused maximum leaves the old corner states, then the minimum meets the maximum:
    // the pressures still span a scale while the moisture-content span is zero.
    set->m_RangeSetting.SetMaxD(1000.0);
    set->m_RangeSetting.SetMinD(1000.0);
    CKyGDRuler ruler;
    EXPECT_EQ(DrawAlone(ruler), 1);
    const CPoint L = Records().at(0).pts.at(0);
    int upward = 0;
    for (const CDrawRecord& r : Records())
        if (r.kind == CDrawRecord::Line && r.pts[1].y < r.pts[0].y) ++upward;
    EXPECT_EQ(upward, 1) << "only the left end tick of the 10^2 Pa scale";
    const CPoint origin = chart->GetChartOrigin();
    EXPECT_EQ(L, CPoint(origin.x, Ky::TruncToInt(origin.y - 25 * set->GetDrawScale())));
}

TEST_F(Furniture, DRulerLeavesOutPressuresAtOrAboveTheAtmosphere)
{
    set->m_RangeSetting.SetMaxT(90.0);
    ASSERT_EQ(set->m_RangeSetting.SetMaxD(1000.0), 1);  // 62 kPa of vapour at 101325 Pa
    Attach(1000, 800);
    ASSERT_TRUE(CKyChart::InstanceGloble()->SetGlobleB(50000.0));
    CKyGDRuler ruler;
    EXPECT_EQ(DrawAlone(ruler), 1);
    const CPoint L = Records().at(0).pts.at(0);
    int leftOfTheRuler = 0;
    for (const CDrawRecord& r : Records())
        if (r.kind == CDrawRecord::Line && r.pts[0].x < L.x) ++leftOfTheRuler;
    EXPECT_EQ(leftOfTheRuler, 0);
}

TEST_F(Furniture, HostileScalesFinishWithBoundedDrawing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    const std::function<void()> edits[] = {
        [&] { set->m_dDrawScale = nan; },
        [&] { set->m_dDrawScale = inf; },
        [&] { set->m_dDrawScale = 1e12; },
        [&] { set->m_dDrawScale = -3.0; },
        [&] { set->m_dDLength = 0.0, set->m_dTLength = 0.0; },
        [&] { set->m_dLeftMargin = 3e9, set->m_dBottomMargin = -3e9; },
        [&] { set->m_StyleSetting.m_ASChartStyle.nTextHeight = -2000000000; },
        [&] { set->m_RangeSetting.SetMinT(60.0), set->m_RangeSetting.SetMaxT(-20.0); },
    };
    Attach(1000, 800);
    for (size_t i = 0; i < std::size(edits); ++i) {
        SCOPED_TRACE(i);
        edits[i]();
        CKyGChartFrame frame;
        CKyGDRuler dRuler;
        CKyGHRuler hRuler;
        CKyGASChart protractor;
        for (CKyGDrawBase* e : std::initializer_list<CKyGDrawBase*>{&frame, &dRuler, &hRuler, &protractor}) {
            DrawAlone(*e);
            EXPECT_LT(Records().size(), 20000u) << e->toString().ToUtf8();
        }
        TearDown();
        SetUp();
        Attach(1000, 800);
    }
}
