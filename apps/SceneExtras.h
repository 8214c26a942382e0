// SceneExtras: what a scene says about the chart's optional overlays: zones, data sets read
// from CSV files, the constant wet-bulb and constant specific-volume line families and the
// legend. Part of Scene; SceneExtrasApplier hands it to the chart.
#pragma once

#include <kygraph/WinTypes.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

// Limits of a zone, inclusive; a side left out is open. Relative humidity in percent.
struct SceneZoneBound {
    std::optional<double> min, max;
    bool operator==(const SceneZoneBound&) const = default;
};

struct SceneZone {
    enum Quantity { Tdb, RH, D, H, Twb, kQuantityCount };
    static const char* Key(Quantity q)
    {
        static constexpr const char* kKeys[kQuantityCount] = {"tdb", "rh", "d", "h", "twb"};
        return q >= 0 && q < kQuantityCount ? kKeys[q] : "?";
    }
    std::optional<std::string> preset;   // "gb50736-summer-1", ...; the bounds below then refine it
    std::optional<std::string> name;
    std::optional<COLORREF> color;
    std::array<SceneZoneBound, kQuantityCount> bounds;
    bool operator==(const SceneZone&) const = default;
};

struct SceneData {
    std::string file;                 // a CSV file, relative to the scene file's folder
    std::optional<std::string> name;  // legend text; the file's name when left out
    std::optional<std::string> mode;  // "auto", "points", "density"
    // The table itself, for a host that holds it in memory (the viewer's import); then file
    // only names it. Never written to scene files.
    std::optional<std::string> csv;
    bool operator==(const SceneData&) const = default;
};

struct SceneLineFamily {
    std::optional<bool> show;         // default: off
    std::optional<double> interval;   // °C for wet bulb, m³/kg for volume
    std::optional<bool> labels;       // default: on
    bool operator==(const SceneLineFamily&) const = default;
};

struct SceneLegend {
    std::optional<bool> show;          // default: off
    std::optional<bool> families;      // list the families shown; default: on
    std::optional<int> x, y;           // a fixed top-left corner; free space when left out
    bool operator==(const SceneLegend&) const = default;
};

struct SceneExtras {
    std::vector<SceneZone> zones;
    std::vector<SceneData> data;
    SceneLineFamily wetBulbLines;
    SceneLineFamily volumeLines;
    SceneLegend legend;
    bool operator==(const SceneExtras&) const = default;
};
