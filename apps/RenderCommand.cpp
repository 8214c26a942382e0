#include "RenderCommand.h"

#include "AtomicFile.h"
#include "CommandLine.h"
#include "SceneApplier.h"
#include "SceneRenderer.h"

#include <kygraph/ImageWnd.h>

#include <algorithm>
#include <cctype>

namespace {

// The surface kind for the output's extension; false for an extension it cannot be.
bool KindOf(const std::string& path, CImageWnd::SurfaceKind& kind)
{
    const size_t dot = path.find_last_of('.');
    const size_t slash = path.find_last_of('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return false;
    std::string ext = path.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
    if (ext == "png") kind = CImageWnd::Raster;
    else if (ext == "svg") kind = CImageWnd::Svg;
    else if (ext == "pdf") kind = CImageWnd::Pdf;
    else return false;
    return true;
}

}  // namespace

RenderCommand::RenderCommand(CLI::App& app)
{
    m_cmd = app.add_subcommand("render", "Draw the chart to a PNG, SVG or PDF file");
    m_cmd->add_option("scene", m_scene, "Scene file (JSON, see docs/scene.md); the default chart without one");
    m_cmd->add_option("-o,--output", m_output, "Output file; the format follows its extension: .png, .svg, .pdf")
        ->capture_default_str();
    m_cmd->add_option("--size", m_size, "Client size in pixels, WxH (default: the scene's, else 1000x800)");
    m_cmd->add_option("--antialias", m_antialias, "Anti-aliased raster output (default: the scene's, else on)")
        ->check(CLI::IsMember({"on", "off"}));
    m_cmd->footer("Examples:\n"
                  "  kygraph render -o chart.png\n"
                  "  kygraph render examples/scenes/summer-ahu.json -o summer.svg --size 1600x1200");
}

int RenderCommand::Run()
{
    CImageWnd::SurfaceKind kind = CImageWnd::Raster;
    if (!KindOf(m_output, kind)) {
        CommandLine::Error("--output: cannot tell the format of \"" + m_output + "\"; use .png, .svg or .pdf");
        return CommandLine::kExitUsage;
    }
    Scene scene;
    if (!CommandLine::LoadScene(m_scene, scene)) return CommandLine::kExitUsage;
    int width = 0, height = 0;
    if (!CommandLine::ClientSize(m_size, scene, width, height)) return CommandLine::kExitUsage;
    const bool antialias = m_antialias.empty() ? scene.antialias.value_or(true) : m_antialias == "on";

    // Before the chart singleton exists: it takes its enthalpy angle from these settings.
    SceneApplier applier;
    std::vector<SceneError> errors;
    if (!applier.Apply(scene, errors)) {
        CommandLine::ReportErrors(m_scene, errors);
        return CommandLine::kExitUsage;
    }

    std::string bytes;
    switch (SceneRenderer::Encode(applier, width, height, kind, antialias, bytes, errors)) {
    case SceneRenderer::Done:
        break;
    case SceneRenderer::ChartFailed:
        CommandLine::Error("the chart could not be drawn at " + std::to_string(width) + "x" + std::to_string(height));
        return CommandLine::kExitFailure;
    case SceneRenderer::OverlaysFailed:
        CommandLine::ReportErrors(m_scene, errors);
        return CommandLine::kExitFailure;
    case SceneRenderer::EncodeFailed:
        CommandLine::Error("cannot encode " + m_output);
        return CommandLine::kExitFailure;
    }
    std::string error;
    if (!AtomicFile::Write(m_output, bytes, error)) {
        CommandLine::Error(error);
        return CommandLine::kExitFailure;
    }
    return CommandLine::kExitOk;
}
