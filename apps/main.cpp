// kygraph: the psychrometric chart from the command line. Each command is one class; this file
// only hands the command line to the one that was chosen.
#include "CommandLine.h"
#include "LocateCommand.h"
#include "RenderCommand.h"
#include "ServeCommand.h"
#include "StateCommand.h"

#include <kygraph/KyGraphModule.h>

int main(int argc, char** argv)
{
    const KyVersionRecord& version = KyGraphVersion();
    CLI::App app{"kygraph: the psychrometric (h-d) chart of moist air: render charts, query states, locate pixels",
                 "kygraph"};
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
                 : serve.Selected() ? serve.Run()
                                    : locate.Run();
    } catch (const CLI::ParseError& e) {
        status = CommandLine::ParseFailed(app, e);
    }
    // A report that never reached its reader (a full disk, a closed pipe) is a failure.
    return CommandLine::FinishOutput(status);
}
