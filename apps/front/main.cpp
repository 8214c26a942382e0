// kygraph: the program users run. It answers `kygraph state` itself and links nothing but the
// state model, so that a query costs little more than the numbers it prints; every other
// command line goes to kygraph-chart, which loads the drawing libraries.
#include "CommandLine.h"
#include "ProgramLauncher.h"
#include "StateCommand.h"

#include <string_view>

int main(int argc, char** argv)
{
    if (argc < 2 || std::string_view(argv[1]) != "state") return ProgramLauncher::Exec("kygraph-chart", argv);
    CLI::App app{CommandLine::kDescription, "kygraph"};
    app.require_subcommand(1);
    StateCommand state(app);
    int status = CommandLine::kExitOk;
    try {
        app.parse(argc, argv);
        status = state.Run();
    } catch (const CLI::ParseError& e) {
        status = CommandLine::ParseFailed(app, e);
    }
    return CommandLine::FinishOutput(status);
}
