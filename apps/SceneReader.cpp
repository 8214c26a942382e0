#include "SceneReader.h"

#include "DecimalNumber.h"
#include "FormulationNames.h"
#include "SettingsSchema.h"

#include <kygraph/KyChart.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <vector>
#include <set>

using json = nlohmann::json;

namespace {

// Deeper nesting than any scene needs is refused before it can cost anything.
constexpr size_t kMaxDepth = 64;
// A scene is a few kilobytes; anything near this is not a scene file.
constexpr std::streamoff kMaxFileBytes = 16 << 20;

// Line and column (1-based, in characters) of the byte at offset in text.
void LineColumn(std::string_view text, size_t offset, int& line, int& column)
{
    line = 1;
    column = 1;
    offset = std::min(offset, text.size());
    for (size_t i = 0; i < offset; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '\n') {
            ++line;
            column = 1;
        } else if ((c & 0xC0) != 0x80) {  // UTF-8 continuation bytes are part of the character before
            ++column;
        }
    }
}

// Builds the document from the parser's events, noting keys given twice (JSON keeps only the
// last, which hides a mistake) and where the text stops being JSON.
class DocumentBuilder {
public:
    DocumentBuilder(json& root, std::string_view text, std::vector<SceneError>& errors)
        : m_root(root), m_text(text), m_errors(errors)
    {
    }

    bool null() { return Put(nullptr) != nullptr; }
    bool boolean(bool v) { return Put(v) != nullptr; }
    bool number_integer(json::number_integer_t v) { return Put(v) != nullptr; }
    bool number_unsigned(json::number_unsigned_t v) { return Put(v) != nullptr; }
    bool number_float(json::number_float_t v, const std::string&) { return Put(v) != nullptr; }
    bool string(std::string& v) { return Put(std::move(v)) != nullptr; }
    bool binary(json::binary_t&) { return true; }  // JSON text has no binary values
    bool start_object(std::size_t) { return Open(json::object()); }
    bool start_array(std::size_t) { return Open(json::array()); }
    bool end_object() { return Close(); }
    bool end_array() { return Close(); }

    bool key(std::string& k)
    {
        Frame& f = m_stack.back();
        if (!f.keys.insert(k).second)
            m_errors.push_back({JsonPointer(f.pointer, k), 0, 0, "the key \"" + k + "\" is given more than once"});
        f.key = k;
        return true;
    }

    bool parse_error(std::size_t position, const std::string& lastToken, const json::exception& ex)
    {
        // "[json.exception.parse_error.101] parse error at line 1, column 5: syntax error ..."
        std::string what = ex.what();
        const size_t bracket = what.find("] ");
        if (bracket != std::string::npos) what.erase(0, bracket + 2);
        if (what.rfind("parse error", 0) == 0) {
            const size_t colon = what.find(": ");
            if (colon != std::string::npos) what.erase(0, colon + 2);
        }
        // The position is just past the offending token; point at its start. After a complete
        // value the parser's last token holds everything read since ("{} {"): only what follows
        // its last blank is the token, unless it is a string, which may hold blanks itself.
        std::string_view token = lastToken;
        const size_t blank = token.find_last_of(" \t\r\n");
        if (!token.empty() && token.front() != '"' && blank != std::string_view::npos) token.remove_prefix(blank + 1);
        SceneError e;
        LineColumn(m_text, position > token.size() ? position - token.size() : 0, e.line, e.column);
        e.message = "malformed JSON: " + what;
        m_errors.push_back(e);
        return false;
    }

private:
    struct Frame {
        json* value;
        std::string pointer;
        std::string key;
        std::set<std::string> keys;
    };

    // Stores v where the parser is and returns it; null when nesting is too deep.
    json* Put(json v)
    {
        if (m_stack.empty()) {
            m_root = std::move(v);
            return &m_root;
        }
        Frame& f = m_stack.back();
        if (f.value->is_array()) {
            f.value->push_back(std::move(v));
            return &f.value->back();
        }
        json& slot = (*f.value)[f.key];
        slot = std::move(v);
        return &slot;
    }

    bool Open(json container)
    {
        if (m_stack.size() >= kMaxDepth) {
            m_errors.push_back({m_stack.back().pointer, 0, 0, "the document nests deeper than " +
                                                                  std::to_string(kMaxDepth) + " levels"});
            return false;
        }
        std::string pointer;
        if (!m_stack.empty()) {
            const Frame& f = m_stack.back();
            pointer = f.value->is_array() ? JsonPointer(f.pointer, f.value->size()) : JsonPointer(f.pointer, f.key);
        }
        json* v = Put(std::move(container));
        m_stack.push_back({v, std::move(pointer), {}, {}});
        return true;
    }

