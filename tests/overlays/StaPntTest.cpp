// State-point marker: dot, label side, a point off the chart; the design points of a redraw.
#include "OverlayTestSupport.h"

#include <kygraph/KyGStaPnt.h>

namespace {

class StaPntMarker : public Overlay {};

TEST_F(StaPntMarker, DotAndLabelOnEachSideAtScalesOneAndTwo)
{
    const CKyStaPnt pnt = State(25.0, 50.0, L"送风点");
    // Dot corners relative to the centre, bottom-right first: 2.5 truncates unevenly.
    for (auto [k, outer, inner] : {std::tuple{1.0, 2, -3}, std::tuple{2.0, 5, -5}})
        for (int pos : {0, 1, 2, 3, 7, -1}) {
            SCOPED_TRACE(testing::Message() << "scale " << k << " position " << pos);
            set->m_dDrawScale = k;
            const CPoint p = PixelOf(pnt);
            CKyGStaPnt marker;
            marker.SetValue(pnt);
            marker.SetDimPosition(static_cast<CKyGStaPnt::DimPosition>(pos));
            ASSERT_EQ(DrawOne(&marker), 1);
            ASSERT_EQ(dc()->GetRecords().size(), 2u);
            const CDrawRecord& dot = dc()->GetRecords()[0];
            EXPECT_EQ(dot.pts, (std::vector<CPoint>{CPoint(p.x + outer, p.y + outer), CPoint(p.x + inner, p.y + inner)}));
            EXPECT_EQ(dot.brushColor, RGB(0, 255, 0));
            EXPECT_EQ(dc()->GetRecords()[1].fontHeight, static_cast<int>(7 * k));
            EXPECT_EQ(SideOf(L"送风点", p), pos >= 0 && pos <= 3 ? pos : Centre);
        }
}

TEST_F(StaPntMarker, PointOffTheChartDrawsNothingAndReportsEntry103)
{
    for (const CKyStaPnt& pnt : {State(70.0, 10.0), State(-35.0, 50.0), CKyStaPnt()}) {
        CKyGStaPnt marker;
        marker.SetValue(pnt);
        EXPECT_EQ(DrawOne(&marker), 0);
        EXPECT_TRUE(dc()->GetRecords().empty());
        EXPECT_EQ(marker.GetLastErrorString(), L"指定点不在焓湿图的有效范围之内。");
    }
}

TEST_F(StaPntMarker, RedrawMarksTheSummerOrWinterDesignPoints)
{
    for (int winter : {0, 1}) {
        set->m_DrawHstSetting.m_bWinter = winter;
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
        CKyStaPnt outdoor, indoor;
        ASSERT_TRUE(winter ? outdoor.SetBy_TdbandRH(-9.8, 0.37) : outdoor.SetBy_TdbandTwb(33.2, 26.4));
        ASSERT_TRUE(indoor.SetBy_TdbandRH(winter ? 20.0 : 25.0, 0.60));
        EXPECT_EQ(SideOf(L"室外点", PixelOf(outdoor)), CKyGStaPnt::DimRight) << winter;
        EXPECT_EQ(SideOf(L"室内点", PixelOf(indoor)), CKyGStaPnt::DimLeft) << winter;
    }
}

}  // namespace
