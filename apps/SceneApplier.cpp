#include "SceneApplier.h"

#include "DecimalNumber.h"
#include "HostLayout.h"
#include "ProcessStepBuilder.h"
#include "SettingsSchema.h"

#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGSameAS.h>
#include <kygraph/KyProcess.h>

#include <cmath>
#include <cstdio>

namespace {

CString Wide(const std::string& utf8) { return CString::FromUtf8(utf8); }

// Every member of the settings the scene can change, so that a snapshot restores it whole.
void CopySettings(CKyGChartSetting& to, const CKyGChartSetting& from)
{
    to.m_RangeSetting = from.m_RangeSetting;
    to.m_StyleSetting = from.m_StyleSetting;
    to.m_DimContentSetting = from.m_DimContentSetting;
    to.m_ShortSetting = from.m_ShortSetting;
    to.m_DrawHstSetting = from.m_DrawHstSetting;
    to.m_OverlaySetting = from.m_OverlaySetting;
    to.m_dLeftMargin = from.m_dLeftMargin;
    to.m_dRightMargin = from.m_dRightMargin;
    to.m_dBottomMargin = from.m_dBottomMargin;
    to.m_dTopMargin = from.m_dTopMargin;
    to.m_dTLength = from.m_dTLength;
    to.m_dDLength = from.m_dDLength;
    to.m_dDrawScale = from.m_dDrawScale;
}

template <class T, class U>
void Set(T& field, const std::optional<U>& v)
{
    if (v) field = static_cast<T>(*v);
}

void ApplyLineStyle(tagKyLineStyle& to, const SceneLineStyle& s)
{
    Set(to.crColor, s.color);
    Set(to.nPenStyle, s.pen);
    Set(to.nWidth, s.width);
    Set(to.nTextHeight, s.textHeight);
    Set(to.dSpare, s.spare);
}

CKyGStaPnt::DimPosition PositionOf(SceneLabel l)
{
    switch (l) {
    case SceneLabel::Left: return CKyGStaPnt::DimLeft;
    case SceneLabel::Right: return CKyGStaPnt::DimRight;
    case SceneLabel::Bottom: return CKyGStaPnt::DimBottom;
    default: return CKyGStaPnt::DimTop;
    }
}

}  // namespace

bool SceneApplier::Apply(const Scene& scene, std::vector<SceneError>& errors)
{
    CKyGChartSetting* live = CKyGChartSetting::GetKyGChartSetting();
    CKyChart* model = CKyChart::InstanceGloble();
    const CKyGChartSetting saved(*live);
    const double savedB = model->GetGlobleB();
    const Ky::_Formulation savedFormulation = model->GetFormulation();
    auto markers = std::move(m_markers);
    auto processes = std::move(m_processes);
    auto ratioLines = std::move(m_ratioLines);
    auto steps = std::move(m_steps);
    auto named = std::move(m_named);
    m_steps.clear();
    m_named.clear();
    m_markers.clear();
    m_processes.clear();
    m_ratioLines.clear();
    m_names.clear();

    const size_t before = errors.size();
    ApplySettings(scene, errors);
    if (errors.size() == before) CheckDesign(errors);
    if (errors.size() == before) BuildOverlays(scene, errors);
    if (errors.size() == before) m_extras.Apply(scene, *live, errors);
    m_names.clear();
    if (errors.size() == before) {
        CopySettings(m_applied, *live);
        m_hostLabels = scene.labels.value_or(SceneLabelRule::Host) == SceneLabelRule::Host;
        return true;
    }

    CopySettings(*live, saved);
    model->SetGlobleB(savedB);
    model->SetFormulation(savedFormulation);
    m_markers = std::move(markers);
    m_processes = std::move(processes);
    m_ratioLines = std::move(ratioLines);
    m_steps = std::move(steps);
    m_named = std::move(named);
    return false;
}

void SceneApplier::Reapply() const { CopySettings(*CKyGChartSetting::GetKyGChartSetting(), m_applied); }

