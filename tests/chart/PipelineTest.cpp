// The drawing surface and the full redraw: window handling, the fixed family order and the
// values the families are handed, seen through the surface's recorded primitives.
#include "ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyGHRuler.h>
#include <kygraph/KyGSameRH.h>
#include <kygraph/KyGraphApp.h>

#include <chrono>
#include <cwctype>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>

namespace {

struct CountingElement : CKyGDrawBase {
    int Draw(CDC* pDC) override
    {
        seen = pDC;
        settings = &Settings();
        scale = Frame().Scale();
        if (fail) throw std::runtime_error("element failure");
        return 7;
    }
    bool fail = false;
    CDC* seen = nullptr;
    const CKyGChartSetting* settings = nullptr;
    double scale = 0.0;
};

bool IsNumber(const CString& s)
{
    for (int i = 0; i < s.GetLength(); ++i)
        if (!std::iswdigit(s[i]) && s[i] != L'.' && s[i] != L'-' && s[i] != L'%') return false;
    return !s.IsEmpty();
}

class Pipeline : public ChartFixture {
protected:
    void SetUp() override
    {
        ChartFixture::SetUp();
        // Colours no other element uses pick out each family's labels.
        set->m_StyleSetting.m_SameDStyle.crColor = kD;
        set->m_StyleSetting.m_SameRHStyle.crColor = kRH;
        set->m_StyleSetting.m_SameTStyle.crColor = kT;
        wnd.EnableRecording(true);
    }
    void Redraw()
    {
        ASSERT_EQ(chart->AttachDarwWnd(&wnd), 1);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
    }
    // The numeric labels drawn in colour, in drawing order, and the record index of each.
    std::vector<std::wstring> Labels(COLORREF color, std::vector<int>* where = nullptr) const
    {
        std::vector<std::wstring> out;
        const auto& records = chart->GetChartDC()->GetRecords();
        for (size_t i = 0; i < records.size(); ++i) {
            const CDrawRecord& r = records[i];
            if (r.kind != CDrawRecord::Text || r.textColor != color || !IsNumber(r.text)) continue;
            out.push_back(r.text.str());
            if (where) where->push_back(static_cast<int>(i));
        }
        return out;
    }
    int IndexOf(const wchar_t* text) const
    {
        const auto& records = chart->GetChartDC()->GetRecords();
        for (size_t i = 0; i < records.size(); ++i)
            if (records[i].kind == CDrawRecord::Text && records[i].text == text) return static_cast<int>(i);
        return -1;
    }
    static std::vector<std::wstring> Sequence(int first, int last, int step, const wchar_t* suffix)
    {
        std::vector<std::wstring> out;
        for (int v = first; v <= last; v += step) out.push_back(std::to_wstring(v) + suffix);
        return out;
    }

    static constexpr COLORREF kD = RGB(1, 0, 0), kRH = RGB(2, 0, 0), kT = RGB(3, 0, 0), kH = RGB(4, 0, 0);
    CImageWnd wnd{1000, 800, RGB(250, 250, 240)};
};

}  // namespace

TEST_F(Pipeline, WithoutAWindowOrSurfaceNothingIsDrawn)
{
    EXPECT_EQ(chart->AttachDarwWnd(nullptr), 1);
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(chart->DrawAllChart(), 0);
    CountingElement e;
    EXPECT_EQ(chart->Draw(&e), 0);
    EXPECT_EQ(e.GetChart(), chart);  // the element keeps the chart all the same
    EXPECT_EQ(e.seen, nullptr);

    auto gone = std::make_unique<CImageWnd>(300, 200);
    chart->AttachDarwWnd(gone.get());
    gone.reset();  // the chart still holds the pointer
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);

    CKyGChart own;  // never had a surface
    own.AttachDarwWnd(&wnd);
    EXPECT_EQ(own.UptateDrawWnd(0), 0);
    EXPECT_EQ(own.DrawAllChart(), 1);
}

TEST_F(Pipeline, RedrawOfAnEmptyWindowStillFollowsTheDesignConditions)
{
    CImageWnd empty(0, 0);
    ASSERT_EQ(chart->AttachDarwWnd(&empty), 1);
    set->m_DrawHstSetting.m_bWinter = 1;
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(chart->GetStaPntW().GetName(), L"室外点");
    EXPECT_NEAR(chart->GetStaPntW().GetRH(), 0.37, 1e-9);
    set->m_DrawHstSetting.m_bWinter = 0;
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    EXPECT_NEAR(chart->GetStaPntN().GetRH(), 0.60, 1e-9);
    EXPECT_NEAR(chart->GetStaPntN().GetTdb(), 25.0, 1e-9);
}