    bool Close()
    {
        m_stack.pop_back();
        return true;
    }

    json& m_root;
    std::string_view m_text;
    std::vector<SceneError>& m_errors;
    std::vector<Frame> m_stack;
};

size_t EditDistance(std::string_view a, std::string_view b)
{
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diag = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t up = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diag + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diag = up;
        }
    }
    return row[b.size()];
}

std::string KindOf(const json& j)
{
    switch (j.type()) {
    case json::value_t::object: return "an object";
    case json::value_t::array: return "an array";
    case json::value_t::string: return "a string";
    case json::value_t::boolean: return "a boolean";
    case json::value_t::null: return "null";
    default: return "a number";
    }
}

using Keys = std::vector<const char*>;

// Walks the document into a Scene, recording every problem and carrying on past it.
class Reader {
public:
    explicit Reader(std::vector<SceneError>& errors) : m_errors(errors) {}
    std::vector<std::string> TakeNotes() { return std::move(m_notes); }

    void ReadScene(const json& doc, Scene& s)
    {
        std::vector<std::string> top = SettingsSchema::KeysUnder("");
        top.insert(top.begin(), {"size", "antialias", "lang", "labels"});
        top.insert(top.end(), {"styles", "points", "processes", "ratio_lines", "zones", "data", "wet_bulb_lines", "volume_lines", "legend"});
        if (!Object(doc, "", KeysOf(top))) return;
        if (const json* v = Section(doc, "", "size", {"width", "height"})) {
            Int(*v, "/size", "width", s.width, 1, Scene::kMaxSide);
            Int(*v, "/size", "height", s.height, 1, Scene::kMaxSide);
            if (s.width && s.height && static_cast<long long>(*s.width) * *s.height > Scene::kMaxPixels)
                Error("/size", "an image of " + std::to_string(*s.width) + " x " + std::to_string(*s.height) +
                                   " pixels is beyond the " + std::to_string(Scene::kMaxPixels) + " pixels one drawing may have");
        }
        Bool(doc, "", "antialias", s.antialias);
        Choice(doc, "", "lang", s.lang, {{"zh", KyGraphLanguage::Chinese}, {"en", KyGraphLanguage::English}});
        Choice(doc, "", "labels", s.labels, {{"host", SceneLabelRule::Host}, {"chart", SceneLabelRule::Chart}});
        ReadSettings(doc, s);
        ReadStyles(doc, s.styles);
        ForEach(doc, "", "points", [&](const json& item, const std::string& ptr) {
            ScenePoint p;
            ReadPoint(item, ptr, p);
            s.points.push_back(std::move(p));
        });
        ForEach(doc, "", "processes", [&](const json& item, const std::string& ptr) {
            SceneProcess p;
            ReadProcess(item, ptr, p);
            s.processes.push_back(std::move(p));
        });
        ForEach(doc, "", "ratio_lines", [&](const json& item, const std::string& ptr) {
            SceneRatioLine r;
            ReadRatioLine(item, ptr, r);
            s.ratioLines.push_back(std::move(r));
        });
        ReadExtras(doc, s.extras);
    }

private:
    void Error(const std::string& pointer, const std::string& message) { m_errors.push_back({pointer, 0, 0, message}); }

    // Every field of the settings table, each section's keys checked once, where it is first met.
    void ReadSettings(const json& doc, Scene& s)
    {
        std::map<std::string, const json*> sections = {{"", &doc}};  // null: absent or not an object
        for (const SettingsSchema::Field& f : SettingsSchema::Fields()) {
            const std::string path = f.path;
            const size_t dot = path.rfind('.');
            const std::string parent = dot == std::string::npos ? "" : path.substr(0, dot);
            const json* obj = SectionAt(parent, sections);
            if (!obj) continue;
            const std::string ptr = SettingsSchema::Pointer(parent);
            const char* key = f.path + (dot == std::string::npos ? 0 : dot + 1);
            if (f.type == SettingsSchema::Type::Number) {
                std::optional<double> v;
                Number(*obj, ptr, key, v, f.min, f.max);
                if (v) SettingsSchema::Set(f, s, *v);
            } else if (f.type == SettingsSchema::Type::Bool) {
                std::optional<bool> v;
                Bool(*obj, ptr, key, v);
                if (v) SettingsSchema::Set(f, s, *v);
            } else if (f.type == SettingsSchema::Type::Text) {
                std::optional<std::string> v;
                String(*obj, ptr, key, v);
                if (v) SettingsSchema::Set(f, s, *v);
            } else {
                std::vector<std::pair<const char*, Ky::_Formulation>> names;
                for (const FormulationNames::Entry& e : FormulationNames::All()) names.emplace_back(e.key, e.formulation);
                std::optional<Ky::_Formulation> v;
                Choice(*obj, ptr, key, v, names);
                if (v) SettingsSchema::Set(f, s, FormulationNames::Key(*v));
            }
            if (path == "altitude") CheckAltitude(doc, s);
        }
    }