void SceneApplier::ApplySettings(const Scene& s, std::vector<SceneError>& errors)
{
    CKyGChartSetting& set = *CKyGChartSetting::GetKyGChartSetting();
    CKyChart* model = CKyChart::InstanceGloble();
    CopySettings(set, m_defaults);
    // The reader has checked the pressure against the model's limits.
    model->SetGlobleB(s.altitude ? CKyChart::StandardPressure(*s.altitude) : s.pressure.value_or(CKyChart::kDefaultB));
    model->SetFormulation(s.formulation.value_or(Ky::FORMULATION_CHART));
    set.m_DrawHstSetting.m_dPressure = model->GetGlobleB();

    for (const SettingsSchema::Field& f : SettingsSchema::Fields())
        if (const nlohmann::json v = SettingsSchema::Get(f, s); f.chart.set && !v.is_null()) f.chart.set(set, v);

    // The corner points are recomputed even for a default range: they depend on the pressure
    // and formulation just set.
    CKyGRangeSetting& range = set.m_RangeSetting;
    const double tmin = range.GetMinT(), tmax = range.GetMaxT(), dmin = range.GetMinD(), dmax = range.GetMaxD();
    if (!(tmin < tmax)) errors.push_back({"/range", 0, 0, "tmin " + DecimalNumber::Text(tmin) + " must be below tmax " + DecimalNumber::Text(tmax)});
    if (!(dmin < dmax)) errors.push_back({"/range", 0, 0, "dmin " + DecimalNumber::Text(dmin) + " must be below dmax " + DecimalNumber::Text(dmax)});
    if (!range.SetMaxD(dmax)) {
        const double corners[3][2] = {{dmin, tmax}, {dmin, tmin}, {dmax, tmax}};
        for (const auto& c : corners) {
            CKyStaPnt p;
            if (!p.SetBy_DandTdb(c[0], c[1])) {
                errors.push_back({"/range", 0, 0, "the corner d " + DecimalNumber::Text(c[0]) + " g/kg, t " + DecimalNumber::Text(c[1]) +
                                                      " °C is not a state: " + p.GetLastErrorString().ToUtf8()});
                break;
            }
        }
    }

    for (int i = 0; i < kLineStyleCount; ++i) {
        const auto id = static_cast<SceneLineStyleId>(i);
        ApplyLineStyle(set.m_StyleSetting.*SceneStyles::Member(id), s.styles.lines[i]);
    }
    tagKyPntStyle& pnt = set.m_StyleSetting.m_StaPntStyle;
    Set(pnt.crColor, s.styles.points.color);
    Set(pnt.dSize, s.styles.points.size);
    Set(pnt.nTextHeight, s.styles.points.textHeight);
}

// The chart skips a design point the model refuses without a word; a scene says why.
void SceneApplier::CheckDesign(std::vector<SceneError>& errors) const
{
    const CKyGDrawHstSetting& hst = CKyGChartSetting::GetKyGChartSetting()->m_DrawHstSetting;
    struct Condition {
        const char* pointer;
        StateInput::Prop second;
        double tdb;
        double value;
    };
    const Condition conditions[] = {
        {"/design/summer/outdoor", StateInput::Twb, hst.m_dSummerOutTdb, hst.m_dSummerOutTwb},
        {"/design/summer/indoor", StateInput::RH, hst.m_dSummerInTdb, hst.m_dSummerInRH},
        {"/design/winter/outdoor", StateInput::RH, hst.m_dWinterOutTdb, hst.m_dWinterOutRH},
        {"/design/winter/indoor", StateInput::RH, hst.m_dWinterInTdb, hst.m_dWinterInRH},
    };
    for (const Condition& c : conditions) {
        StateInput in;
        in.Set(StateInput::Tdb, c.tdb);
        in.Set(c.second, c.value);
        CKyStaPnt p;
        std::string error;
        if (!in.Resolve(p, error)) errors.push_back({c.pointer, 0, 0, error});
    }
}

