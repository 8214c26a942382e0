// CKyAS and CKyProcess: ratios from states and their texts, the HVAC process builders checked
// against the balances they must satisfy, and the containers the chart reads.
#include <kygraph/KyAS.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyProcess.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

CKyStaPnt State(double t, double rh, const wchar_t* name = L"")
{
    CKyStaPnt p;
    EXPECT_TRUE(p.SetBy_TdbandRH(t, rh));
    p.SetName(name);
    return p;
}

TEST(HeatMoistureRatio, KindsAndTexts)
{
    CKyAS as;
    EXPECT_EQ(as.GetType(), CKyAS::AS_FINITE);
    EXPECT_EQ(as.OutputString(1), L"ε=0");
    const CKyStaPnt a = State(20.0, 0.5);
    CKyStaPnt heated;
    ASSERT_TRUE(heated.SetBy_DandTdb(a.GetD(), 30.0));
    ASSERT_TRUE(as.SetByStates(a, heated));
    EXPECT_EQ(as.GetType(), CKyAS::AS_POSITIVE_INF);
    EXPECT_EQ(as.OutputString(1), L"ε=∞");
    ASSERT_TRUE(as.SetByStates(heated, a));
    EXPECT_EQ(as.GetType(), CKyAS::AS_NEGATIVE_INF);
    EXPECT_EQ(as.OutputString(1), L"ε=-∞");
    EXPECT_FALSE(as.SetByStates(a, a));  // no process, no direction
    EXPECT_EQ(as.GetType(), CKyAS::AS_NEGATIVE_INF);
    EXPECT_FALSE(as.SetByStates(a, CKyStaPnt()));

    CKyStaPnt b;
    ASSERT_TRUE(b.SetBy_HandD(a.GetH() + 10.0, a.GetD() + 2.0));
    ASSERT_TRUE(as.SetByStates(a, b));
    EXPECT_EQ(as.GetType(), CKyAS::AS_FINITE);
    EXPECT_NEAR(as.GetValue(), 5000.0, 1e-6);
    EXPECT_EQ(as.OutputString(1), L"ε=5000");
    ASSERT_TRUE(as.SetValue(-2537.25));
    EXPECT_EQ(as.OutputString(1), L"ε=-2537.2");
    EXPECT_EQ(as.OutputString(3), L"ε=-2537.25");
    for (double bad : {double(NAN), double(INFINITY)}) EXPECT_FALSE(as.SetValue(bad));
    EXPECT_EQ(as.GetValue(), -2537.25);
    ASSERT_TRUE(as.SetValue(1e300));
    EXPECT_LT(as.OutputString(1000).GetLength(), 20);
    const CKyAS copy(as);
    EXPECT_EQ(copy.GetValue(), 1e300);
    EXPECT_EQ(copy.toString(), L"CKyAS");
}

TEST(Process, MixingConservesMassAndEnergy)
{
    CKyProcess proc;
    const CKyStaPnt out = State(34.0, 0.55, L"W"), in = State(26.0, 0.5, L"N");
    CKyStaPnt mix;
    ASSERT_TRUE(proc.AddMixing(L"混合", out, 1.0, in, 3.0, &mix));
    EXPECT_NEAR(mix.GetH(), (out.GetH() + 3 * in.GetH()) / 4, 1e-12);
    EXPECT_NEAR(mix.GetD(), (out.GetD() + 3 * in.GetD()) / 4, 1e-12);
    // Mixing saturated cold air with warm moist air can make fog: refused, nothing added.
    EXPECT_FALSE(proc.AddMixing(L"雾", State(-10.0, 1.0), 1.0, State(40.0, 0.95), 1.0));
    EXPECT_FALSE(proc.AddMixing(L"x", out, -1.0, in, 1.0));
    EXPECT_FALSE(proc.AddMixing(L"x", out, 0.0, in, 0.0));
    EXPECT_FALSE(proc.AddMixing(L"混合", out, 1.0, in, 1.0));  // name already used
    EXPECT_TRUE(proc.AddMixing(L"大风量", out, 1e308, in, 1e308));
    EXPECT_EQ(proc.GetPathCount(), 2);
}

