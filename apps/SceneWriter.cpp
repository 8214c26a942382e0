#include "SceneWriter.h"

#include "SettingsSchema.h"

#include <cmath>
#include <cstdio>

using ojson = nlohmann::ordered_json;

namespace {

template <class T>
void Put(ojson& obj, const char* key, const std::optional<T>& v)
{
    if (v) obj[key] = *v;
}

// Adds section under key unless it stayed empty.
void PutSection(ojson& obj, const char* key, ojson section)
{
    if (!section.empty()) obj[key] = std::move(section);
}

std::string ColorText(COLORREF c)
{
    char buf[8];
    std::snprintf(buf, sizeof buf, "#%02x%02x%02x", GetRValue(c), GetGValue(c), GetBValue(c));
    return buf;
}

void PutColor(ojson& obj, const char* key, const std::optional<COLORREF>& c)
{
    if (c) obj[key] = ColorText(*c);
}

// Zones, data sets, the extra line families and the legend, as the reader takes them.
void PutExtras(ojson& doc, const SceneExtras& x)
{
    if (!x.zones.empty()) {
        ojson& arr = doc["zones"] = ojson::array();
        for (const SceneZone& z : x.zones) {
            ojson o;
            Put(o, "preset", z.preset);
            Put(o, "name", z.name);
            PutColor(o, "color", z.color);
            for (int q = 0; q < SceneZone::kQuantityCount; ++q) {
                const SceneZoneBound& b = z.bounds[q];
                if (!b.min && !b.max) continue;
                ojson pair = ojson::array();
                pair.push_back(b.min ? ojson(*b.min) : ojson(nullptr));
                pair.push_back(b.max ? ojson(*b.max) : ojson(nullptr));
                o[SceneZone::Key(static_cast<SceneZone::Quantity>(q))] = std::move(pair);
            }
            arr.push_back(std::move(o));
        }
    }
    if (!x.data.empty()) {
        ojson& arr = doc["data"] = ojson::array();
        for (const SceneData& d : x.data) {
            ojson o;
            o["file"] = d.file;
            Put(o, "name", d.name);
            Put(o, "mode", d.mode);
            arr.push_back(std::move(o));
        }
    }
    auto family = [&doc](const char* key, const SceneLineFamily& f) {
        ojson o;
        Put(o, "show", f.show);
        Put(o, "interval", f.interval);
        Put(o, "labels", f.labels);
        PutSection(doc, key, std::move(o));
    };
    family("wet_bulb_lines", x.wetBulbLines);
    family("volume_lines", x.volumeLines);
    ojson legend;
    Put(legend, "show", x.legend.show);
    Put(legend, "families", x.legend.families);
    Put(legend, "x", x.legend.x);
    Put(legend, "y", x.legend.y);
    PutSection(doc, "legend", std::move(legend));
}

// JSON has no infinity: the infinite ratios are written as the reader's "inf" and "-inf".
void PutRatio(ojson& obj, const std::optional<double>& r)
{
    if (!r) return;
    if (std::isinf(*r)) obj["ratio"] = *r > 0 ? "inf" : "-inf";
    else obj["ratio"] = *r;
}

const char* PenName(int pen)
{
    static const char* const names[] = {"solid", "dash", "dot", "dashdot", "dashdotdot", "null"};
    return pen >= 0 && pen <= 5 ? names[pen] : "solid";
}

const char* LabelName(SceneLabel l)
{
    static const char* const names[] = {"left", "top", "right", "bottom", "none"};
    return names[static_cast<int>(l)];
}

ojson State(const SceneState& s)
{
    ojson o = ojson::object();
    if (!s.name.empty()) o["name"] = s.name;
    for (int i = 0; i < StateInput::kPropCount; ++i) {
        const auto prop = static_cast<StateInput::Prop>(i);
        if (s.input.Has(prop)) o[StateInput::Key(prop)] = s.input.Get(prop);
    }
    return o;
}

ojson Ref(const SceneStateRef& r)
{
    if (const std::string* name = std::get_if<std::string>(&r)) return *name;
    return State(std::get<SceneState>(r));
}

void PutRef(ojson& obj, const char* key, const std::optional<SceneStateRef>& r)
{
    if (r) obj[key] = Ref(*r);
}

ojson Step(const SceneStep& st)
{
    ojson o;
    o["type"] = SceneStep::TypeName(st.type);
    Put(o, "name", st.name);
    PutRef(o, "from", st.from);
    PutRef(o, "to", st.to);
    PutRef(o, "a", st.a);
    PutRef(o, "b", st.b);
    Put(o, "mass_a", st.massA);
    Put(o, "mass_b", st.massB);
    Put(o, "fraction", st.fraction);
    PutRatio(o, st.ratio);
    Put(o, "tdb", st.tdb);
    Put(o, "tdb", st.tdbOf);
    Put(o, "rh", st.rh);
    Put(o, "d", st.d);
    Put(o, "d", st.dOf);
    Put(o, "h", st.h);
    Put(o, "dt0", st.dt0);
    Put(o, "adp", st.adp);
    Put(o, "bf", st.bf);
    Put(o, "t_steam", st.tSteam);
    if (st.type == SceneStep::Path) {
        ojson pts = ojson::array();
        for (const SceneStateRef& r : st.points) pts.push_back(Ref(r));
        o["points"] = std::move(pts);
    }
    Put(o, "result", st.result);
    return o;
}

ojson LineStyle(const SceneLineStyle& s)
{
    ojson o = ojson::object();
    PutColor(o, "color", s.color);
    if (s.pen) o["pen"] = PenName(*s.pen);
    Put(o, "width", s.width);
    Put(o, "text_height", s.textHeight);
    Put(o, "spare", s.spare);
    return o;
}

}  // namespace

