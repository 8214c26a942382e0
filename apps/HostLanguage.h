// HostLanguage: the language the program speaks: the chart's texts (the library's string
// table), the program's own messages and the viewer's interface. Chosen by --lang, else by the
// scene's "lang", else by the environment's locale (LC_ALL, LC_MESSAGES, LANG). When nothing
// chooses, the chart stays Chinese, as the library draws it, and the messages stay English.
#pragma once

#include <kygraph/KyGraphModule.h>

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

class HostLanguage {
public:
    // "en" or "zh"; false for any other text.
    static bool Parse(const std::string& code, KyGraphLanguage& out);
    static const char* Code(KyGraphLanguage language);
    // Why an unknown code is refused; the caller names where it was given.
    static std::string Refusal(const std::string& code);

    // A locale name such as "zh_CN.UTF-8" or "en_GB"; nothing for "C", "POSIX" and others.
    static std::optional<KyGraphLanguage> FromLocale(const char* name);
    // The first of LC_ALL, LC_MESSAGES and LANG that is set and not empty, as POSIX reads them.
    static std::optional<KyGraphLanguage> FromEnvironment();

    // Chooses the language: option ("" when not given; already checked), else scene, else the
    // environment. Sets the library's string table and the language of the messages.
    static void Choose(const std::string& option, const std::optional<KyGraphLanguage>& scene);
    // The chosen language, or nothing when no choice was made.
    static void Set(const std::optional<KyGraphLanguage>& language);
    static std::optional<KyGraphLanguage> Chosen();
    // The language of messages: the chosen one, English when none was.
    static KyGraphLanguage Messages();

    // Adds --lang to a command of the program.
    static void AddOption(CLI::App& cmd, std::string& value);
};