    // The section at a dot-separated path, its keys checked against the table's the first time.
    const json* SectionAt(const std::string& path, std::map<std::string, const json*>& sections)
    {
        if (const auto it = sections.find(path); it != sections.end()) return it->second;
        const size_t dot = path.rfind('.');
        const std::string parent = dot == std::string::npos ? "" : path.substr(0, dot);
        const json* outer = SectionAt(parent, sections);
        const std::string key = path.substr(dot == std::string::npos ? 0 : dot + 1);
        const std::vector<std::string> keys = SettingsSchema::KeysUnder(path);
        return sections[path] = outer ? Section(*outer, SettingsSchema::Pointer(parent), key.c_str(), KeysOf(keys)) : nullptr;
    }

    static Keys KeysOf(const std::vector<std::string>& keys)
    {
        Keys k;
        for (const std::string& key : keys) k.push_back(key.c_str());
        return k;
    }

    // Zones, data sets, the wet-bulb and volume line families and the legend.
    void ReadExtras(const json& doc, SceneExtras& x)
    {
        ForEach(doc, "", "zones", [&](const json& j, const std::string& ptr) {
            SceneZone z;
            if (!Object(j, ptr, {"preset", "name", "color", "tdb", "rh", "d", "h", "twb"})) return;
            String(j, ptr, "preset", z.preset);
            String(j, ptr, "name", z.name);
            Color(j, ptr, "color", z.color);
            for (int q = 0; q < SceneZone::kQuantityCount; ++q) {
                const char* key = SceneZone::Key(static_cast<SceneZone::Quantity>(q));
                const json* v = Find(j, key);
                if (!v) continue;
                const std::string p = JsonPointer(ptr, key);
                if (!v->is_array() || v->size() != 2) {
                    Error(p, "expected [min, max] (null for an open side), found " + KindOf(*v));
                    continue;
                }
                double lo = 0, hi = 0;
                if (!(*v)[0].is_null() && ToNumber((*v)[0], JsonPointer(p, 0), -1.0e6, 1.0e6, lo)) z.bounds[q].min = lo;
                if (!(*v)[1].is_null() && ToNumber((*v)[1], JsonPointer(p, 1), -1.0e6, 1.0e6, hi)) z.bounds[q].max = hi;
            }
            if (!z.preset && std::all_of(z.bounds.begin(), z.bounds.end(), [](const SceneZoneBound& b) { return !b.min && !b.max; }))
                Error(ptr, "a zone needs a preset or at least one of tdb, rh, d, h, twb");
            x.zones.push_back(std::move(z));
        });
        ForEach(doc, "", "data", [&](const json& j, const std::string& ptr) {
            SceneData d;
            if (!Object(j, ptr, {"file", "name", "mode"})) return;
            Require(j, ptr, {"file"});
            std::optional<std::string> file;
            String(j, ptr, "file", file);
            d.file = file.value_or("");
            String(j, ptr, "name", d.name);
            String(j, ptr, "mode", d.mode);
            x.data.push_back(std::move(d));
        });
        auto family = [&](const char* key, SceneLineFamily& f, double minInterval, double maxInterval) {
            if (const json* v = Section(doc, "", key, {"show", "interval", "labels"})) {
                const std::string p = JsonPointer("", key);
                Bool(*v, p, "show", f.show);
                Number(*v, p, "interval", f.interval, minInterval, maxInterval);
                Bool(*v, p, "labels", f.labels);
            }
        };
        family("wet_bulb_lines", x.wetBulbLines, 0.5, 100.0);
        family("volume_lines", x.volumeLines, 0.001, 1.0);
        if (const json* v = Section(doc, "", "legend", {"show", "families", "x", "y"})) {
            Bool(*v, "/legend", "show", x.legend.show);
            Bool(*v, "/legend", "families", x.legend.families);
            Int(*v, "/legend", "x", x.legend.x, -Scene::kMaxSide, Scene::kMaxSide);
            Int(*v, "/legend", "y", x.legend.y, -Scene::kMaxSide, Scene::kMaxSide);
        }
    }