ojson SceneWriter::ToJson(const Scene& s)
{
    ojson doc = ojson::object();
    ojson size = ojson::object();
    Put(size, "width", s.width);
    Put(size, "height", s.height);
    PutSection(doc, "size", std::move(size));
    Put(doc, "antialias", s.antialias);
    if (s.lang) doc["lang"] = *s.lang == KyGraphLanguage::English ? "en" : "zh";
    if (s.labels) doc["labels"] = *s.labels == SceneLabelRule::Chart ? "chart" : "host";
    // A section appears with its first value, so none is written empty.
    for (const SettingsSchema::Field& f : SettingsSchema::Fields())
        if (const nlohmann::json v = SettingsSchema::Get(f, s); !v.is_null()) doc[ojson::json_pointer(SettingsSchema::Pointer(f.path))] = v;

    ojson styles = ojson::object();
    for (int i = 0; i < kLineStyleCount; ++i)
        PutSection(styles, SceneStyles::Key(static_cast<SceneLineStyleId>(i)), LineStyle(s.styles.lines[i]));
    ojson points = ojson::object();
    PutColor(points, "color", s.styles.points.color);
    Put(points, "size", s.styles.points.size);
    Put(points, "text_height", s.styles.points.textHeight);
    PutSection(styles, "points", std::move(points));
    PutSection(doc, "styles", std::move(styles));

    if (!s.points.empty()) {
        ojson& arr = doc["points"] = ojson::array();
        for (const ScenePoint& p : s.points) {
            ojson o = State(p.state);
            if (p.label) o["label"] = LabelName(*p.label);
            arr.push_back(std::move(o));
        }
    }
    if (!s.processes.empty()) {
        ojson& arr = doc["processes"] = ojson::array();
        for (const SceneProcess& p : s.processes) {
            ojson o = ojson::object();
            if (!p.states.empty()) {
                ojson& states = o["states"] = ojson::array();
                for (const SceneState& st : p.states) states.push_back(State(st));
            }
            ojson flow = ojson::object();
            Put(flow, "m3h", p.flowM3h);
            Put(flow, "kgs", p.flowKgs);
            PutSection(o, "flow", std::move(flow));
            ojson& steps = o["steps"] = ojson::array();
            for (const SceneStep& st : p.steps) steps.push_back(Step(st));
            arr.push_back(std::move(o));
        }
    }
    if (!s.ratioLines.empty()) {
        ojson& arr = doc["ratio_lines"] = ojson::array();
        for (const SceneRatioLine& r : s.ratioLines) {
            ojson o;
            o["from"] = Ref(r.from);
            PutRef(o, "to", r.to);
            PutRatio(o, r.ratio);
            Put(o, "d", r.d);
            Put(o, "h", r.h);
            Put(o, "rh", r.rh);
            Put(o, "label", r.label);
            arr.push_back(std::move(o));
        }
    }
    PutExtras(doc, s.extras);
    return doc;
}

std::string SceneWriter::Write(const Scene& scene)
{
    // Text that is not UTF-8 (possible only in a Scene built in code) is replaced, not thrown.
    return ToJson(scene).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

namespace {

void CarryComments(const nlohmann::ordered_json& from, nlohmann::ordered_json& to)
{
    if (from.is_object() && to.is_object()) {
        if (const auto c = from.find("comment"); c != from.end() && !to.contains("comment")) to["comment"] = *c;
        for (auto& [key, value] : to.items())
            if (const auto f = from.find(key); f != from.end()) CarryComments(*f, value);
    } else if (from.is_array() && to.is_array()) {
        for (size_t i = 0; i < from.size() && i < to.size(); ++i) CarryComments(from[i], to[i]);
    }
}

}  // namespace

std::string SceneWriter::WriteKeepingComments(const Scene& scene, std::string_view original)
{
    nlohmann::ordered_json doc = ToJson(scene);
    const nlohmann::ordered_json old = nlohmann::ordered_json::parse(original, nullptr, false);
    if (!old.is_discarded()) CarryComments(old, doc);
    return doc.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}
