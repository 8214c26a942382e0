// Zones, data sets, the wet-bulb and volume lines and the legend on a recorded chart: what
// they draw lies where the state model says, what is off the chart is cut or skipped and
// counted, and bad limits are refused by name.
#include "overlays/OverlayTestSupport.h"

#include <kygraph/KyGDataSet.h>
#include <kygraph/KyGLegend.h>
#include <kygraph/KyGSameTwb.h>
#include <kygraph/KyGSameV.h>
#include <kygraph/KyGZone.h>

#include <cmath>
#include <limits>

namespace {

using Z = CKyGZone;

class Overlays : public Overlay {
protected:
    CRect Plot() const
    {
        return CRect(chart->GetChartOrigin().x, chart->GetChartOrigin().y, chart->GetMaxTAndMaxDPnt().x,
                     chart->GetMinTAndMinDPnt().y);
    }
    // The state under a recorded pixel; false off the chart.
    bool StateAt(CPoint p, CKyStaPnt& out) { return chart->Convert(p, out) != 0; }
};

}  // namespace

TEST_F(Overlays, PresetZonesHoldExactlyTheirBoundsAndReachEveryCorner)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // t range, RH range (fractions) and the upper d limit of each preset.
    const struct {
        Z::Preset preset;
        double t0, t1, rh0, rh1, dMax;
    } cases[] = {
        {Z::GB50736_Summer_I, 24, 26, 0.40, 0.60, nan},
        {Z::GB50736_Summer_II, 26, 28, 0.0, 0.70, nan},
        {Z::GB50736_Winter_I, 22, 24, 0.30, 1.0, nan},
        {Z::GB50736_Winter_II, 18, 22, 0.0, 1.0, nan},
        {Z::ASHRAE55_Summer, 22.5, 26, 0.30, 0.60, 12.0},
        {Z::ASHRAE55_Winter, 20, 23.5, 0.30, 0.60, 12.0},
    };
    for (const auto& c : cases) {
        const Z zone = Z::FromPreset(c.preset);
        const auto outline = zone.Outline();
        ASSERT_EQ(outline.size(), 1u) << Z::PresetKey(c.preset);
        for (const auto& [h, d] : outline[0]) {
            CKyStaPnt s;
            ASSERT_TRUE(s.SetBy_HandD(h, d));
            EXPECT_GE(s.GetTdb(), c.t0 - 1e-6) << Z::PresetKey(c.preset);
            EXPECT_LE(s.GetTdb(), c.t1 + 1e-6) << Z::PresetKey(c.preset);
            EXPECT_GE(s.GetRH(), c.rh0 - 1e-6) << Z::PresetKey(c.preset);
            EXPECT_LE(s.GetRH(), c.rh1 + 1e-6) << Z::PresetKey(c.preset);
            if (!std::isnan(c.dMax)) {
                EXPECT_LE(d, c.dMax + 1e-9);
            }
        }
        // The corners of the t x RH box are vertices of the outline (unless d cuts them).
        for (double t : {c.t0, c.t1}) {
            for (double rh : {c.rh0, c.rh1}) {
                CKyStaPnt corner;
                ASSERT_TRUE(corner.SetBy_TdbandRH(t, rh));
                if (!std::isnan(c.dMax) && corner.GetD() > c.dMax) continue;
                double nearest = 1e9;
                for (const auto& [h, d] : outline[0]) nearest = std::min(nearest, std::hypot(h - corner.GetH(), d - corner.GetD()));
                EXPECT_LT(nearest, 1e-6) << Z::PresetKey(c.preset) << " t " << t << " rh " << rh;
            }
        }
    }
}

TEST_F(Overlays, ZonesOfAnyLimitsHoldThemAndSplitOrVanishAsTheLimitsSay)
{
    const double inf = std::numeric_limits<double>::infinity();
    struct Limit {
        Z::Quantity q;
        double lo, hi;
    };
    const struct {
        const char* what;
        std::vector<Limit> limits;
        size_t pieces;
    } cases[] = {
        {"wet bulb band", {{Z::Twb, 15, 20}, {Z::Tdb, 15, 35}}, 1},
        {"enthalpy and d", {{Z::H, 40, 60}, {Z::D, 5, 10}}, 1},
        {"open sides", {{Z::Tdb, 30, inf}, {Z::RH, -inf, 0.2}}, 1},
        {"a saturated band", {{Z::Tdb, 10, 20}, {Z::RH, 1.0, 1.0}}, 1},
        {"wet bulb above every dry bulb", {{Z::Tdb, 10, 20}, {Z::Twb, 25, 30}}, 0},
        {"enthalpy above saturation", {{Z::Tdb, 0, 5}, {Z::H, 100, inf}}, 0},
    };
    for (const auto& c : cases) {
        Z zone;
        for (const Limit& l : c.limits) ASSERT_EQ(zone.SetBounds(l.q, l.lo, l.hi), 1) << c.what;
        const auto outline = zone.Outline();
        ASSERT_EQ(outline.size(), c.pieces) << c.what;
        for (const auto& piece : outline) {
            for (const auto& [h, d] : piece) {
                CKyStaPnt s;
                ASSERT_TRUE(s.SetBy_HandD(h, d)) << c.what;
                const double value[] = {s.GetTdb(), s.GetRH(), s.GetD(), s.GetH(), s.GetTwb()};
                for (const Limit& l : c.limits) {
                    const double tol = l.q == Z::RH ? 1e-6 : 1e-4;
                    EXPECT_GE(value[l.q], l.lo - tol) << c.what << " quantity " << l.q;
                    EXPECT_LE(value[l.q], l.hi + tol) << c.what << " quantity " << l.q;
                }
            }
        }
    }
}