void SceneApplier::Define(const std::string& name, const CKyStaPnt& pnt, const std::string& ptr,
                          std::vector<SceneError>& errors)
{
    if (name.empty()) return;
    if (!m_names.emplace(name, pnt).second)
        errors.push_back({ptr, 0, 0, "the name \"" + name + "\" is already used by another state"});
    else m_named.push_back(pnt);
}

bool SceneApplier::ResolveState(const SceneState& s, const std::string& ptr, CKyStaPnt& out,
                                std::vector<SceneError>& errors)
{
    std::string error;
    if (!s.input.Resolve(out, error)) {
        errors.push_back({ptr, 0, 0, error});
        return false;
    }
    out.SetName(Wide(s.name));
    Define(s.name, out, JsonPointer(ptr, "name"), errors);
    return true;
}

bool SceneApplier::ResolveRef(const SceneStateRef& r, const std::string& ptr, CKyStaPnt& out,
                              std::vector<SceneError>& errors)
{
    if (const SceneState* s = std::get_if<SceneState>(&r)) return ResolveState(*s, ptr, out, errors);
    const std::string& name = std::get<std::string>(r);
    const auto it = m_names.find(name);
    if (it == m_names.end()) {
        errors.push_back({ptr, 0, 0, "no state named \"" + name + "\" is defined before this point"});
        return false;
    }
    out = it->second;
    return true;
}

void SceneApplier::BuildOverlays(const Scene& s, std::vector<SceneError>& errors)
{
    for (size_t i = 0; i < s.points.size(); ++i) {
        const ScenePoint& p = s.points[i];
        const std::string ptr = JsonPointer("/points", i);
        CKyStaPnt pnt;
        if (!ResolveState(p.state, ptr, pnt, errors)) continue;
        Marker m{ptr, CKyGStaPnt()};
        m.element.SetValue(pnt);
        m.element.SetDimEnable(p.label != SceneLabel::None ? 1 : 0);
        m.element.SetDimPosition(PositionOf(p.label.value_or(SceneLabel::Top)));
        m_markers.push_back(std::move(m));
    }
    for (size_t i = 0; i < s.processes.size(); ++i) BuildProcess(s.processes[i], JsonPointer("/processes", i), errors);
    for (size_t i = 0; i < s.ratioLines.size(); ++i) {
        const SceneRatioLine& r = s.ratioLines[i];
        const std::string ptr = JsonPointer("/ratio_lines", i);
        RatioLine line{ptr, {}, {}, {}, r.label.value_or(true) ? 1 : 0};
        if (!ResolveRef(r.from, JsonPointer(ptr, "from"), line.from, errors)) continue;
        if (r.to) {
            if (!ResolveRef(*r.to, JsonPointer(ptr, "to"), line.to, errors)) continue;
            if (!line.ratio.SetByStates(line.from, line.to)) {
                errors.push_back({ptr, 0, 0, line.ratio.GetLastErrorString().ToUtf8()});
                continue;
            }
        } else {
            std::string error;
            if (!r.ratio || !ProcessStepBuilder::RatioEnd(line.from, *r.ratio, r.d, r.h, r.rh, std::nullopt, line.to, error)) {
                errors.push_back({ptr, 0, 0, r.ratio ? error : "missing key \"ratio\""});
                continue;
            }
            line.ratio = ProcessStepBuilder::RatioOf(*r.ratio);
        }
        m_ratioLines.push_back(std::move(line));
    }
}

