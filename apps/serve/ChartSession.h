// ChartSession: everything the viewer asks of the chart library. The library is
// single-threaded and its chart and settings are process-wide singletons, while the HTTP
// server answers on a pool of threads: every call into the library goes through this class,
// under one process-wide lock, and each one first puts the settings into the state a fresh
// `kygraph render` of the same scene would have, so that what the browser shows, what the
// mouse maps to and what is exported agree.
#pragma once

#include <nlohmann/json.hpp>

#include <memory>
#include <mutex>
#include <string>

class CImageWnd;

namespace serve {

enum class ImageKind { Png, Svg, Pdf };

class ChartSession {
public:
    ChartSession();
    ~ChartSession();
    ChartSession(const ChartSession&) = delete;
    ChartSession& operator=(const ChartSession&) = delete;

    // The chart drawn at w x h pixels as PNG, SVG or PDF bytes; empty when the backend could
    // not encode it.
    std::string Render(int w, int h, ImageKind kind);

    // The state under pixel (x, y) of the chart drawn at w x h: {"inside": true, "tdb", "twb",
    // "tdp", "rh" (fraction), "d", "h", "pv", "rho"} or {"inside": false, "message": the
    // chart's own text}.
    nlohmann::json StateAt(int x, int y, int w, int h);

    // Where things lie on the chart drawn at w x h: the plot area's corners and the pixels and
    // states of the two design points of that drawing (null when one cannot be placed).
    nlohmann::json Geometry(int w, int h);

private:
    // Settings as the scene says, then the chart fitted into a w x h client area.
    void Prepare(int w, int h);
    // Prepare plus a full redraw into the raster window; false when it cannot be made.
    bool RedrawRaster(int w, int h);

    std::unique_ptr<CImageWnd> m_raster;  // reused while the browser's size stays the same
};

// The lock around every call into the chart library, shared by all sessions of the process.
std::mutex& ChartMutex();

}  // namespace serve
