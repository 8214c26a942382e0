// ServeCommand: `kygraph serve [SCENE.json] [--port 8080] [--host 127.0.0.1]`, the local web
// viewer: serves the page and its API until interrupted (SIGINT or SIGTERM).
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace serve {

struct ServeOptions {
    std::string scenePath;          // scene opened at start and written back by "save"; may be empty
    std::string host = "127.0.0.1";  // address to listen on
    int port = 8080;                 // 0 picks a free port
};

// Runs the viewer until SIGINT or SIGTERM; the program's exit code (0 after a clean stop,
// 1 when the scene cannot be read or the address cannot be bound). Prints the address it
// serves as "KyGraph viewer: http://HOST:PORT/" on standard output.
int RunServe(const ServeOptions& options);

// Adds the `serve` subcommand to app. When the command line chooses it, parsing runs the
// viewer and stores its exit code in *exitCode.
void AddServeCommand(CLI::App& app, int* exitCode);

}  // namespace serve
