// The four line families of a default 1000 x 800 redraw, each drawn alone over the values
// the redraw hands it, so that each family's share of the redraw can be read off.
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGSameD.h>
#include <kygraph/KyGSameH.h>
#include <kygraph/KyGSameRH.h>
#include <kygraph/KyGSameT.h>
#include <kygraph/KyGValueStepper.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

std::vector<double> Values(const std::vector<CKyGValueStepper::Step>& steps)
{
    std::vector<double> out;
    for (const CKyGValueStepper::Step& s : steps) out.push_back(s.value);
    return out;
}

template <class Line>
void DrawFamily(benchmark::State& state, const std::vector<double>& values)
{
    CImageWnd wnd(1000, 800);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    chart->UptateDrawWnd(1);  // the surface to draw on
    Line line;
    int drawn = 0;
    for (auto _ : state) {
        for (double v : values) {
            line.SetValue(v);
            drawn += chart->Draw(&line);
        }
    }
    state.counters["lines"] = benchmark::Counter(drawn, benchmark::Counter::kAvgIterations);
    chart->AttachDarwWnd(nullptr);
}

const CKyGChartSetting& Settings() { return *CKyGChartSetting::GetKyGChartSetting(); }

void BM_Isotherms(benchmark::State& state)
{
    const CKyGRangeSetting& r = Settings().m_RangeSetting;
    DrawFamily<CKyGSameT>(
        state, Values(CKyGValueStepper::Stepped(r.GetMinT(), r.GetMaxT(), Settings().m_DrawHstSetting.m_dTInterval)));
}
BENCHMARK(BM_Isotherms)->Unit(benchmark::kMillisecond);

void BM_ConstantDLines(benchmark::State& state)
{
    const CKyGRangeSetting& r = Settings().m_RangeSetting;
    DrawFamily<CKyGSameD>(
        state, Values(CKyGValueStepper::Stepped(r.GetMinD(), r.GetMaxD(), Settings().m_DrawHstSetting.m_dDInterval)));
}
BENCHMARK(BM_ConstantDLines)->Unit(benchmark::kMillisecond);

void BM_ConstantHLines(benchmark::State& state)
{
    DrawFamily<CKyGSameH>(state, Values(CKyGValueStepper::Stepped(CKyGSameH::GetMinValue(), CKyGSameH::GetMaxValue(),
                                                                   Settings().m_DrawHstSetting.m_dHInterval)));
}
BENCHMARK(BM_ConstantHLines)->Unit(benchmark::kMillisecond);

void BM_RelativeHumidityCurves(benchmark::State& state)
{
    DrawFamily<CKyGSameRH>(state, CKyGValueStepper::RelativeHumidities(Settings().m_DrawHstSetting.m_dRHInterval));
}
BENCHMARK(BM_RelativeHumidityCurves)->Unit(benchmark::kMillisecond);

}  // namespace