void SceneApplier::BuildProcess(const SceneProcess& process, const std::string& ptr, std::vector<SceneError>& errors)
{
    for (size_t i = 0; i < process.states.size(); ++i) {
        CKyStaPnt pnt;
        ResolveState(process.states[i], JsonPointer(JsonPointer(ptr, "states"), i), pnt, errors);
    }
    CKyProcess result;
    const size_t firstStep = m_steps.size();
    for (size_t k = 0; k < process.steps.size(); ++k) {
        const SceneStep& st = process.steps[k];
        const std::string sp = JsonPointer(JsonPointer(ptr, "steps"), k);
        const CString name = st.name ? Wide(*st.name) : Wide("path " + std::to_string(k + 1));
        // Each builder's states join the drawn process as an explicit path, with the computed
        // state named as the scene says.
        CKyStaPnt from, to, end;
        CKyStaPntArray path;
        bool ok = true;
        std::string error;
        auto ref = [&](const std::optional<SceneStateRef>& r, const char* key, CKyStaPnt& out) {
            if (r && !ResolveRef(*r, JsonPointer(sp, key), out, errors)) ok = false;
        };
        // An end condition taken from a named state.
        auto valueOf = [&](const std::optional<std::string>& n, const char* key, double (CKyStaPnt::*get)() const) -> std::optional<double> {
            if (!n) return std::nullopt;
            CKyStaPnt p;
            if (!ResolveRef(*n, JsonPointer(sp, key), p, errors)) ok = false;
            return (p.*get)();
        };
        if (st.type == SceneStep::Path || st.type == SceneStep::kTypeCount) {
            for (size_t j = 0; j < st.points.size(); ++j) {
                CKyStaPnt p;
                if (ResolveRef(st.points[j], JsonPointer(JsonPointer(sp, "points"), j), p, errors)) path.Add(p);
                else ok = false;
            }
        } else {
            ProcessStepBuilder::Inputs in;
            ref(st.type == SceneStep::Mixing ? st.a : st.from, st.type == SceneStep::Mixing ? "a" : "from", in.from);
            ref(st.type == SceneStep::Mixing ? st.b : st.to, st.type == SceneStep::Mixing ? "b" : "to", in.other);
            in.tdb = st.tdbOf ? valueOf(st.tdbOf, "tdb", &CKyStaPnt::GetTdb) : st.tdb;
            in.d = st.dOf ? valueOf(st.dOf, "d", &CKyStaPnt::GetD) : st.d;
            from = in.from;
            to = in.other;
            ProcessStepBuilder::Failure failure;
            if (ok && !ProcessStepBuilder::Build(st, in, end, failure)) {
                ok = false;
                errors.push_back({failure.key.empty() ? sp : JsonPointer(sp, failure.key), 0, 0, failure.message});
            }
        }
        if (!ok) {
            if (!error.empty()) errors.push_back({sp, 0, 0, error});
            continue;
        }
        if (st.type != SceneStep::Path) {
            // The builder's end state, named as the scene says; a mixing runs a -> mix -> b.
            if (st.result) {
                end.SetName(Wide(*st.result));
                Define(*st.result, end, JsonPointer(sp, "result"), errors);
            }
            path.Add(from);
            path.Add(end);
            if (st.type == SceneStep::Mixing) path.Add(to);
            m_steps.push_back({std::to_string(m_processes.size() + 1), name.ToUtf8(), st.type, from, end, std::nullopt});
        }
        if (!result.AddPath(name, path)) errors.push_back({sp, 0, 0, result.GetLastErrorString().ToUtf8()});
    }
    // The flow's volume is of the air the process ends in: the supply air of a unit.
    if ((process.flowKgs || process.flowM3h) && firstStep < m_steps.size()) {
        const double m = process.flowKgs ? *process.flowKgs : ProcessLoads::MassFlow(*process.flowM3h, m_steps.back().end);
        for (size_t i = firstStep; i < m_steps.size(); ++i) m_steps[i].massFlow = m;
    }
    Process p{ptr, CKyGProcess()};
    p.element.SetValue(result);
    m_processes.push_back(std::move(p));
}

