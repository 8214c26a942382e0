#include "ServeCommand.h"

#include "ChartSession.h"
#include "CommandLine.h"
#include "ViewerServer.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <pthread.h>
#include <system_error>
#include <thread>

ServeCommand::ServeCommand(CLI::App& app)
{
    m_cmd = app.add_subcommand("serve", "Serve the chart viewer to the browser on this machine");
    m_cmd->add_option("scene", m_scene, "Scene file to open; \"save\" writes it back (created when new)");
    m_cmd->add_option("--port", m_port, "Port to listen on; 0 picks a free one")
        ->check(CommandLine::Decimal())
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    m_cmd->add_option("--host", m_host, "Address to listen on (loopback unless --allow-remote)")->capture_default_str();
    m_cmd->add_flag("--allow-remote", m_allowRemote,
                    "Allow a --host other machines can reach; anyone there can then read and change the scene");
    m_cmd->footer("Examples:\n"
                  "  kygraph serve\n"
                  "  kygraph serve examples/scenes/summer-ahu.json --port 8090");
}

int ServeCommand::Run()
{
    // A scene file that does not exist yet is a new scene, which "save" creates.
    Scene scene;
    std::error_code ec;
    const bool existing = !m_scene.empty() && std::filesystem::exists(m_scene, ec);
    if (existing && !CommandLine::LoadScene(m_scene, scene)) return CommandLine::kExitUsage;

    // The session is built before the chart is first used: the chart takes its enthalpy
    // angle from the settings of that moment, which the scene sets.
    serve::ChartSession session;
    std::vector<SceneError> errors;
    if (!session.Open(scene, m_scene, errors)) {
        CommandLine::ReportErrors(m_scene, errors);
        return CommandLine::kExitUsage;
    }

    // SIGINT and SIGTERM are taken by sigwait below rather than by a handler, so stopping runs
    // on an ordinary thread. They are blocked before any server thread starts, and the
    // threads inherit the mask.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
    // A browser that closes a connection while an image is being sent must not end the server.
    std::signal(SIGPIPE, SIG_IGN);

    serve::ViewerServer server(session);
    std::string error;
    if (!server.Bind(m_host, m_port, error, m_allowRemote)) {
        CommandLine::Error(error);
        return CommandLine::kExitFailure;
    }
    if (m_allowRemote && m_host != "127.0.0.1" && m_host != "::1" && m_host != "localhost")
        CommandLine::Error("warning: listening on " + m_host +
                           ": other machines can reach the viewer, and read, change and save the scene");
    const bool v6 = m_host.find(':') != std::string::npos;
    std::printf("KyGraph viewer: http://%s%s%s:%d/\n", v6 ? "[" : "", m_host.c_str(), v6 ? "]" : "", server.Port());
    std::fflush(stdout);

    std::thread worker([&server] { server.Run(); });
    int signal = 0;
    sigwait(&stopSignals, &signal);
    server.Stop();
    worker.join();
    return CommandLine::kExitOk;
}
