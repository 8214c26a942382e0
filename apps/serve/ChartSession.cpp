#include "ChartSession.h"

#include "StateCsv.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "AtomicFile.h"
#include "HostLanguage.h"
#include "HostMessages.h"
#include "ReportWriter.h"
#include "SceneRenderer.h"
#include "SceneReader.h"
#include "SceneWriter.h"
#include "SettingsSchema.h"
#include "StateProperties.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyStaPnt.h>

#include <cmath>
#include <set>

namespace serve {

namespace {

// A window that is only a client size: enough for the chart to fit itself for a mapping,
// without the raster surface a drawing window would allocate.
class SizeOnlyWnd : public CWnd {
public:
    SizeOnlyWnd(int w, int h) : m_w(w), m_h(h) { RegisterHandle(); }
    void GetClientRect(LPRECT rect) const override
    {
        if (rect) *rect = RECT{0, 0, m_w, m_h};
    }

private:
    int m_w;
    int m_h;
};

// Images above this many pixels are not kept between requests (8192 x 8192 is 256 MiB);
// the browser's own size stays cached.
constexpr long long kKeepPixels = 4096LL * 4096LL;

bool TooMany(const Scene& s, std::vector<SceneError>& errors)
{
    const std::size_t before = errors.size();
    const auto check = [&](std::size_t n, const char* pointer) {
        if (n > kMaxOverlays)
            errors.push_back({pointer, 0, 0, "the viewer holds at most " + std::to_string(kMaxOverlays) + " of these"});
    };
    check(s.points.size(), "/points");
    check(s.processes.size(), "/processes");
    check(s.ratioLines.size(), "/ratio_lines");
    return errors.size() != before;
}

// The first of "P1", "P2", ... that no state of the scene is called yet.
std::string FreePointName(const Scene& s)
{
    std::set<std::string> used;
    for (const ScenePoint& p : s.points) used.insert(p.state.name);
    for (const SceneProcess& p : s.processes) {
        for (const SceneState& st : p.states) used.insert(st.name);
        for (const SceneStep& st : p.steps)
            if (st.result) used.insert(*st.result);
    }
    // used has at most as many names as the scene has states, so a free one is found in
    // that many + 1 tries.
    for (std::size_t i = 1;; ++i) {
        std::string name = "P" + std::to_string(i);
        if (!used.count(name)) return name;
    }
}

}  // namespace

std::mutex& ChartMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::shared_mutex& SceneLock()
{
    static std::shared_mutex lock;
    return lock;
}

nlohmann::json ErrorsJson(const std::vector<SceneError>& errors)
{
    nlohmann::json list = nlohmann::json::array();
    for (const SceneError& e : SceneError::Shown(errors))
        list.push_back({{"pointer", e.pointer}, {"message", HostMessages::Localize(e.Format("scene"))}});
    return nlohmann::json{{"error", HostMessages::Localize(errors.empty() ? std::string("invalid scene") : errors.front().Format("scene"))},
                          {"errors", std::move(list)}};
}

ChartSession::ChartSession() : m_baseLang(HostLanguage::Chosen()) {}

ChartSession::~ChartSession()
{
    std::unique_lock<std::shared_mutex> scene(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    // The chart must not keep pointing at a window of ours, and the settings go back to what
    // they were when the session began (an empty scene is all defaults).
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    m_raster.reset();
    std::vector<SceneError> ignored;
    m_applier.Apply(Scene{}, ignored);
}

bool ChartSession::Open(const Scene& scene, const std::string& path, std::vector<SceneError>& errors)
{
    // Data files are relative to the scene's folder; their tables are read once, here, and
    // kept under the names the scene gives them.
    Scene opened = scene;
    for (SceneData& d : opened.extras.data) {
        if (d.csv || path.empty() || !std::filesystem::path(d.file).is_relative()) continue;
        std::ifstream in(std::filesystem::path(path).parent_path() / d.file, std::ios::binary);
        if (in) d.csv = std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    std::unique_lock<std::shared_mutex> sceneLock(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    if (TooMany(opened, errors) || !m_applier.Apply(opened, errors)) return false;
    m_scene = std::move(opened);
    HostLanguage::Set(m_scene.lang ? m_scene.lang : m_baseLang);
    m_path = path;
    return true;
}

std::string ChartSession::Path() const
{
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    return m_path;
}

void ChartSession::ApplyScene()
{
    m_applier.Reapply();
    // As if the chart were built for this scene, as `kygraph render` builds it: the enthalpy
    // angle follows the scene's lengths, range, pressure and formulation.
    CKyGChart::GetKyGChart()->Reinit();
}

bool ChartSession::PixelState(int x, int y, int w, int h, CKyStaPnt& pnt, std::string& message) const
{
    // A chart of its own on a copy of the scene's settings maps exactly as the singleton does
    // after ApplyScene, and touches nothing a drawing on another thread uses.
    CKyGChartSetting settings(m_applier.Applied());
    CKyGChart chart(settings);
    SizeOnlyWnd wnd(w, h);
    chart.AttachDarwWnd(&wnd);
    const bool inside = chart.Convert(CPoint(x, y), pnt) != 0;
    // The window ends with this call; the chart must not keep pointing at it.
    chart.AttachDarwWnd(nullptr);
    if (!inside) message = chart.GetLastErrorString().ToUtf8();
    return inside;
}

bool ChartSession::Adopt(Scene candidate, std::vector<SceneError>& errors)
{
    // Imported tables live only here; a scene sent back by the page names them by file.
    for (SceneData& d : candidate.extras.data)
        for (const SceneData& old : m_scene.extras.data)
            if (!d.csv && old.csv && old.file == d.file) d.csv = old.csv;
    if (TooMany(candidate, errors) || !m_applier.Apply(candidate, errors)) return false;
    m_scene = std::move(candidate);
    HostLanguage::Set(m_scene.lang ? m_scene.lang : m_baseLang);
    return true;
}

bool ChartSession::RedrawRaster(int w, int h)
{
    RECT rc{};
    if (m_raster) m_raster->GetClientRect(&rc);
    if (!m_raster || rc.right != w || rc.bottom != h) {
        m_background.Forget();
        m_raster.reset();
        m_raster = std::make_unique<CImageWnd>(w, h);
    }
    if (!CWnd::IsWindowPtr(m_raster.get())) return false;
    ApplyScene();
    m_raster->SetAntialias(m_scene.antialias.value_or(true));
    // The scene was applied once when opened, so overlays the model refused never reach here.
    std::vector<SceneError> ignored;
    SceneRenderer::Draw(m_applier, *m_raster, *m_raster, ignored, &m_background, BackgroundLayer::KeyOf(m_scene, w, h));
    return true;
}

std::string ChartSession::Render(int w, int h, ImageKind kind, const PaperSize* paper)
{
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    std::string bytes;
    if (kind == ImageKind::Png) {
        if (RedrawRaster(w, h)) bytes = m_raster->Encode();
        CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
        if (static_cast<long long>(w) * h > kKeepPixels) {
            m_background.Forget();
            m_raster.reset();
        }
    } else {
        ApplyScene();
        std::vector<SceneError> ignored;
        SceneRenderer::Encode(m_applier, w, h, kind == ImageKind::Svg ? CImageWnd::Svg : CImageWnd::Pdf,
                              m_scene.antialias.value_or(true), bytes, ignored, paper);
    }
    return bytes;
}

std::string ChartSession::Report(int w, int h, bool english)
{
    ReportWriter::Content content;
    content.chartPng = Render(2 * w, 2 * h, ImageKind::Png);
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    content.states = m_applier.NamedStates();
    content.steps = m_applier.Steps();
    content.pressure = CKyChart::InstanceGloble()->GetGlobleB();
    const size_t slash = m_path.find_last_of('/');
    content.title = m_path.substr(slash == std::string::npos ? 0 : slash + 1);
    std::string pdf, error;
    if (content.chartPng.empty() || !ReportWriter::Write(content, english ? ReportWriter::English : ReportWriter::Chinese, pdf, error))
        return {};
    return pdf;
}

nlohmann::json ChartSession::StateAt(int x, int y, int w, int h)
{
    // No drawing lock: a hover never waits for a redraw, only for a change of the scene.
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    CKyStaPnt pnt;
    std::string message;
    if (!PixelState(x, y, w, h, pnt, message)) return nlohmann::json{{"inside", false}, {"message", message}};
    nlohmann::json j = StateProperties::ViewerJson(pnt);
    j["inside"] = true;
    return j;
}

nlohmann::json ChartSession::Geometry(int w, int h)
{
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    CKyGChart* chart = CKyGChart::GetKyGChart();
    nlohmann::json j;
    m_background.Forget();  // the design points below are those of a whole redraw
    if (!RedrawRaster(w, h)) return j;
    const CPoint topLeft = chart->GetChartOrigin();
    const CPoint bottomLeft = chart->GetMinTAndMinDPnt();
    const CPoint topRight = chart->GetMaxTAndMaxDPnt();
    j["plot"] = {{"left", topLeft.x}, {"top", topLeft.y}, {"right", topRight.x}, {"bottom", bottomLeft.y}};
    const auto place = [chart](const CKyStaPnt& p) {
        CPoint pt;
        if (!p.IsValid() || !chart->Convert(p, pt)) return nlohmann::json(nullptr);
        nlohmann::json s = StateProperties::ViewerJson(p);
        s["pixel"] = {{"x", pt.x}, {"y", pt.y}};
        s["name"] = p.GetName().ToUtf8();
        return s;
    };
    j["indoor"] = place(chart->GetStaPntN());
    j["outdoor"] = place(chart->GetStaPntW());
    j["states"] = nlohmann::json::array();
    for (const CKyStaPnt& p : m_applier.NamedStates()) j["states"].push_back(place(p));
    j["steps"] = nlohmann::json::array();
    for (const ProcessLoads::Step& st : m_applier.Steps()) {
        nlohmann::json a = place(st.from), b = place(st.end);
        j["steps"].push_back({{"process", st.process}, {"name", st.name}, {"kind", SceneStep::TypeName(st.type)},
                              {"from", a.is_null() ? a : a["pixel"]}, {"to", b.is_null() ? b : b["pixel"]},
                              {"fromName", st.from.GetName().ToUtf8()}, {"toName", st.end.GetName().ToUtf8()},
                              {"flow", st.massFlow ? nlohmann::json(*st.massFlow) : nlohmann::json()},
                              {"loads", ProcessLoads::Json(ProcessLoads::Of(st))}});
    }
    chart->AttachDarwWnd(nullptr);
    if (static_cast<long long>(w) * h > kKeepPixels) {
        m_background.Forget();
        m_raster.reset();
    }
    return j;
}

nlohmann::json ChartSession::EffectiveSettings()
{
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    return SettingsSchema::Effective(m_applier.Applied());
}

nlohmann::ordered_json ChartSession::SceneJson(int w, int h)
{
    std::shared_lock<std::shared_mutex> scene(SceneLock());
    Scene s = m_scene;
    if (w > 0 && h > 0) {
        s.width = w;
        s.height = h;
    }
    return SceneWriter::ToJson(s);
}

bool ChartSession::ReplaceScene(std::string_view text, std::vector<SceneError>& errors)
{
    Scene candidate;
    if (!SceneReader::Parse(text, candidate, errors)) return false;
    std::unique_lock<std::shared_mutex> scene(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    return Adopt(std::move(candidate), errors);
}

bool ChartSession::AddPointAt(int x, int y, int w, int h, const std::string& name, std::string& error)
{
    std::unique_lock<std::shared_mutex> scene(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    CKyStaPnt pnt;
    if (!PixelState(x, y, w, h, pnt, error)) return false;
    // The pixel's state is kept by its h and d, which the model takes back exactly.
    ScenePoint point;
    point.state.name = name.empty() ? FreePointName(m_scene) : name;
    point.state.input.Set(StateInput::H, pnt.GetH());
    point.state.input.Set(StateInput::D, pnt.GetD());
    Scene candidate = m_scene;
    candidate.points.push_back(std::move(point));
    std::vector<SceneError> errors;
    if (Adopt(std::move(candidate), errors)) return true;
    error = errors.empty() ? "the point cannot be added" : errors.front().Format("scene");
    return false;
}

bool ChartSession::ImportData(const std::string& name, std::string csv, std::string& note, std::string& error)
{
    // The name becomes a file beside the scene when it is saved: a plain file name only.
    const std::filesystem::path plain = std::filesystem::path(name).filename();
    if (name.empty() || plain.string() != name || name == "." || name == "..") {
        error = "name: \"" + name + "\" is not a plain file name";
        return false;
    }
    StateCsv::Table table;
    std::istringstream in(csv);
    if (!StateCsv::Parse(in, table, error)) {
        error = name + ": " + error;
        return false;
    }
    note = StateCsv::RejectedSummary(table);
    if (!note.empty()) note = name + ": " + note;
    std::unique_lock<std::shared_mutex> scene(SceneLock());
    std::lock_guard<std::mutex> lock(ChartMutex());
    Scene candidate = m_scene;
    auto& data = candidate.extras.data;
    data.erase(std::remove_if(data.begin(), data.end(), [&](const SceneData& d) { return d.file == name; }), data.end());
    data.push_back(SceneData{name, name, std::nullopt, std::move(csv)});
    std::vector<SceneError> errors;
    if (Adopt(std::move(candidate), errors)) return true;
    error = errors.empty() ? "the data cannot be added" : errors.front().Format("scene");
    return false;
}

bool ChartSession::Save(std::string& error)
{
    std::string text;
    std::string path;
    {
        std::shared_lock<std::shared_mutex> scene(SceneLock());
        if (m_path.empty()) {
            error = "the viewer was started without a scene file; export the scene instead";
            return false;
        }
        // The scene's size is its print size: the browser's window does not replace it.
        path = m_path;
        // The file's own comments stay where their objects are.
        std::string original;
        std::error_code ec;
        if (std::filesystem::is_regular_file(path, ec)) {
            std::ifstream was(path, std::ios::binary);
            original.assign(std::istreambuf_iterator<char>(was), std::istreambuf_iterator<char>());
        }
        text = SceneWriter::WriteKeepingComments(m_scene, original);
        // Tables imported in the page are written beside the scene under their names, so the
        // saved scene opens with them; a different file of that name is never replaced.
        for (const SceneData& d : m_scene.extras.data) {
            if (!d.csv || !std::filesystem::path(d.file).is_relative()) continue;
            const std::filesystem::path file = std::filesystem::path(path).parent_path() / d.file;
            std::ifstream in(file, std::ios::binary);
            if (in) {
                const std::string there((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
                if (there == *d.csv) continue;
                error = file.string() + ": another file of that name is there; import the table under another name";
                return false;
            }
            if (!AtomicFile::Write(file.string(), *d.csv, error)) return false;
        }
    }
    return AtomicFile::Write(path, text, error);
}

}  // namespace serve
