#include "SettingsSchema.h"

#include "DecimalNumber.h"
#include "FormulationNames.h"

#include <kygraph/KyChart.h>

#include <array>
#include <type_traits>

using json = nlohmann::json;

namespace {

// A scene's optional value as JSON and back.
template <class T>
json SceneValue(const std::optional<T>& v)
{
    if (!v) return nullptr;
    if constexpr (std::is_same_v<T, Ky::_Formulation>) return FormulationNames::Key(*v);
    else return *v;
}

template <class T>
void SetSceneValue(std::optional<T>& out, const json& j)
{
    if (j.is_null()) out.reset();
    else if constexpr (std::is_same_v<T, Ky::_Formulation>) out = FormulationNames::FromKey(j.get<std::string>());
    else out = j.get<T>();
}

// Scene::*Member.
template <auto Member>
constexpr SettingsSchema::SceneAccess SceneAt()
{
    return {[](const Scene& s) { return SceneValue(s.*Member); }, [](Scene& s, const json& j) { SetSceneValue(s.*Member, j); }};
}

// A member of the settings as JSON and back: the int switches are booleans, the city text.
template <class T>
json ChartValue(const T& v)
{
    if constexpr (std::is_same_v<T, int>) return v != 0;
    else if constexpr (std::is_same_v<T, CString>) return v.ToUtf8();
    else return v;
}

template <class T>
void SetChartValue(T& out, const json& j)
{
    if constexpr (std::is_same_v<T, int>) out = j.get<bool>() ? 1 : 0;
    else if constexpr (std::is_same_v<T, CString>) out = CString::FromUtf8(j.get<std::string>());
    else out = j.get<T>();
}

template <auto Member>
constexpr SettingsSchema::ChartAccess ChartAt()
{
    return {[](const CKyGChartSetting& c) { return ChartValue(c.*Member); },
            [](CKyGChartSetting& c, const json& j) { SetChartValue(c.*Member, j); }};
}

template <auto Member>
constexpr SettingsSchema::ChartAccess HstAt()
{
    return {[](const CKyGChartSetting& c) { return ChartValue(c.m_DrawHstSetting.*Member); },
            [](CKyGChartSetting& c, const json& j) { SetChartValue(c.m_DrawHstSetting.*Member, j); }};
}

// The range is set through its setters, which recompute the corner points.
template <auto Get, auto Set>
constexpr SettingsSchema::ChartAccess RangeAt()
{
    return {[](const CKyGChartSetting& c) { return json((c.m_RangeSetting.*Get)()); },
            [](CKyGChartSetting& c, const json& j) { (c.m_RangeSetting.*Set)(j.get<double>()); }};
}

using F = SettingsSchema::Type;

// The settings as the library builds them; their constructor is open to derived classes.
struct DefaultSettings : CKyGChartSetting {
    DefaultSettings() = default;
};

// The form's fieldsets, in the order the page shows them.
constexpr std::array<const char*, 5> kGroups = {"Show", "Intervals", "Range", "Air", "Design conditions"};

std::vector<SettingsSchema::Field> MakeFields()
{
    const StateInput::Limits t = StateInput::LimitsOf(StateInput::Tdb);
    const StateInput::Limits rh = StateInput::LimitsOf(StateInput::RH);
    const double dt0 = CKyGRangeSetting::m_dValidMinT, dt1 = CKyGRangeSetting::m_dValidMaxT;
    const double dd0 = CKyGRangeSetting::m_dValidMinD, dd1 = CKyGRangeSetting::m_dValidMaxD;
    const auto [show, intervals, range, air, design] = kGroups;
    using S = Scene;
    using H = CKyGDrawHstSetting;
    using C = CKyGChartSetting;
    using R = CKyGRangeSetting;
    // The pressure and formulation are the state model's: the applier sets them (and keeps
    // m_dPressure equal to the model's), the table only reads them.
    return {
        {"pressure", F::Number, "Pa", CKyChart::kMinB, CKyChart::kMaxB, air, "Pressure", "atmospheric pressure",
         {HstAt<&H::m_dPressure>().get, nullptr}, SceneAt<&S::pressure>()},
        {"altitude", F::Number, "m", CKyChart::kMinAltitude, CKyChart::kMaxAltitude, air, "or altitude",
         "altitude in place of `pressure`: the standard atmosphere's pressure", {nullptr, nullptr}, SceneAt<&S::altitude>()},
        {"formulation", F::Formulation, "", 0, 0, air, "Relations", "the moist-air relations",
         {[](const CKyGChartSetting&) { return json(FormulationNames::Key(CKyChart::InstanceGloble()->GetFormulation())); }, nullptr},
         SceneAt<&S::formulation>()},
        {"range.tmin", F::Number, "°C", dt0, dt1, range, "t from", "lowest dry-bulb temperature of the chart body",
         RangeAt<&R::GetMinT, &R::SetMinT>()},
        {"range.tmax", F::Number, "°C", dt0, dt1, range, "to", "highest dry-bulb temperature of the chart body",
         RangeAt<&R::GetMaxT, &R::SetMaxT>()},
        {"range.dmin", F::Number, "g/kg", dd0, dd1, range, "d from", "moisture content at the body's left edge",
         RangeAt<&R::GetMinD, &R::SetMinD>()},
        {"range.dmax", F::Number, "g/kg", dd0, dd1, range, "to", "moisture content at the body's right edge",
         RangeAt<&R::GetMaxD, &R::SetMaxD>()},
        // Lower bounds of the intervals keep a family to a few thousand lines at most.
        {"intervals.d", F::Number, "g/kg", 0.1, 1000.0, intervals, "d", "spacing of constant-d lines",
         HstAt<&H::m_dDInterval>()},
        {"intervals.h", F::Number, "kJ/kg", 0.1, 1000.0, intervals, "h", "spacing of constant-h lines",
         HstAt<&H::m_dHInterval>()},
        {"intervals.t", F::Number, "°C", 0.1, 1000.0, intervals, "t", "spacing of isotherms",
         HstAt<&H::m_dTInterval>()},
        {"intervals.rh", F::Number, "%", 0.5, 100.0, intervals, "φ", "spacing of relative-humidity curves",
         HstAt<&H::m_dRHInterval>()},
        {"display.protractor", F::Bool, "", 0, 0, show, "Ratio protractor", "draw the heat-moisture-ratio protractor",
         HstAt<&H::m_bShowASChart>()},
        {"display.isotherms", F::Bool, "", 0, 0, show, "Isotherms", "draw isotherms",
         HstAt<&H::m_bShowSameT>()},
        {"display.d_lines", F::Bool, "", 0, 0, show, "Constant d", "draw constant-d lines",
         HstAt<&H::m_bShowSameD>()},
        {"display.h_lines", F::Bool, "", 0, 0, show, "Constant h", "draw constant-h lines",
         HstAt<&H::m_bShowSameH>()},
        {"display.rh_curves", F::Bool, "", 0, 0, show, "Relative humidity", "draw relative-humidity curves",
         HstAt<&H::m_bShowSameRH>()},
        {"display.title", F::Bool, "", 0, 0, show, "Title", "draw the title block",
         HstAt<&H::m_bShowTitle>()},
        {"winter", F::Bool, "", 0, 0, design, "Winter", "the two design points come from the winter conditions",
         HstAt<&H::m_bWinter>()},
        {"design.city", F::Text, "", 0, 0, nullptr, "", "place of the design conditions, kept and not drawn",
         HstAt<&H::m_strCity>()},
        {"design.summer.outdoor.tdb", F::Number, "°C", t.min, t.max, design, "Outdoor t", "summer outdoor dry bulb",
         HstAt<&H::m_dSummerOutTdb>()},
        {"design.summer.outdoor.twb", F::Number, "°C", t.min, t.max, design, "Outdoor wet bulb", "summer outdoor wet bulb",
         HstAt<&H::m_dSummerOutTwb>()},
        {"design.summer.indoor.tdb", F::Number, "°C", t.min, t.max, design, "Indoor t", "summer indoor dry bulb",
         HstAt<&H::m_dSummerInTdb>()},
        {"design.summer.indoor.rh", F::Number, "%", rh.min, rh.max, design, "Indoor φ", "summer indoor relative humidity",
         HstAt<&H::m_dSummerInRH>()},
        {"design.winter.outdoor.tdb", F::Number, "°C", t.min, t.max, design, "Outdoor t", "winter outdoor dry bulb",
         HstAt<&H::m_dWinterOutTdb>()},
        {"design.winter.outdoor.rh", F::Number, "%", rh.min, rh.max, design, "Outdoor φ", "winter outdoor relative humidity",
         HstAt<&H::m_dWinterOutRH>()},
        {"design.winter.indoor.tdb", F::Number, "°C", t.min, t.max, design, "Indoor t", "winter indoor dry bulb",
         HstAt<&H::m_dWinterInTdb>()},
        {"design.winter.indoor.rh", F::Number, "%", rh.min, rh.max, design, "Indoor φ", "winter indoor relative humidity",
         HstAt<&H::m_dWinterInRH>()},
        {"margins.left", F::Number, "px", 0.0, 1000.0, nullptr, "", "blank width left of the chart body",
         ChartAt<&C::m_dLeftMargin>()},
        {"margins.right", F::Number, "px", 0.0, 1000.0, nullptr, "", "blank width right of the chart body",
         ChartAt<&C::m_dRightMargin>()},
        {"margins.bottom", F::Number, "px", 0.0, 1000.0, nullptr, "", "blank height below the chart body",
         ChartAt<&C::m_dBottomMargin>()},
        {"margins.top", F::Number, "px", 0.0, 1000.0, nullptr, "", "blank height above the chart body",
         ChartAt<&C::m_dTopMargin>()},
        {"lengths.t", F::Number, "px/K", 0.1, 100.0, nullptr, "", "height of one kelvin of temperature range",
         ChartAt<&C::m_dTLength>()},
        {"lengths.d", F::Number, "px/(g/kg)", 0.1, 100.0, nullptr, "", "width of one g/kg of moisture-content range",
         ChartAt<&C::m_dDLength>()},
    };
}

const char* TypeName(F type)
{
    switch (type) {
    case F::Number: return "number";
    case F::Bool: return "bool";
    case F::Text: return "text";
    default: return "choice";
    }
}

}  // namespace

