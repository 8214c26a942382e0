// LocateCommand: `kygraph locate --size WxH X Y [--scene SCENE.json] [--json]`: the state
// under a client pixel of the chart drawn at that size, through the chart's own mapping.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

class LocateCommand {
public:
    explicit LocateCommand(CLI::App& app);

    bool Selected() const { return m_cmd->parsed(); }
    int Run();

private:
    CLI::App* m_cmd;
    std::string m_lang;  // --lang: en or zh; "" when not given
    std::string m_size;
    std::string m_scene;
    int m_x = 0;
    int m_y = 0;
    bool m_json = false;
};
