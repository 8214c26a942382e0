// ChartSession: the viewer's scene and everything the viewer asks of the chart library.
// The library is single-threaded and its chart and settings are process-wide singletons,
// while the HTTP server answers on a pool of threads: every call into the library goes
// through this class. Two process-wide locks:
// - the scene lock: exclusive while a scene is adopted (which sets the settings singleton, the
//   model's pressure and formulation), shared by everything else;
// - the drawing lock: every use of the chart singleton (images, geometry).
// Each drawing first puts the scene's settings back and rebuilds the chart's enthalpy angle,
// so it starts from exactly what a `kygraph render` of the same scene starts from (the fit to
// a window changes the draw scale, so no earlier request may leak into the next). Hover maps
// with a chart of its own on a copy of the scene's settings, so it never waits for a drawing.
// What the browser shows, what the mouse maps to and what is exported therefore agree.
#pragma once

#include "BackgroundLayer.h"
#include "Scene.h"
#include "SceneApplier.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

class CImageWnd;
class CKyStaPnt;
class PaperSize;

namespace serve {

enum class ImageKind { Png, Svg, Pdf };

// Most state points, processes or ratio lines one scene of the viewer may hold; every
// request re-applies the scene, so this bounds the work of each.
inline constexpr std::size_t kMaxOverlays = 500;

class ChartSession {
public:
    // The session takes the settings, pressure and formulation as they are now as the
    // defaults of its scenes, and puts them back when it ends. Build it before the chart is
    // first used: the chart fixes its enthalpy angle from the settings of that moment.
    ChartSession();
    ~ChartSession();
    ChartSession(const ChartSession&) = delete;
    ChartSession& operator=(const ChartSession&) = delete;

    // Makes scene the session's scene and path the file "save" writes (may be empty). false
    // with the model's objections when the scene cannot be applied; nothing changes then.
    bool Open(const Scene& scene, const std::string& path, std::vector<SceneError>& errors);
    // The file "save" writes; empty when there is none.
    std::string Path() const;

    // The chart drawn at w x h pixels as PNG, SVG or PDF bytes; empty when it could not be
    // drawn or encoded.
    std::string Render(int w, int h, ImageKind kind, const PaperSize* paper = nullptr);

    // The state under pixel (x, y) of the chart drawn at w x h: {"inside": true, "tdb", "twb",
    // "tdp", "rh" (fraction), "d", "h", "pv", "rho"} or {"inside": false, "message": the
    // chart's own text}.
    nlohmann::json StateAt(int x, int y, int w, int h);

    // Where things lie on the chart drawn at w x h: the plot area's corners and the pixels and
    // states of the two design points of that drawing (null when one cannot be placed);
    // "states": every named state, "steps": each builder step with its pixels "from" and "to",
    // its "name", "kind" and its loads (ProcessLoads::Json).
    nlohmann::json Geometry(int w, int h);

    // The design report (ReportWriter) of the scene, its chart drawn at w x h; empty when it
    // could not be made.
    std::string Report(int w, int h, bool english);

    // The settings the chart draws with under the scene, defaults included, in the scene
    // file's shape: "display", "intervals", "range", "pressure", "winter", "design".
    nlohmann::json EffectiveSettings();

    // The scene as scene-file JSON; with w and h > 0 its size is set to them, so that
    // `kygraph render` draws exactly what the browser shows.
    nlohmann::ordered_json SceneJson(int w = 0, int h = 0);

    // Replaces the scene with the scene-file text. false with every problem (syntax, unknown
    // keys, ranges, states the model refuses); the scene is then unchanged.
    bool ReplaceScene(std::string_view text, std::vector<SceneError>& errors);

    // Adds a state point named name ("P1", "P2", ... when empty) at pixel (x, y) of the chart
    // drawn at w x h. false with a message (the chart's, for a pixel outside it).
    bool AddPointAt(int x, int y, int w, int h, const std::string& name, std::string& error);
    // A CSV table of states sent by the page, drawn as a data set named name (a later import
    // of the same name replaces it). false with one line when the table is unusable; note
    // tells the rows that are not states, empty when there are none.
    bool ImportData(const std::string& name, std::string csv, std::string& note, std::string& error);

    // Writes the scene to Path() atomically, with the scene's own size. false with a reason; the
    // file is then as it was.
    bool Save(std::string& error);

private:
    // Puts the scene's settings back into the singleton and rebuilds the chart from them, before
    // a drawing; the scene was applied once when adopted, so this cannot fail.
    void ApplyScene();
    // The state at pixel (x, y) of the chart fitted into w x h; false with the chart's
    // message when the pixel is outside it.
    bool PixelState(int x, int y, int w, int h, CKyStaPnt& pnt, std::string& message) const;
    // The scene applied and drawn, chart and overlays, into the raster window of w x h.
    bool RedrawRaster(int w, int h);
    // Applies candidate; on success it becomes the scene, else nothing changes.
    bool Adopt(Scene candidate, std::vector<SceneError>& errors);

    SceneApplier m_applier;
    Scene m_scene;
    std::string m_path;
    std::optional<KyGraphLanguage> m_baseLang;  // the host's language, for a scene that names none
    std::unique_ptr<CImageWnd> m_raster;  // reused while the browser's size stays the same
    BackgroundLayer m_background;         // the chart of m_raster without its overlays
};

// The lock around every use of the chart singleton, shared by all sessions of the process.
std::mutex& ChartMutex();
// Exclusive while a scene is adopted, shared by every other request (see the top of this file).
std::shared_mutex& SceneLock();

// {"error": first message, "errors": [{"pointer", "message"}, ...]} for a 400 answer.
nlohmann::json ErrorsJson(const std::vector<SceneError>& errors);

}  // namespace serve
