#include "Scene.h"

namespace {

struct LineStyleInfo {
    const char* key;
    tagKyLineStyle CKyGStyleSetting::*member;
};

constexpr LineStyleInfo kLineStyles[kLineStyleCount] = {
    {"d_lines", &CKyGStyleSetting::m_SameDStyle},       {"h_lines", &CKyGStyleSetting::m_SameHStyle},
    {"isotherms", &CKyGStyleSetting::m_SameTStyle},     {"rh_curves", &CKyGStyleSetting::m_SameRHStyle},
    {"ratio_lines", &CKyGStyleSetting::m_SameASStyle},  {"processes", &CKyGStyleSetting::m_ProcessStyle},
    {"protractor", &CKyGStyleSetting::m_ASChartStyle},  {"frame", &CKyGStyleSetting::m_FrameStyle},
    {"spare", &CKyGStyleSetting::m_SpareStyle},
};

constexpr const char* kStepTypes[SceneStep::kTypeCount] = {
    "mixing", "sensible", "cooling_dehumidify", "adiabatic_humidify", "steam_humidify", "ratio", "path",
};

}  // namespace

const char* SceneStyles::Key(SceneLineStyleId id) { return kLineStyles[id].key; }

tagKyLineStyle CKyGStyleSetting::*SceneStyles::Member(SceneLineStyleId id) { return kLineStyles[id].member; }

const char* SceneStep::TypeName(Type type) { return kStepTypes[type]; }

std::string SceneError::Format(const std::string& source) const
{
    if (line > 0) return source + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + message;
    if (pointer.empty()) return source + ": " + message;
    return source + ":" + pointer + ": " + message;
}

std::vector<SceneError> SceneError::Shown(const std::vector<SceneError>& errors)
{
    if (errors.size() <= kMaxShown) return errors;
    std::vector<SceneError> shown(errors.begin(), errors.begin() + kMaxShown);
    shown.push_back({"", 0, 0, std::to_string(errors.size() - kMaxShown) + " more problems not shown"});
    return shown;
}

std::string SceneError::Quoted(const std::string& text)
{
    constexpr std::size_t kMax = 64;
    if (text.size() <= kMax) return text;
    std::size_t cut = kMax;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;  // not inside a character
    return text.substr(0, cut) + "...";
}

std::string JsonPointer(const std::string& base, const std::string& key)
{
    std::string out = base + "/";
    for (char c : key) {
        if (c == '~') out += "~0";
        else if (c == '/') out += "~1";
        else out += c;
    }
    return out;
}

std::string JsonPointer(const std::string& base, size_t index) { return base + "/" + std::to_string(index); }
