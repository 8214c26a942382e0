// Ranges the rulers cannot draw give a clean 0 with nothing drawn, and no tick is placed at a
// position that was not a number. (Hostile settings in general: the redraw tests in chart/.)
#include "FurnitureFixture.h"

#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>

TEST_F(Furniture, RulersWithAnEmptySpanDrawNothing)
{
    CKyGDRuler dRuler;
    CKyGHRuler hRuler;
    const struct {
        double minT, maxD;
        CKyGDrawBase* ruler;
    } cases[] = {
        {-30, 0.0, &dRuler},   // no vapour-pressure span
        {-30, 0.1, &hRuler},   // saturated below the minimum temperature
        {-150, 50, &hRuler},   // a minimum temperature the model refuses
    };
    for (const auto& c : cases) {
        Attach(1000, 800);
        set->m_RangeSetting.SetMinT(c.minT);
        set->m_RangeSetting.SetMaxD(c.maxD);
        EXPECT_EQ(DrawAlone(*c.ruler), 0) << c.minT << " degC, " << c.maxD << " g/kg";
        EXPECT_TRUE(Records().empty());
    }
}

TEST_F(Furniture, DRulerLeavesOutTicksWithoutAFiniteMoistureContent)
{
    int upward = 0, leftOfRuler = 0;
    const auto draw = [&] {
        CKyGDRuler ruler;
        EXPECT_EQ(DrawAlone(ruler), 1);
        const CPoint L = Records().at(0).pts.at(0);
        upward = leftOfRuler = 0;
        for (const CDrawRecord& r : Records()) {
            upward += r.kind == CDrawRecord::Line && r.pts[1].y < r.pts[0].y;
            leftOfRuler += r.kind == CDrawRecord::Line && r.pts[0].x < L.x;
        }
    };
    // Vapour pressures above the atmospheric pressure set afterwards.
    set->m_RangeSetting.SetMaxT(90.0);
    ASSERT_EQ(set->m_RangeSetting.SetMaxD(1000.0), 1);
    Attach(1000, 800);
    ASSERT_TRUE(CKyChart::InstanceGloble()->SetGlobleB(50000.0));
    draw();
    EXPECT_EQ(leftOfRuler, 0);

    // A refused maximum, then a minimum that meets it: the stale corner states still span a
    // scale, over a d span of zero.
    TearDown();
    SetUp();
    Attach(1000, 800);
    set->m_RangeSetting.SetMaxD(1000.0);
    set->m_RangeSetting.SetMinD(1000.0);
    draw();
    EXPECT_EQ(upward, 1) << "only the left end tick of the 10^2 Pa scale";
}
