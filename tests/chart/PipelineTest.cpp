// The drawing surface and the full redraw: window handling, the fixed family order and the
// values the families are handed, seen through the surface's recorded primitives.
#include "ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyGraphApp.h>

#include <chrono>
#include <cwctype>
#include <limits>
#include <memory>
#include <stdexcept>

namespace {

struct CountingElement : CKyGDrawBase {
    int Draw(CDC* pDC) override
    {
        ++calls;
        seen = pDC;
        if (fail) throw std::runtime_error("element failure");
        return 7;
    }
    int calls = 0;
    bool fail = false;
    CDC* seen = nullptr;
};

bool IsNumber(const CString& s)
{
    if (s.IsEmpty()) return false;
    for (int i = 0; i < s.GetLength(); ++i)
        if (!std::iswdigit(s[i]) && s[i] != L'.' && s[i] != L'-' && s[i] != L'%') return false;
    return true;
}

class Pipeline : public ChartFixture {
protected:
    void SetUp() override
    {
        ChartFixture::SetUp();
        // Colours no other element uses pick out each family's labels.
        set->m_StyleSetting.m_SameDStyle.crColor = RGB(1, 0, 0);
        set->m_StyleSetting.m_SameRHStyle.crColor = RGB(2, 0, 0);
        set->m_StyleSetting.m_SameTStyle.crColor = RGB(3, 0, 0);
        wnd.EnableRecording(true);
    }
    // Redraws and returns the numeric labels drawn in colour, in drawing order.
    std::vector<std::wstring> Labels(COLORREF color)
    {
        std::vector<std::wstring> out;
        for (const CDrawRecord& r : chart->GetChartDC()->GetRecords())
            if (r.kind == CDrawRecord::Text && r.textColor == color && IsNumber(r.text)) out.push_back(r.text.str());
        return out;
    }
    int IndexOf(const wchar_t* text)
    {
        const auto& records = chart->GetChartDC()->GetRecords();
        for (size_t i = 0; i < records.size(); ++i)
            if (records[i].kind == CDrawRecord::Text && records[i].text == text) return static_cast<int>(i);
        return -1;
    }
    // Record indices of the first and last numeric label in colour (-1 when there is none).
    std::pair<int, int> LabelSpan(COLORREF color)
    {
        std::pair<int, int> span{-1, -1};
        const auto& records = chart->GetChartDC()->GetRecords();
        for (size_t i = 0; i < records.size(); ++i) {
            const CDrawRecord& r = records[i];
            if (r.kind != CDrawRecord::Text || r.textColor != color || !IsNumber(r.text)) continue;
            if (span.first < 0) span.first = static_cast<int>(i);
            span.second = static_cast<int>(i);
        }
        return span;
    }
    void Redraw()
    {
        chart->GetChartDC()->ClearRecords();  // the DC object keeps its records across surfaces
        ASSERT_EQ(chart->AttachDarwWnd(&wnd), 1);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
    }

    CImageWnd wnd{1000, 800, RGB(250, 250, 240)};
};

}  // namespace

TEST_F(Pipeline, WithoutAWindowNothingIsDrawn)
{
    EXPECT_EQ(chart->AttachDarwWnd(nullptr), 1);
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(chart->UptateDrawWnd(0), 0);
    EXPECT_EQ(chart->DrawAllChart(), 0);
    CountingElement e;
    EXPECT_EQ(chart->Draw(&e), 0);
    EXPECT_EQ(e.GetChart(), chart);  // the element keeps the chart all the same
    EXPECT_EQ(e.calls, 0);
    EXPECT_EQ(chart->Draw(nullptr), 0);

    auto gone = std::make_unique<CImageWnd>(300, 200);
    chart->AttachDarwWnd(gone.get());
    gone.reset();  // the chart still holds the pointer
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(chart->DrawAllChart(), 0);

    CKyGChart own;  // a chart that never had a surface
    own.AttachDarwWnd(&wnd);
    EXPECT_EQ(own.UptateDrawWnd(0), 0);
    EXPECT_EQ(own.DrawAllChart(), 1);  // draws nothing, crashes nothing
}

TEST_F(Pipeline, DrawHandsTheElementTheChartAndTheSurface)
{
    Redraw();
    CountingElement e;
    EXPECT_EQ(chart->Draw(&e), 7);
    EXPECT_EQ(e.GetChart(), chart);
    EXPECT_EQ(e.seen, chart->GetChartDC());
    e.fail = true;
    EXPECT_EQ(chart->Draw(&e), 0);  // nothing is thrown across the interface
}

TEST_F(Pipeline, SurfaceIsClearedToTheWindowBackgroundAndCopied)
{
    Redraw();
    const auto& records = chart->GetChartDC()->GetRecords();
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.front().kind, CDrawRecord::FillRect);
    EXPECT_EQ(records.front().pts, (std::vector<CPoint>{CPoint(0, 0), CPoint(1000, 800)}));
    EXPECT_EQ(records.front().bkColor, RGB(250, 250, 240));
    EXPECT_EQ(wnd.GetPixel(1, 1), RGB(250, 250, 240));

    // After the window grew only the old surface is copied; a shrunk one copies what fits.
    ASSERT_TRUE(wnd.SetClientSize(1200, 900));
    EXPECT_NE(chart->UptateDrawWnd(0), 0);
    ASSERT_TRUE(wnd.SetClientSize(10, 10));
    EXPECT_NE(chart->UptateDrawWnd(0), 0);
}

