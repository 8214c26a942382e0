// Chart core: both directions of the pixel/state mapping and a full redraw at 1000 x 800.
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
    for (auto _ : state) {
        const CPoint pt(o.x + 100 + (i & 255), o.y + 300 + ((i >> 8) & 127));
        benchmark::DoNotOptimize(chart->Convert(pt, pnt));
        ++i;
    }
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

void BM_FullRedraw(benchmark::State& state)
{
    CImageWnd wnd(1000, 800);
    AttachDefault(wnd);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    for (auto _ : state) benchmark::DoNotOptimize(chart->UptateDrawWnd(1));
    chart->AttachDarwWnd(nullptr);
}
BENCHMARK(BM_FullRedraw)->Unit(benchmark::kMillisecond);

}  // namespace
