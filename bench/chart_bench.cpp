// Chart core: both directions of the pixel/state mapping, and a full redraw at the default
// 1000 x 800 and at a 4K screen's 3840 x 2160.
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>

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

}  // namespace