const std::vector<SettingsSchema::Field>& SettingsSchema::Fields()
{
    static const std::vector<Field> fields = MakeFields();
    return fields;
}

json SettingsSchema::Get(const Field& f, const Scene& scene)
{
    if (f.scene.get) return f.scene.get(scene);
    const auto it = scene.settings.find(f.path);
    return it == scene.settings.end() ? json() : it->second;
}

void SettingsSchema::Set(const Field& f, Scene& scene, const json& value)
{
    if (f.scene.set) f.scene.set(scene, value);
    else if (value.is_null()) scene.settings.erase(f.path);
    else scene.settings[f.path] = value;
}

std::vector<std::string> SettingsSchema::KeysUnder(std::string_view prefix)
{
    std::vector<std::string> keys;
    for (const Field& f : Fields()) {
        std::string_view rest = f.path;
        if (!prefix.empty()) {
            if (!(rest.size() > prefix.size() && rest.substr(0, prefix.size()) == prefix && rest[prefix.size()] == '.')) continue;
            rest.remove_prefix(prefix.size() + 1);
        }
        const std::string key(rest.substr(0, rest.find('.')));
        if (keys.empty() || keys.back() != key) keys.push_back(key);  // a section's fields are adjacent
    }
    return keys;
}

std::string SettingsSchema::Pointer(std::string_view path)
{
    std::string pointer;
    while (!path.empty()) {
        const size_t dot = path.find('.');
        pointer = JsonPointer(pointer, std::string(path.substr(0, dot)));
        path = dot == std::string_view::npos ? std::string_view() : path.substr(dot + 1);
    }
    return pointer;
}

