#include "CommandLine.h"

#include "DecimalNumber.h"
#include "HostMessages.h"
#include "SceneReader.h"

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

bool CommandLine::ParseSize(const std::string& text, int& width, int& height, std::string& error)
{
    // Digits only: no sign, no spaces, at most five digits a side.
    auto side = [](const std::string& s, int& out) {
        if (s.empty() || s.size() > 5 || s.find_first_not_of("0123456789") != std::string::npos) return false;
        out = std::stoi(s);
        return out >= 1 && out <= Scene::kMaxSide;
    };
    const size_t x = text.find_first_of("xX");
    if (x == std::string::npos || !side(text.substr(0, x), width) || !side(text.substr(x + 1), height)) {
        error = "--size: expected WxH with sides 1.." + std::to_string(Scene::kMaxSide) + ", got \"" + text + "\"";
        return false;
    }
    if (static_cast<long long>(width) * height > Scene::kMaxPixels) {
        error = "--size: " + text + " is beyond the " + std::to_string(Scene::kMaxPixels) + " pixels one drawing may have";
        return false;
    }
    return true;
}

void CommandLine::ReportErrors(const std::string& source, const std::vector<SceneError>& errors)
{
    for (const SceneError& e : SceneError::Shown(errors)) Error(e.Format(source));
}

bool CommandLine::LoadScene(const std::string& path, Scene& scene)
{
    scene = Scene();
    if (path.empty()) return true;
    std::vector<SceneError> errors;
    if (SceneReader::ReadFile(path, scene, errors)) {
        for (const std::string& note : scene.notes) Error(path + ":" + note);
        return true;
    }
    ReportErrors(path, errors);
    return false;
}

bool CommandLine::ClientSize(const std::string& sizeOption, const Scene& scene, int& width, int& height)
{
    width = scene.width.value_or(Scene::kDefaultWidth);
    height = scene.height.value_or(Scene::kDefaultHeight);
    if (sizeOption.empty()) return true;
    std::string error;
    if (ParseSize(sizeOption, width, height, error)) return true;
    Error(error);
    return false;
}
