// Fuzz target: the scene-file reader on arbitrary bytes. A scene it accepts is written back
// and must read as the same scene, is applied to the chart and drawn, small. A refusal must
// say why. Each input starts from the default settings: the last one's scene is undone.
#include "SceneApplier.h"
#include "SceneReader.h"
#include "SceneRenderer.h"
#include "SceneWriter.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// The drawing is what is fuzzed, not the pixel count: scenes are drawn at most this large.
constexpr int kMaxSide = 400;

void Require(bool ok, const char* what)
{
    if (ok) return;
    std::fprintf(stderr, "scene invariant broken: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static SceneApplier applier;

    Scene scene;
    std::vector<SceneError> errors;
    if (!SceneReader::Parse(std::string_view(reinterpret_cast<const char*>(data), size), scene, errors)) {
        Require(!errors.empty(), "a refused scene says why");
        return 0;
    }
    Require(errors.empty(), "an accepted scene has no errors");

    Scene again;
    std::vector<SceneError> againErrors;
    const std::string written = SceneWriter::Write(scene);
    if (!SceneReader::Parse(written, again, againErrors)) {
        std::fprintf(stderr, "written scene:\n%s\nfirst error: %s\n", written.c_str(),
                     againErrors.empty() ? "" : againErrors.front().Format("scene").c_str());
        Require(false, "a written scene reads back");
    }
    Require(again == scene, "a written scene reads back as the same scene");

    if (!applier.Apply(scene, errors)) {
        Require(!errors.empty(), "a scene the model refuses says why");
        return 0;
    }
    CImageWnd wnd(std::min(scene.width.value_or(Scene::kDefaultWidth), kMaxSide),
                  std::min(scene.height.value_or(Scene::kDefaultHeight), kMaxSide));
    wnd.SetAntialias(scene.antialias.value_or(true));
    SceneRenderer::Draw(applier, wnd, wnd, errors);
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    std::vector<SceneError> ignored;
    Require(applier.Apply(Scene{}, ignored), "the default scene applies");
    return 0;
}