TEST_F(Overlays, ZoneIsFilledTranslucentOutlinedAndCutToThePlotArea)
{
    Z zone;
    // Far beyond the chart on every side but the saturation curve.
    ASSERT_EQ(zone.SetBounds(Z::Tdb, -90, 150), 1);
    ASSERT_EQ(zone.SetBounds(Z::H, 20, 60), 1);
    zone.SetColor(RGB(10, 200, 30));
    ASSERT_EQ(DrawOne(&zone), 1);
    const auto fills = Records(CDrawRecord::FillPolygon);
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0].brushColor, RGB(10, 200, 30));
    EXPECT_EQ(fills[0].alpha, set->m_OverlaySetting.m_nZoneAlpha);
    const CRect plot = Plot();
    for (const CPoint& p : fills[0].pts) {
        EXPECT_GE(p.x, plot.left);
        EXPECT_LE(p.x, plot.right);
        EXPECT_GE(p.y, plot.top);
        EXPECT_LE(p.y, plot.bottom);
        // Inside the plot area every vertex is a state with 20 <= h <= 60 (a pixel's worth).
        CKyStaPnt s;
        if (StateAt(p, s)) {
            EXPECT_GT(s.GetH(), 19.0);
            EXPECT_LT(s.GetH(), 61.0);
        }
    }
    EXPECT_FALSE(Records(CDrawRecord::Polyline).empty());
}

TEST_F(Overlays, BadOrEmptyZonesAreRefusedByName)
{
    Z zone;
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        Z::Quantity q;
        double lo, hi;
        const wchar_t* named;
    } refused[] = {
        {Z::Tdb, 30, 20, L"t: "},
        {Z::RH, std::nan(""), 0.5, L"RH: "},
        {Z::Twb, 10, std::nan(""), L"twb: "},
        {static_cast<Z::Quantity>(9), 0, 1, L"?: "},
    };
    for (const auto& r : refused) {
        EXPECT_EQ(zone.SetBounds(r.q, r.lo, r.hi), 0);
        EXPECT_EQ(zone.GetLastErrorString().Find(r.named), 0) << zone.GetLastErrorString().ToUtf8();
    }
    EXPECT_EQ(zone.GetLow(Z::Tdb), -inf);  // unchanged by the refusals
    // Moist (RH >= 80 %) but almost dry (d <= 2 g/kg) between 30 and 40 °C: no such air.
    ASSERT_EQ(zone.SetBounds(Z::Tdb, 30, 40), 1);
    ASSERT_EQ(zone.SetBounds(Z::RH, 0.8, 1.0), 1);
    ASSERT_EQ(zone.SetBounds(Z::D, 0, 2), 1);
    EXPECT_TRUE(zone.Outline().empty());
    EXPECT_EQ(DrawOne(&zone), 0);
    EXPECT_EQ(zone.GetLastErrorString(), CString(L"区域的边界不包含任何状态。"));
    EXPECT_TRUE(Records(CDrawRecord::FillPolygon).empty());
}

TEST_F(Overlays, DataPointsLandOnTheirStatesAndOffChartOnesAreCounted)
{
    CKyGDataSet data;
    data.SetMode(CKyGDataSet::Points);
    const CKyStaPnt inside[] = {State(25, 60), State(10, 80), State(-5, 50), State(35, 40)};
    for (const CKyStaPnt& s : inside) data.Add(s);
    CKyStaPnt hot;
    ASSERT_TRUE(hot.SetBy_TdbandRH(80, 0.05));  // above the range
    data.Add(hot);
    data.AddHD(60.0, 80.0);                     // right of the range
    data.AddHD(std::nan(""), 5.0);
    ASSERT_EQ(DrawOne(&data), 1);
    EXPECT_EQ(data.GetSkipped(), 3);
    const auto dots = Records(CDrawRecord::Ellipse);
    ASSERT_EQ(dots.size(), std::size(inside));
    for (size_t i = 0; i < dots.size(); ++i) {
        const CPoint p = PixelOf(inside[i]);
        const CPoint c((dots[i].pts[0].x + dots[i].pts[1].x) / 2, (dots[i].pts[0].y + dots[i].pts[1].y) / 2);
        EXPECT_LE(std::abs(c.x - p.x), 1) << i;
        EXPECT_LE(std::abs(c.y - p.y), 1) << i;
    }
    CKyGDataSet none;
    none.AddHD(60.0, 80.0);
    EXPECT_EQ(DrawOne(&none), 0);
    EXPECT_EQ(none.GetSkipped(), 1);
}