    // True when j is an object; every key not in keys (nor "comment") is reported.
    bool Object(const json& j, const std::string& ptr, const Keys& keys)
    {
        if (!j.is_object()) {
            Error(ptr, "expected an object, found " + KindOf(j));
            return false;
        }
        for (const auto& item : j.items()) {
            // A named reference, not a structured binding: clang 14 cannot capture those.
            const std::string& key = item.key();
            if (key == "comment" || std::any_of(keys.begin(), keys.end(), [&](const char* k) { return key == k; }))
                continue;
            std::string message = "unknown key \"" + SceneError::Quoted(key) + "\"";
            // Suggest only near misses: one edit in a short key, two in a longer one.
            const char* best = nullptr;
            size_t bestDistance = key.size() <= 4 ? 2 : 3;
            for (const char* k : keys) {
                const size_t d = EditDistance(key, k);
                if (d < bestDistance) bestDistance = d, best = k;
            }
            if (best) message += " (did you mean \"" + std::string(best) + "\"?)";
            Error(JsonPointer(ptr, SceneError::Quoted(key)), message);
        }
        return true;
    }

    static const json* Find(const json& obj, const char* key)
    {
        const auto it = obj.find(key);
        return it == obj.end() ? nullptr : &*it;
    }

    // The member object key of obj, checked against keys; null when absent or not an object.
    const json* Section(const json& obj, const std::string& ptr, const char* key, const Keys& keys)
    {
        const json* v = Find(obj, key);
        return v && Object(*v, JsonPointer(ptr, key), keys) ? v : nullptr;
    }

    template <class Fn>
    void ForEach(const json& obj, const std::string& ptr, const char* key, Fn&& fn)
    {
        const json* v = Find(obj, key);
        if (!v) return;
        const std::string arrayPtr = JsonPointer(ptr, key);
        if (!v->is_array()) {
            Error(arrayPtr, "expected an array, found " + KindOf(*v));
            return;
        }
        for (size_t i = 0; i < v->size(); ++i) fn((*v)[i], JsonPointer(arrayPtr, i));
    }

    bool ToNumber(const json& v, const std::string& ptr, double min, double max, double& out)
    {
        if (!v.is_number()) {
            Error(ptr, "expected a number, found " + KindOf(v));
            return false;
        }
        const double x = v.get<double>();
        if (!(x >= min && x <= max)) {
            Error(ptr, DecimalNumber::Text(x) + " is out of range " + DecimalNumber::Text(min) + ".." + DecimalNumber::Text(max));
            return false;
        }
        out = x;
        return true;
    }

    void Number(const json& obj, const std::string& ptr, const char* key, std::optional<double>& out, double min,
                double max)
    {
        double x = 0.0;
        if (const json* v = Find(obj, key); v && ToNumber(*v, JsonPointer(ptr, key), min, max, x)) out = x;
    }

    void Int(const json& obj, const std::string& ptr, const char* key, std::optional<int>& out, int min, int max)
    {
        const json* v = Find(obj, key);
        if (!v) return;
        const std::string p = JsonPointer(ptr, key);
        if (!v->is_number() || v->get<double>() != std::floor(v->get<double>())) {
            Error(p, "expected an integer, found " + (v->is_number() ? DecimalNumber::Text(v->get<double>()) : KindOf(*v)));
            return;
        }
        double x = 0.0;
        if (ToNumber(*v, p, min, max, x)) out = static_cast<int>(x);  // integral and within int range
    }

    void Bool(const json& obj, const std::string& ptr, const char* key, std::optional<bool>& out)
    {
        const json* v = Find(obj, key);
        if (!v) return;
        if (v->is_boolean()) out = v->get<bool>();
        else Error(JsonPointer(ptr, key), "expected true or false, found " + KindOf(*v));
    }

    bool ToString(const json& v, const std::string& ptr, std::string& out)
    {
        if (!v.is_string()) {
            Error(ptr, "expected a string, found " + KindOf(v));
            return false;
        }
        out = v.get<std::string>();
        return true;
    }

    void String(const json& obj, const std::string& ptr, const char* key, std::optional<std::string>& out)
    {
        std::string text;
        if (const json* v = Find(obj, key); v && ToString(*v, JsonPointer(ptr, key), text)) out = std::move(text);
    }

    template <class T>
    void Choice(const json& obj, const std::string& ptr, const char* key, std::optional<T>& out,
                const std::vector<std::pair<const char*, T>>& names)
    {
        const json* v = Find(obj, key);
        std::string text;
        if (!v || !ToString(*v, JsonPointer(ptr, key), text)) return;
        std::string list;
        for (const auto& [name, value] : names) {
            if (text == name) {
                out = value;
                return;
            }
            list += list.empty() ? "" : ", ";
            list += name;
        }
        Error(JsonPointer(ptr, key), "\"" + text + "\" is not one of " + list);
    }

