// CKyStaPnt: round trips of every setter over the whole domain, physical relations checked
// through the public interface, and refusals that leave the point untouched.
#include <kygraph/KyChart.h>
#include <kygraph/KyPsychro.h>
#include <kygraph/KyStaPnt.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Props {
    double tdb, twb, tdp, rh, d, h, pv;
};

Props Read(const CKyStaPnt& p)
{
    return {p.GetTdb(), p.GetTwb(), p.GetTdp(), p.GetRH(), p.GetD(), p.GetH(), p.GetPv()};
}

using Setter = bool (CKyStaPnt::*)(double, double);
struct SetterCase {
    const char* name;
    Setter set;
    double Props::*a;
    double Props::*b;
};
const SetterCase kSetters[] = {
    {"TdbandRH", &CKyStaPnt::SetBy_TdbandRH, &Props::tdb, &Props::rh},
    {"TdbandTwb", &CKyStaPnt::SetBy_TdbandTwb, &Props::tdb, &Props::twb},
    {"HandD", &CKyStaPnt::SetBy_HandD, &Props::h, &Props::d},
    {"HandTdb", &CKyStaPnt::SetBy_HandTdb, &Props::h, &Props::tdb},
    {"DandTdb", &CKyStaPnt::SetBy_DandTdb, &Props::d, &Props::tdb},
    {"DandRH", &CKyStaPnt::SetBy_DandRH, &Props::d, &Props::rh},
    {"HandRH", &CKyStaPnt::SetBy_HandRH, &Props::h, &Props::rh},
    {"TdbandTdp", &CKyStaPnt::SetBy_TdbandTdp, &Props::tdb, &Props::tdp},
    {"TdbandPv", &CKyStaPnt::SetBy_TdbandPv, &Props::tdb, &Props::pv},
};

bool Near(double x, double ref, double rel, double abs) { return std::fabs(x - ref) <= abs + rel * std::fabs(ref); }

class StaPnt : public ::testing::Test {
protected:
    void SetUp() override { CKyChart::InstanceGloble()->ResetDefaults(); }
    void TearDown() override { CKyChart::InstanceGloble()->ResetDefaults(); }
};

TEST_F(StaPnt, EmptyPointAnswersNaN)
{
    const CKyStaPnt p;
    EXPECT_FALSE(p.IsValid());
    for (double v : {p.GetTdb(), p.GetTwb(), p.GetTdp(), p.GetRH(), p.GetD(), p.GetH(), p.GetPv(), p.GetPs(),
                     p.GetV(), p.GetRho()})
        EXPECT_TRUE(std::isnan(v));
    EXPECT_EQ(p.toString(), L"CKyStaPnt");
}

