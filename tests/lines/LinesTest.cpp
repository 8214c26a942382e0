// The four constant-value line families drawn one at a time on a recording surface; every
// expected pixel comes from the state model and the chart's mapping, not from the elements.
#include "chart/ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGSameD.h>
#include <kygraph/KyGSameH.h>
#include <kygraph/KyGSameRH.h>
#include <kygraph/KyGSameT.h>

#include <climits>
#include <cmath>
#include <vector>

using Setter = bool (CKyStaPnt::*)(double, double);

class Lines : public ChartFixture {
protected:
    void SetUp() override
    {
        ChartFixture::SetUp();
        wnd.EnableRecording(true);
        ASSERT_EQ(chart->AttachDarwWnd(&wnd), 1);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
        O = chart->GetChartOrigin();
        L = chart->GetMinTAndMinDPnt();
    }
    int DrawOnly(CKyGSameLine& line, double value, CKyGChart* on = nullptr)
    {
        on = on ? on : chart;
        const CKyGStyleSetting& st = set->m_StyleSetting;
        colour = (&line == &t ? st.m_SameTStyle : &line == &d ? st.m_SameDStyle
                  : &line == &h ? st.m_SameHStyle : st.m_SameRHStyle).crColor;
        line.SetValue(value);
        on->GetChartDC()->ClearRecords();
        return on->Draw(&line);
    }
    const std::vector<CDrawRecord>& Drawn() { return chart->GetChartDC()->GetRecords(); }
    CPoint Pixel(Setter set, double a, double b)
    {
        CKyStaPnt p;
        CPoint pt;
        EXPECT_TRUE((p.*set)(a, b) && chart->Convert(p, pt));
        return pt;
    }
    // The last draw was exactly this line with this label (none when text is null) starting
    // at `at` plus (fx, fy) times the label's cell size.
    void Expect(CPoint from, CPoint to, const wchar_t* text = nullptr, CPoint at = {}, double fx = 0, double fy = 0)
    {
        ASSERT_EQ(Drawn().size(), text ? 2u : 1u);
        EXPECT_EQ(Drawn()[0].pts, (std::vector<CPoint>{from, to}));
        EXPECT_EQ(Drawn()[0].penColor, colour);
        if (!text) return;
        const CSize e = CKyGDrawBase::GetTextExtent(chart->GetChartDC(), Ky::TruncToInt(7 * set->GetDrawScale()), text);
        EXPECT_EQ(Drawn()[1].text, text);
        EXPECT_EQ(Drawn()[1].textColor, colour);
        EXPECT_EQ(Drawn()[1].pts.at(0), at + CSize(Ky::TruncToInt(e.cx * fx), Ky::TruncToInt(e.cy * fy)));
    }

    CImageWnd wnd{1000, 800};
    CPoint O, L;      // top-left and bottom-left corners of the plot area
    COLORREF colour;  // of the family drawn last
    CKyGSameT t;
    CKyGSameD d;
    CKyGSameH h;
    CKyGSameRH rh;
    CKyGSameLine* all[4] = {&t, &d, &h, &rh};
};

TEST_F(Lines, IsothermRunsFromLeftEdgeToSaturationOrTopEdgeLabelledAtItsLeftEnd)
{
    ASSERT_EQ(DrawOnly(t, 25.0), 1);
    const CPoint a = Pixel(&CKyStaPnt::SetBy_DandTdb, 0.0, 25.0);
    Expect(a, Pixel(&CKyStaPnt::SetBy_TdbandRH, 25.0, 1.0), L"25", a, -1.0, -0.5);  // right-aligned, centred

    // Saturated beyond the maximum d, where it lies above the top edge: cut where A-U crosses it.
    t.SetDimEnable(0);
    ASSERT_EQ(DrawOnly(t, 63.0), 1);
    const CPoint a63 = Pixel(&CKyStaPnt::SetBy_DandTdb, 0.0, 63.0);
    const CPoint u = Pixel(&CKyStaPnt::SetBy_DandTdb, 50.0, 63.0);
    ASSERT_LT(u.y, O.y);
    Expect(a63, CPoint(int(a63.x + double(u.x - a63.x) * (a63.y - O.y) / (a63.y - u.y)), O.y));
}

