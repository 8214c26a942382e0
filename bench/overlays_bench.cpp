// Overlays over a default chart at 1000 x 800: a data set of 100 000 states (a density) and
// of a year's 8760 hours computed from (t, RH) as a CSV gives them, one zone, the wet-bulb
// and volume families, and the legend with its search for free space.
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGDataSet.h>
#include <kygraph/KyGLegend.h>
#include <kygraph/KyGLineFamilies.h>
#include <kygraph/KyGZone.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

// States spread like a humid city's year: t from -5 to 38 °C, RH 30 to 100 %.
std::vector<std::pair<double, double>> YearLike(size_t n)
{
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    std::vector<std::pair<double, double>> tRh;
    tRh.reserve(n);
    for (size_t i = 0; i < n; ++i) {
        const double season = std::cos(2.0 * 3.14159265 * i / static_cast<double>(n));
        tRh.emplace_back(17.0 - 11.0 * season + 8.0 * (u(rng) - 0.5), 0.3 + 0.7 * u(rng));
    }
    return tRh;
}

struct Surface {
    CImageWnd wnd{1000, 800};
    CKyGChart* chart = CKyGChart::GetKyGChart();
    Surface()
    {
        chart->AttachDarwWnd(&wnd);
        chart->UptateDrawWnd(1);
    }
    ~Surface() { chart->AttachDarwWnd(nullptr); }
};

void BM_DataSetDraw(benchmark::State& state)
{
    Surface s;
    CKyGDataSet data;
    data.Reserve(static_cast<size_t>(state.range(0)));
    CKyStaPnt p;
    for (const auto& [t, rh] : YearLike(static_cast<size_t>(state.range(0))))
        if (p.SetBy_TdbandRH(t, rh)) data.Add(p);
    for (auto _ : state) benchmark::DoNotOptimize(s.chart->Draw(&data));
    state.counters["skipped"] = data.GetSkipped();
}
BENCHMARK(BM_DataSetDraw)->Arg(100000)->Unit(benchmark::kMillisecond);

// Dots instead of the density: what a host pays that forces them on a large set.
void BM_DataSetDrawDots(benchmark::State& state)
{
    Surface s;
    CKyGDataSet data;
    data.SetMode(CKyGDataSet::Points);
    CKyStaPnt p;
    for (const auto& [t, rh] : YearLike(static_cast<size_t>(state.range(0))))
        if (p.SetBy_TdbandRH(t, rh)) data.Add(p);
    for (auto _ : state) benchmark::DoNotOptimize(s.chart->Draw(&data));
}
BENCHMARK(BM_DataSetDrawDots)->Arg(8760)->Unit(benchmark::kMillisecond);

// A year from its (t, RH) rows to the chart: the states computed and drawn.
void BM_YearFromRows(benchmark::State& state)
{
    Surface s;
    const auto rows = YearLike(8760);
    for (auto _ : state) {
        CKyGDataSet data;
        data.Reserve(rows.size());
        CKyStaPnt p;
        for (const auto& [t, rh] : rows)
            if (p.SetBy_TdbandRH(t, rh)) data.Add(p);
        benchmark::DoNotOptimize(s.chart->Draw(&data));
    }
}
BENCHMARK(BM_YearFromRows)->Unit(benchmark::kMillisecond);

void BM_ZoneDraw(benchmark::State& state)
{
    Surface s;
    CKyGZone zone = CKyGZone::FromPreset(static_cast<CKyGZone::Preset>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(s.chart->Draw(&zone));
}
BENCHMARK(BM_ZoneDraw)->Arg(CKyGZone::GB50736_Summer_I)->Arg(CKyGZone::ASHRAE55_Winter)->Unit(benchmark::kMicrosecond);

void BM_LineFamilies(benchmark::State& state)
{
    Surface s;
    CKyGOverlaySetting& ov = CKyGChartSetting::GetKyGChartSetting()->m_OverlaySetting;
    const CKyGOverlaySetting saved = ov;
    ov.m_bShowSameTwb = 1;
    ov.m_bShowSameV = 1;
    CKyGLineFamilies lines;
    for (auto _ : state) benchmark::DoNotOptimize(s.chart->Draw(&lines));
    state.counters["lines"] = lines.GetLineCount();
    ov = saved;
}
BENCHMARK(BM_LineFamilies)->Unit(benchmark::kMillisecond);

void BM_LegendPlaced(benchmark::State& state)
{
    Surface s;
    CKyGLegend legend;
    legend.AddZone(CKyGZone::FromPreset(CKyGZone::GB50736_Summer_I));
    for (auto _ : state) benchmark::DoNotOptimize(s.chart->Draw(&legend));
}
BENCHMARK(BM_LegendPlaced)->Unit(benchmark::kMillisecond);

}  // namespace
