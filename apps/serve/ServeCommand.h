// ServeCommand: `kygraph serve [SCENE.json] [--port 8080] [--host 127.0.0.1 [--allow-remote]]`, the local web
// viewer: serves the page and its API until interrupted (SIGINT or SIGTERM). This class holds
// the options; ServeRunner serves.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

class ServeCommand {
public:
    // Adds the subcommand and its options to app.
    explicit ServeCommand(CLI::App& app);

    bool Selected() const { return m_cmd->parsed(); }
    // The options as parsed; ServeRunner serves with them.
    const std::string& ScenePath() const { return m_scene; }
    const std::string& Host() const { return m_host; }
    int Port() const { return m_port; }
    bool AllowRemote() const { return m_allowRemote; }
    const std::string& Lang() const { return m_lang; }  // "" when --lang is not given

private:
    CLI::App* m_cmd;
    std::string m_lang;  // --lang: en or zh; "" when not given
    std::string m_scene;              // opened at start, written back by "save"; may be new
    std::string m_host = "127.0.0.1";  // address to listen on
    int m_port = 8080;                 // 0 picks a free port
    bool m_allowRemote = false;        // a host beyond loopback is allowed
};