// Every state of the domain, reached by every pair: the setter's own pair reads back its
// inputs, and every other property agrees with the state it was taken from.
TEST_F(StaPnt, EveryPairRoundTripsOverTheDomain)
{
    std::vector<double> rhs;
    for (int i = 0; i <= 10; ++i) rhs.push_back(i / 10.0);
    rhs.push_back(0.003);
    int checked = 0;
    for (Ky::_Formulation f : {Ky::FORMULATION_CHART, Ky::FORMULATION_ASHRAE2017, Ky::FORMULATION_REALGAS}) {
        ASSERT_TRUE(CKyChart::InstanceGloble()->SetFormulation(f));
        for (double b : {50000.0, 80000.0, 101325.0, 110000.0}) {
            ASSERT_TRUE(CKyChart::InstanceGloble()->SetGlobleB(b));
            for (double t = -100.0; t <= 200.0; t += 2.3) {
                for (double rh : rhs) {
                    CKyStaPnt ref;
                    if (!ref.SetBy_TdbandRH(t, rh)) {
                        EXPECT_GE(rh * Ky::SaturationPressure(t), b) << "only pv >= B may be refused";
                        continue;
                    }
                    const Props r = Read(ref);
                    for (const SetterCase& s : kSetters) {
                        const double a = r.*s.a, v = r.*s.b;
                        if (std::isnan(a) || std::isnan(v)) continue;  // dew point below -100 °C
                        // By name: a DLL's member-function address differs between the table and here on Windows.
                        if (std::string(s.name) == "DandRH" && rh == 0.0) continue;  // no temperature
                        SCOPED_TRACE(::testing::Message() << s.name << " f=" << f << " B=" << b << " t=" << t
                                                          << " rh=" << rh);
                        CKyStaPnt p;
                        ASSERT_TRUE((p.*s.set)(a, v)) << p.GetLastErrorString().ToUtf8();
                        const Props q = Read(p);
                        // The real gas's enthalpy carries a few more ulps of rounding; where d is
                        // tiny (the cold end) that is what RH and d can be told from h with.
                        const bool real = f == Ky::FORMULATION_REALGAS;
                        const double cond = real ? std::fmin(1.0, 1e-14 * (std::fabs(r.h) + 1.0) / (2.5 * r.d + 1e-300)) : 0.0;
                        const double dAbs = real ? 1e-8 : 1e-9;
                        const double rhRel = 1e-7 + cond;
                        EXPECT_TRUE(Near(q.*s.a, a, 1e-9, 1e-9)) << q.*s.a << " vs " << a;
                        EXPECT_TRUE(Near(q.*s.b, v, s.b == &Props::rh ? rhRel : 1e-9, 1e-9)) << q.*s.b << " vs " << v;
                        EXPECT_TRUE(Near(q.tdb, r.tdb, 1e-9, 1e-7)) << q.tdb;
                        EXPECT_TRUE(Near(q.d, r.d, 1e-8, dAbs)) << q.d << " vs " << r.d;
                        EXPECT_TRUE(Near(q.h, r.h, 1e-9, 1e-7)) << q.h << " vs " << r.h;
                        EXPECT_TRUE(Near(q.rh, r.rh, rhRel, dAbs)) << q.rh << " vs " << r.rh;
                        EXPECT_TRUE(Near(q.twb, r.twb, 1e-9, 1e-6) || std::fabs(r.twb) < 0.5) << q.twb;
                        ++checked;
                    }
                }
            }
        }
    }
    EXPECT_GT(checked, 50000);
}

TEST_F(StaPnt, HandDKeepsItsInputsExactly)
{
    for (double h : {-100.0, -20.5, 0.0, 1e-300, 37.123456789, 150.0})
        for (double d : {0.0, 1e-310, 0.3, 7.77777, 25.0}) {
            CKyStaPnt p;
            if (!p.SetBy_HandD(h, d)) continue;  // supersaturated or out of range
            EXPECT_EQ(p.GetH(), h);
            EXPECT_EQ(p.GetD(), d);
        }
}

// The chart's formulation at 20 °C, 50 %: pws = 2339.3 Pa (ASHRAE 2017 Table 3), so
// d = 622 · 1169.6 / (101325 - 1169.6), h = 1.01·20 + 0.001 d (2500 + 1.84·20), and
// v = 0.287042 · 293.15 (1 + 1.6078 d/1000) / 101.325 worked out by hand.
TEST_F(StaPnt, ChartFormulationAtAKnownState)
{
    CKyStaPnt p;
    ASSERT_TRUE(p.SetBy_TdbandRH(20.0, 0.5));
    EXPECT_NEAR(p.GetPs(), 2339.3, 0.7);
    EXPECT_NEAR(p.GetD(), 7.2638, 0.003);
    EXPECT_NEAR(p.GetH(), 38.626, 0.008);
    EXPECT_NEAR(p.GetV(), 0.8401, 0.0002);    // m³/kg dry air
    EXPECT_NEAR(p.GetRho(), 1.1989, 0.0003);  // kg/m³ of the mixture
    EXPECT_NEAR(p.GetTdp(), 9.27, 0.02);
}