TEST_F(Pipeline, SurfaceIsClearedCopiedAndHandedToElements)
{
    Redraw();
    const CDrawRecord& first = chart->GetChartDC()->GetRecords().at(0);
    EXPECT_EQ(first.kind, CDrawRecord::FillRect);
    EXPECT_EQ(first.pts, (std::vector<CPoint>{CPoint(0, 0), CPoint(1000, 800)}));
    EXPECT_EQ(first.bkColor, RGB(250, 250, 240));

    CountingElement e;
    EXPECT_EQ(chart->Draw(&e), 7);
    EXPECT_EQ(e.seen, chart->GetChartDC());
    EXPECT_EQ(e.settings, set);
    e.fail = true;
    EXPECT_EQ(chart->Draw(&e), 0);  // nothing is thrown across the interface
    e.fail = false;

    // An element reads the frame of the chart it is drawn through: a chart of the host's own
    // hands it that chart's settings and fitted draw scale, not the singleton's.
    CKyGChartSetting own(*set);
    CKyGChart mine(own);
    CImageWnd half{500, 400, RGB(255, 255, 255)};
    ASSERT_EQ(mine.AttachDarwWnd(&half), 1);
    ASSERT_NE(mine.UptateDrawWnd(1), 0);
    EXPECT_EQ(mine.Draw(&e), 7);
    EXPECT_EQ(e.settings, &own);
    EXPECT_EQ(e.scale, own.GetDrawScale());
    EXPECT_NE(e.scale, set->GetDrawScale());
    mine.AttachDarwWnd(nullptr);

    // After the window grew only the old surface is copied; a shrunk one copies what fits.
    ASSERT_TRUE(wnd.SetClientSize(1200, 900));
    EXPECT_NE(chart->UptateDrawWnd(0), 0);
    ASSERT_TRUE(wnd.SetClientSize(10, 10));
    EXPECT_NE(chart->UptateDrawWnd(0), 0);
}

