// The viewer's chart work without HTTP: a hover (scene applied, chart fitted, one pixel
// converted), a full redraw to PNG, and the same with a scene of 50 points, so that the
// per-request cost of re-applying the scene shows.
#include "ChartSession.h"

#include <benchmark/benchmark.h>

namespace {

Scene SceneWithPoints(int n)
{
    Scene s;
    for (int i = 0; i < n; ++i) {
        ScenePoint p;
        p.state.name = "P" + std::to_string(i + 1);
        p.state.input.Set(StateInput::Tdb, 15.0 + i % 20);
        p.state.input.Set(StateInput::RH, 30.0 + i % 50);
        s.points.push_back(p);
    }
    return s;
}

void BM_ServeHover(benchmark::State& state)
{
    serve::ChartSession session;
    std::vector<SceneError> errors;
    session.Open(SceneWithPoints(static_cast<int>(state.range(0))), "", errors);
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(session.StateAt(90 + (i * 37) % 820, 110 + (i * 53) % 620, 1000, 800));
        ++i;
    }
}
BENCHMARK(BM_ServeHover)->Arg(0)->Arg(50)->Unit(benchmark::kMicrosecond);

void BM_ServeRedrawPng(benchmark::State& state)
{
    serve::ChartSession session;
    std::vector<SceneError> errors;
    session.Open(SceneWithPoints(static_cast<int>(state.range(0))), "", errors);
    for (auto _ : state) benchmark::DoNotOptimize(session.Render(1000, 800, serve::ImageKind::Png));
}
BENCHMARK(BM_ServeRedrawPng)->Arg(0)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