// The wet bulb satisfies the adiabatic-saturation balance of its formulation's own enthalpies:
// h + (d* - d)/1000 · hw(t*) = h*, with hw = 4.186 t* over water, -333.4 + 2.1 t* over ice.
TEST_F(StaPnt, WetBulbClosesTheAdiabaticSaturationBalance)
{
    for (double t = -40.0; t <= 120.0; t += 3.7)
        for (double rh : {0.0, 0.05, 0.3, 0.7, 0.99}) {
            CKyStaPnt p, sat;
            if (!p.SetBy_TdbandRH(t, rh)) continue;
            const double twb = p.GetTwb();
            ASSERT_TRUE(twb <= t && (twb >= p.GetTdp() - 1e-9 || std::isnan(p.GetTdp()))) << t << " " << rh;
            ASSERT_TRUE(sat.SetBy_TdbandRH(twb, 1.0));
            const double hw = twb >= 0.0 ? 4.186 * twb : -333.4 + 2.1 * twb;
            EXPECT_NEAR(p.GetH() + (sat.GetD() - p.GetD()) / 1000.0 * hw, sat.GetH(), 1e-11 * std::fabs(sat.GetH()) + 1e-9)
                << t << " " << rh;
        }
}

TEST_F(StaPnt, DewPointIsWhereTheVapourPressureSaturates)
{
    for (double t : {-60.0, -10.0, 0.005, 0.01, 15.0, 90.0})
        for (double rh : {0.1, 0.5, 1.0}) {
            CKyStaPnt p, sat;
            ASSERT_TRUE(p.SetBy_TdbandRH(t, rh));
            ASSERT_TRUE(sat.SetBy_TdbandRH(p.GetTdp(), 1.0));
            EXPECT_NEAR(sat.GetPv(), p.GetPv(), 1e-10 * p.GetPv()) << t << " " << rh;
        }
}

// The chart sets the slope of its enthalpy axis from this, at about 20 °C and d = 0.
TEST_F(StaPnt, AlongConstantEnthalpyDGrowsAsTheDryBulbFalls)
{
    for (double h : {-20.0, 0.0, 40.0, 120.0}) {
        double lastD = -1.0;
        for (double t = h / 1.01; t > -100.0; t -= 0.5) {
            CKyStaPnt p;
            if (!p.SetBy_HandTdb(h, t)) break;  // saturation reached
            EXPECT_GT(p.GetD(), lastD);
            lastD = p.GetD();
        }
        EXPECT_GT(lastD, 0.0);
    }
}

TEST_F(StaPnt, SaturationIsReachedByDandRHAndHandRH)
{
    for (double d : {0.05, 1.0, 10.0, 50.0, 300.0}) {
        CKyStaPnt p;
        ASSERT_TRUE(p.SetBy_DandRH(d, 1.0)) << d;
        EXPECT_NEAR(p.GetRH(), 1.0, 1e-9);
        EXPECT_NEAR(p.GetTdp(), p.GetTdb(), 1e-9);
        EXPECT_NEAR(p.GetTwb(), p.GetTdb(), 1e-9);
        CKyStaPnt q;
        ASSERT_TRUE(q.SetBy_HandRH(p.GetH(), 1.0));
        EXPECT_NEAR(q.GetD(), d, 1e-9 * d);
    }
}

TEST_F(StaPnt, KeepsThePressureAndFormulationItWasSetWith)
{
    CKyStaPnt p;
    ASSERT_TRUE(p.SetBy_TdbandRH(25.0, 0.6));
    const Props before = Read(p);
    CKyChart::InstanceGloble()->SetGlobleB(80000.0);
    CKyChart::InstanceGloble()->SetFormulation(Ky::FORMULATION_ASHRAE2017);
    const Props after = Read(p);
    EXPECT_EQ(after.d, before.d);
    EXPECT_EQ(after.twb, before.twb);
    EXPECT_EQ(p.GetB(), 101325.0);
    CKyStaPnt q;
    ASSERT_TRUE(q.SetBy_TdbandRH(25.0, 0.6));
    EXPECT_GT(q.GetD(), p.GetD() * 1.2);  // lower pressure, more moisture per kg at the same RH
}

