// RenderCommand: `kygraph render [SCENE.json] [-o OUT] [--size WxH] [--antialias on|off]`.
// Draws the chart as a host does and writes it as PNG, SVG or PDF, by OUT's extension.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

class RenderCommand {
public:
    // Adds the subcommand and its options to app.
    explicit RenderCommand(CLI::App& app);

    bool Selected() const { return m_cmd->parsed(); }
    // The exit status.
    int Run();

private:
    CLI::App* m_cmd;
    std::string m_scene;
    std::string m_output = "chart.png";
    std::string m_size;
    std::string m_antialias;
};
