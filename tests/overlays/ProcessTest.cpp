// Process path: crowded labels turning clockwise, the stop at a point off the chart, and a
// process built by the state model.
#include "OverlayTestSupport.h"

#include <kygraph/KyGProcess.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyProcess.h>

#include <string>

namespace {

class ProcessPath : public Overlay {
protected:
    // A named state that maps exactly onto pixel px (a pixel's state may truncate back to
    // its neighbour, so the neighbours are tried too).
    CKyStaPnt StateAt(CPoint px, const wchar_t* name)
    {
        for (int i = 0; i < 9; ++i) {
            CKyStaPnt p;
            CPoint back;
            if (chart->Convert(px + CSize(i % 3, i / 3), p) && chart->Convert(p, back) && back == px) {
                p.SetName(CString(name));
                return p;
            }
        }
        ADD_FAILURE() << "no state on pixel " << px.x << "," << px.y;
        return CKyStaPnt();
    }
    // Draws a process of one path per list, named by position.
    int DrawPaths(std::vector<std::vector<CKyStaPnt>> paths)
    {
        CKyProcess process;
        for (size_t i = 0; i < paths.size(); ++i) {
            CKyStaPntArray path;
            for (CKyStaPnt& p : paths[i]) path.Add(p);
            EXPECT_TRUE(process.AddPath(CString(std::to_wstring(i)), path));
        }
        element.SetValue(process);
        return DrawOne(&element);
    }
    CKyGProcess element;
};

TEST_F(ProcessPath, LabelsOnOnePixelTurnClockwiseFromAbove)
{
    const CPoint p = PixelOf(State(22.0, 50.0));
    const wchar_t* names[] = {L"1", L"2", L"3", L"4", L"5"};
    std::vector<CKyStaPnt> points;
    for (const wchar_t* name : names) points.push_back(StateAt(p, name));
    ASSERT_EQ(DrawPaths({points}), 1);
    const int expected[] = {CKyGStaPnt::DimTop, CKyGStaPnt::DimRight, CKyGStaPnt::DimBottom, CKyGStaPnt::DimLeft,
                            CKyGStaPnt::DimTop};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(SideOf(names[i], p), expected[i]) << i;
}

TEST_F(ProcessPath, CrowdingSquareIsInclusiveAndGrowsWithTheDrawScale)
{
    // r = text height + point size: 12 px at scale 1, 24 px at scale 2.
    struct Case {
        double k;
        int dx, dy;
        bool crowded;
    } const cases[] = {{1, 12, 12, true},  {1, 13, 13, false}, {1, -12, 0, true}, {1, 12, -13, false},
                       {2, 24, -24, true}, {2, 25, 25, false}, {2, 0, 25, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.k << ": " << c.dx << "," << c.dy);
        set->m_dDrawScale = c.k;
        const CPoint a = PixelOf(State(30.0, 20.0));  // dry air all round: every neighbour is a state
        const CPoint b = a + CSize(c.dx, c.dy);
        ASSERT_EQ(DrawPaths({{StateAt(a, L"A"), StateAt(b, L"B")}}), 1);
        EXPECT_EQ(SideOf(L"B", b), c.crowded ? CKyGStaPnt::DimRight : CKyGStaPnt::DimTop);
    }
}

TEST_F(ProcessPath, PointOffTheChartStopsTheDrawWithEntry114)
{
    const CKyStaPnt a = State(20.0, 40.0, L"a"), b = State(30.0, 40.0, L"b");
    EXPECT_EQ(DrawPaths({{a, b}, {State(25.0, 60.0), State(70.0, 10.0)}}), 0);
    EXPECT_EQ(element.GetLastErrorString(), L"处理过程状态点中点无效。");
    EXPECT_EQ(chart->GetLastErrorString(), L"指定点不在焓湿图的有效范围之内。");
    const std::vector<CDrawRecord> lines = Records(CDrawRecord::Polyline);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].pts, (std::vector<CPoint>{PixelOf(a), PixelOf(b)}));
    EXPECT_TRUE(Records(CDrawRecord::Ellipse).empty());
}

TEST_F(ProcessPath, SummerMixingAndCoolingBuiltByTheStateModel)
{
    CKyStaPnt outdoor, room = State(25.0, 60.0, L"N"), supply = State(16.0, 90.0, L"L"), mix;
    ASSERT_TRUE(outdoor.SetBy_TdbandTwb(33.2, 26.4) && outdoor.SetName(CString(L"W")));
    CKyProcess process;
    ASSERT_TRUE(process.AddMixing(CString(L"混合"), outdoor, 1.0, room, 3.0, &mix) &&
                process.AddCoolingDehumidify(CString(L"冷却"), mix, supply));
    element.SetValue(process);
    ASSERT_EQ(DrawOne(&element), 1);
    const std::vector<CDrawRecord> lines = Records(CDrawRecord::Polyline);
    ASSERT_EQ(lines.size(), 2u);  // mixing W-mix-N, then cooling mix-L, in red
    EXPECT_EQ(lines[1].pts, (std::vector<CPoint>{PixelOf(mix), PixelOf(supply)}));
    EXPECT_EQ(lines[1].penColor, RGB(255, 0, 0));
    EXPECT_EQ(Records(CDrawRecord::Ellipse).size(), 4u);
    EXPECT_EQ(SideOf(L"W", PixelOf(outdoor)), CKyGStaPnt::DimTop);
}

}  // namespace