TEST_F(Pipeline, FamiliesAreDrawnInOrderWithTheirSteppedValues)
{
    set->m_DrawHstSetting.m_dDInterval = 1.0;
    set->m_RangeSetting.SetMinT(-12.5);
    Redraw();

    std::vector<std::wstring> d;
    for (int v = 0; v <= 50; v += 5) d.push_back(std::to_wstring(v) + L".0");
    EXPECT_EQ(Labels(RGB(1, 0, 0)), d);
    std::vector<std::wstring> rh;
    for (int v = 5; v <= 95; v += 10) rh.push_back(std::to_wstring(v) + L"%");
    rh.push_back(L"100%");
    EXPECT_EQ(Labels(RGB(2, 0, 0)), rh);
    std::vector<std::wstring> t;
    for (int v = -5; v <= 65; v += 5) t.push_back(std::to_wstring(v));
    EXPECT_EQ(Labels(RGB(3, 0, 0)), t);  // -12.5 unlabelled, -10 skipped

    const auto dSpan = LabelSpan(RGB(1, 0, 0)), rhSpan = LabelSpan(RGB(2, 0, 0)), tSpan = LabelSpan(RGB(3, 0, 0));
    const int outdoor = IndexOf(L"室外点"), indoor = IndexOf(L"室内点");
    EXPECT_LT(dSpan.second, rhSpan.first);
    EXPECT_LT(rhSpan.second, tSpan.first);
    EXPECT_LT(tSpan.second, outdoor);
    EXPECT_LT(outdoor, indoor);

    CKyStaPnt w = chart->GetStaPntW(), n = chart->GetStaPntN();
    EXPECT_EQ(w.GetName(), L"室外点");
    EXPECT_NEAR(w.GetTdb(), 33.2, 1e-9);
    EXPECT_NEAR(w.GetTwb(), 26.4, 1e-6);
    EXPECT_EQ(n.GetName(), L"室内点");
    EXPECT_NEAR(n.GetRH(), 0.60, 1e-9);
}

TEST_F(Pipeline, SwitchesGateTheFamiliesButNotTheReferencePoints)
{
    CKyGDrawHstSetting& hst = set->m_DrawHstSetting;
    hst.m_bShowASChart = hst.m_bShowSameT = hst.m_bShowSameD = hst.m_bShowSameH = hst.m_bShowSameRH = 0;
    hst.m_bWinter = 7;  // any non-zero value selects winter
    hst.m_dRHInterval = 5.0;
    Redraw();
    EXPECT_TRUE(Labels(RGB(2, 0, 0)).empty());
    EXPECT_TRUE(Labels(RGB(1, 0, 0)).empty());
    EXPECT_TRUE(Labels(RGB(3, 0, 0)).empty());
    EXPECT_GE(IndexOf(L"室外点"), 0);
    EXPECT_GE(IndexOf(L"室内点"), 0);
    EXPECT_NEAR(chart->GetStaPntW().GetTdb(), -9.8, 1e-9);
    EXPECT_NEAR(chart->GetStaPntW().GetRH(), 0.37, 1e-9);
    EXPECT_NEAR(chart->GetStaPntN().GetTdb(), 20.0, 1e-9);

    hst.m_bShowSameRH = 1;
    Redraw();
    std::vector<std::wstring> rh;
    for (int v = 5; v <= 100; v += 5) rh.push_back(std::to_wstring(v) + L"%");
    rh.push_back(L"100%");  // landing on 100 % draws it twice, as intended
    EXPECT_EQ(Labels(RGB(2, 0, 0)), rh);
}

TEST_F(Pipeline, HostileSettingsAndSizesFinishInBoundedTime)
{
    using Edit = void (*)(CKyGChartSetting*);
    const Edit edits[] = {
        [](CKyGChartSetting* s) { s->m_DrawHstSetting.m_dDInterval = 0.1; s->m_DrawHstSetting.m_dTInterval = 0.3; },
        [](CKyGChartSetting* s) { s->m_DrawHstSetting.m_dHInterval = 0.0; s->m_DrawHstSetting.m_dRHInterval = -5; },
        [](CKyGChartSetting* s) { s->m_DrawHstSetting.m_dTInterval = 1e-300; s->m_DrawHstSetting.m_dRHInterval = 1e-300; },
        [](CKyGChartSetting* s) { s->m_DrawHstSetting.m_dDInterval = std::numeric_limits<double>::quiet_NaN(); },
        [](CKyGChartSetting* s) { s->m_RangeSetting.SetMinT(65); s->m_RangeSetting.SetMaxT(-30); },
        [](CKyGChartSetting* s) { s->m_RangeSetting.SetMaxD(std::numeric_limits<double>::quiet_NaN()); },
        [](CKyGChartSetting* s) { s->m_dLeftMargin = -500; s->m_dTLength = 1e9; },
        [](CKyGChartSetting* s) { s->m_dBottomMargin = 1e300; s->m_dDLength = -10; },
        [](CKyGChartSetting* s) { s->m_dDrawScale = 1e6; },
        [](CKyGChartSetting* s) { s->m_dDrawScale = std::numeric_limits<double>::infinity(); },
        [](CKyGChartSetting* s) { s->m_DrawHstSetting.m_dSummerOutTdb = std::numeric_limits<double>::quiet_NaN(); },
    };
    for (size_t i = 0; i < std::size(edits); ++i) {
        TearDown();
        SetUp();
        edits[i](set);
        chart->AttachDarwWnd(&wnd);
        edits[i](set);  // again: the fit may have replaced the draw scale
        const auto start = std::chrono::steady_clock::now();
        chart->UptateDrawWnd(1);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60)) << i;
    }
    for (int side : {0, 1, 20000}) {
        TearDown();
        SetUp();
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
