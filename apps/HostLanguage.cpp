#include "HostLanguage.h"

#include <atomic>
#include <cstdlib>

namespace {
// -1: no choice made; otherwise a KyGraphLanguage.
std::atomic<int> g_chosen{-1};
}  // namespace

bool HostLanguage::Parse(const std::string& code, KyGraphLanguage& out)
{
    if (code == "en") out = KyGraphLanguage::English;
    else if (code == "zh") out = KyGraphLanguage::Chinese;
    else return false;
    return true;
}

const char* HostLanguage::Code(KyGraphLanguage language) { return language == KyGraphLanguage::English ? "en" : "zh"; }

std::string HostLanguage::Refusal(const std::string& code)
{
    // The code is quoted only in part: it may be anything a user typed.
    const std::string shown = code.size() > 16 ? code.substr(0, 16) + "..." : code;
    return "no texts in the language \"" + shown + "\"; use en or zh";
}

std::optional<KyGraphLanguage> HostLanguage::FromLocale(const char* name)
{
    if (!name) return std::nullopt;
    const std::string s(name);
    // "zh", "zh_CN.UTF-8", "en_US@euro": the language is the part before "_", "." or "@".
    const std::string lang = s.substr(0, s.find_first_of("_.@"));
    if (lang == "zh") return KyGraphLanguage::Chinese;
    if (lang == "en") return KyGraphLanguage::English;
    return std::nullopt;
}

std::optional<KyGraphLanguage> HostLanguage::FromEnvironment()
{
    for (const char* var : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(var);
        if (value && *value) return FromLocale(value);
    }
    return std::nullopt;
}

void HostLanguage::Choose(const std::string& option, const std::optional<KyGraphLanguage>& scene)
{
    KyGraphLanguage language = KyGraphLanguage::Chinese;
    if (!option.empty() && Parse(option, language)) Set(language);
    else if (scene) Set(scene);
    else Set(FromEnvironment());
}

void HostLanguage::Set(const std::optional<KyGraphLanguage>& language)
{
    g_chosen.store(language ? static_cast<int>(*language) : -1);
    KyGraphSetLanguage(language.value_or(KyGraphLanguage::Chinese));
}

std::optional<KyGraphLanguage> HostLanguage::Chosen()
{
    const int v = g_chosen.load();
    if (v < 0) return std::nullopt;
    return static_cast<KyGraphLanguage>(v);
}

KyGraphLanguage HostLanguage::Messages() { return Chosen().value_or(KyGraphLanguage::English); }

void HostLanguage::AddOption(CLI::App& cmd, std::string& value)
{
    cmd.add_option("--lang", value,
                   "Language of the chart and the messages: en or zh (default: the scene's, else the locale's; "
                   "the chart is Chinese when neither says)")
        ->check(CLI::Validator(
            [](std::string& text) {
                KyGraphLanguage ignored;
                return Parse(text, ignored) ? std::string() : Refusal(text);
            },
            "en|zh"));
}
