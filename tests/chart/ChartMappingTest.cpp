// Chart geometry: the oblique enthalpy axis, the corner points, fit to window and the
// mapping between pixels and states in both directions.
#include "ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGraphModule.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

namespace {

const wchar_t* const kOutOfRange = L"指定点不在焓湿图的有效范围之内。";
const wchar_t* const kInvalid = L"状态点参数不合法，无法计算。";

}  // namespace

using ChartMapping = ChartFixture;

TEST_F(ChartMapping, FitsTheDefaultPageIntoTheWindow)
{
    CImageWnd wnd(1000, 800);
    EXPECT_EQ(chart->AttachDarwWnd(&wnd), 1);
    EXPECT_NEAR(chart->GetInitScale(), 760.0 / 460.0, 1e-12);
    EXPECT_EQ(set->GetDrawScale(), chart->GetInitScale());
    EXPECT_EQ(chart->GetZoomScale(), 1.0);
    EXPECT_EQ(chart->GetOrigin(), CPoint(53, 780));
    EXPECT_EQ(chart->GetMinTAndMinDPnt(), CPoint(86, 731));
    EXPECT_EQ(chart->GetChartOrigin(), CPoint(86, 103));
    EXPECT_EQ(chart->GetMaxTAndMaxDPnt(), CPoint(912, 103));
    EXPECT_EQ(chart->GetChartMaxPoint(), CPoint(945, 21));
}

TEST_F(ChartMapping, EnthalpyAxisIsFixedAtConstruction)
{
    // h = 1.01 t + 0.001 d (2500 + 1.84 t): about 45 degrees with 4 px/K and 10 px/(g/kg).
    const double a = chart->GetHAngle();
    EXPECT_NEAR(a, 0.788, 0.005);
    EXPECT_NEAR(chart->GetPerHLength(), 380.0 * std::cos(a) / (1.01 * 95.0), 1e-3);
    EXPECT_EQ(chart->toString(), L"CKyGChart");
}

TEST_F(ChartMapping, GetPointFailsOnlyBelowTheReferences)
{
    const CKyGRangeSetting& r = set->m_RangeSetting;
    CPoint pt;
    ASSERT_EQ(chart->GetPoint(r.GetMinDMinTH(), 0.0, pt), 1);
    EXPECT_EQ(pt, chart->GetMinTAndMinDPnt());
    ASSERT_EQ(chart->GetPoint(r.GetMinDMaxTH(), 0.0, pt), 1);
    EXPECT_EQ(pt, chart->GetChartOrigin());

    ASSERT_EQ(chart->GetPoint(r.GetMaxDMaxTH() + 10.0, 60.0, pt), 1);
    EXPECT_GT(pt.x, chart->GetMaxTAndMaxDPnt().x);

    pt = CPoint(7, 7);
    EXPECT_EQ(chart->GetPoint(50.0, -1.0, pt), 0);
    EXPECT_EQ(pt, CPoint(7, 7));
    EXPECT_EQ(chart->GetPoint(-100.0, 10.0, pt), 0);
    EXPECT_EQ(pt, CPoint(chart->GetChartOrigin().x + 100, 7));  // x written before the h test
}

TEST_F(ChartMapping, ConvertReportsItsOwnStringsWhateverModuleIsCurrent)
{
    static const KyStringEntry foreign[] = {{103, "other"}, {104, "other"}};
    const CResourceModule other("Other", foreign, 2);
    CResourceModule::Scope scope(other);

    const CPoint l = chart->GetMinTAndMinDPnt(), o = chart->GetChartOrigin(), m = chart->GetMaxTAndMaxDPnt();
    CKyStaPnt pnt;
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
        EXPECT_EQ(chart->Convert(f.pt, pnt), 0);
        EXPECT_EQ(chart->GetLastErrorString(), f.text) << f.pt.x << "," << f.pt.y;
        EXPECT_EQ(chart->IsValid(f.pt), 0);
    }

    CPoint pt;
    CKyStaPnt empty;  // never set: NaN everywhere
    chart->SetLastErrorString(L"");
    EXPECT_EQ(chart->Convert(empty, pt), 0);
    EXPECT_EQ(chart->GetLastErrorString(), kOutOfRange);
    CKyStaPnt hot;
    ASSERT_TRUE(hot.SetBy_DandTdb(0.0, 65.0 + 2e-6));
    EXPECT_EQ(chart->Convert(hot, pt), 0);
    EXPECT_STREQ(CResourceModule::Current().Name(), "Other");  // and is current again afterwards
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

    CKyStaPnt top;
    ASSERT_TRUE(top.SetBy_DandTdb(0.0, 65.0));
    CKyStaPnt above;
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

TEST_F(ChartMapping, WindowTooSmallForThePage)
{
    set->SetDrawScale(2.0);
    for (int side : {30, 45, 1, 0}) {
        CImageWnd wnd(side, side);
        chart->AttachDarwWnd(&wnd);
        const double w = side - 40.0;
        EXPECT_DOUBLE_EQ(chart->GetInitScale(), std::min(w / 540.0, w / 460.0)) << side;
        EXPECT_EQ(set->GetDrawScale(), 2.0) << side;
    }
}

TEST_F(ChartMapping, PageWithoutSizeKeepsScaleAndOrigin)
{
    CImageWnd wnd(1000, 800);
    chart->AttachDarwWnd(&wnd);
    const double scale = chart->GetInitScale();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double margin : {-1000.0, -270.0, nan, std::numeric_limits<double>::infinity()}) {
        set->m_dLeftMargin = set->m_dRightMargin = margin;
        chart->SetOrigin(CPoint(5, 5));
        EXPECT_EQ(chart->AttachDarwWnd(&wnd), 1);
        EXPECT_EQ(chart->GetOrigin(), CPoint(5, 5)) << margin;
        EXPECT_EQ(chart->GetInitScale(), scale) << margin;
    }
}

TEST_F(ChartMapping, DegenerateRangesFailTheMapping)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double minT, maxT, minD, maxD;
    } ranges[] = {{-30, -30, 0, 50}, {-30, 65, 0, 0}, {20, 20, 10, 10}, {nan, 65, 0, 50}, {-30, 65, 0, nan}};
    for (const auto& r : ranges) {
        set->m_RangeSetting = saved.m_RangeSetting;
        set->m_RangeSetting.SetMinT(r.minT);
        set->m_RangeSetting.SetMaxT(r.maxT);
        set->m_RangeSetting.SetMinD(r.minD);
        set->m_RangeSetting.SetMaxD(r.maxD);
        CPoint pt;
        CKyStaPnt pnt;
        ASSERT_TRUE(pnt.SetBy_DandTdb(10.0, 20.0));
        if (r.minT == r.maxT || r.minD == r.maxD) {
            EXPECT_EQ(chart->GetPoint(40.0, 10.0, pt), 0);
            EXPECT_EQ(chart->Convert(pnt, pt), 0);
            EXPECT_EQ(chart->Convert(CPoint(100, -100), pnt), 0);
        } else {
            chart->Convert(pnt, pt);  // anything but a crash
            chart->Convert(CPoint(100, -100), pnt);
        }
    }
}

TEST_F(ChartMapping, AttachingAnyChartPlacesTheSingletonOrigin)
{
    CImageWnd wnd(1000, 800);
    CKyGChart own;
    EXPECT_EQ(own.AttachDarwWnd(&wnd), 1);
    EXPECT_EQ(own.GetOrigin(), CPoint(0, 0));
    EXPECT_EQ(chart->GetOrigin(), CPoint(53, 780));
}
