// The settings records and the settings singleton: the behaviour hosts rely on and the edge
// cases of ranges, label content, short names and the draw scale.
#include <kygraph/KyGChartSetting.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

void ExpectCorner(const CKyStaPnt& p, double d, double t)
{
    EXPECT_NEAR(p.GetD(), d, 1e-9);
    EXPECT_NEAR(p.GetTdb(), t, 1e-9);
}

// Tests change the singleton; this puts back what they touch.
class SettingsSingleton : public ::testing::Test {
protected:
    void TearDown() override
    {
        set->m_RangeSetting = saved.m_RangeSetting;
        set->m_dDrawScale = saved.m_dDrawScale;
    }
    CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    const CKyGChartSetting saved{*set};
};

}  // namespace

TEST(RangeSetting, DefaultsAndCornerPoints)
{
    CKyGRangeSetting r;
    EXPECT_EQ(r.GetTRange(), 95.0);
    EXPECT_EQ(r.GetDRange(), 50.0);
    ExpectCorner(r.GetMinDMaxTStaPnt(), 0.0, 65.0);
    ExpectCorner(r.GetMinDMinTStaPnt(), 0.0, -30.0);
    ExpectCorner(r.GetMaxDMaxTStaPnt(), 50.0, 65.0);
    EXPECT_EQ(r.GetMinDMinTH(), r.GetMinDMinTStaPnt().GetH());  // the cache agrees
    EXPECT_EQ(CKyGRangeSetting::m_dValidMinD, 0.0);
}

TEST(RangeSetting, SettersStoreEvenWhenACornerFails)
{
    CKyGRangeSetting r;
    EXPECT_EQ(r.SetMinT(70.0), 1);  // inverted, but every corner is a state
    EXPECT_EQ(r.GetTRange(), 5.0);

    // (50 g/kg, 20 degC) is supersaturated: the third step fails, the first two are current.
    CKyGRangeSetting s;
    ASSERT_EQ(s.SetMaxT(20.0), 0);
    EXPECT_EQ(s.GetMaxT(), 20.0);
    ExpectCorner(s.GetMinDMaxTStaPnt(), 0.0, 20.0);
    ExpectCorner(s.GetMaxDMaxTStaPnt(), 50.0, 65.0);
    EXPECT_EQ(s.GetMaxDMaxTH(), s.GetMaxDMaxTStaPnt().GetH());

    // A negative d fails the first step: every point keeps its state.
    CKyGRangeSetting n;
    EXPECT_EQ(n.SetMinD(-1.0), 0);
    EXPECT_EQ(n.GetMinD(), -1.0);
    ExpectCorner(n.GetMinDMaxTStaPnt(), 0.0, 65.0);

    CKyGRangeSetting assigned;
    assigned = s;
    for (const CKyGRangeSetting& c : {CKyGRangeSetting(s), assigned}) {
        ExpectCorner(c.GetMinDMaxTStaPnt(), 0.0, 20.0);
        EXPECT_EQ(c.GetMinDMaxTH(), s.GetMinDMaxTH());
    }
}

TEST_F(SettingsSingleton, IsRangeValidTestsTheSingletonNotItsArguments)
{
    EXPECT_EQ(CKyGRangeSetting::IsRangeValid(1, 2, 3, 4), 1);
    EXPECT_EQ(CKyGRangeSetting::IsRangeValid(-1000, 1000, -1000, 1000), 1);
    set->m_RangeSetting.SetMaxT(20.0);
    EXPECT_EQ(CKyGRangeSetting::IsRangeValid(-30, 65, 0, 50), 0);
}

TEST(StyleSetting, AssignmentCopiesEveryRecord)
{
    CKyGStyleSetting st, other;
    st.m_SpareStyle.dSpare = 3.5;
    st.m_StaPntStyle.dSize = 9.0;
    other = st;
    EXPECT_EQ(other.m_SpareStyle.dSpare, 3.5);
    EXPECT_EQ(CKyGStyleSetting(st).m_StaPntStyle.dSize, 9.0);
    EXPECT_EQ(other.m_FrameStyle.nTextHeight, 10);
}

TEST(DimContentSetting, BitOperationsReturnThePreviousContent)
{
    CKyGDimContentSetting c;
    for (int bit = 1; bit <= 1024; bit <<= 1) EXPECT_EQ(c.IsDim(static_cast<KYSTAPNTPTY>(bit)), 0);
    EXPECT_EQ(c.AddDimContent(PTY_DB | PTY_H), 0u);
    EXPECT_EQ(c.IsDim(static_cast<KYSTAPNTPTY>(PTY_H | PTY_RHO)), 1);  // any overlap
    EXPECT_EQ(c.RemoveDimContent(PTY_H), 9u);
    EXPECT_EQ(c.SetDimContent(0), 1u);
    EXPECT_EQ(c.GetDimContent(), 0u);
}

TEST(ShortSetting, NamesAndUnknownCodes)
{
    CKyGShortSetting s;
    EXPECT_EQ(s.GetShortName(PTY_RHO), L"\u03C1");
    EXPECT_EQ(s.SetShortName(PTY_DB, L"干球"), L"DB");
    EXPECT_EQ(s.SetShortName(PTY_DB, L"T"), L"干球");
    for (int code : {2048, 3, 0, -1}) EXPECT_EQ(s.GetShortName(static_cast<KYSTAPNTPTY>(code)), L"");
    EXPECT_EQ(s.m_mapShort.GetCount(), 11);  // looking up never inserts
    EXPECT_EQ(s.SetShortName(static_cast<KYSTAPNTPTY>(2048), L"X"), L"");
    EXPECT_EQ(s.GetShortName(static_cast<KYSTAPNTPTY>(2048)), L"X");

    CKyGShortSetting copy(s);
    s.SetShortName(PTY_WB, L"W");
    EXPECT_EQ(copy.GetShortName(PTY_WB), L"WB");
    EXPECT_EQ(copy.m_mapShort.GetCount(), 12);
}

TEST_F(SettingsSingleton, DrawScaleAndRangeLengths)
{
    EXPECT_EQ(CKyGChartSetting::GetKyGChartSetting(), set);
    set->m_dDrawScale = 1.0;
    EXPECT_EQ(set->GetTRangeLength(), 380.0);
    EXPECT_EQ(set->GetDRangeLength(), 500.0);
    for (double refused : {0.49, 0.0, -2.0, std::numeric_limits<double>::quiet_NaN()}) {
        set->SetDrawScale(refused);
        EXPECT_EQ(set->GetDrawScale(), 1.0) << refused;
    }
    const CKyGChartSetting snapshot(*set);
    set->SetDrawScale(0.5);
    EXPECT_EQ(set->GetDrawScale(), 0.5);
    set->SetDrawScale(2.0);
    // A snapshot's lengths follow the live draw scale, not its own.
    EXPECT_EQ(snapshot.m_dDrawScale, 1.0);
    EXPECT_EQ(snapshot.GetTRangeLength(), 760.0);
    EXPECT_EQ(snapshot.GetDRangeLength(), 1000.0);
}
