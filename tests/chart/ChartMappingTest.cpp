// Chart geometry: the oblique enthalpy axis, the corner points, fit to window and the
// mapping between pixels and states in both directions.
#include "ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGraphModule.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {
const wchar_t* const kOutOfRange = L"指定点不在焓湿图的有效范围之内。";
const wchar_t* const kInvalid = L"状态点参数不合法，无法计算。";
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
}  // namespace

using ChartMapping = ChartFixture;

TEST_F(ChartMapping, FitsTheDefaultPageIntoTheWindow)
{
    CImageWnd wnd(1000, 800);
    CKyGChart own;  // any chart's attach places the singleton's origin
    EXPECT_EQ(own.AttachDarwWnd(&wnd), 1);
    EXPECT_EQ(own.GetOrigin(), CPoint(0, 0));
    EXPECT_NEAR(own.GetInitScale(), 760.0 / 460.0, 1e-12);
    EXPECT_EQ(set->GetDrawScale(), own.GetInitScale());
    EXPECT_EQ(chart->GetOrigin(), CPoint(53, 780));
    EXPECT_EQ(chart->GetMinTAndMinDPnt(), CPoint(86, 731));
    EXPECT_EQ(chart->GetChartOrigin(), CPoint(86, 103));
    EXPECT_EQ(chart->GetMaxTAndMaxDPnt(), CPoint(912, 103));
    EXPECT_EQ(chart->GetChartMaxPoint(), CPoint(945, 21));
}

TEST_F(ChartMapping, FitKeepsTheDrawScaleForTinyWindowsAndEverythingForEmptyPages)
{
    set->SetDrawScale(2.0);
    for (int side : {45, 30, 0}) {
        CImageWnd wnd(side, side);
        chart->AttachDarwWnd(&wnd);
        const double w = side - 40.0;
        EXPECT_DOUBLE_EQ(chart->GetInitScale(), std::min(w / 540.0, w / 460.0)) << side;
        EXPECT_EQ(set->GetDrawScale(), 2.0) << side;
    }
    CImageWnd wnd(1000, 800);
    for (double margin : {-270.0, kNaN, std::numeric_limits<double>::infinity()}) {
        set->m_dLeftMargin = set->m_dRightMargin = margin;
        chart->SetOrigin(CPoint(5, 5));
        chart->AttachDarwWnd(&wnd);
        EXPECT_EQ(chart->GetOrigin(), CPoint(5, 5)) << margin;
        EXPECT_DOUBLE_EQ(chart->GetInitScale(), -40.0 / 460.0) << margin;  // from the 0 x 0 window
    }
}

TEST_F(ChartMapping, GetPointFailsOnlyBelowTheReferences)
{
    // h = 1.01 t + 0.001 d (2500 + 1.84 t): about 45 degrees with 4 px/K and 10 px/(g/kg).
    EXPECT_NEAR(chart->GetHAngle(), 0.788, 0.005);
    const CKyGRangeSetting& r = set->m_RangeSetting;
    CPoint pt;
    ASSERT_EQ(chart->GetPoint(r.GetMinDMaxTH(), 0.0, pt), 1);
    EXPECT_EQ(pt, chart->GetChartOrigin());
    ASSERT_EQ(chart->GetPoint(r.GetMaxDMaxTH() + 10.0, 60.0, pt), 1);
    EXPECT_GT(pt.x, chart->GetMaxTAndMaxDPnt().x);

    pt = CPoint(7, 7);
    EXPECT_EQ(chart->GetPoint(50.0, -1.0, pt), 0);
    EXPECT_EQ(pt, CPoint(7, 7));
    EXPECT_EQ(chart->GetPoint(-100.0, 10.0, pt), 0);
    EXPECT_EQ(pt, CPoint(chart->GetChartOrigin().x + 100, 7));  // x is written before the h test
}

TEST_F(ChartMapping, ConvertReportsItsOwnStringsWhateverModuleIsCurrent)
{
    static const KyStringEntry foreign[] = {{103, "other"}, {104, "other"}};
    const CResourceModule other("Other", foreign, 2);
    CResourceModule::Scope scope(other);

    const CPoint l = chart->GetMinTAndMinDPnt(), o = chart->GetChartOrigin(), m = chart->GetMaxTAndMaxDPnt();
    const struct {
        CPoint pt;
        const wchar_t* text;
    } failures[] = {
        {CPoint(o.x - 1, l.y - 50), kOutOfRange},  // left of the left edge
        {CPoint(l.x, l.y + 5), kOutOfRange},       // below the bottom enthalpy line
        {CPoint(o.x + 1, o.y - 20), kOutOfRange},  // above the maximum temperature
        {CPoint(m.x, l.y), kInvalid},              // supersaturated
    };
    for (const auto& f : failures) {
        chart->SetLastErrorString(L"");
        EXPECT_EQ(chart->IsValid(f.pt), 0);
        EXPECT_EQ(chart->GetLastErrorString(), f.text) << f.pt.x << "," << f.pt.y;
    }
    CPoint pt;
    chart->SetLastErrorString(L"");
    EXPECT_EQ(chart->Convert(CKyStaPnt(), pt), 0);  // never set: NaN everywhere
    EXPECT_EQ(chart->GetLastErrorString(), kOutOfRange);
    EXPECT_STREQ(CResourceModule::Current().Name(), "Other");
}

