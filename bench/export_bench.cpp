// Export of the default chart as `kygraph render -o chart.png|svg|pdf` does it: the default
// scene applied, then drawn and encoded by SceneRenderer. Only the final file write is left
// out (the bytes stay in memory), so that disk speed does not show in the figure.
#include "Scene.h"
#include "SceneApplier.h"
#include "SceneRenderer.h"

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
BENCHMARK_CAPTURE(BM_Export, png, CImageWnd::Raster)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, svg, CImageWnd::Svg)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, pdf, CImageWnd::Pdf)->Unit(benchmark::kMillisecond);

}  // namespace