TEST_F(StaPnt, CopiesAreIndependentValues)
{
    CKyStaPnt a;
    ASSERT_TRUE(a.SetBy_TdbandRH(30.0, 0.4));
    a.SetName(L"室外点");
    CKyStaPnt b(a), c;
    c = a;
    ASSERT_TRUE(a.SetBy_TdbandRH(10.0, 0.9));
    for (const CKyStaPnt* p : {&b, &c}) {
        EXPECT_EQ(p->GetTdb(), 30.0);
        EXPECT_EQ(p->GetName(), L"室外点");
    }
}

// Refused inputs: false, a Chinese reason naming the inputs, the previous state untouched.
TEST_F(StaPnt, RefusalsLeaveThePointUntouched)
{
    struct Bad {
        Setter set;
        double a, b;
        const char* why;
    };
    const double dmax = std::numeric_limits<double>::max();
    const Bad bad[] = {
        {&CKyStaPnt::SetBy_TdbandRH, kNaN, 0.5, "NaN"},
        {&CKyStaPnt::SetBy_TdbandRH, 20.0, kInf, "infinite"},
        {&CKyStaPnt::SetBy_TdbandRH, 20.0, 1.2, "supersaturated"},
        {&CKyStaPnt::SetBy_TdbandRH, 20.0, 1.0 + 2e-9, "just beyond the tolerance"},
        {&CKyStaPnt::SetBy_TdbandRH, 20.0, -0.1, "negative RH"},
        {&CKyStaPnt::SetBy_TdbandRH, -100.5, 0.5, "too cold"},
        {&CKyStaPnt::SetBy_TdbandRH, 200.5, 0.0, "too hot"},
        {&CKyStaPnt::SetBy_TdbandRH, 150.0, 0.9, "pv >= B"},
        {&CKyStaPnt::SetBy_TdbandTwb, 20.0, 25.0, "wet bulb above dry bulb"},
        {&CKyStaPnt::SetBy_TdbandTwb, 60.0, -20.0, "negative d"},
        {&CKyStaPnt::SetBy_HandD, 50.0, -1.0, "negative d"},
        {&CKyStaPnt::SetBy_HandD, 20.0, 30.0, "supersaturated"},
        {&CKyStaPnt::SetBy_HandD, dmax, dmax, "huge"},
        {&CKyStaPnt::SetBy_HandD, -dmax, 1e-310, "huge negative h"},
        {&CKyStaPnt::SetBy_HandTdb, 0.0, 20.0, "negative d"},
        {&CKyStaPnt::SetBy_HandTdb, 120.0, 20.0, "supersaturated"},
        {&CKyStaPnt::SetBy_DandTdb, 50.0, -30.0, "supersaturated"},
        {&CKyStaPnt::SetBy_DandTdb, 1e300, 20.0, "pv >= B"},
        {&CKyStaPnt::SetBy_DandRH, 0.0, 0.5, "dry air has no temperature"},
        {&CKyStaPnt::SetBy_DandRH, 10.0, 0.0, "no temperature"},
        {&CKyStaPnt::SetBy_DandRH, 1e-12, 1.0, "dew point below -100"},
        {&CKyStaPnt::SetBy_DandRH, 1e4, 0.01, "too hot"},
        {&CKyStaPnt::SetBy_HandRH, 1e6, 0.001, "too hot"},
        {&CKyStaPnt::SetBy_HandRH, -200.0, 1.0, "too cold"},
        {&CKyStaPnt::SetBy_TdbandTdp, 20.0, 21.0, "dew point above dry bulb"},
        {&CKyStaPnt::SetBy_TdbandPv, 20.0, 3000.0, "supersaturated"},
        {&CKyStaPnt::SetBy_TdbandPv, 120.0, 101325.0, "pv >= B"},
    };
    for (const Bad& c : bad) {
        CKyStaPnt p;
        ASSERT_TRUE(p.SetBy_TdbandRH(22.0, 0.45));
        p.SetName(L"A");
        const Props before = Read(p);
        EXPECT_FALSE((p.*c.set)(c.a, c.b)) << c.why;
        const std::string text = p.GetLastErrorString().ToUtf8();
        EXPECT_EQ(text.rfind("状态点参数不合法", 0), 0u) << c.why << ": " << text;
        EXPECT_NE(p.GetLastErrorStatus(), Ky::ERR_OK);
        const Props after = Read(p);
        EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0) << c.why;
        EXPECT_EQ(p.GetName(), L"A");
        ASSERT_TRUE(p.SetBy_TdbandRH(22.0, 0.45));  // a success clears the reason
        EXPECT_TRUE(p.GetLastErrorString().IsEmpty());
    }
    CKyStaPnt p;
    EXPECT_FALSE(p.SetBy_TdbandRH(20.0, 1.2));
    EXPECT_NE(p.GetLastErrorString().ToUtf8().find("1.2"), std::string::npos) << "names the input";
}

