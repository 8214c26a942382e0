// The chart frame: title block rows, page border, body edges and axis titles, to the pixel.
#include "FurnitureFixture.h"

#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyStaPnt.h>

namespace {

class Frame : public Furniture {
protected:
    std::vector<std::string> Expected(bool title, CPoint rightEdgeEnd, const CString& pressure) const
    {
        const CPoint O = chart->GetOrigin(), M = chart->GetChartMaxPoint(), A = chart->GetChartOrigin();
        const CPoint B = chart->GetMinTAndMinDPnt(), E = chart->GetMaxTAndMaxDPnt();
        std::vector<std::string> out;
        if (title) {
            const CString kcal(L"i=0.24t+0.001d(597.3+0.44t)kcal/kg.干空气"), name(L"湿空气焓湿图");
            const int th = Ky::TruncToInt(10 * s), w = Extent(th, kcal).cx, h = Extent(th, kcal).cy;
            const int x0 = B.x + (E.x - A.x) / 2 - w / 2, y0 = B.y;
            // Centred by the font the surface holds, not the frame's own: intended.
            const int tw = chart->GetChartDC()->GetTextExtent(name).cx;
            out = {Line({x0, y0}, {x0 + w, y0}), Text({x0, y0 - 2 * h}, kcal, th),
                   Text({x0, y0 - 3 * h}, L"i=1.01t+0.001d(2500+1.84t)kJ/kg.干空气", th),
                   Text({x0, y0 - 5 * h}, pressure, th), Text({x0 + w / 2 - tw / 2, y0 - 7 * h}, name, th),
                   Line({x0, y0 - 8 * h}, {x0 + w, y0 - 8 * h})};
        }
        const int th = Ky::TruncToInt(7 * s);
        const CSize d = Extent(th, L"含湿量 d g/kg.干空气"), t = Extent(th, L"温度 ℃");
        const std::vector<std::string> rest{
            Line(O, {O.x, M.y}), Line({O.x, M.y}, M), Line(M, {M.x, O.y}), Line({M.x, O.y}, O),
            Text({A.x + (E.x - A.x) / 2 - d.cx / 2, Ky::TruncToInt(A.y - 6 * s) - d.cy}, L"含湿量 d g/kg.干空气",
                 th),
            Line(A, E), Line(E, rightEdgeEnd), Line(A, B),
            Text({Ky::TruncToInt(A.x - 6 * s) - t.cy, A.y + (B.y - A.y) / 2}, L"温度 ℃", th, 900)};
        out.insert(out.end(), rest.begin(), rest.end());
        return out;
    }
    CPoint SaturationAtMaxD() const
    {
        CKyStaPnt p;
        EXPECT_TRUE(p.SetBy_DandRH(set->m_RangeSetting.GetMaxD(), 1.0));
        return Pixel(p);
    }
};

}  // namespace

TEST_F(Frame, TitleBlockBorderEdgesAndAxisTitlesAtEveryScale)
{
    for (const CSize window : {CSize(580, 500), CSize(1000, 800), CSize(1120, 960)})
        for (const int title : {1, 0}) {
            Attach(window.cx, window.cy);
            SCOPED_TRACE(testing::Message() << "scale " << s << " title " << title);
            CKyGChartFrame frame;
            frame.SetTitleEnable(title);
            ASSERT_EQ(DrawAlone(frame), 1);
            EXPECT_EQ(Drawn(), Expected(title, SaturationAtMaxD(), L"大气压 101325Pa/760mmHg"));
        }
}

TEST_F(Frame, PressureFromTheModelAndTheRightEdgeWithoutASaturationPoint)
{
    Attach(1000, 800);
    ASSERT_TRUE(CKyChart::InstanceGloble()->SetGlobleB(100000.0));
    set->m_RangeSetting.SetMaxD(300.0);  // saturated at about 71 degC, above the range
    CKyGChartFrame frame;
    ASSERT_EQ(DrawAlone(frame), 1);
    const CPoint bottomRight(chart->GetMaxTAndMaxDPnt().x, chart->GetMinTAndMinDPnt().y);
    EXPECT_EQ(Drawn(), Expected(true, bottomRight, L"大气压 100000Pa/750mmHg"));
}