TEST(Process, BuildersReachTheirTargets)
{
    CKyProcess proc;
    const CKyStaPnt s = State(20.0, 0.4);
    CKyStaPnt e;
    ASSERT_TRUE(proc.AddSensible(L"加热", s, 35.0, &e));
    EXPECT_EQ(e.GetD(), s.GetD());
    EXPECT_NEAR(e.GetTdb(), 35.0, 1e-12);
    EXPECT_FALSE(proc.AddSensible(L"过冷", s, -20.0));  // below the dew point: not sensible

    ASSERT_TRUE(proc.AddAdiabaticHumidify(L"喷雾", s, 0.9, &e));
    EXPECT_EQ(e.GetH(), s.GetH());
    EXPECT_NEAR(e.GetRH(), 0.9, 1e-9);
    EXPECT_FALSE(proc.AddAdiabaticHumidify(L"减湿", s, 0.2));

    ASSERT_TRUE(proc.AddSteamHumidify(L"蒸汽", s, s.GetD() + 5.0, 100.0, &e));
    EXPECT_NEAR(e.GetTdb(), s.GetTdb(), 1.0);  // steam humidification is nearly isothermal
    EXPECT_GT(e.GetTdb(), s.GetTdb());

    const CKyStaPnt hot = State(30.0, 0.6), coil = State(14.0, 0.95);
    ASSERT_TRUE(proc.AddCoolingDehumidify(L"表冷", hot, coil));
    EXPECT_FALSE(proc.AddCoolingDehumidify(L"反向", coil, hot));

    CKyAS eps;
    ASSERT_TRUE(eps.SetValue(2000.0));
    for (CKyProcess::_EnKyTarget target : {CKyProcess::TARGET_D, CKyProcess::TARGET_H, CKyProcess::TARGET_RH}) {
        const double value = target == CKyProcess::TARGET_D ? s.GetD() + 3.0
                           : target == CKyProcess::TARGET_H ? s.GetH() + 5.0 : 0.8;
        const CString name = CString(L"ε") + CString(std::to_wstring(target));
        ASSERT_TRUE(proc.AddRatioProcess(name, s, eps, target, value, &e)) << proc.GetLastErrorString().ToUtf8();
        CKyAS back;
        ASSERT_TRUE(back.SetByStates(s, e));
        EXPECT_NEAR(back.GetValue(), 2000.0, 1e-6);
        const double reached = target == CKyProcess::TARGET_D ? e.GetD()
                             : target == CKyProcess::TARGET_H ? e.GetH() : e.GetRH();
        EXPECT_NEAR(reached, value, 1e-9 * std::fabs(value));
    }
    ASSERT_TRUE(eps.SetType(CKyAS::AS_NEGATIVE_INF));
    ASSERT_TRUE(proc.AddRatioProcess(L"冷却到 70%", s, eps, CKyProcess::TARGET_RH, 0.7, &e));
    EXPECT_EQ(e.GetD(), s.GetD());
    EXPECT_NEAR(e.GetRH(), 0.7, 1e-9);
    EXPECT_FALSE(proc.AddRatioProcess(L"方向错", s, eps, CKyProcess::TARGET_RH, 0.2));
    EXPECT_FALSE(proc.AddRatioProcess(L"无终点", s, eps, CKyProcess::TARGET_D, 5.0));
    EXPECT_FALSE(proc.AddRatioProcess(L"坏类型", s, eps, static_cast<CKyProcess::_EnKyTarget>(9), 5.0));
}

