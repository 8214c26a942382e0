// CommandLine: what the program's commands share: exit statuses, the one-line error report on
// stderr, the client size option and loading a scene file.
#pragma once

#include "Scene.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

class CommandLine {
public:
    static constexpr int kExitOk = 0;
    static constexpr int kExitFailure = 1;  // drawing or writing failed
    static constexpr int kExitUsage = 2;    // bad arguments or a bad scene

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

    // "WxH" with both sides 1..Scene::kMaxSide. False with a reason otherwise.
    static bool ParseSize(const std::string& text, int& width, int& height, std::string& error);

    // Reads and checks the scene at path ("" gives the default scene). False after reporting
    // every error, one line each.
    static bool LoadScene(const std::string& path, Scene& scene);

    // Reports errors about source, one line each.
    static void ReportErrors(const std::string& source, const std::vector<SceneError>& errors);

    // The client size: the --size text when given, else the scene's, else the default. False
    // after reporting a malformed --size.
    static bool ClientSize(const std::string& sizeOption, const Scene& scene, int& width, int& height);
};
