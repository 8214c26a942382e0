// kygraph-chart and kygraph-serve: every command of kygraph, which hands them every command line
// but `state`. Each command is one class; this file only hands the command line to the one that
// was chosen.
#include "CommandLine.h"
#include "LocateCommand.h"
#include "RenderCommand.h"
#include "ServeCommand.h"
#include "StateCommand.h"

#include <kygraph/KyGraphModule.h>

// One command line for both programs: kygraph-chart hands `serve` over to kygraph-serve, which
// serves in process (chosen by the build).
#if defined(KYGRAPH_SERVE_IN_PROCESS)
#include "ServeRunner.h"
static int Serve(const ServeCommand& serve, char**) { return ServeRunner::Run(serve); }
#else
#include "ProgramLauncher.h"
static int Serve(const ServeCommand&, char** argv) { return ProgramLauncher::Exec("kygraph-serve", argv); }
#endif

int main(int argc, char** argv)
{
    const KyVersionRecord& version = KyGraphVersion();
    CLI::App app{CommandLine::kDescription, "kygraph"};
    app.set_version_flag("--version", std::string("kygraph (") + version.name + " " + version.version + ")");
    app.require_subcommand(1);
    app.footer("Run \"kygraph COMMAND --help\" for a command's options and an example.");
    RenderCommand render(app);
    StateCommand state(app);
    LocateCommand locate(app);
    ServeCommand serve(app);
    int status = CommandLine::kExitOk;
    try {
        app.parse(argc, argv);
        status = render.Selected() ? render.Run()
                 : state.Selected() ? state.Run()
                 : serve.Selected() ? Serve(serve, argv)
                                    : locate.Run();
    } catch (const CLI::ParseError& e) {
        status = CommandLine::ParseFailed(app, e);
    }
    // A report that never reached its reader (a full disk, a closed pipe) is a failure.
    return CommandLine::FinishOutput(status);
}
