// Process path: polylines per path, markers whose crowded labels turn clockwise, and the stop
// at the first point the chart cannot place.
#include "OverlayTestSupport.h"

#include <kygraph/KyGProcess.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyProcess.h>

#include <limits>
#include <string>

namespace {

class ProcessPath : public Overlay {
protected:
    static CKyProcess OnePath(std::initializer_list<CKyStaPnt> points)
    {
        CKyStaPntArray path;
        for (const CKyStaPnt& p : points) path.Add(const_cast<CKyStaPnt&>(p));
        CKyProcess process;
        EXPECT_TRUE(process.AddPath(CString(L"过程"), path));
        return process;
    }
    int DrawProcess(const CKyProcess& process)
    {
        dc()->ClearRecords();
        CKyGProcess element;
        element.SetValue(process);
        const int result = chart->Draw(&element);
        lastError = element.GetLastErrorString();
        return result;
    }
    // The side of the label named name around the dot at p, at the current draw scale.
    int SideOfLabel(const wchar_t* name, CPoint p)
    {
        const double k = set->GetDrawScale();
        for (const CDrawRecord& t : Records(CDrawRecord::Text))
            if (t.text == name)
                return SideOf(t, p, static_cast<int>(3 * k),
                              CKyGDrawBase::GetTextExtent(dc(), static_cast<int>(7 * k), CString(name)));
        ADD_FAILURE() << "no label " << CString(name).ToUtf8();
        return -1;
    }

