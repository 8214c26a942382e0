#include "ServeCommand.h"

#include "ChartSession.h"
#include "ViewerServer.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <memory>
#include <pthread.h>
#include <thread>

namespace serve {

int RunServe(const ServeOptions& options)
{
    // SIGINT and SIGTERM are taken by sigwait below rather than by a handler, so stopping
    // runs on an ordinary thread. They are blocked before any server thread starts, and the
    // threads inherit the mask.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    ChartSession session;
    ViewerServer server(session);
    std::string error;
    if (!server.Bind(options.host, options.port, error)) {
        std::fprintf(stderr, "kygraph serve: %s\n", error.c_str());
        return 1;
    }
    const bool v6 = options.host.find(':') != std::string::npos;
    std::printf("KyGraph viewer: http://%s%s%s:%d/\n", v6 ? "[" : "", options.host.c_str(), v6 ? "]" : "",
                server.Port());
    std::fflush(stdout);

    std::thread worker([&server] { server.Run(); });
    int signal = 0;
    sigwait(&stopSignals, &signal);
    server.Stop();
    worker.join();
    return 0;
}

void AddServeCommand(CLI::App& app, int* exitCode)
{
    auto options = std::make_shared<ServeOptions>();
    CLI::App* cmd = app.add_subcommand("serve", "Serve the chart viewer in the browser on this machine");
    cmd->add_option("scene", options->scenePath, "Scene file to open; \"save\" writes it back");
    cmd->add_option("--port", options->port, "Port to listen on (0 picks a free one)")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    cmd->add_option("--host", options->host, "Address to listen on")->capture_default_str();
    cmd->callback([options, exitCode] { *exitCode = RunServe(*options); });
}

}  // namespace serve