// Found by fuzzing: near pv = B the enthalpy grows without bound, and the solver of (h, RH)
// took its first short Newton step there for convergence, 5e-5 K short of the root, so RH
// read back 1.7e-6 off.
TEST_F(StaPnt, ShortSolverStepsNearThePoleOfPvAtBAreNotTakenForConvergence)
{
    for (double rh : {0.69373490365003299, 0.3, 1.0})
        for (double h : {1e4, 1e6, 1e8, 1e9}) {
            CKyStaPnt p;
            ASSERT_TRUE(p.SetBy_HandRH(h, rh)) << h << " " << rh;
            EXPECT_TRUE(Near(p.GetRH(), rh, 1e-9, 0.0)) << h << " " << rh << ": " << p.GetRH();
            EXPECT_EQ(p.GetH(), h);
        }
}

// Nothing the caller can pass makes a setter crash, refuse without saying why, or answer a
// non-finite state, in any formulation: the real gas once took d 8.2e107 g/kg, where no dry
// air is left, for a state.
TEST_F(StaPnt, HostileInputsNeverYieldANonFiniteState)
{
    const double v[] = {kNaN, kInf, -kInf, 0.0, -0.0, 4.9e-324, -4.9e-324, 2.2e-308, 1e-12, 0.5, 1.0,
                        1.0 + 1e-10, 25.0, -99.999, 199.999, 1e5, 8.1968770548360781e107, 1e300, -1e300, std::numeric_limits<double>::max()};
    for (Ky::_Formulation f : {Ky::FORMULATION_CHART, Ky::FORMULATION_ASHRAE2017, Ky::FORMULATION_REALGAS})
    for (const SetterCase& s : kSetters)
        for (double a : v)
            for (double b : v) {
                ASSERT_TRUE(CKyChart::InstanceGloble()->SetFormulation(f));
                CKyStaPnt p;
                if (!(p.*s.set)(a, b)) {
                    EXPECT_FALSE(p.GetLastErrorString().IsEmpty()) << s.name << "(" << a << ", " << b << ") says why";
                    continue;
                }
                const Props q = Read(p);
                for (double x : {q.tdb, q.rh, q.d, q.h, q.pv, p.GetV(), p.GetRho()})
                    EXPECT_TRUE(std::isfinite(x)) << f << " " << s.name << "(" << a << ", " << b << ")";
                EXPECT_LE(q.rh, 1.0 + 1e-9);
                EXPECT_GE(q.d, 0.0);
                EXPECT_FALSE(q.twb > q.tdb || q.tdp > q.tdb) << s.name << "(" << a << ", " << b << ")";
            }
}

}  // namespace