TEST_F(Lines, ConstantDRisesFromSaturationOrBottomEdgeToTopLabelledAbove)
{
    ASSERT_EQ(DrawOnly(d, 15.0), 1);
    const CPoint a = Pixel(&CKyStaPnt::SetBy_DandRH, 15.0, 1.0);
    Expect(a, CPoint(a.x, O.y), L"15.0", CPoint(a.x, O.y), -0.5, -1.0);  // centred above
    d.SetDimEnable(0);
    ASSERT_EQ(DrawOnly(d, 0.1), 1);  // saturated below the minimum temperature
    const CPoint b = Pixel(&CKyStaPnt::SetBy_DandTdb, 0.1, -30.0);
    Expect(b, CPoint(b.x, O.y));
    for (double v : {0.0, -3.0}) {  // dry air and below: the left edge
        ASSERT_EQ(DrawOnly(d, v), 1);
        Expect(L, CPoint(L.x, O.y));
    }
}

TEST_F(Lines, EnthalpyLineRunsFromLowerRightEndToLeftOrTopEdge)
{
    ASSERT_EQ(DrawOnly(h, 42.0), 1);
    const CPoint b = Pixel(&CKyStaPnt::SetBy_HandRH, 42.0, 1.0);
    Expect(Pixel(&CKyStaPnt::SetBy_HandD, 42.0, 0.0), b, L"42.00", b, 0.0, 0.5);
    EXPECT_EQ(Drawn().at(1).escapement, 0);  // 0.78 rad taken as degrees, on purpose

    // From the right edge to a cut at the top edge on the same enthalpy; from the bottom edge.
    h.SetDimEnable(0);
    for (auto [lower, value, other] : {std::tuple{&CKyStaPnt::SetBy_HandD, 180.0, 50.0},
                                       std::tuple{&CKyStaPnt::SetBy_HandTdb, -30.0, -30.0}}) {
        ASSERT_EQ(DrawOnly(h, value), 1);
        EXPECT_EQ(Drawn().at(0).pts.at(1), Pixel(lower, value, other));
        CKyStaPnt upper;
        ASSERT_EQ(chart->Convert(Drawn()[0].pts.at(0), upper), 1);
        EXPECT_NEAR(upper.GetH(), value, 0.5);
    }

    set->m_RangeSetting.SetMinT(-10.0);  // the pipeline's span follows the range at once
    set->m_RangeSetting.SetMaxD(30.0);
    EXPECT_DOUBLE_EQ(CKyGSameH::GetMinValue(), 1.01 * -10.0);
    CKyStaPnt hi;
    ASSERT_TRUE(hi.SetBy_DandTdb(30.0, 65.0));
    EXPECT_DOUBLE_EQ(CKyGSameH::GetMaxValue(), hi.GetH());
}

TEST_F(Lines, RelativeHumidityCurveRisesToTheEdgeItLeavesThroughLabelledAtItsEnd)
{
    for (auto [phi, text] : {std::pair{1.0, L"100%"}, {0.6, L"60%"}, {0.05, L"5%"}}) {
        ASSERT_EQ(DrawOnly(rh, phi), 1);
        ASSERT_EQ(Drawn().size(), 2u);
        const std::vector<CPoint> pts = Drawn()[0].pts;
        EXPECT_EQ(Drawn()[0].penColor, colour);
        EXPECT_EQ(pts.front(), Pixel(&CKyStaPnt::SetBy_TdbandRH, -30.0, phi));
        for (size_t i = 1; i < pts.size(); ++i)
            EXPECT_TRUE(pts[i].x >= pts[i - 1].x && pts[i].y <= pts[i - 1].y + 1 && pts[i].y >= O.y) << i;
        CKyStaPnt end;
        ASSERT_EQ(chart->Convert(pts.back(), end), 1);
        if (phi > 0.3) {  // through the right edge, at the curve's own state there
            EXPECT_EQ(pts.back(), Pixel(&CKyStaPnt::SetBy_DandRH, 50.0, phi));
        } else {  // through the top edge, where the curve crosses it
            EXPECT_EQ(pts.back().y, O.y);
            EXPECT_NEAR(end.GetRH(), phi, 0.003);
        }
        EXPECT_EQ(Drawn()[1].text, text);
        EXPECT_EQ(Drawn()[1].pts.at(0), pts.back() + CSize(1, 1));
    }
}

TEST_F(Lines, CurveThatNeverEntersTheChartLeavesNoLabelAtTheCorner)
{
    // Above 5 g/kg no curve is inside the chart at its minimum temperature.
    set->m_RangeSetting.SetMinD(5.0);
    ASSERT_EQ(chart->UptateDrawWnd(1), 1);
    for (double phi : {0.05, 0.6, 1.0}) {
        DrawOnly(rh, phi);
        for (const CDrawRecord& r : Drawn()) EXPECT_NE(r.kind, CDrawRecord::Text) << phi;
    }
}

