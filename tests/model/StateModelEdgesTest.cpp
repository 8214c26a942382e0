// CKyStaPnt at the edges of its domain: the wet bulb where water and ice meet, the triple
// point, the ends of the range, and what refusals say. Each test is named after the fault it
// was written for.
#include <kygraph/KyChart.h>
#include <kygraph/KyStaPnt.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

const Ky::_Formulation kAll[] = {Ky::FORMULATION_CHART, Ky::FORMULATION_ASHRAE2017, Ky::FORMULATION_REALGAS};

class StateModelEdges : public ::testing::Test {
protected:
    void SetUp() override { CKyChart::InstanceGloble()->ResetDefaults(); }
    void TearDown() override { CKyChart::InstanceGloble()->ResetDefaults(); }
    static void Use(Ky::_Formulation f, double b)
    {
        ASSERT_TRUE(CKyChart::InstanceGloble()->SetFormulation(f));
        ASSERT_TRUE(CKyChart::InstanceGloble()->SetGlobleB(b));
    }
};

// Every wet bulb the setter accepts reads back from its d, and GetTwb is continuous in d except
// for the one step at the lower edge of the window where water and ice wet bulbs coexist.
TEST_F(StateModelEdges, D1_WetBulbWaterIceWindow)
{
    for (Ky::_Formulation f : kAll)
        for (double b : {50000.0, 101325.0})
            for (double t : {2.0, 5.0, 8.0}) {
                Use(f, b);
                SCOPED_TRACE(::testing::Message() << "f=" << f << " B=" << b << " t=" << t);
                int refused = 0;
                for (double twb = -2.0; twb <= 0.5 && twb <= t; twb += 0.01) {
                    CKyStaPnt p, q;
                    if (!p.SetBy_TdbandTwb(t, twb)) {
                        ++refused;
                        EXPECT_LT(twb, 0.0) << p.GetLastErrorString().ToUtf8();
                        continue;
                    }
                    ASSERT_TRUE(q.SetBy_DandTdb(p.GetD(), t));
                    EXPECT_NEAR(q.GetTwb(), twb, 1e-9) << "d " << p.GetD();
                }
                // Along d, the wet bulb moves by at most the step it is allowed at the edge.
                CKyStaPnt prev;
                ASSERT_TRUE(prev.SetBy_DandTdb(0.0, t));
                int jumps = 0;
                for (double d = 1e-4; d < 12.0; d += 1e-3) {
                    CKyStaPnt p;
                    if (!p.SetBy_DandTdb(d, t)) break;
                    const double step = p.GetTwb() - prev.GetTwb();
                    EXPECT_GE(step, 0.0);
                    if (step > 0.05) {  // a d step of 1e-3 g/kg moves the wet bulb by 0.003 K
                        ++jumps;
                        EXPECT_NEAR(p.GetTwb(), 0.0, 5e-3) << "the step lands on 0 °C";
                        EXPECT_LT(step, 0.75);
                    }
                    prev = p;
                }
                                EXPECT_EQ(jumps, 1);
                EXPECT_GT(refused, 0);
            }
}

// Saturated and near-saturated states just below the triple point, set by (h, RH).
TEST_F(StateModelEdges, D2_HandRHAtTheTriplePointKink)
{
    CKyStaPnt p;
    ASSERT_TRUE(p.SetBy_HandRH(9.4540576882031591, 1.0)) << p.GetLastErrorString().ToUtf8();
    EXPECT_NEAR(p.GetTdb(), 0.0099938, 1e-7);
    for (Ky::_Formulation f : kAll)
        for (double t = 0.0094; t <= 0.0101; t += 1.7e-5)
            for (double rh : {1.0, 0.99, 0.5}) {
                Use(f, 101325.0);
                CKyStaPnt ref, q;
                ASSERT_TRUE(ref.SetBy_TdbandRH(t, rh));
                ASSERT_TRUE(q.SetBy_HandRH(ref.GetH(), rh)) << t << " " << q.GetLastErrorString().ToUtf8();
                EXPECT_NEAR(q.GetTdb(), t, 1e-11) << f << " " << t << " " << rh;
                EXPECT_NEAR(q.GetRH(), rh, 1e-12) << f << " " << t << " " << rh;
            }
}