json SettingsSchema::Effective(const CKyGChartSetting& settings)
{
    json j = json::object();
    for (const Field& f : Fields())
        if (f.group && f.chart.get) j[json::json_pointer(Pointer(f.path))] = f.chart.get(settings);
    return j;
}

json SettingsSchema::Form()
{
    json form = json::array();
    for (const char* group : kGroups) {
        for (const Field& f : Fields()) {
            if (f.group != group) continue;  // the rows name the groups of kGroups
            json row = {{"path", f.path}, {"type", TypeName(f.type)}, {"unit", f.unit}, {"group", f.group}, {"label", f.label}};
            if (f.type == Type::Number) row["min"] = f.min, row["max"] = f.max;
            if (f.type == Type::Formulation)
                for (const FormulationNames::Entry& e : FormulationNames::All())
                    row["choices"].push_back({{"value", e.key}, {"label", e.label}});
            form.push_back(std::move(row));
        }
    }
    return form;
}

std::string SettingsSchema::MarkdownTable()
{
    DefaultSettings defaults;
    const auto text = [](const json& v) -> std::string {
        if (v.is_number()) return DecimalNumber::Text(v.get<double>());
        return "`" + v.dump() + "`";
    };
    std::string out = "| key | type | unit | bounds | default | meaning |\n|---|---|---|---|---|---|\n";
    for (const Field& f : Fields()) {
        std::string bounds;
        if (f.type == Type::Number) bounds = DecimalNumber::Text(f.min) + " to " + DecimalNumber::Text(f.max);
        if (f.type == Type::Formulation) bounds = "`\"" + FormulationNames::KeyList("\"`, `\"", "\"`, `\"") + "\"`";
        out += std::string("| `") + f.path + "` | " + TypeName(f.type) + " | " + f.unit + " | " + bounds + " | " +
               (f.chart.get ? text(f.chart.get(defaults)) : std::string()) + " | " + f.meaning + " |\n";
    }
    return out;
}
