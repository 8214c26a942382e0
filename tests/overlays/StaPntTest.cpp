// State-point marker: the dot, the label on each side and the failure of a point off the chart;
// the two design points of the full redraw.
#include "OverlayTestSupport.h"

#include <kygraph/KyGStaPnt.h>

#include <climits>
#include <limits>

namespace {

constexpr COLORREF kGreen = RGB(0, 255, 0);

class StaPntMarker : public Overlay {};

TEST_F(StaPntMarker, DotAndLabelOnEverySideAtScalesOneAndTwo)
{
    const CKyStaPnt pnt = State(25.0, 50.0, L"送风点");
    // Dot corners as offsets from the centre (bottom-right first): 2.5 truncates unevenly.
    struct Scale {
        double k;
        int far, near;
    };
    for (const Scale s : {Scale{1.0, 2, -3}, Scale{2.0, 5, -5}}) {
        SCOPED_TRACE(s.k);
        set->m_dDrawScale = s.k;
        const CPoint p = PixelOf(pnt);
        const int height = static_cast<int>(7 * s.k);
        const CSize e = CKyGDrawBase::GetTextExtent(dc(), height, CString(L"送风点"));
        ASSERT_GT(e.cx, 0);
        for (int pos : {0, 1, 2, 3, 7, -1}) {
            SCOPED_TRACE(pos);
            dc()->ClearRecords();
            CKyGStaPnt marker;
            marker.SetValue(pnt);
            marker.SetDimPosition(static_cast<CKyGStaPnt::DimPosition>(pos));
            ASSERT_EQ(chart->Draw(&marker), 1);
            ASSERT_EQ(dc()->GetRecords().size(), 2u);

            const CDrawRecord& dot = dc()->GetRecords()[0];
            ASSERT_EQ(dot.kind, CDrawRecord::Ellipse);
            EXPECT_EQ(dot.pts[0], CPoint(p.x + s.far, p.y + s.far));
            EXPECT_EQ(dot.pts[1], CPoint(p.x + s.near, p.y + s.near));
            EXPECT_EQ(dot.penColor, kGreen);
            EXPECT_FALSE(dot.brushNull);
            EXPECT_EQ(dot.brushColor, kGreen);

            const CDrawRecord& label = dc()->GetRecords()[1];
            ASSERT_EQ(label.kind, CDrawRecord::Text);
            EXPECT_EQ(label.text, L"送风点");
            EXPECT_EQ(label.fontHeight, height);
            EXPECT_EQ(label.escapement, 0);
            EXPECT_EQ(label.textColor, kGreen);
            // Gap from the centre: half the dot and a fifth of it again (3 px at scale 1).
            const int expected = (pos >= 0 && pos <= 3) ? pos : Centre;
            EXPECT_EQ(SideOf(label, p, static_cast<int>(3 * s.k), e), expected);
        }
    }
}

TEST_F(StaPntMarker, LabelSwitchAndEmptyName)
{
    CKyGStaPnt marker;
    marker.SetValue(State(20.0, 40.0, L"A"));
    marker.SetDimEnable(0);
    ASSERT_EQ(chart->Draw(&marker), 1);
    ASSERT_EQ(dc()->GetRecords().size(), 1u);
    EXPECT_EQ(dc()->GetRecords()[0].kind, CDrawRecord::Ellipse);

    dc()->ClearRecords();
    marker.SetDimEnable(-5);  // any non-zero value shows the label
    marker.SetValue(State(20.0, 40.0));
    ASSERT_EQ(chart->Draw(&marker), 1);
    ASSERT_EQ(Records(CDrawRecord::Text).size(), 1u);
    EXPECT_TRUE(Records(CDrawRecord::Text)[0].text.IsEmpty());
}

TEST_F(StaPntMarker, PointOffTheChartDrawsNothingAndReportsTheChartsMessage)
{
    CKyStaPnt unset;  // never set: no state to place
    for (const CKyStaPnt& pnt : {State(70.0, 10.0, L"热"), State(-35.0, 50.0, L"冷"), unset}) {
        dc()->ClearRecords();
        CKyGStaPnt marker;
        marker.SetValue(pnt);
        EXPECT_EQ(chart->Draw(&marker), 0);
        EXPECT_TRUE(dc()->GetRecords().empty());
        EXPECT_EQ(marker.GetLastErrorString(), L"指定点不在焓湿图的有效范围之内。");
    }
}

TEST_F(StaPntMarker, WithoutAWindowTheChartRefusesAndTheMarkerKeepsNoMessage)
{
    chart->AttachDarwWnd(nullptr);
    CKyGStaPnt marker;
    marker.SetValue(State(20.0, 40.0, L"A"));
    EXPECT_EQ(chart->Draw(&marker), 0);
    EXPECT_EQ(marker.GetChart(), chart);
    EXPECT_TRUE(marker.GetLastErrorString().IsEmpty());
}

TEST_F(StaPntMarker, HostileStylesAndScalesNeitherCrashNorHang)
{
    const double sizes[] = {0.0, -5.0, 1e300, std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()};
    const int heights[] = {0, -7, INT_MAX, INT_MIN};
    const double scales[] = {0.5, 1e6, 1e300, std::numeric_limits<double>::quiet_NaN()};
    CKyGStaPnt marker;
    marker.SetValue(State(20.0, 40.0, L"A"));
    for (double scale : scales)
        for (double size : sizes)
            for (int height : heights) {
                set->m_dDrawScale = scale;
                set->m_StyleSetting.m_StaPntStyle.dSize = size;
                set->m_StyleSetting.m_StaPntStyle.nTextHeight = height;
                marker.SetDimPosition(static_cast<CKyGStaPnt::DimPosition>(height & 3));
                const int result = chart->Draw(&marker);
                EXPECT_TRUE(result == 0 || result == 1);
            }
}

// The full redraw marks the design conditions: outdoor labelled right, indoor left.
class DesignPoints : public Overlay {
protected:
    void ExpectPoint(const wchar_t* name, const CKyStaPnt& state, int side)
    {
        SCOPED_TRACE(testing::Message() << "point " << CString(name).ToUtf8());
        const CPoint p = PixelOf(state);
        int found = 0;
        for (const CDrawRecord& t : Records(CDrawRecord::Text)) {
            if (t.text != name) continue;
            ++found;
            const CSize e = CKyGDrawBase::GetTextExtent(dc(), 7, CString(name));
            EXPECT_EQ(SideOf(t, p, 3, e), side);
        }
        EXPECT_EQ(found, 1);
    }
    void Redraw()
    {
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
    }
};

TEST_F(DesignPoints, SummerAndWinterConditions)
{
    CKyGDrawHstSetting& hst = set->m_DrawHstSetting;
    Redraw();  // at draw scale 1, so that the gap is 3 px
    CKyStaPnt outdoor, indoor;
    ASSERT_TRUE(outdoor.SetBy_TdbandTwb(33.2, 26.4));
    ASSERT_TRUE(indoor.SetBy_TdbandRH(25.0, 0.60));
    ExpectPoint(L"室外点", outdoor, CKyGStaPnt::DimRight);
    ExpectPoint(L"室内点", indoor, CKyGStaPnt::DimLeft);
    EXPECT_EQ(chart->GetStaPntW().GetName(), L"室外点");

    hst.m_bWinter = 1;
    Redraw();
    ASSERT_TRUE(outdoor.SetBy_TdbandRH(-9.8, 0.37));
    ASSERT_TRUE(indoor.SetBy_TdbandRH(20.0, 0.60));
    ExpectPoint(L"室外点", outdoor, CKyGStaPnt::DimRight);
    ExpectPoint(L"室内点", indoor, CKyGStaPnt::DimLeft);
}

}  // namespace