bool SceneApplier::DrawOverlays(CKyGChart& chart, std::vector<SceneError>& errors, bool hostLabels)
{
    const size_t before = errors.size();
    if (!hostLabels) m_extras.DrawUnder(chart);  // the host draws them before it places labels
    auto fail = [&](const std::string& ptr, const CKyObject& source) {
        const std::string text = source.GetLastErrorString().ToUtf8();
        errors.push_back({ptr, 0, 0, text.empty() ? "could not be drawn" : text});
    };
    for (RatioLine& r : m_ratioLines) {
        CPoint a, b;
        if (!chart.Convert(r.from, a) || !chart.Convert(r.to, b)) {
            fail(r.pointer, chart);
            continue;
        }
        CKyGSameAS line;
        line.SetValue(r.ratio);
        line.SetDimEnable(hostLabels ? 0 : r.label);
        line.SetStartPoint(a);
        line.SetEndPoint(b);
        chart.Draw(&line);
    }
    for (Process& p : m_processes) {
        if (!hostLabels) {
            if (!chart.Draw(&p.element)) fail(p.pointer, p.element);
            continue;
        }
        // The same paths with nameless states: the process draws its dots, the host the names.
        CKyPathMap paths;
        p.element.GetValue().GetAllProcess(paths);
        CKyProcess nameless;
        POSITION pos = paths.GetStartPosition();
        for (int n = 0; pos != nullptr && n < paths.GetCount(); ++n) {
            CString name;
            CKyStaPntArray points;
            paths.GetNextAssoc(pos, name, points);
            for (int i = 0; i < points.GetSize(); ++i) points[i].SetName(CString());
            nameless.AddPath(name, points);
        }
        CKyGProcess element;
        element.SetValue(nameless);
        if (!chart.Draw(&element)) fail(p.pointer, element);
    }
    for (Marker& m : m_markers) {
        const int label = m.element.GetDimEnable();
        if (hostLabels) m.element.SetDimEnable(0);
        if (!chart.Draw(&m.element)) fail(m.pointer, m.element);
        m.element.SetDimEnable(label);
    }
    if (!hostLabels) m_extras.DrawLegend(chart);  // the host draws it before placing its labels
    return errors.size() == before;
}

void SceneApplier::CollectLabels(CKyGChart& chart, HostLayout& layout) const
{
    const CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    const double k = set->GetDrawScale();
    const tagKyPntStyle point = set->m_StyleSetting.m_StaPntStyle;
    const int radius = static_cast<int>(std::ceil(point.dSize * k / 2.0));
    std::vector<std::pair<CPoint, CString>> named;  // a state named twice is labelled once
    auto add = [&](const CKyStaPnt& s, int side, bool labelled) {
        CPoint p;
        if (!chart.Convert(s, p)) return;
        layout.AddDot(p, radius);
        const CString name = s.GetName();
        if (!labelled || name.IsEmpty()) return;
        for (const auto& [q, n] : named)
            if (q == p && n == name) return;
        named.emplace_back(p, name);
        layout.AddLabel({p, radius, name, point.nTextHeight * k, point.crColor, static_cast<LabelPlacer::Side>(side)});
    };
    for (const Marker& m : m_markers) add(m.element.GetValue(), m.element.GetDimPosition(), m.element.GetDimEnable() != 0);
    for (const Process& p : m_processes) {
        CKyStaPntArray points;
        p.element.GetValue().GetAllPnt(points);
        for (int i = 0; i < points.GetSize(); ++i) add(points[i], LabelPlacer::Top, true);
    }
    const tagKyLineStyle ratio = set->m_StyleSetting.m_SameASStyle;
    for (const RatioLine& r : m_ratioLines) {
        CPoint a, b;
        if (!r.label || !chart.Convert(r.from, a) || !chart.Convert(r.to, b)) continue;
        layout.AddLabel({a.y < b.y ? a : b, 0, r.ratio.OutputString(1), ratio.nTextHeight * k, ratio.crColor, LabelPlacer::Top});
    }
    m_extras.CollectLabels(layout);
}
