#include "RenderCommand.h"

#include "AtomicFile.h"
#include "CommandLine.h"
#include "HostLanguage.h"
#include "PaperSize.h"
#include "ReportWriter.h"
#include "SceneApplier.h"
#include "SceneCommandLine.h"
#include "SceneRenderer.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyChart.h>

#include <algorithm>
#include <filesystem>
#include <cctype>
#include <cmath>

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
    m_outputOption = m_cmd->add_option("-o,--output", m_output, "Output file; the format follows its extension: .png, .svg, .pdf")
        ->capture_default_str();
    m_cmd->add_option("--size", m_size, "Client size in pixels, WxH (default: the scene's, else 1000x800)");
    m_cmd->add_option("--antialias", m_antialias, "Anti-aliased raster output (default: the scene's, else on)")
        ->check(CLI::IsMember({"on", "off"}));
    HostLanguage::AddOption(*m_cmd, m_lang);
    m_cmd->add_option("--paper", m_paper, "SVG or PDF as a page of this paper: A4, A3 or A2 (the chart fitted)");
    m_cmd->add_flag("--landscape", m_landscape, "With --paper: the paper turned landscape");
    m_altitudeOption = m_cmd->add_option("--altitude", m_altitude, "Site altitude, m: the standard atmosphere's pressure in place of the scene's")
                           ->check(CommandLine::Decimal());
    m_cmd->add_option("--report", m_report,
                      "Also write a PDF report: the chart, its named states and its process steps with their loads "
                      "(only the report when -o is not given)");
    m_cmd->add_option("--data", m_data,
                      "CSV of states drawn over the chart (header naming a pair such as tdb,rh or t,d; a time "
                      "column optional); may be repeated");
    m_cmd->footer("Examples:\n"
                  "  kygraph render -o chart.png\n"
                  "  kygraph render examples/scenes/summer-ahu.json -o summer.svg --size 1600x1200\n"
                  "  kygraph render -o chart.pdf --paper A3 --landscape\n"
                  "  kygraph render examples/scenes/summer-ahu.json --report summer.pdf");
}

int RenderCommand::Run()
{
    CImageWnd::SurfaceKind kind = CImageWnd::Raster;
    if (!KindOf(m_output, kind)) {
        CommandLine::Error("--output: cannot tell the format of \"" + m_output + "\"; use .png, .svg or .pdf");
        return CommandLine::kExitUsage;
    }
    PaperSize paper;
    if (!m_paper.empty()) {
        std::string error;
        if (!PaperSize::Find(m_paper, m_landscape, paper, error)) {
            CommandLine::Error("--paper: " + error);
            return CommandLine::kExitUsage;
        }
        if (kind == CImageWnd::Raster || !m_size.empty()) {
            CommandLine::Error("--paper: applies to .svg and .pdf output, without --size");
            return CommandLine::kExitUsage;
        }
    } else if (m_landscape) {
        CommandLine::Error("--landscape: needs --paper");
        return CommandLine::kExitUsage;
    }
    Scene scene;
    if (!SceneCommandLine::LoadScene(m_scene, scene)) return CommandLine::kExitUsage;
    HostLanguage::Choose(m_lang, scene.lang);
    if (m_altitudeOption->count() > 0) {
        const double b = CKyChart::StandardPressure(m_altitude);
        if (!(b >= CKyChart::kMinB)) {
            CommandLine::Error("--altitude: " + std::string(std::isnan(b) ? "out of range -500..11000 m" : "gives a pressure below 50000 Pa, the lowest the model takes"));
            return CommandLine::kExitUsage;
        }
        scene.altitude = m_altitude;
        scene.pressure.reset();
    }
    int width = 0, height = 0;
    if (!SceneCommandLine::ClientSize(m_size, scene, width, height)) return CommandLine::kExitUsage;
    if (!m_paper.empty()) width = paper.ChartWidth(), height = paper.ChartHeight();
    // Data files of the scene are relative to its folder; those of --data to the working one.
    for (SceneData& d : scene.extras.data)
        if (!m_scene.empty() && std::filesystem::path(d.file).is_relative())
            d.file = (std::filesystem::path(m_scene).parent_path() / d.file).string();
    for (const std::string& file : m_data) scene.extras.data.push_back(SceneData{file, std::nullopt, std::nullopt, std::nullopt});
    const bool antialias = m_antialias.empty() ? scene.antialias.value_or(true) : m_antialias == "on";

    // Before the chart singleton exists: it takes its enthalpy angle from these settings.
    SceneApplier applier;
    std::vector<SceneError> errors;
    if (!applier.Apply(scene, errors)) {
        SceneCommandLine::ReportErrors(m_scene, errors);
        return CommandLine::kExitUsage;
    }

    if (!m_report.empty()) {
        if (const int status = WriteReport(applier, width, height, antialias); status != CommandLine::kExitOk || !m_outputOption->count())
            return status;
    }
    std::string bytes;
    switch (SceneRenderer::Encode(applier, width, height, kind, antialias, bytes, errors,
                                  m_paper.empty() ? nullptr : &paper)) {
    case SceneRenderer::Done:
        break;
    case SceneRenderer::ChartFailed:
        CommandLine::Error("the chart could not be drawn at " + std::to_string(width) + "x" + std::to_string(height));
        return CommandLine::kExitFailure;
    case SceneRenderer::OverlaysFailed:
        SceneCommandLine::ReportErrors(m_scene, errors);
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
    // What the overlays could not draw is told once each; the chart is written all the same.
    bool unusable = false;
    for (const SceneExtrasApplier::Note& n : applier.Notes()) {
        CommandLine::Error((m_scene.empty() ? std::string() : m_scene + ":" + n.pointer + ": ") + n.message);
        unusable = unusable || n.unusable;
    }
    return unusable ? CommandLine::kExitFailure : CommandLine::kExitOk;
}

int RenderCommand::WriteReport(SceneApplier& applier, int width, int height, bool antialias)
{
    std::vector<SceneError> errors;
    ReportWriter::Content content;
    // Twice the size, so that the chart stays sharp when the page is printed.
    if (SceneRenderer::Encode(applier, 2 * width, 2 * height, CImageWnd::Raster, antialias, content.chartPng, errors) !=
        SceneRenderer::Done) {
        SceneCommandLine::ReportErrors(m_scene, errors);
        if (errors.empty()) CommandLine::Error("the chart could not be drawn for the report");
        return CommandLine::kExitFailure;
    }
    content.states = applier.NamedStates();
    content.steps = applier.Steps();
    content.pressure = CKyChart::InstanceGloble()->GetGlobleB();
    const size_t slash = m_scene.find_last_of('/');
    content.title = m_scene.substr(slash == std::string::npos ? 0 : slash + 1);
    std::string pdf, error;
    // The report speaks the chart's language: Chinese unless English was chosen.
    const ReportWriter::Language language =
        HostLanguage::Chosen() == KyGraphLanguage::English ? ReportWriter::English : ReportWriter::Chinese;
    if (!ReportWriter::Write(content, language, pdf, error) || !AtomicFile::Write(m_report, pdf, error)) {
        CommandLine::Error(error);
        return CommandLine::kExitFailure;
    }
    return CommandLine::kExitOk;
}
