#include "ServeRunner.h"

#include "ChartSession.h"
#include "CommandLine.h"
#include "HostLanguage.h"
#include "SceneCommandLine.h"
#include "ServeCommand.h"
#include "ViewerServer.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <pthread.h>
#include <system_error>
#include <thread>

int ServeRunner::Run(const ServeCommand& options)
{
    // A scene file that does not exist yet is a new scene, which "save" creates.
    Scene scene;
    std::error_code ec;
    const bool existing = !options.ScenePath().empty() && std::filesystem::exists(options.ScenePath(), ec);
    if (existing && !SceneCommandLine::LoadScene(options.ScenePath(), scene)) return CommandLine::kExitUsage;
    // The session speaks the environment's language unless --lang says otherwise, and --lang
    // also outweighs the scene's own choice; the viewer's switch changes the scene's.
    HostLanguage::Choose(options.Lang(), std::nullopt);
    if (!options.Lang().empty()) scene.lang = HostLanguage::Chosen();

    // The session is built before the chart is first used: the chart takes its enthalpy
    // angle from the settings of that moment, which the scene sets.
    serve::ChartSession session;
    std::vector<SceneError> errors;
    if (!session.Open(scene, options.ScenePath(), errors)) {
        SceneCommandLine::ReportErrors(options.ScenePath(), errors);
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
    if (!server.Bind(options.Host(), options.Port(), error, options.AllowRemote())) {
        CommandLine::Error(error);
        return CommandLine::kExitFailure;
    }
    if (options.AllowRemote() && options.Host() != "127.0.0.1" && options.Host() != "::1" && options.Host() != "localhost")
        CommandLine::Error("warning: listening on " + options.Host() +
                           ": other machines can reach the viewer, and read, change and save the scene");
    const bool v6 = options.Host().find(':') != std::string::npos;
    std::printf("KyGraph viewer: http://%s%s%s:%d/\n", v6 ? "[" : "", options.Host().c_str(), v6 ? "]" : "", server.Port());
    std::fflush(stdout);

    std::thread worker([&server] { server.Run(); });
    int signal = 0;
    sigwait(&stopSignals, &signal);
    server.Stop();
    worker.join();
    return CommandLine::kExitOk;
}
