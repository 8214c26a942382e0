// Chart core: both directions of the pixel/state mapping, a full redraw at the default
// 1000 x 800, at a 4K screen's 3840 x 2160 and at 8K, and the floor a redraw is measured
// against: the very primitives it records, replayed through CDC on a surface of its size.
#include <kygraph/Bitmap.h>
#include <kygraph/Brush.h>
#include <kygraph/DC.h>
#include <kygraph/Font.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/Pen.h>

#include <benchmark/benchmark.h>

namespace {

void AttachDefault(CImageWnd& wnd)
{
    CKyGChart::GetKyGChart()->AttachDarwWnd(&wnd);
}

void BM_ConvertPixelToState(benchmark::State& state)
{
    CImageWnd wnd(1000, 800);
    AttachDefault(wnd);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    const CPoint o = chart->GetChartOrigin();
    CKyStaPnt pnt;
    int i = 0;
    int converted = 0;
    for (auto _ : state) {
        // Unsaturated air near the left edge: every pixel converts.
        const CPoint pt(o.x + 10 + (i & 127), o.y + 100 + ((i >> 7) & 255));
        converted += chart->Convert(pt, pnt);
        ++i;
    }
    state.counters["converted"] = benchmark::Counter(converted, benchmark::Counter::kAvgIterations);
    chart->AttachDarwWnd(nullptr);
}
BENCHMARK(BM_ConvertPixelToState);

void BM_ConvertStateToPixel(benchmark::State& state)
{
    CImageWnd wnd(1000, 800);
    AttachDefault(wnd);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    CKyStaPnt pnt;
    pnt.SetBy_TdbandRH(25.0, 0.6);
    CPoint pt;
    for (auto _ : state) benchmark::DoNotOptimize(chart->Convert(pnt, pt));
    chart->AttachDarwWnd(nullptr);
}
BENCHMARK(BM_ConvertStateToPixel);

void BM_FullRedraw(benchmark::State& state, int w, int h)
{
    CImageWnd wnd(w, h);
    AttachDefault(wnd);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    for (auto _ : state) {
        if (!chart->UptateDrawWnd(1)) {
            state.SkipWithError("the chart could not be drawn");
            break;
        }
    }
    chart->AttachDarwWnd(nullptr);
}
BENCHMARK_CAPTURE(BM_FullRedraw, 1000x800, 1000, 800)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_FullRedraw, 3840x2160, 3840, 2160)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_FullRedraw, 7680x4320, 7680, 4320)->Unit(benchmark::kMillisecond);

// Draws one recorded primitive as the chart's own primitives do: its pen, brush and font made
// for the call and released after it.
void Replay(CDC& dc, const CDrawRecord& r)
{
    CPen pen(r.penStyle, r.penWidth, r.penColor);
    CBrush brush;
    if (r.brushNull) brush.CreateNullBrush();
    else brush.CreateSolidBrush(r.brushColor);
    CPen* oldPen = dc.SelectObject(&pen);
    CBrush* oldBrush = dc.SelectObject(&brush);
    const auto& p = r.pts;
    switch (r.kind) {
    case CDrawRecord::Line:
        dc.MoveTo(p[0]);
        dc.LineTo(p[1]);
        break;
    case CDrawRecord::Polyline:
        dc.Polyline(p.data(), static_cast<int>(p.size()));
        break;
    case CDrawRecord::Arc:
        dc.Arc(p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
        break;
    case CDrawRecord::Ellipse:
        dc.Ellipse(p[0].x, p[0].y, p[1].x, p[1].y);
        break;
    case CDrawRecord::Text: {
        LOGFONT lf{};
        lf.lfHeight = r.fontHeight;
        lf.lfWeight = FW_NORMAL;
        lf.lfEscapement = lf.lfOrientation = r.escapement;
        CFont font;
        font.CreateFontIndirect(&lf);
        CFont* oldFont = dc.SelectObject(&font);
        dc.SetTextColor(r.textColor);
        dc.SetBkColor(r.bkColor);
        dc.SetBkMode(r.bkMode);
        dc.TextOut(p[0].x, p[0].y, r.text);
        dc.SelectObject(oldFont);
        break;
    }
    case CDrawRecord::FillRect:
        dc.FillSolidRect(p[0].x, p[0].y, p[1].x - p[0].x, p[1].y - p[0].y, r.bkColor);
        break;
    case CDrawRecord::FillPolygon:
        dc.FillPolygonAlpha(p.data(), static_cast<int>(p.size()), r.brushColor, static_cast<BYTE>(r.alpha));
        break;
    case CDrawRecord::BitBlt:
        break;  // the copy to the window is part of the redraw, not of its drawing
    }
    dc.SelectObject(oldBrush);
    dc.SelectObject(oldPen);
}

// The primitives of one full redraw at w x h, replayed onto a surface kept between runs.
void BM_ReplayRedraw(benchmark::State& state, int w, int h)
{
    CImageWnd wnd(w, h);
    wnd.EnableRecording(true);
    AttachDefault(wnd);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    if (!chart->UptateDrawWnd(1)) {
        state.SkipWithError("the chart could not be drawn");
        return;
    }
    const std::vector<CDrawRecord> records = chart->GetChartDC()->GetRecords();
    chart->AttachDarwWnd(nullptr);
    chart->GetChartDC()->ClearRecords();

    CDC dc;
    CBitmap bmp;
    dc.CreateCompatibleDC(nullptr);
    bmp.CreateCompatibleBitmap(&dc, w, h);
    dc.SelectObject(&bmp);
    for (auto _ : state)
        for (const CDrawRecord& r : records) Replay(dc, r);
    state.counters["primitives"] = static_cast<double>(records.size());
}
BENCHMARK_CAPTURE(BM_ReplayRedraw, 1000x800, 1000, 800)->Unit(benchmark::kMillisecond);

}  // namespace