// A dry bulb derived a rounding error outside the range is the end itself, and the state it
// belongs to is accepted by every other pair; at the cold end saturation keeps its dew point,
// and saturated air is not taken for supersaturated (D7: d from h - cpa t rounds by 4e-9).
TEST_F(StateModelEdges, D3_D4_D7_StatesAtTheColdEndReadBackByEveryPair)
{
    for (Ky::_Formulation f : kAll)
        for (double b : {50000.0, 101325.0, 110000.0})
            for (double t : {-100.0, -99.5, 200.0})
                for (double rh : {1.0, 0.4}) {
                    Use(f, b);
                    SCOPED_TRACE(::testing::Message() << "f=" << f << " B=" << b << " t=" << t << " rh=" << rh);
                    CKyStaPnt ref;
                    if (!ref.SetBy_TdbandRH(t, rh)) continue;  // pv >= B
                    CKyStaPnt a, c, d;
                    ASSERT_TRUE(a.SetBy_HandD(ref.GetH(), ref.GetD())) << a.GetLastErrorString().ToUtf8();
                    EXPECT_TRUE(a.GetTdb() >= -100.0 && a.GetTdb() <= 200.0) << a.GetTdb();
                    EXPECT_TRUE(c.SetBy_HandTdb(a.GetH(), a.GetTdb())) << c.GetLastErrorString().ToUtf8();
                    EXPECT_TRUE(d.SetBy_DandTdb(a.GetD(), a.GetTdb())) << d.GetLastErrorString().ToUtf8();
                    if (rh == 1.0) {
                        for (const CKyStaPnt* p : {&a, &c, &d}) EXPECT_NEAR(p->GetTdp(), t, 1e-7);
                    }
                }
    Use(Ky::FORMULATION_CHART, 50000.0);
    CKyStaPnt p;
    ASSERT_TRUE(p.SetBy_HandD(-100.99998380701842, 6.9917882469912027e-06));
    EXPECT_EQ(p.GetTdb(), -100.0);
}

// The wet bulb is solved to its tolerance even where pws(t*) approaches B.
TEST_F(StateModelEdges, D5_WetBulbResidualNearThePole)
{
    for (Ky::_Formulation f : kAll)
        for (double b : {50000.0, 101325.0})
            for (double t = 60.0; t <= 200.0; t += 7.0)
                for (double rh : {0.02, 0.3, 0.9}) {
                    Use(f, b);
                    CKyStaPnt p, back;
                    if (!p.SetBy_TdbandRH(t, rh)) continue;
                    ASSERT_TRUE(back.SetBy_TdbandTwb(t, p.GetTwb())) << back.GetLastErrorString().ToUtf8();
                    // d as a function of the wet bulb at fixed t: its error over dd/dtwb.
                    CKyStaPnt up;
                    ASSERT_TRUE(up.SetBy_TdbandTwb(t, p.GetTwb() - 1e-4));
                    const double slope = (back.GetD() - up.GetD()) / 1e-4;
                    EXPECT_LT(std::fabs(back.GetD() - p.GetD()) / slope, 1e-10) << f << " " << b << " " << t << " " << rh;
                }
}

// D8: an enthalpy far beyond any air is refused by (h, RH) in every formulation, or read back
// as given; the real gas once took it as dry air with that enthalpy (RH 0, d 0).
TEST_F(StateModelEdges, D8_HandRHBeyondAnyAirIsNeverDryAir)
{
    for (Ky::_Formulation f : kAll)
        for (double h : {1e10, 1e300})
            for (double rh : {0.5, 1.0, 1.000000001}) {
                Use(f, 101325.0);
                CKyStaPnt p;
                if (!p.SetBy_HandRH(h, rh)) continue;
                EXPECT_EQ(p.GetH(), h) << f;
                EXPECT_NEAR(p.GetRH(), std::min(rh, 1.0), 1e-9) << f << " " << h << " " << rh;
            }
}

// Refusals show the input and the limit with the digits that tell them apart.
TEST_F(StateModelEdges, D6_MessagesNeverContradictThemselves)
{
    struct Case {
        bool (CKyStaPnt::*set)(double, double);
        double a, b;
        const char* shows;
    };
    const Case cases[] = {
        {&CKyStaPnt::SetBy_TdbandRH, -100.00000000000001, 0.5, "-100.00000000000001 °C"},
        {&CKyStaPnt::SetBy_TdbandRH, 20.0, 1.0000000011, "相对湿度 1.0000000011 超过 1 与舍入容差 1e-09"},
        {&CKyStaPnt::SetBy_HandD, 20.0, 30.0, "焓 20 kJ/kg，含湿量 30 g/kg"},
    };
    for (const Case& c : cases) {
        CKyStaPnt p;
        EXPECT_FALSE((p.*c.set)(c.a, c.b));
        EXPECT_NE(p.GetLastErrorString().ToUtf8().find(c.shows), std::string::npos) << p.GetLastErrorString().ToUtf8();
    }
    EXPECT_FALSE(CKyChart::InstanceGloble()->SetGlobleB(49999.999999));
    EXPECT_NE(CKyChart::InstanceGloble()->GetLastErrorString().ToUtf8().find("49999.999999 Pa"), std::string::npos);
}

}  // namespace