    CString lastError;
};

TEST_F(ProcessPath, LabelsOnOnePixelTurnClockwiseFromAbove)
{
    const CPoint p = PixelOf(State(22.0, 50.0));
    const wchar_t* names[] = {L"1", L"2", L"3", L"4", L"5"};
    CKyStaPntArray path;
    for (const wchar_t* name : names) {
        CKyStaPnt s = StateAtPixel(p, name);
        path.Add(s);
    }
    CKyProcess process;
    ASSERT_TRUE(process.AddPath(CString(L"同一点"), path));
    ASSERT_EQ(DrawProcess(process), 1);

    ASSERT_EQ(Records(CDrawRecord::Ellipse).size(), 5u);
    const int expected[] = {CKyGStaPnt::DimTop, CKyGStaPnt::DimRight, CKyGStaPnt::DimBottom, CKyGStaPnt::DimLeft,
                            CKyGStaPnt::DimTop};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(SideOfLabel(names[i], p), expected[i]) << names[i];
}

TEST_F(ProcessPath, CrowdingSquareIsInclusiveAndScalesWithTheDrawScale)
{
    struct Case {
        double k;
        int dx, dy;
        bool crowded;
    };
    // r = text height + point size = 12 px at scale 1, 24 px at scale 2.
    const Case cases[] = {
        {1.0, 12, 12, true},  {1.0, 13, 13, false}, {1.0, -12, -12, true}, {1.0, 12, 13, false},
        {1.0, 0, -12, true},  {1.0, 13, 0, false},  {2.0, 24, 24, true},   {2.0, 25, 25, false},
        {2.0, -24, 13, true}, {2.0, -25, 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "k " << c.k << " offset " << c.dx << "," << c.dy);
        set->m_dDrawScale = c.k;
        const CPoint a = PixelOf(State(30.0, 20.0));  // dry air all round: every neighbour is a state
        const CPoint b(a.x + c.dx, a.y + c.dy);
        ASSERT_EQ(DrawProcess(OnePath({StateAtPixel(a, L"A"), StateAtPixel(b, L"B")})), 1);
        EXPECT_EQ(SideOfLabel(L"A", a), CKyGStaPnt::DimTop);
        EXPECT_EQ(SideOfLabel(L"B", b), c.crowded ? CKyGStaPnt::DimRight : CKyGStaPnt::DimTop);
    }
}

TEST_F(ProcessPath, PointOffTheChartStopsTheDrawWithEntry114)
{
    const CKyStaPnt in1 = State(20.0, 40.0, L"1"), in2 = State(30.0, 40.0, L"2"), in3 = State(25.0, 60.0, L"3");
    CKyStaPntArray first, second;
    first.Add(const_cast<CKyStaPnt&>(in1));
    first.Add(const_cast<CKyStaPnt&>(in2));
    CKyStaPnt hot = State(70.0, 10.0, L"热");
    second.Add(const_cast<CKyStaPnt&>(in3));
    second.Add(hot);
    CKyProcess process;
    ASSERT_TRUE(process.AddPath(CString(L"a"), first));
    ASSERT_TRUE(process.AddPath(CString(L"b"), second));

    EXPECT_EQ(DrawProcess(process), 0);
    EXPECT_EQ(lastError, L"处理过程状态点中点无效。");
    EXPECT_EQ(chart->GetLastErrorString(), L"指定点不在焓湿图的有效范围之内。");
    const std::vector<CDrawRecord> lines = Records(CDrawRecord::Polyline);
    ASSERT_EQ(lines.size(), 1u);  // the first path only
    EXPECT_EQ(lines[0].pts, (std::vector<CPoint>{PixelOf(in1), PixelOf(in2)}));
    EXPECT_TRUE(Records(CDrawRecord::Ellipse).empty());
    EXPECT_TRUE(Records(CDrawRecord::Text).empty());
}

TEST_F(ProcessPath, SummerAirHandlingFromTheModelsBuilders)
{
    CKyStaPnt outdoor, room, supply;
    ASSERT_TRUE(outdoor.SetBy_TdbandTwb(33.2, 26.4));
    ASSERT_TRUE(room.SetBy_TdbandRH(25.0, 0.60));
    ASSERT_TRUE(supply.SetBy_TdbandRH(16.0, 0.90));
    outdoor.SetName(CString(L"W"));
    room.SetName(CString(L"N"));
    supply.SetName(CString(L"L"));
    CKyProcess process;
    CKyStaPnt mix;
    ASSERT_TRUE(process.AddMixing(CString(L"混合"), outdoor, 1.0, room, 3.0, &mix));
    ASSERT_TRUE(process.AddCoolingDehumidify(CString(L"冷却"), mix, supply));

    ASSERT_EQ(DrawProcess(process), 1);
    const std::vector<CDrawRecord> lines = Records(CDrawRecord::Polyline);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].pts, (std::vector<CPoint>{PixelOf(outdoor), PixelOf(mix), PixelOf(room)}));
    EXPECT_EQ(lines[1].pts, (std::vector<CPoint>{PixelOf(mix), PixelOf(supply)}));
    for (const CDrawRecord& line : lines) {
        EXPECT_EQ(line.penColor, RGB(255, 0, 0));
        EXPECT_EQ(line.penWidth, 2);
        EXPECT_EQ(line.penStyle, PS_SOLID);
    }
    CKyStaPntArray points;
    process.GetAllPnt(points);
    EXPECT_EQ(Records(CDrawRecord::Ellipse).size(), static_cast<size_t>(points.GetSize()));
    EXPECT_EQ(SideOfLabel(L"W", PixelOf(outdoor)), CKyGStaPnt::DimTop);
    EXPECT_EQ(SideOfLabel(L"L", PixelOf(supply)), CKyGStaPnt::DimTop);

    // Over the chart at its fitted scale, for a look at the whole.
    set->m_dDrawScale = chart->GetInitScale();
    ASSERT_NE(chart->UptateDrawWnd(1), 0);
    ASSERT_EQ(DrawProcess(process), 1);
    chart->UptateDrawWnd(0);
    EXPECT_EQ(wnd.SavePng(KY_BINARY_DIR "/overlays_process.png"), 1);
}

TEST_F(ProcessPath, EmptyProcessAndOnePointPath)
{
    EXPECT_EQ(DrawProcess(CKyProcess()), 1);
    EXPECT_TRUE(dc()->GetRecords().empty());

    ASSERT_EQ(DrawProcess(OnePath({State(20.0, 50.0, L"A")})), 1);
    EXPECT_EQ(Records(CDrawRecord::Ellipse).size(), 1u);  // the polyline of one point shows nothing
    EXPECT_EQ(Records(CDrawRecord::Text).size(), 1u);
}

TEST_F(ProcessPath, ExtremeScalesAndStylesNeitherCrashNorHang)
{
    const CKyProcess process = OnePath({State(-20.0, 50.0, L"A"), State(20.0, 50.0, L"B"), State(60.0, 5.0, L"C")});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double scale : {1e9, 1e300, nan, 0.5})
        for (double size : {nan, -1e300, 1e300}) {
            set->m_dDrawScale = scale;
            set->m_StyleSetting.m_StaPntStyle.dSize = size;
            set->m_StyleSetting.m_ProcessStyle.nWidth = static_cast<int>(size > 0 ? 1000000 : -3);
            const int result = DrawProcess(process);
            EXPECT_TRUE(result == 0 || result == 1);
        }
}

}  // namespace
