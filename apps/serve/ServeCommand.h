// ServeCommand: `kygraph serve [SCENE.json] [--port 8080] [--host 127.0.0.1 [--allow-remote]]`, the local web
// viewer: serves the page and its API until interrupted (SIGINT or SIGTERM).
#pragma once

#include <CLI/CLI.hpp>

#include <string>

class ServeCommand {
public:
    // Adds the subcommand and its options to app.
    explicit ServeCommand(CLI::App& app);

    bool Selected() const { return m_cmd->parsed(); }
    // Serves until SIGINT or SIGTERM. The exit status: 0 after a clean stop, 2 for a scene
    // that cannot be read or applied, 1 when the address cannot be bound. Prints the address
    // it serves as "KyGraph viewer: http://HOST:PORT/" on standard output.
    int Run();

private:
    CLI::App* m_cmd;
    std::string m_scene;              // opened at start, written back by "save"; may be new
    std::string m_host = "127.0.0.1";  // address to listen on
    int m_port = 8080;                 // 0 picks a free port
    bool m_allowRemote = false;        // a host beyond loopback is allowed
};
