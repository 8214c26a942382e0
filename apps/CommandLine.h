// CommandLine: what every command of the programs shares: exit statuses, the one-line error
// report on stderr, refusing a parse and checking numbers. Nothing here draws, so that
// `kygraph state` links without the chart (see SceneCommandLine for the drawing commands).
#pragma once

#include <CLI/CLI.hpp>

#include <string>

class CommandLine {
public:
    static constexpr int kExitOk = 0;
    static constexpr int kExitFailure = 1;  // drawing or writing failed
    static constexpr int kExitUsage = 2;    // bad arguments or a bad scene

    // The program's description in its help, whichever program prints it.
    static constexpr const char* kDescription =
        "kygraph: the psychrometric (h-d) chart of moist air: render charts, query states, locate pixels";

    // Prints "kygraph: <message>" on stderr.
    static void Error(const std::string& message);

    // Flushes stdout: status when everything written reached it, else kExitFailure after a
    // one-line report (a full disk, a closed pipe).
    static int FinishOutput(int status);

    // The exit status for a command line CLI11 refused; help and version print and give 0.
    static int ParseFailed(CLI::App& app, const CLI::ParseError& e);

    // A check for numeric options: plain decimal only, so that "0x10" or "1e" is refused
    // rather than read as some other number.
    static CLI::Validator Decimal();
};