    void Color(const json& obj, const std::string& ptr, const char* key, std::optional<COLORREF>& out)
    {
        const json* v = Find(obj, key);
        std::string text;
        if (!v || !ToString(*v, JsonPointer(ptr, key), text)) return;
        const bool hex = text.size() == 7 && text[0] == '#' &&
                         std::all_of(text.begin() + 1, text.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
        if (!hex) {
            Error(JsonPointer(ptr, key), "\"" + text + "\" is not a colour of the form \"#rrggbb\"");
            return;
        }
        const unsigned long rgb = std::strtoul(text.c_str() + 1, nullptr, 16);
        out = RGB(static_cast<BYTE>(rgb >> 16), static_cast<BYTE>(rgb >> 8), static_cast<BYTE>(rgb));
    }

    // A ratio: a finite number of kJ/kg, or "inf" / "-inf" for the infinite kinds.
    void Ratio(const json& obj, const std::string& ptr, std::optional<double>& out)
    {
        const json* v = Find(obj, "ratio");
        if (!v) return;
        const std::string p = JsonPointer(ptr, "ratio");
        if (v->is_string()) {
            const std::string text = v->get<std::string>();
            if (text == "inf" || text == "+inf") out = HUGE_VAL;
            else if (text == "-inf") out = -HUGE_VAL;
            else Error(p, "\"" + text + "\" is not a ratio: give a number of kJ/kg, \"inf\" or \"-inf\"");
            return;
        }
        double x = 0.0;
        if (ToNumber(*v, p, -1.0e9, 1.0e9, x)) out = x;
    }

    void StateValues(const json& obj, const std::string& ptr, StateInput& input)
    {
        for (int i = 0; i < StateInput::kPropCount; ++i) {
            const auto prop = static_cast<StateInput::Prop>(i);
            std::optional<double> x;
            const StateInput::Limits lim = StateInput::LimitsOf(prop);
            Number(obj, ptr, StateInput::Key(prop), x, lim.min, lim.max);
            if (prop == StateInput::RH) NoteFractionRH(ptr, StateInput::Key(prop), x);
            if (x) input.Set(prop, *x);
        }
    }

    void ReadState(const json& j, const std::string& ptr, SceneState& s, const Keys& extra = {})
    {
        Keys keys = {"name", "tdb", "twb", "tdp", "rh", "d", "h", "pv"};
        keys.insert(keys.end(), extra.begin(), extra.end());
        if (!Object(j, ptr, keys)) return;
        std::optional<std::string> name;
        String(j, ptr, "name", name);
        s.name = name.value_or("");
        StateValues(j, ptr, s.input);
    }

    void ReadPoint(const json& j, const std::string& ptr, ScenePoint& p)
    {
        ReadState(j, ptr, p.state, {"label"});
        if (j.is_object())
            Choice(j, ptr, "label", p.label,
                   {{"left", SceneLabel::Left}, {"top", SceneLabel::Top}, {"right", SceneLabel::Right},
                    {"bottom", SceneLabel::Bottom}, {"none", SceneLabel::None}});
    }

    void ReadRef(const json& j, const std::string& ptr, std::optional<SceneStateRef>& out)
    {
        if (j.is_string()) {
            out = j.get<std::string>();
            return;
        }
        if (!j.is_object()) {
            Error(ptr, "expected the name of a state or a state object, found " + KindOf(j));
            return;
        }
        SceneState s;
        ReadState(j, ptr, s);
        out = std::move(s);
    }

    void Ref(const json& obj, const std::string& ptr, const char* key, std::optional<SceneStateRef>& out)
    {
        if (const json* v = Find(obj, key)) ReadRef(*v, JsonPointer(ptr, key), out);
    }

    void Require(const json& obj, const std::string& ptr, const Keys& keys)
    {
        for (const char* k : keys)
            if (!Find(obj, k)) Error(ptr, std::string("missing key \"") + k + "\"");
    }

    // Exactly one of the end conditions d, h, rh of a ratio.
    void RequireOneTarget(const json& obj, const std::string& ptr)
    {
        const int n = (Find(obj, "d") ? 1 : 0) + (Find(obj, "h") ? 1 : 0) + (Find(obj, "rh") ? 1 : 0);
        if (n != 1) Error(ptr, "a ratio needs exactly one end condition of d, h, rh; " + std::to_string(n) + " given");
    }

    void Target(const json& obj, const std::string& ptr, const char* key, StateInput::Prop prop,
                std::optional<double>& out)
    {
        const StateInput::Limits lim = StateInput::LimitsOf(prop);
        Number(obj, ptr, key, out, lim.min, lim.max);
        if (prop == StateInput::RH) NoteFractionRH(ptr, key, out);
    }

    // The altitude, in place of the pressure; the pressure it gives must be one the model takes.
    void CheckAltitude(const json& doc, const Scene& s)
    {
        if (Find(doc, "altitude") && Find(doc, "pressure")) Error("/altitude", "give either \"altitude\" or \"pressure\", not both");
        if (!s.altitude) return;
        const double b = CKyChart::StandardPressure(*s.altitude);
        if (b < CKyChart::kMinB)
            Error("/altitude", "altitude " + DecimalNumber::Text(*s.altitude) + " m gives " + DecimalNumber::Text(std::round(b)) +
                                   " Pa, below the lowest pressure the model takes (" + DecimalNumber::Text(CKyChart::kMinB) + " Pa)");
    }

    // How many of keys obj has.
    static int CountOf(const json& obj, const Keys& keys)
    {
        return static_cast<int>(std::count_if(keys.begin(), keys.end(), [&](const char* k) { return Find(obj, k) != nullptr; }));
    }

    // An end condition given as a number, or as the name of a state whose value is taken.
    void TargetOrName(const json& obj, const std::string& ptr, const char* key, StateInput::Prop prop,
                      std::optional<double>& out, std::optional<std::string>& name)
    {
        if (const json* v = Find(obj, key); v && v->is_string()) out.reset(), name = v->get<std::string>();
        else Target(obj, ptr, key, prop, out);
    }

    void ReadStep(const json& j, const std::string& ptr, SceneStep& st)
    {
        if (!j.is_object()) {
            Error(ptr, "expected an object, found " + KindOf(j));
            return;
        }
        std::optional<SceneStep::Type> type;
        const json* t = Find(j, "type");
        if (!t) {
            Error(ptr, "missing key \"type\"");
            return;
        }
        Choice(j, ptr, "type", type,
               {{"mixing", SceneStep::Mixing}, {"sensible", SceneStep::Sensible},
                {"cooling_dehumidify", SceneStep::CoolingDehumidify},
                {"adiabatic_humidify", SceneStep::AdiabaticHumidify},
                {"steam_humidify", SceneStep::SteamHumidify}, {"ratio", SceneStep::Ratio}, {"path", SceneStep::Path}});
        if (!type) return;
        st.type = *type;
        switch (st.type) {
        case SceneStep::Mixing:
            Object(j, ptr, {"type", "name", "a", "b", "mass_a", "mass_b", "fraction", "result"});
            Require(j, ptr, {"a", "b"});
            if (!(Find(j, "fraction") ? CountOf(j, {"mass_a", "mass_b"}) == 0 : CountOf(j, {"mass_a", "mass_b"}) == 2))
                Error(ptr, "a mixing needs either \"fraction\" (the share of a) or both \"mass_a\" and \"mass_b\"");
            Ref(j, ptr, "a", st.a);
            Ref(j, ptr, "b", st.b);
            Number(j, ptr, "mass_a", st.massA, 0.0, 1.0e9);
            Number(j, ptr, "mass_b", st.massB, 0.0, 1.0e9);
            Number(j, ptr, "fraction", st.fraction, 0.0, 1.0);
            break;
        case SceneStep::Sensible:
            Object(j, ptr, {"type", "name", "from", "tdb", "result"});
            Require(j, ptr, {"from", "tdb"});
            TargetOrName(j, ptr, "tdb", StateInput::Tdb, st.tdb, st.tdbOf);
            break;
        case SceneStep::CoolingDehumidify: {
            Object(j, ptr, {"type", "name", "from", "to", "rh", "tdb", "d", "adp", "bf", "result"});
            Require(j, ptr, {"from"});
            const bool byState = Find(j, "to") && CountOf(j, {"rh", "tdb", "d", "adp", "bf", "result"}) == 0;
            const bool byRH = Find(j, "rh") && CountOf(j, {"tdb", "d"}) == 1 && CountOf(j, {"to", "adp", "bf"}) == 0;
            const bool byADP = CountOf(j, {"adp", "bf"}) == 2 && CountOf(j, {"to", "rh", "tdb", "d"}) == 0;
            if (!byState && !byRH && !byADP)
                Error(ptr, "a cooling coil needs \"to\" (a state), or \"rh\" with one of \"tdb\", \"d\", or \"adp\" with \"bf\"");
            Ref(j, ptr, "to", st.to);
            Target(j, ptr, "rh", StateInput::RH, st.rh);
            TargetOrName(j, ptr, "tdb", StateInput::Tdb, st.tdb, st.tdbOf);
            TargetOrName(j, ptr, "d", StateInput::D, st.d, st.dOf);
            Target(j, ptr, "adp", StateInput::Tdb, st.adp);
            Number(j, ptr, "bf", st.bf, 0.0, 1.0);
            break;
        }
        case SceneStep::AdiabaticHumidify:
            Object(j, ptr, {"type", "name", "from", "rh", "d", "result"});
            Require(j, ptr, {"from"});
            if (CountOf(j, {"rh", "d"}) != 1) Error(ptr, "a humidifier needs exactly one end condition of rh, d");
            Target(j, ptr, "rh", StateInput::RH, st.rh);
            TargetOrName(j, ptr, "d", StateInput::D, st.d, st.dOf);
            break;
        case SceneStep::SteamHumidify:
            Object(j, ptr, {"type", "name", "from", "d", "rh", "t_steam", "result"});
            Require(j, ptr, {"from"});
            if (CountOf(j, {"rh", "d"}) != 1) Error(ptr, "a humidifier needs exactly one end condition of rh, d");
            TargetOrName(j, ptr, "d", StateInput::D, st.d, st.dOf);
            Target(j, ptr, "rh", StateInput::RH, st.rh);
            Number(j, ptr, "t_steam", st.tSteam, 0.0, CKyStaPnt::kMaxTdb);
            break;
        case SceneStep::Ratio:
            Object(j, ptr, {"type", "name", "from", "ratio", "d", "h", "rh", "tdb", "dt0", "result"});
            Require(j, ptr, {"from", "ratio"});
            if (const int n = CountOf(j, {"d", "h", "rh", "tdb", "dt0"}); n != 1)
                Error(ptr, "a ratio needs exactly one end condition of d, h, rh, tdb, dt0; " + std::to_string(n) + " given");
            Ratio(j, ptr, st.ratio);
            Target(j, ptr, "d", StateInput::D, st.d);
            Target(j, ptr, "h", StateInput::H, st.h);
            Target(j, ptr, "rh", StateInput::RH, st.rh);
            TargetOrName(j, ptr, "tdb", StateInput::Tdb, st.tdb, st.tdbOf);
            Number(j, ptr, "dt0", st.dt0, -100.0, 100.0);
            break;
        case SceneStep::Path:
        case SceneStep::kTypeCount:
            Object(j, ptr, {"type", "name", "points"});
            Require(j, ptr, {"points"});
            if (const json* pts = Find(j, "points"); pts && pts->is_array() && pts->size() > Scene::kMaxPathStates) {
                Error(JsonPointer(ptr, "points"), "a path holds at most " + std::to_string(Scene::kMaxPathStates) +
                                                      " states; this one has " + std::to_string(pts->size()));
                break;
            }
            ForEach(j, ptr, "points", [&](const json& item, const std::string& p) {
                std::optional<SceneStateRef> r;
                ReadRef(item, p, r);
                if (r) st.points.push_back(std::move(*r));
            });
            if (const json* pts = Find(j, "points"); pts && pts->is_array() && pts->empty())
                Error(JsonPointer(ptr, "points"), "a path needs at least one state");
            break;
        }
        String(j, ptr, "name", st.name);
        if (st.type != SceneStep::Mixing && st.type != SceneStep::Path) Ref(j, ptr, "from", st.from);
        if (st.type != SceneStep::Path) String(j, ptr, "result", st.result);
    }

    void ReadProcess(const json& j, const std::string& ptr, SceneProcess& p)
    {
        if (!Object(j, ptr, {"states", "steps", "flow"})) return;
        if (const json* f = Section(j, ptr, "flow", {"m3h", "kgs"})) {
            const std::string fp = JsonPointer(ptr, "flow");
            if (CountOf(*f, {"m3h", "kgs"}) != 1) Error(fp, "a flow needs exactly one of \"m3h\" (m³/h), \"kgs\" (kg/s)");
            Number(*f, fp, "m3h", p.flowM3h, 0.0, 1.0e9);
            Number(*f, fp, "kgs", p.flowKgs, 0.0, 1.0e6);
        }
        ForEach(j, ptr, "states", [&](const json& item, const std::string& sp) {
            SceneState s;
            ReadState(item, sp, s);
            p.states.push_back(std::move(s));
        });
        Require(j, ptr, {"steps"});
        ForEach(j, ptr, "steps", [&](const json& item, const std::string& sp) {
            SceneStep st;
            ReadStep(item, sp, st);
            p.steps.push_back(std::move(st));
        });
    }

    void ReadRatioLine(const json& j, const std::string& ptr, SceneRatioLine& r)
    {
        if (!Object(j, ptr, {"from", "to", "ratio", "d", "h", "rh", "label"})) return;
        Require(j, ptr, {"from"});
        std::optional<SceneStateRef> from;
        Ref(j, ptr, "from", from);
        if (from) r.from = std::move(*from);
        if (Find(j, "to")) {
            if (Find(j, "ratio") || Find(j, "d") || Find(j, "h") || Find(j, "rh"))
                Error(ptr, "give either \"to\" or a \"ratio\" with one of d, h, rh, not both");
            Ref(j, ptr, "to", r.to);
        } else if (Find(j, "ratio")) {
            RequireOneTarget(j, ptr);
        } else {
            Error(ptr, "missing key \"to\" or \"ratio\"");
        }
        Ratio(j, ptr, r.ratio);
        Target(j, ptr, "d", StateInput::D, r.d);
        Target(j, ptr, "h", StateInput::H, r.h);
        Target(j, ptr, "rh", StateInput::RH, r.rh);
        Bool(j, ptr, "label", r.label);
    }

    void ReadLineStyle(const json& j, const std::string& ptr, SceneLineStyle& s)
    {
        if (!Object(j, ptr, {"color", "pen", "width", "text_height", "spare"})) return;
        Color(j, ptr, "color", s.color);
        Choice(j, ptr, "pen", s.pen,
               {{"solid", PS_SOLID}, {"dash", PS_DASH}, {"dot", PS_DOT}, {"dashdot", PS_DASHDOT},
                {"dashdotdot", PS_DASHDOTDOT}, {"null", PS_NULL}});
        Int(j, ptr, "width", s.width, 0, 50);
        Int(j, ptr, "text_height", s.textHeight, 1, 200);
        Number(j, ptr, "spare", s.spare, -1.0e300, 1.0e300);
    }

    void ReadStyles(const json& doc, SceneStyles& s)
    {
        const json* v = Find(doc, "styles");
        if (!v) return;
        const Keys keys = [] {
            Keys k;
            for (int i = 0; i < kLineStyleCount; ++i) k.push_back(SceneStyles::Key(static_cast<SceneLineStyleId>(i)));
            k.push_back("points");
            return k;
        }();
        if (!Object(*v, "/styles", keys)) return;
        for (int i = 0; i < kLineStyleCount; ++i) {
            const char* key = SceneStyles::Key(static_cast<SceneLineStyleId>(i));
            if (const json* r = Find(*v, key)) ReadLineStyle(*r, JsonPointer("/styles", key), s.lines[i]);
        }
        if (const json* p = Section(*v, "/styles", "points", {"color", "size", "text_height"})) {
            Color(*p, "/styles/points", "color", s.points.color);
            Number(*p, "/styles/points", "size", s.points.size, 0.0, 200.0);
            Int(*p, "/styles/points", "text_height", s.points.textHeight, 1, 200);
        }
    }

    // Relative humidity is in percent; a value of 0..1 is read as such, and told, since it is
    // most likely a fraction meant as percent.
    void NoteFractionRH(const std::string& ptr, const char* key, const std::optional<double>& rh)
    {
        if (!rh || !(*rh > 0.0 && *rh <= 1.0)) return;
        m_notes.push_back(JsonPointer(ptr, key) + ": " + DecimalNumber::Text(*rh) + " is read as " +
                          DecimalNumber::Text(*rh) + " %; relative humidity is in percent (" +
                          DecimalNumber::Text(std::round(*rh * 1e8) / 1e6) + " for " + DecimalNumber::Text(std::round(*rh * 1e8) / 1e6) +
                          " %)");
    }

    std::vector<SceneError>& m_errors;
    std::vector<std::string> m_notes;
};

}  // namespace

