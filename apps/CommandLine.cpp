#include "CommandLine.h"

#include "DecimalNumber.h"
#include "HostMessages.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

void CommandLine::Error(const std::string& message) { std::cerr << "kygraph: " << HostMessages::Localize(message) << std::endl; }

int CommandLine::FinishOutput(int status)
{
    std::cout.flush();
    const bool lost = !std::cout || std::fflush(stdout) != 0 || std::ferror(stdout);
    if (!lost) return status;
    Error(std::string("cannot write the output: ") + std::strerror(errno ? errno : EIO));
    return status == kExitOk ? kExitFailure : status;
}

int CommandLine::ParseFailed(CLI::App& app, const CLI::ParseError& e)
{
    if (dynamic_cast<const CLI::CallForHelp*>(&e) || dynamic_cast<const CLI::CallForAllHelp*>(&e) ||
        dynamic_cast<const CLI::CallForVersion*>(&e))
        return app.exit(e);
    // CLI11 checks for a missing command before it looks at words it does not know.
    if (dynamic_cast<const CLI::RequiredError*>(&e) && app.get_subcommands().empty()) {
        std::string names;
        for (const CLI::App* cmd : app.get_subcommands({})) names += (names.empty() ? "" : ", ") + cmd->get_name();
        const std::vector<std::string> rest = app.remaining();
        Error((rest.empty() ? std::string("no command given") : "unknown command \"" + rest.front() + "\"") +
              "; use one of " + names);
    } else {
        Error(e.what());
    }
    return kExitUsage;
}

CLI::Validator CommandLine::Decimal()
{
    return CLI::Validator(
        [](std::string& text) {
            double ignored = 0.0;
            return DecimalNumber::Parse(text, ignored) ? std::string()
                                                       : "expected a decimal number, got \"" + text + "\"";
        },
        "DECIMAL");
}
