#include "LocateCommand.h"

#include "CommandLine.h"
#include "HostLanguage.h"
#include "SceneApplier.h"
#include "SceneCommandLine.h"
#include "StateReport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

#include <iostream>

LocateCommand::LocateCommand(CLI::App& app)
{
    m_cmd = app.add_subcommand("locate", "Print the state under a pixel of the chart");
    m_cmd->add_option("x", m_x, "Pixel column, from the left of the client area")
        ->required()
        ->check(CommandLine::Decimal());
    m_cmd->add_option("y", m_y, "Pixel row, from the top of the client area")
        ->required()
        ->check(CommandLine::Decimal());
    m_cmd->add_option("--size", m_size, "Client size in pixels, WxH (default: the scene's, else 1000x800)");
    m_cmd->add_option("--scene", m_scene, "Scene file whose settings place the chart");
    m_cmd->add_flag("--json", m_json, "One JSON object instead of a table");
    HostLanguage::AddOption(*m_cmd, m_lang);
    m_cmd->footer("Exit status 1 when the pixel has no state (the chart's reason on stderr).\n"
                  "Example:\n"
                  "  kygraph locate --size 1000x800 640 500");
}

int LocateCommand::Run()
{
    Scene scene;
    if (!SceneCommandLine::LoadScene(m_scene, scene)) return CommandLine::kExitUsage;
    HostLanguage::Choose(m_lang, scene.lang);
    int width = 0, height = 0;
    if (!SceneCommandLine::ClientSize(m_size, scene, width, height)) return CommandLine::kExitUsage;
    if (m_x < 0 || m_x >= width || m_y < 0 || m_y >= height) {
        CommandLine::Error("pixel (" + std::to_string(m_x) + ", " + std::to_string(m_y) + ") lies outside the " +
                           std::to_string(width) + "x" + std::to_string(height) + " client area");
        return CommandLine::kExitUsage;
    }
    SceneApplier applier;
    std::vector<SceneError> errors;
    if (!applier.Apply(scene, errors)) {
        SceneCommandLine::ReportErrors(m_scene, errors);
        return CommandLine::kExitUsage;
    }
    CKyGChart* chart = CKyGChart::GetKyGChart();
    CImageWnd wnd(width, height);
    chart->AttachDarwWnd(&wnd);
    CKyStaPnt pnt;
    const bool found = chart->Convert(CPoint(m_x, m_y), pnt) != 0;
    chart->AttachDarwWnd(nullptr);  // the window goes out of scope; the chart must not keep it
    if (!found) {
        CommandLine::Error("pixel (" + std::to_string(m_x) + ", " + std::to_string(m_y) +
                           "): " + chart->GetLastErrorString().ToUtf8());
        return CommandLine::kExitFailure;
    }
    std::cout << (m_json ? StateReport::Json(pnt).dump() + "\n" : StateReport::Text(pnt));
    return CommandLine::kExitOk;
}
