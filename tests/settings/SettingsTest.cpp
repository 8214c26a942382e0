// The settings records and the settings singleton: defaults, operations and edge cases.
#include <kygraph/KyGChartSetting.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// Tests change the singleton; this puts back what they touch.
class SettingsSingleton : public ::testing::Test {
protected:
    void TearDown() override
    {
        set->m_RangeSetting = saved.m_RangeSetting;
        set->m_dDrawScale = saved.m_dDrawScale;
    }
    CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    CKyGChartSetting saved{*CKyGChartSetting::GetKyGChartSetting()};
};

void ExpectCorner(const CKyStaPnt& p, double d, double t)
{
    EXPECT_NEAR(p.GetD(), d, 1e-9);
    EXPECT_NEAR(p.GetTdb(), t, 1e-9);
}

}  // namespace

TEST(RangeSetting, DefaultsAndCornerPoints)
{
    CKyGRangeSetting r;
    EXPECT_EQ(r.GetMinT(), -30.0);
    EXPECT_EQ(r.GetMaxT(), 65.0);
    EXPECT_EQ(r.GetMinD(), 0.0);
    EXPECT_EQ(r.GetMaxD(), 50.0);
    EXPECT_EQ(r.GetTRange(), 95.0);
    EXPECT_EQ(r.GetDRange(), 50.0);
    ExpectCorner(r.GetMinDMaxTStaPnt(), 0.0, 65.0);
    ExpectCorner(r.GetMinDMinTStaPnt(), 0.0, -30.0);
    ExpectCorner(r.GetMaxDMaxTStaPnt(), 50.0, 65.0);
    // The cached h and d agree with the points they stand for.
    EXPECT_EQ(r.GetMinDMinTH(), r.GetMinDMinTStaPnt().GetH());
    EXPECT_EQ(r.GetMaxDMaxTD(), r.GetMaxDMaxTStaPnt().GetD());
    EXPECT_EQ(r.toString(), L"CKyGRangeSetting");
}

TEST(RangeSetting, SettersStoreEvenWhenACornerFails)
{
    CKyGRangeSetting r;
    EXPECT_EQ(r.SetMinT(70.0), 1);  // inverted, but every corner is a state
    EXPECT_EQ(r.GetTRange(), 5.0);
    ExpectCorner(r.GetMinDMinTStaPnt(), 0.0, 70.0);

    // (50 g/kg, 65 degC) fails the third step only: the first two are current.
    CKyGRangeSetting s;
    ASSERT_EQ(s.SetMaxT(20.0), 0);
    EXPECT_EQ(s.GetMaxT(), 20.0);
    ExpectCorner(s.GetMinDMaxTStaPnt(), 0.0, 20.0);
    ExpectCorner(s.GetMaxDMaxTStaPnt(), 50.0, 65.0);
    EXPECT_NEAR(s.GetMaxDMaxTH(), s.GetMaxDMaxTStaPnt().GetH(), 0.0);

    // A negative d fails the first step: every point keeps its state.
    CKyGRangeSetting n;
    EXPECT_EQ(n.SetMinD(-1.0), 0);
    EXPECT_EQ(n.GetMinD(), -1.0);
    ExpectCorner(n.GetMinDMaxTStaPnt(), 0.0, 65.0);
    ExpectCorner(n.GetMinDMinTStaPnt(), 0.0, -30.0);

    CKyGRangeSetting copy(s);
    CKyGRangeSetting assigned;
    assigned = s;
    for (const CKyGRangeSetting* c : {&copy, &assigned}) {
        EXPECT_EQ(c->GetMaxT(), 20.0);
        ExpectCorner(c->GetMinDMaxTStaPnt(), 0.0, 20.0);
        EXPECT_EQ(c->GetMinDMaxTH(), s.GetMinDMaxTH());
    }
}

TEST(RangeSetting, ClassWideLimits)
{
    EXPECT_EQ(CKyGRangeSetting::m_dValidMinT, -80.0);
    EXPECT_EQ(CKyGRangeSetting::m_dValidMaxT, 90.0);
    EXPECT_EQ(CKyGRangeSetting::m_dValidMinD, 0.0);
    EXPECT_EQ(CKyGRangeSetting::m_dValidMaxD, 200.0);
}