TEST_F(Lines, CurveOfATiltedChartIsSampledPastTheMaximumTemperatureUntilItLeaves)
{
    // Shorter degrees after the enthalpy direction was fixed make isotherms fall to the
    // right: saturation stays inside the plot area up to about 40 degC here.
    set->m_RangeSetting.SetMaxT(0.0);
    set->m_dTLength = 0.5;
    ASSERT_EQ(DrawOnly(rh, 1.0), 1);
    const CPoint end = Drawn().at(0).pts.back();
    EXPECT_TRUE(end.y == chart->GetChartOrigin().y || end.x >= chart->GetMaxTAndMaxDPnt().x) << end.x << ", " << end.y;
}

TEST_F(Lines, RefusedOrPastTheChartFailsAndDrawsNothing)
{
    const struct {
        CKyGSameLine* line;
        double value;
        Setter refusal;
        double a, b;
    } refused[] = {{&t, 250.0, &CKyStaPnt::SetBy_DandTdb, 0.0, 250.0},
                   {&d, NAN, &CKyStaPnt::SetBy_DandRH, NAN, 1.0},
                   {&h, -150.0, &CKyStaPnt::SetBy_HandRH, -150.0, 1.0},
                   {&rh, 1.5, &CKyStaPnt::SetBy_TdbandRH, -30.0, 1.5}};
    for (const auto& c : refused) {
        CKyStaPnt p;
        ASSERT_FALSE((p.*c.refusal)(c.a, c.b));
        EXPECT_EQ(DrawOnly(*c.line, c.value), 0) << c.value;
        EXPECT_TRUE(Drawn().empty());
        EXPECT_EQ(c.line->GetLastErrorString(), p.GetLastErrorString());
        EXPECT_EQ(c.line->toString(), L"CKyGProcess");  // the process path's name, on purpose
    }
    CKyStaPnt top;  // its right-edge end lies above the top edge already
    ASSERT_TRUE(top.SetBy_DandTdb(50.0, 64.0));
    for (auto [line, value] : {std::pair<CKyGSameLine*, double>{&t, 70.0}, {&d, 55.0},
                               {&h, CKyGSameH::GetMaxValue() + 5.0}, {&h, top.GetH()}}) {
        EXPECT_EQ(DrawOnly(*line, value), 0) << value;
        EXPECT_TRUE(Drawn().empty());
    }
}

TEST_F(Lines, EnthalpyTopCutNeedsAnObliqueDirection)
{
    // Charts built with a horizontal or barely oblique enthalpy direction, placed above the
    // window so that truncation toward zero keeps a line's lower end on the top edge while
    // its left-edge end is past the maximum temperature.
    const double saved = set->m_dTLength;
    for (double tLength : {0.0, 8e-9}) {
        set->m_dTLength = tLength;
        CKyGChart flat;
        set->m_dTLength = saved;
        flat.AttachDarwWnd(&wnd);
        flat.SetOrigin(CPoint(chart->GetOrigin().x, -100));
        ASSERT_NE(flat.UptateDrawWnd(1), 0);
        const int drawn = DrawOnly(h, set->m_RangeSetting.GetMinDMaxTH() + 0.01, &flat);
        const std::vector<CDrawRecord>& records = flat.GetChartDC()->GetRecords();
        EXPECT_EQ(drawn, tLength == 0.0 ? 0 : 1);
        if (drawn == 0) {
            EXPECT_EQ(h.GetLastErrorString(), L"超出焓湿图绘制范围。");
        } else {
            EXPECT_EQ(records.at(0).pts.at(0).y, flat.GetChartOrigin().y);
        }
        EXPECT_EQ(records.size(), size_t(drawn) * 2);
    }
}

TEST_F(Lines, HostileValuesAndSettingsEndWithoutHarm)
{
    const auto drawAll = [&] {
        for (CKyGSameLine* line : all)
            for (double v : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300, 0.0, 1e-300})
                EXPECT_LE(DrawOnly(*line, v), 1);
    };
    drawAll();
    set->m_dDrawScale = 1e9;  // every pixel saturates
    drawAll();
    set->m_dDrawScale = 1.0;
    set->m_RangeSetting.SetMinT(-100.0);  // the widest range the state model allows
    set->m_RangeSetting.SetMaxT(200.0);
    EXPECT_EQ(DrawOnly(rh, 1.0), 1);
    EXPECT_LE(Drawn().at(0).pts.size(), 1510u);
    set->m_RangeSetting.SetMaxT(-100.0);  // inverted onto nothing
    drawAll();
    CImageWnd empty(0, 0);
    chart->AttachDarwWnd(&empty);
    chart->UptateDrawWnd(1);
    drawAll();
}
