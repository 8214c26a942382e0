// Export of the default chart as `kygraph render -o chart.png|svg|pdf` does it: the default
// scene applied, then drawn and encoded by SceneRenderer. Only the final file write is left
// out (the bytes stay in memory), so that disk speed does not show in the figure.
#include "Scene.h"
#include "SceneApplier.h"
#include "SceneRenderer.h"

#include <kygraph/KyGChart.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

void BM_Export(benchmark::State& state, CImageWnd::SurfaceKind kind)
{
    const Scene scene;
    std::string bytes;
    for (auto _ : state) {
        SceneApplier applier;
        std::vector<SceneError> errors;
        if (!applier.Apply(scene, errors) ||
            SceneRenderer::Encode(applier, Scene::kDefaultWidth, Scene::kDefaultHeight, kind,
                                  scene.antialias.value_or(true), bytes, errors) != SceneRenderer::Done) {
            state.SkipWithError("the default chart could not be exported");
            break;
        }
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}
// Writing the SVG document alone, from a chart already drawn into a vector window.
void BM_SvgWrite(benchmark::State& state)
{
    const Scene scene;
    SceneApplier applier;
    std::vector<SceneError> errors;
    CImageWnd drawWnd(Scene::kDefaultWidth, Scene::kDefaultHeight, RGB(255, 255, 255), CImageWnd::Svg);
    CImageWnd showWnd(Scene::kDefaultWidth, Scene::kDefaultHeight, RGB(255, 255, 255), CImageWnd::Svg);
    if (!applier.Apply(scene, errors) || SceneRenderer::Draw(applier, drawWnd, showWnd, errors) != SceneRenderer::Done) {
        state.SkipWithError("the default chart could not be drawn");
        return;
    }
    std::string bytes;
    for (auto _ : state) {
        bytes = showWnd.Encode();
        benchmark::DoNotOptimize(bytes.data());
    }
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_SvgWrite)->Unit(benchmark::kMillisecond);

BENCHMARK_CAPTURE(BM_Export, png, CImageWnd::Raster)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, svg, CImageWnd::Svg)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, pdf, CImageWnd::Pdf)->Unit(benchmark::kMillisecond);

// PNG encoding alone: the default chart drawn once, its pixels encoded each run.
void BM_ExportEncodePng(benchmark::State& state)
{
    const Scene scene;
    SceneApplier applier;
    std::vector<SceneError> errors;
    CImageWnd wnd(Scene::kDefaultWidth, Scene::kDefaultHeight);
    if (!applier.Apply(scene, errors) || SceneRenderer::Draw(applier, wnd, wnd, errors) != SceneRenderer::Done) {
        state.SkipWithError("the default chart could not be drawn");
        return;
    }
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    std::string bytes;
    for (auto _ : state) bytes = wnd.Encode();
    if (bytes.empty()) state.SkipWithError("the chart could not be encoded");
    state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_ExportEncodePng)->Unit(benchmark::kMillisecond);

}  // namespace
