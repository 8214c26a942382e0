// The chart's fixed furniture, each element drawn alone onto the 1000 x 800 default chart's
// surface: the frame, the two rulers (about 400 ticks) and the protractor (about 300).
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGASChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>

#include <benchmark/benchmark.h>

namespace {

template <class Element>
void BM_DrawAlone(benchmark::State& state)
{
    CImageWnd wnd(1000, 800);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    chart->UptateDrawWnd(1);
    Element element;
    for (auto _ : state) benchmark::DoNotOptimize(chart->Draw(&element));
    chart->AttachDarwWnd(nullptr);
}
BENCHMARK(BM_DrawAlone<CKyGChartFrame>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawAlone<CKyGDRuler>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawAlone<CKyGHRuler>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawAlone<CKyGASChart>)->Unit(benchmark::kMillisecond);

}  // namespace
