// The chart frame: title block rows, page border, body edges and axis titles, to the pixel.
#include "FurnitureFixture.h"

#include <kygraph/KyGChartFrame.h>

namespace {

const CString kKcal(L"i=0.24t+0.001d(597.3+0.44t)kcal/kg.干空气");
const CString kKJ(L"i=1.01t+0.001d(2500+1.84t)kJ/kg.干空气");
const CString kTitle(L"湿空气焓湿图");
const CString kDTitle(L"含湿量 d g/kg.干空气");
const CString kTTitle(L"温度 ℃");

class Frame : public Furniture {
protected:
    // Border, edges and axis titles, which follow the title block when there is one.
    void ExpectFurniture(Walk& walk, CPoint rightEdgeEnd) const
    {
        const double s = set->GetDrawScale();
        const CPoint O = chart->GetOrigin(), M = chart->GetChartMaxPoint();
        const CPoint A = chart->GetChartOrigin(), B = chart->GetMinTAndMinDPnt(), E = chart->GetMaxTAndMaxDPnt();
        walk.Line(O, CPoint(O.x, M.y));
        walk.Line(CPoint(O.x, M.y), M);
        walk.Line(M, CPoint(M.x, O.y));
        walk.Line(CPoint(M.x, O.y), O);

        const int th = Ky::TruncToInt(7 * s);
        const CSize d = Extent(th, kDTitle);
        walk.Text(CPoint(A.x + (E.x - A.x) / 2 - d.cx / 2, Ky::TruncToInt(A.y - 6 * s) - d.cy), kDTitle, th, 0);
        walk.Line(A, E);
        walk.Line(E, rightEdgeEnd);
        walk.Line(A, B);
        const CSize t = Extent(th, kTTitle);
        walk.Text(CPoint(Ky::TruncToInt(A.x - 6 * s) - t.cy, A.y + (B.y - A.y) / 2), kTTitle, th, 900);
    }
    CPoint SaturationAtMaxD() const
    {
        CKyStaPnt p;
        EXPECT_TRUE(p.SetBy_DandRH(set->m_RangeSetting.GetMaxD(), 1.0));
        return Pixel(p);
    }
};

}  // namespace

TEST_F(Frame, TitleBlockRowsStandOnTheBodyBottomAtEveryScale)
{
    for (const CSize window : {CSize(580, 500), CSize(1000, 800), CSize(1120, 960)}) {
        Attach(window.cx, window.cy);
        const double s = set->GetDrawScale();
        SCOPED_TRACE(s);
        CKyGChartFrame frame;
        ASSERT_EQ(DrawAlone(frame), 1);

        const int th = Ky::TruncToInt(10 * s);
        const CSize row = Extent(th, kKcal);
        const int h = row.cy;
        const CPoint A = chart->GetChartOrigin(), B = chart->GetMinTAndMinDPnt(), E = chart->GetMaxTAndMaxDPnt();
        const int x0 = B.x + (E.x - A.x) / 2 - row.cx / 2, y0 = B.y;
        // Centred by the font the surface holds, not the frame's own, as intended.
        const int tw = chart->GetChartDC()->GetTextExtent(kTitle).cx;

        Walk walk(Records());
        walk.Line(CPoint(x0, y0), CPoint(x0 + row.cx, y0));
        walk.Text(CPoint(x0, y0 - 2 * h), kKcal, th, 0);
        walk.Text(CPoint(x0, y0 - 3 * h), kKJ, th, 0);
        walk.Text(CPoint(x0, y0 - 5 * h), CString(L"大气压 101325Pa/760mmHg"), th, 0);
        walk.Text(CPoint(x0 + row.cx / 2 - tw / 2, y0 - 7 * h), kTitle, th, 0);
        walk.Line(CPoint(x0, y0 - 8 * h), CPoint(x0 + row.cx, y0 - 8 * h));
        ExpectFurniture(walk, SaturationAtMaxD());
        walk.End();

        const CDrawRecord& rule = Records().front();
        EXPECT_EQ(rule.penWidth, 2);
        EXPECT_EQ(rule.penColor, RGB(128, 128, 128));
    }
}

TEST_F(Frame, WithoutTitleOnlyBorderEdgesAndAxisTitlesAreDrawn)
{
    Attach(580, 500);
    CKyGChartFrame frame;
    frame.SetTitleEnable(0);
    ASSERT_EQ(DrawAlone(frame), 1);
    Walk walk(Records());
    ExpectFurniture(walk, SaturationAtMaxD());
    walk.End();
    EXPECT_EQ(Records().at(5).penColor, RGB(111, 127, 63));  // body edges in the constant-d style
}

TEST_F(Frame, PressureLineFollowsTheModelsPressure)
{
    Attach(1000, 800);
    const struct {
        double pa;
        const wchar_t* text;
    } cases[] = {{100000.0, L"大气压 100000Pa/750mmHg"}, {101325.0, L"大气压 101325Pa/760mmHg"},
                 {84000.0, L"大气压 84000Pa/630mmHg"}};
    for (const auto& c : cases) {
        ASSERT_TRUE(CKyChart::InstanceGloble()->SetGlobleB(c.pa));
        CKyGChartFrame frame;
        DrawAlone(frame);
        EXPECT_EQ(Records().at(3).text, c.text);
    }
}

TEST_F(Frame, RightEdgeEndsAtTheBottomCornerWhenSaturationCannotBePlaced)
{
    Attach(1000, 800);
    set->m_RangeSetting.SetMaxD(300.0);  // saturated at about 71 degC, above the range
    CKyGChartFrame frame;
    frame.SetTitleEnable(0);
    ASSERT_EQ(DrawAlone(frame), 1);
    Walk walk(Records());
    ExpectFurniture(walk, CPoint(chart->GetMaxTAndMaxDPnt().x, chart->GetMinTAndMinDPnt().y));
    walk.End();
}
