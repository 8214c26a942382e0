// RenderCommand: `kygraph render [SCENE.json] [-o OUT] [--size WxH] [--antialias on|off]
// [--paper A4|A3|A2 [--landscape]]`. Draws the chart as a host does and writes it as PNG, SVG
// or PDF, by OUT's extension; with a paper, SVG and PDF are a page of that paper.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

class RenderCommand {
public:
    // Adds the subcommand and its options to app.
    explicit RenderCommand(CLI::App& app);

    bool Selected() const { return m_cmd->parsed(); }
    // The exit status.
    int Run();

private:
    CLI::App* m_cmd;
    std::string m_lang;  // --lang: en or zh; "" when not given
    std::string m_scene;
    std::string m_output = "chart.png";
    std::string m_size;
    std::vector<std::string> m_data;  // --data: CSV files of states drawn over the chart
    std::string m_antialias;
    std::string m_paper;
    bool m_landscape = false;
    std::string m_report;
    double m_altitude = 0.0;
    CLI::Option* m_altitudeOption = nullptr;
    CLI::Option* m_outputOption = nullptr;
    // Writes the report of the applied scene to m_report; the exit status.
    int WriteReport(class SceneApplier& applier, int width, int height, bool antialias);
};