bool SceneReader::Parse(std::string_view text, Scene& scene, std::vector<SceneError>& errors)
{
    const size_t before = errors.size();
    json doc;
    DocumentBuilder builder(doc, text, errors);
    if (!json::sax_parse(text.begin(), text.end(), &builder)) return false;
    // Keys given twice are reported with everything else the document has wrong.
    scene = Scene();
    Reader reader(errors);
    reader.ReadScene(doc, scene);
    scene.notes = reader.TakeNotes();
    std::size_t states = scene.points.size() + scene.ratioLines.size();
    for (const SceneProcess& p : scene.processes) {
        states += p.states.size();
        for (const SceneStep& st : p.steps) states += st.points.size() + 1;
    }
    if (states > Scene::kMaxStates)
        errors.push_back({"", 0, 0, "the scene has " + std::to_string(states) + " states, paths included; at most " +
                                        std::to_string(Scene::kMaxStates) + " are drawn"});
    return errors.size() == before;
}

bool SceneReader::ReadFile(const std::string& path, Scene& scene, std::vector<SceneError>& errors)
{
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) {
        errors.push_back({"", 0, 0, "cannot read the file: it is a directory"});
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        errors.push_back({"", 0, 0, std::string("cannot open the file: ") + std::strerror(errno)});
        return false;
    }
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    if (size < 0 || size > kMaxFileBytes) {
        errors.push_back({"", 0, 0, size < 0 ? "cannot read the file" : "the file is larger than 16 MiB"});
        return false;
    }
    in.seekg(0, std::ios::beg);
    std::string text(static_cast<size_t>(size), '\0');
    if (!in.read(text.data(), size)) {
        errors.push_back({"", 0, 0, "cannot read the file"});
        return false;
    }
    return Parse(text, scene, errors);
}