TEST_F(Overlays, ManyStatesDrawAsADensityOfCellsShadedByCount)
{
    set->m_OverlaySetting.m_nDensityThreshold = 3;
    CKyGDataSet data;
    for (int i = 0; i < 5; ++i) data.Add(State(25, 60));  // one cell, five hours
    data.Add(State(5, 50));                               // another, one hour
    ASSERT_EQ(DrawOne(&data), 1);
    EXPECT_EQ(data.GetDrawnMode(), CKyGDataSet::Density);
    EXPECT_EQ(data.GetMaxPerCell(), 5);
    const auto cells = Records(CDrawRecord::FillPolygon);
    ASSERT_EQ(cells.size(), 2u);
    // The fuller cell is the darker, and each holds its state's pixel.
    const CPoint busy = PixelOf(State(25, 60));
    const auto holds = [](const CDrawRecord& r, CPoint p) {
        return p.x >= r.pts[0].x - 1 && p.x <= r.pts[2].x + 1 && p.y >= r.pts[0].y - 1 && p.y <= r.pts[2].y + 1;
    };
    const CDrawRecord& a = holds(cells[0], busy) ? cells[0] : cells[1];
    const CDrawRecord& b = holds(cells[0], busy) ? cells[1] : cells[0];
    EXPECT_TRUE(holds(a, busy));
    EXPECT_TRUE(holds(b, PixelOf(State(5, 50))));
    EXPECT_GT(a.alpha, b.alpha);
    EXPECT_EQ(Records(CDrawRecord::Ellipse).size(), 0u);
}

TEST_F(Overlays, WetBulbAndVolumeLinesFollowTheirValue)
{
    set->m_OverlaySetting.m_SameTwbStyle.nPenStyle = PS_SOLID;
    const struct {
        bool wetBulb;
        double value, tolerance;
    } cases[] = {{true, 20.0, 0.25}, {true, 5.0, 0.25}, {false, 0.86, 0.002}, {false, 0.80, 0.002}};
    for (const auto& c : cases) {
        CKyGSameTwb twb;
        CKyGSameV v;
        twb.SetValue(c.value);
        v.SetValue(c.value);
        ASSERT_EQ(DrawOne(c.wetBulb ? static_cast<CKyGDrawBase*>(&twb) : &v), 1) << c.value;
        const auto lines = Records(CDrawRecord::Polyline);
        ASSERT_FALSE(lines.empty()) << c.value;
        int checked = 0;
        for (const CDrawRecord& l : lines) {
            for (const CPoint& p : l.pts) {
                CKyStaPnt s;
                if (!StateAt(p, s)) continue;
                EXPECT_NEAR(c.wetBulb ? s.GetTwb() : s.GetV(), c.value, c.tolerance) << p.x << "," << p.y;
                ++checked;
            }
        }
        EXPECT_GE(checked, 2) << c.value;
    }
}

TEST_F(Overlays, LegendListsWhatIsShownAndSitsWhereNoStateIs)
{
    set->m_DrawHstSetting.m_bShowSameH = 0;
    set->m_OverlaySetting.m_bShowSameTwb = 1;
    CKyGLegend legend;
    legend.AddZone(Z::FromPreset(Z::GB50736_Summer_I));
    legend.AddProcess(L"送风");
    ASSERT_EQ(DrawOne(&legend), 1);
    std::vector<CString> texts;
    for (const CDrawRecord& t : Records(CDrawRecord::Text)) texts.push_back(t.text);
    const std::vector<CString> expected = {L"等温线", L"等含湿量线", L"等相对湿度线", L"等湿球温度线",
                                           L"GB 50736 夏季 I级", L"送风"};
    EXPECT_EQ(texts, expected);
    const CRect box = legend.GetPlacedRect();
    const CRect plot = Plot();
    EXPECT_TRUE(box.left >= plot.left && box.right <= plot.right && box.top >= plot.top && box.bottom <= plot.bottom);
    for (const CPoint& corner : {box.TopLeft(), box.BottomRight(), CPoint(box.left, box.bottom), CPoint(box.right, box.top)}) {
        CKyStaPnt s;
        EXPECT_FALSE(StateAt(corner, s)) << corner.x << "," << corner.y;
    }
    CKyGLegend empty;
    empty.SetFamilies(0);
    EXPECT_EQ(DrawOne(&empty), 0);
    // A position the host fixes is kept, and twice the draw scale makes the box larger.
    const CSize one = box.Size();
    set->m_dDrawScale = 2.0;
    legend.SetPosition(CPoint(30, 40));
    ASSERT_EQ(DrawOne(&legend), 1);
    EXPECT_EQ(legend.GetPlacedRect().TopLeft(), CPoint(30, 40));
    EXPECT_GT(legend.GetPlacedRect().Width(), one.cx * 3 / 2);
    EXPECT_GT(legend.GetPlacedRect().Height(), one.cy * 3 / 2);
}