TEST_F(SettingsSingleton, IsRangeValidTestsTheSingletonNotItsArguments)
{
    EXPECT_EQ(CKyGRangeSetting::IsRangeValid(1, 2, 3, 4), 1);
    EXPECT_EQ(CKyGRangeSetting::IsRangeValid(-1000, 1000, -1000, 1000), 1);
    set->m_RangeSetting.SetMaxT(20.0);  // (50 g/kg, 20 degC) is supersaturated
    EXPECT_EQ(CKyGRangeSetting::IsRangeValid(-30, 65, 0, 50), 0);
}

TEST(StyleRecords, Defaults)
{
    tagKyLineStyle line;
    EXPECT_EQ(line.crColor, RGB(192, 192, 192));
    EXPECT_EQ(line.nPenStyle, PS_SOLID);
    EXPECT_EQ(line.nWidth, 1);
    EXPECT_EQ(line.nTextHeight, 7);
    EXPECT_EQ(line.dSpare, 0.0);
    tagKyPntStyle pnt;
    EXPECT_EQ(pnt.crColor, RGB(0, 255, 0));
    EXPECT_EQ(pnt.dSize, 5.0);
    EXPECT_EQ(pnt.nTextHeight, 7);
}

TEST(StyleSetting, ConstructorOverridesAndCopy)
{
    CKyGStyleSetting st;
    const struct {
        const tagKyLineStyle& style;
        COLORREF color;
        int width, textHeight;
    } expected[] = {
        {st.m_SameDStyle, RGB(111, 127, 63), 1, 7},  {st.m_SameHStyle, RGB(63, 111, 63), 1, 7},
        {st.m_SameTStyle, RGB(255, 191, 127), 1, 7}, {st.m_SameRHStyle, RGB(103, 82, 165), 1, 7},
        {st.m_SameASStyle, RGB(0, 41, 165), 2, 7},   {st.m_ProcessStyle, RGB(255, 0, 0), 2, 7},
        {st.m_ASChartStyle, RGB(128, 128, 128), 1, 7}, {st.m_FrameStyle, RGB(128, 128, 128), 2, 10},
        {st.m_SpareStyle, RGB(128, 128, 128), 1, 7},
    };
    for (const auto& e : expected) {
        EXPECT_EQ(e.style.crColor, e.color);
        EXPECT_EQ(e.style.nPenStyle, PS_SOLID);
        EXPECT_EQ(e.style.nWidth, e.width);
        EXPECT_EQ(e.style.nTextHeight, e.textHeight);
    }
    EXPECT_EQ(st.m_StaPntStyle.crColor, RGB(0, 255, 0));

    CKyGStyleSetting other;
    st.m_SpareStyle.dSpare = 3.5;
    st.m_StaPntStyle.dSize = 9.0;
    st.m_SameTStyle.nPenStyle = PS_DOT;
    other = st;
    EXPECT_EQ(other.m_SpareStyle.dSpare, 3.5);
    EXPECT_EQ(other.m_StaPntStyle.dSize, 9.0);
    EXPECT_EQ(CKyGStyleSetting(st).m_SameTStyle.nPenStyle, PS_DOT);
}

TEST(DrawHstSetting, DefaultsAndIndependentCopy)
{
    CKyGDrawHstSetting h;
    EXPECT_EQ(h.m_dPressure, 101325.0);
    EXPECT_EQ(h.m_dRHInterval, 10.0);
    EXPECT_EQ(h.m_nSpare, 8);
    EXPECT_EQ(h.m_strCity, L"北京");
    EXPECT_EQ(h.m_bShowASChart + h.m_bShowSameT + h.m_bShowSameD + h.m_bShowSameH + h.m_bShowSameRH + h.m_bShowTitle, 6);
    EXPECT_EQ(h.m_bWinter, 0);
    EXPECT_EQ(h.m_dSummerOutTwb, 26.4);
    EXPECT_EQ(h.m_dWinterOutTdb, -9.8);

    CKyGDrawHstSetting copy(h);
    copy.m_strCity = L"上海";
    EXPECT_EQ(h.m_strCity, L"北京");
    h.m_dTInterval = 2.0;
    copy = h;
    EXPECT_EQ(copy.m_dTInterval, 2.0);
    EXPECT_EQ(copy.m_strCity, L"北京");
}