// A redraw starts from a clear surface whatever the last one left on it, also after the host
// drew on the chart's DC; a vector window of the size of the last raster one gets a document
// of its own, equal to that of a chart drawn on it first, and the other way round.
TEST_F(Pipeline, EveryRedrawShowsTheSameImageOnEachKindOfWindow)
{
    Redraw();
    const std::string first = wnd.Encode();
    chart->GetChartDC()->FillSolidRect(100, 100, 300, 300, RGB(255, 0, 0));
    ASSERT_NE(chart->UptateDrawWnd(0), 0);
    ASSERT_NE(wnd.Encode(), first);
    ASSERT_NE(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(wnd.Encode(), first);

#if !defined(_WIN32)  // vector windows are the Cairo backend's
    std::string svgs[2];
    for (int size : {1000, 500}) {
        CImageWnd other{size, size * 4 / 5, RGB(250, 250, 240)};
        ASSERT_EQ(chart->AttachDarwWnd(&other), 1);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
        CImageWnd svg{1000, 800, RGB(250, 250, 240), CImageWnd::Svg};
        ASSERT_EQ(chart->AttachDarwWnd(&svg), 1);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
        svgs[size == 500] = svg.Encode();
    }
    EXPECT_EQ(svgs[0], svgs[1]);
    EXPECT_NE(svgs[0].find("CKyGSameRH"), std::string::npos);
    // And back on the raster window after a vector one of its size.
    ASSERT_EQ(chart->AttachDarwWnd(&wnd), 1);
    ASSERT_NE(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(wnd.Encode(), first);
#endif
}

// The states along a humidity curve and those of the enthalpy ruler's ticks are kept from one
// redraw to the next. After each change of what shapes them the curves and the ruler are those
// drawn once all that was kept is forgotten.
TEST_F(Pipeline, CurvesFollowEveryChangeOfWhatShapesThem)
{
    set->m_StyleSetting.m_SameHStyle.crColor = kH;
    CKyChart* global = CKyChart::InstanceGloble();
    const double b = global->GetGlobleB();
    const Ky::_Formulation form = global->GetFormulation();
    const auto curves = [&] {
        std::vector<std::vector<CPoint>> out;
        if (chart->UptateDrawWnd(1) == 0) return out;
        for (const CDrawRecord& r : chart->GetChartDC()->GetRecords())
            if ((r.kind == CDrawRecord::Polyline && r.penColor == kRH) ||
                (r.kind == CDrawRecord::Line && r.penColor == kH))
                out.push_back(r.pts);
        return out;
    };
    struct Case {
        const char* change;
        std::function<void()> apply;
    };
    const Case cases[] = {
        {"lowest dry bulb", [&] { set->m_RangeSetting.SetMinT(-12.5); }},
        {"pressure", [&] { global->SetGlobleB(80000.0); }},
        {"formulation", [&] { global->SetFormulation(Ky::FORMULATION_REALGAS); }},
        {"plot's place", [&] { chart->SetOrigin(chart->GetOrigin() + CSize(7, -5)); }},
        {"isotherms' slope", [&] { set->m_dDLength *= 1.25; }},
    };
    ASSERT_EQ(chart->AttachDarwWnd(&wnd), 1);
    const CPoint origin = chart->GetOrigin();
    const double dLength = set->m_dDLength;
    for (const Case& c : cases) {
        const auto before = curves();
        c.apply();
        const auto kept = curves();
        CKyGSameRH::ForgetKept();
        CKyGHRuler::ForgetKept();
        const auto fresh = curves();
        EXPECT_GT(kept.size(), 11u + 200u) << c.change;
        EXPECT_EQ(kept, fresh) << c.change;
        EXPECT_NE(kept, before) << c.change;
        set->m_RangeSetting = saved.m_RangeSetting;
        global->SetGlobleB(b);
        global->SetFormulation(form);
        chart->SetOrigin(origin);
        set->m_dDLength = dLength;
    }
}

TEST_F(Pipeline, FamiliesAreDrawnInOrderWithTheirSteppedValues)
{
    set->m_DrawHstSetting.m_dDInterval = 1.0;
    set->m_RangeSetting.SetMinT(-12.5);
    Redraw();
    std::vector<int> d, rh, t;
    EXPECT_EQ(Labels(kD, &d), Sequence(0, 50, 5, L".0"));  // labels on multiples of 5 only
    std::vector<std::wstring> humidities = Sequence(5, 95, 10, L"%");
    humidities.push_back(L"100%");
    EXPECT_EQ(Labels(kRH, &rh), humidities);
    EXPECT_EQ(Labels(kT, &t), Sequence(-5, 65, 5, L""));  // -12.5 unlabelled, -10 skipped
    ASSERT_FALSE(d.empty() || rh.empty() || t.empty());
    EXPECT_LT(d.back(), rh.front());
    EXPECT_LT(rh.back(), t.front());
    EXPECT_LT(t.back(), IndexOf(L"室外点"));
    EXPECT_LT(IndexOf(L"室外点"), IndexOf(L"室内点"));

    const CKyStaPnt w = chart->GetStaPntW(), n = chart->GetStaPntN();
    EXPECT_EQ(w.GetName(), L"室外点");
    EXPECT_NEAR(w.GetTwb(), 26.4, 1e-6);
    EXPECT_EQ(n.GetName(), L"室内点");
    EXPECT_NEAR(n.GetRH(), 0.60, 1e-9);
}

TEST_F(Pipeline, SwitchesGateTheFamiliesButNotTheReferencePoints)
{
    CKyGDrawHstSetting& hst = set->m_DrawHstSetting;
    hst.m_bShowASChart = hst.m_bShowSameT = hst.m_bShowSameD = hst.m_bShowSameH = hst.m_bShowSameRH = 0;
    hst.m_bWinter = 7;  // any non-zero value selects winter
    Redraw();
    EXPECT_TRUE(Labels(kD).empty() && Labels(kRH).empty() && Labels(kT).empty());
    EXPECT_LT(IndexOf(L"室外点"), IndexOf(L"室内点"));
    EXPECT_NEAR(chart->GetStaPntW().GetRH(), 0.37, 1e-9);
    EXPECT_NEAR(chart->GetStaPntN().GetTdb(), 20.0, 1e-9);

    hst.m_bShowSameRH = 1;
    hst.m_dRHInterval = 5.0;
    Redraw();
    std::vector<std::wstring> rh = Sequence(5, 100, 5, L"%");
    rh.push_back(L"100%");  // landing on 100 % draws it twice, as intended
    EXPECT_EQ(Labels(kRH), rh);
}

TEST_F(Pipeline, HostileSettingsAndSizesFinishInBoundedTime)
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    CKyGDrawHstSetting& hst = set->m_DrawHstSetting;
    const std::function<void()> edits[] = {
        [&] { hst.m_dDInterval = 0.1, hst.m_dTInterval = 0.3, hst.m_dHInterval = 0.05; },
        [&] { hst.m_dHInterval = 0.0, hst.m_dRHInterval = -5, hst.m_dDInterval = inf; },
        [&] { hst.m_dTInterval = 1e-300, hst.m_dRHInterval = 1e-300, hst.m_dDInterval = nan; },
        [&] { set->m_RangeSetting.SetMinT(65), set->m_RangeSetting.SetMaxT(-30); },
        [&] { set->m_RangeSetting.SetMaxD(nan), set->m_RangeSetting.SetMinT(nan); },
        [&] { set->m_dLeftMargin = -500, set->m_dTLength = 1e9, set->m_dDLength = -10; },
        [&] { set->m_dBottomMargin = 1e300, set->m_dTopMargin = nan; },
        [&] { set->m_dDrawScale = 1e6; },
        [&] { set->m_dDrawScale = inf; },
        [&] { hst.m_dSummerOutTdb = nan, hst.m_dSummerInRH = inf; },
    };
    for (size_t i = 0; i < std::size(edits); ++i) {
        TearDown();
        SetUp();
        edits[i]();
        chart->AttachDarwWnd(&wnd);
        edits[i]();  // again: the fit may have replaced the draw scale
        const auto start = std::chrono::steady_clock::now();
        chart->UptateDrawWnd(1);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60)) << i;
    }
    TearDown();
    SetUp();
    for (int side : {0, 1, 20000}) {
        CImageWnd sized(side, side);
        chart->AttachDarwWnd(&sized);
        EXPECT_EQ(chart->UptateDrawWnd(1) != 0, side > 0) << side;
    }
}

TEST(ModuleFrame, StartUpSucceeds)
{
    CKyGraphApp app;
    EXPECT_TRUE(app.InitInstance());
}