// Found by fuzzing: a state at the top of the range derives its dry bulb a rounding error
// above 200 °C, where the search for a relative humidity along a ratio read NaN; the NaN
// passed for a sign change, and the process ended at its own start instead of where the
// line reaches that humidity.
TEST(Process, RatioToAHumidityFromTheTopOfTheRangeReachesIt)
{
    CKyStaPnt top;
    ASSERT_TRUE(top.SetBy_HandD(205.52810086526577, 1.2301606922126083));
    ASSERT_EQ(top.GetTdb(), 200.0);  // derived just above the end, stored as the end itself
    CKyAS eps;
    ASSERT_TRUE(eps.SetValue(194621.70035682118));
    CKyProcess proc;
    for (double rh : {2.8219784007352903e-05, 1e-3}) {
        CKyStaPnt e;
        ASSERT_TRUE(proc.AddRatioProcess(CString(std::to_wstring(rh).c_str()), top, eps, CKyProcess::TARGET_RH, rh, &e));
        EXPECT_NEAR(e.GetRH(), rh, 1e-9 * rh);
        EXPECT_LT(e.GetD(), top.GetD());
    }
}

// Found by fuzzing: along the 200 °C isotherm (ε = 2868 kJ/kg) from air of 3.5e8 g/kg, the
// dry bulb rounds to either side of the range's end, so the search met states outside the
// model between the ends of its bracket; the bisection took them for a side of the root and
// ended at RH 0.06 when asked for 3.6e-18.
TEST(Process, RatioThroughStatesOutsideTheModelNeverEndsOffItsTarget)
{
    CKyStaPnt steam;
    ASSERT_TRUE(steam.SetBy_HandD(1e9, 348674964.43514645));
    CKyAS isotherm;
    ASSERT_TRUE(isotherm.SetValue(2868.0));
    CKyProcess proc;
    for (double rh : {3.6429192995512951e-18, 1e-6, 0.01, 0.05}) {
        CKyStaPnt e;
        if (proc.AddRatioProcess(CString(std::to_wstring(rh).c_str()), steam, isotherm, CKyProcess::TARGET_RH, rh, &e))
            EXPECT_NEAR(e.GetRH(), rh, 1e-9 * rh) << rh;
        else
            EXPECT_FALSE(e.IsValid()) << rh;
    }
}

TEST(Process, ChartReadsPathsInOrderAndEachPointOnce)
{
    CKyProcess proc;
    CKyStaPnt a = State(30.0, 0.5, L"A"), b = State(20.0, 0.6, L"B"), c = State(25.0, 0.3, L"C");
    CKyStaPntArray p1, p2, bad;
    p1.Add(a);
    p1.Add(b);
    p2.Add(b);
    p2.Add(c);
    ASSERT_TRUE(proc.AddPath(L"第一段", p1));
    ASSERT_TRUE(proc.AddPath(L"第二段", p2));
    CKyStaPnt unset;
    bad.Add(unset);
    EXPECT_FALSE(proc.AddPath(L"坏", bad));
    EXPECT_FALSE(proc.AddPath(L"", p1));
    EXPECT_FALSE(proc.AddPath(L"空", CKyStaPntArray()));

    const CKyProcess copy(proc);
    proc.RemoveAll();
    CKyPathMap paths;
    CKyStaPntArray points;
    paths.SetAt(L"stale", p1);
    ASSERT_TRUE(copy.GetAllProcess(paths));
    ASSERT_TRUE(copy.GetAllPnt(points));
    ASSERT_EQ(paths.GetCount(), 2);
    POSITION pos = paths.GetStartPosition();
    CString name;
    CKyStaPntArray path;
    paths.GetNextAssoc(pos, name, path);
    EXPECT_EQ(name, L"第一段");
    ASSERT_EQ(path.GetSize(), 2);
    EXPECT_EQ(path[1].GetName(), L"B");
    ASSERT_EQ(points.GetSize(), 3);
    EXPECT_EQ(points[0].GetName(), L"A");
    EXPECT_EQ(points[1].GetName(), L"B");
    EXPECT_EQ(points[2].GetName(), L"C");
    EXPECT_EQ(proc.GetPathCount(), 0);
    EXPECT_STREQ(paths.GetRuntimeClassName(), "CKyMap");
    EXPECT_STREQ(points.GetRuntimeClassName(), "CKyArray");
}

}  // namespace