TEST(DimContentSetting, BitOperationsReturnThePreviousContent)
{
    CKyGDimContentSetting c;
    EXPECT_EQ(c.GetDimContent(), 0u);
    EXPECT_EQ(c.m_nSpare, 1);
    for (int bit = 1; bit <= 1024; bit <<= 1) EXPECT_EQ(c.IsDim(static_cast<KYSTAPNTPTY>(bit)), 0);
    EXPECT_EQ(c.AddDimContent(PTY_DB | PTY_H), 0u);
    EXPECT_EQ(c.GetDimContent(), 9u);
    EXPECT_EQ(c.IsDim(static_cast<KYSTAPNTPTY>(PTY_H | PTY_RHO)), 1);  // any overlap
    EXPECT_EQ(c.RemoveDimContent(PTY_H), 9u);
    EXPECT_EQ(c.GetDimContent(), 1u);
    EXPECT_EQ(c.SetDimContent(0), 1u);
    EXPECT_EQ(c.GetDimContent(), 0u);
}

TEST(ShortSetting, NamesLookupsAndUnknownCodes)
{
    CKyGShortSetting s;
    EXPECT_EQ(s.m_mapShort.GetCount(), 11);
    EXPECT_EQ(s.GetShortName(PTY_DB), L"DB");
    EXPECT_EQ(s.GetShortName(PTY_RHO), L"\u03C1");
    EXPECT_EQ(s.GetShortName(PTY_RHO).GetLength(), 1);

    EXPECT_EQ(s.SetShortName(PTY_DB, L"干球"), L"DB");
    EXPECT_EQ(s.SetShortName(PTY_DB, L"T"), L"干球");

    for (int code : {2048, 3, 0, -1}) {
        EXPECT_EQ(s.GetShortName(static_cast<KYSTAPNTPTY>(code)), L"");
        EXPECT_EQ(s.m_mapShort.GetCount(), 11);
    }
    EXPECT_EQ(s.SetShortName(static_cast<KYSTAPNTPTY>(2048), L"X"), L"");
    EXPECT_EQ(s.GetShortName(static_cast<KYSTAPNTPTY>(2048)), L"X");

    CKyGShortSetting copy(s);
    s.SetShortName(PTY_WB, L"W");
    EXPECT_EQ(copy.GetShortName(PTY_WB), L"WB");
    EXPECT_EQ(copy.GetShortName(PTY_DB), L"T");
    EXPECT_EQ(copy.m_mapShort.GetCount(), 12);
}

TEST_F(SettingsSingleton, DefaultsAndRangeLengths)
{
    EXPECT_EQ(CKyGChartSetting::GetKyGChartSetting(), set);
    EXPECT_EQ(set->m_dLeftMargin, 20.0);
    EXPECT_EQ(set->m_dRightMargin, 20.0);
    EXPECT_EQ(set->m_dBottomMargin, 30.0);
    EXPECT_EQ(set->m_dTopMargin, 50.0);
    EXPECT_EQ(set->m_dTLength, 4.0);
    EXPECT_EQ(set->m_dDLength, 10.0);
    set->m_dDrawScale = 1.0;
    EXPECT_EQ(set->GetTRangeLength(), 380.0);
    EXPECT_EQ(set->GetDRangeLength(), 500.0);
}

TEST_F(SettingsSingleton, SetDrawScaleAcceptsHalfAndAbove)
{
    set->m_dDrawScale = 1.0;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double refused : {0.49, 0.0, -2.0, nan, -std::numeric_limits<double>::infinity()}) {
        set->SetDrawScale(refused);
        EXPECT_EQ(set->GetDrawScale(), 1.0) << refused;
    }
    set->SetDrawScale(0.5);
    EXPECT_EQ(set->GetDrawScale(), 0.5);
    set->SetDrawScale(1000.0);
    EXPECT_EQ(set->GetDrawScale(), 1000.0);
}

TEST_F(SettingsSingleton, SnapshotRangeLengthsFollowTheLiveDrawScale)
{
    set->m_dDrawScale = 1.0;
    const CKyGChartSetting snapshot(*set);
    set->SetDrawScale(2.0);
    EXPECT_EQ(snapshot.m_dDrawScale, 1.0);
    EXPECT_EQ(snapshot.GetTRangeLength(), 760.0);
    EXPECT_EQ(snapshot.GetDRangeLength(), 1000.0);
}

TEST(SettingsNames, ToStringOfEveryClass)
{
    EXPECT_EQ(CKyGChartSetting::GetKyGChartSetting()->toString(), L"CKyGChartSetting");
    EXPECT_EQ(CKyGStyleSetting().toString(), L"CKyGStyleSetting");
    EXPECT_EQ(CKyGDrawHstSetting().toString(), L"CKyGDrawHstSetting");
    EXPECT_EQ(CKyGDimContentSetting().toString(), L"CKyGDimContentSetting");
    EXPECT_EQ(CKyGShortSetting().toString(), L"CKyGShortSetting");
}