TEST_F(ChartMapping, EveryPlotPixelMapsBackToItself)
{
    const CPoint l = chart->GetMinTAndMinDPnt(), o = chart->GetChartOrigin(), m = chart->GetMaxTAndMaxDPnt();
    int converted = 0;
    for (int y = o.y; y <= l.y; ++y) {
        for (int x = o.x; x <= m.x; ++x) {
            CKyStaPnt pnt;
            if (!chart->Convert(CPoint(x, y), pnt)) continue;
            ++converted;
            CPoint back;
            ASSERT_EQ(chart->Convert(pnt, back), 1) << x << "," << y;
            ASSERT_LE(std::abs(back.x - x), 1) << x << "," << y;
            ASSERT_LE(std::abs(back.y - y), 1) << x << "," << y;
        }
    }
    EXPECT_GT(converted, 50000);
}

TEST_F(ChartMapping, StateDirectionIsMoreTolerantThanPixelDirection)
{
    // At 4e8 pixels per kelvin a pixel is fine enough to carry an excess of 1e-7 K.
    set->m_RangeSetting.SetMinT(64.0);
    set->m_RangeSetting.SetMaxD(1.0);
    set->m_dLeftMargin = set->m_dBottomMargin = 0.0;
    set->SetDrawScale(1e8);

    CKyStaPnt top, above;
    ASSERT_TRUE(top.SetBy_DandTdb(0.0, 65.0));
    ASSERT_TRUE(above.SetBy_DandTdb(0.0, 65.0 + 1e-7));
    CPoint pTop, pAbove;
    ASSERT_EQ(chart->Convert(top, pTop), 1);
    ASSERT_EQ(chart->Convert(above, pAbove), 1);
    EXPECT_NEAR(pAbove.y - pTop.y, -40, 1);

    CKyStaPnt back;
    EXPECT_EQ(chart->Convert(pTop, back), 1);
    EXPECT_EQ(chart->Convert(pAbove, back), 0);
    EXPECT_EQ(chart->GetLastErrorString(), kOutOfRange);
    EXPECT_NEAR(back.GetTdb(), 65.0 + 1e-7, 1e-8);  // the state set stays in the point
}

TEST_F(ChartMapping, DegenerateRangesFailTheMapping)
{
    const double ranges[][4] = {{-30, -30, 0, 50}, {-30, 65, 0, 0}, {20, 20, 10, 10}, {kNaN, 65, 0, kNaN}};
    for (const auto& r : ranges) {
        set->m_RangeSetting = saved.m_RangeSetting;
        set->m_RangeSetting.SetMinT(r[0]), set->m_RangeSetting.SetMaxT(r[1]);
        set->m_RangeSetting.SetMinD(r[2]), set->m_RangeSetting.SetMaxD(r[3]);
        CPoint pt;
        CKyStaPnt pnt;
        ASSERT_TRUE(pnt.SetBy_DandTdb(10.0, 20.0));
        const bool degenerate = r[0] == r[1] || r[2] == r[3];  // NaN: anything but a crash
        EXPECT_TRUE(chart->GetPoint(40.0, 10.0, pt) == 0 || !degenerate);
        EXPECT_TRUE(chart->Convert(pnt, pt) == 0 || !degenerate);
        EXPECT_TRUE(chart->Convert(CPoint(100, -100), pnt) == 0 || !degenerate);
    }
}

TEST(StringTables, EveryEntryIsThereInBothLanguagesAndTheChosenOneLoads)
{
    // The same ids in each table (on Windows the English entries sit at an offset in the DLL's
    // resource); English entries hold no Chinese, and the choice picks the table.
    auto chinese = [](const CString& s) {
        for (wchar_t c : std::wstring(s.GetString()))
            if (c >= 0x4E00 && c <= 0x9FFF) return true;
        return false;
    };
    for (UINT id = IDS_KYGRAPH_NAME; id <= IDS_HRULER_KCAL; ++id) {
        CString zh, en;
        ASSERT_TRUE(KyGraphModule(KyGraphLanguage::Chinese).Load(id, zh)) << id;
        ASSERT_TRUE(KyGraphModule(KyGraphLanguage::English).Load(id, en)) << id;
        EXPECT_FALSE(chinese(en)) << id;
        EXPECT_EQ(zh == en, id == IDS_KYGRAPH_NAME) << id;
    }
    for (KyGraphLanguage language : {KyGraphLanguage::English, KyGraphLanguage::Chinese}) {
        KyGraphSetLanguage(language);
        CString title;
        CResourceModule::Scope scope(KyGraphModule());
        ASSERT_TRUE(title.LoadString(IDS_CHART_TITLE));
        EXPECT_EQ(title, language == KyGraphLanguage::English ? L"Psychrometric Chart of Moist Air" : L"湿空气焓湿图");
    }
}
