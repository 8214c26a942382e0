// Scene: everything a scene file can say about one chart: the client size, the pressure and
// formulation of the state model, every setting of the chart, and the overlays (state points,
// processes, heat-moisture-ratio lines). SceneReader fills it from JSON, SceneWriter writes it
// back, SceneApplier hands it to the chart. A setting left out (an empty optional) means the
// chart's default; nothing here is resolved against the state model yet.
#pragma once

#include "SceneExtras.h"
#include "StateInput.h"

#include <kygraph/KyGStyleSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyTypes.h>
#include <kygraph/WinTypes.h>

#include <nlohmann/json.hpp>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <cstddef>
#include <vector>

// Who places the host's labels: the host, so that none covers another or a dot, or the
// chart's own rule.
enum class SceneLabelRule { Host, Chart };

// Where a marker puts its name, or no name at all.
enum class SceneLabel { Left, Top, Right, Bottom, None };

struct SceneLineStyle {
    std::optional<COLORREF> color;
    std::optional<int> pen;  // PS_SOLID .. PS_NULL
    std::optional<int> width;
    std::optional<int> textHeight;
    std::optional<double> spare;
    bool operator==(const SceneLineStyle&) const = default;
};

struct ScenePointStyle {
    std::optional<COLORREF> color;
    std::optional<double> size;
    std::optional<int> textHeight;
    bool operator==(const ScenePointStyle&) const = default;
};

// The nine line-style records of the chart, in the settings' order.
enum SceneLineStyleId { DLines, HLines, Isotherms, RHCurves, RatioLines, Processes, Protractor, Frame, Spare,
                        kLineStyleCount };

struct SceneStyles {
    std::array<SceneLineStyle, kLineStyleCount> lines;
    ScenePointStyle points;

    static const char* Key(SceneLineStyleId id);  // "d_lines", ...
    static tagKyLineStyle CKyGStyleSetting::*Member(SceneLineStyleId id);
    bool operator==(const SceneStyles&) const = default;
};

// A state with an optional name (its label, and how later parts of the scene refer to it).
struct SceneState {
    std::string name;
    StateInput input;
    bool operator==(const SceneState&) const = default;
};

// A state point drawn as a marker.
struct ScenePoint {
    SceneState state;
    std::optional<SceneLabel> label;  // default: top
    bool operator==(const ScenePoint&) const = default;
};

// Either the name of a state defined earlier in the scene or a state given in place.
using SceneStateRef = std::variant<std::string, SceneState>;

// One path of a process: a builder of the state model, or an explicit list of states.
struct SceneStep {
    enum Type { Mixing, Sensible, CoolingDehumidify, AdiabaticHumidify, SteamHumidify, Ratio, Path, kTypeCount };
    static const char* TypeName(Type type);  // "mixing", ...

    Type type = Path;
    std::optional<std::string> name;  // the path's name; "path N" when left out
    std::optional<SceneStateRef> from, to, a, b;
    std::optional<double> massA, massB;       // mixing: dry-air flows, any one unit
    std::optional<double> fraction;           // mixing: share of a in the mixture, 0..1
    std::optional<double> adp, bf;            // cooling coil: apparatus dew point °C, bypass factor 0..1
    std::optional<double> dt0;                // ratio: end at from's dry bulb minus this, K
    std::optional<std::string> tdbOf, dOf;    // end condition tdb / d taken from a named state
    std::optional<double> tdb, rh, d, h;      // the end condition of the builder
    std::optional<double> tSteam;             // steam humidification, °C
    std::optional<double> ratio;              // kJ/kg; +inf and -inf for the infinite kinds
    std::vector<SceneStateRef> points;        // explicit path
    std::optional<std::string> result;        // name given to the computed end state
    bool operator==(const SceneStep&) const = default;
};

struct SceneProcess {
    std::vector<SceneState> states;  // named states the steps refer to
    std::vector<SceneStep> steps;
    // The air flow through the process, for its loads: volume (m³/h, of the air the process
    // ends in) or dry-air mass (kg/s); at most one is given.
    std::optional<double> flowM3h, flowKgs;
    bool operator==(const SceneProcess&) const = default;
};

// A heat-moisture-ratio line between two states, or from a state along a ratio to a d, h
// or rh.
struct SceneRatioLine {
    SceneStateRef from;
    std::optional<SceneStateRef> to;
    std::optional<double> ratio;  // kJ/kg; +inf and -inf for the infinite kinds
    std::optional<double> d, h, rh;
    std::optional<bool> label;    // default: on
    bool operator==(const SceneRatioLine&) const = default;
};

struct Scene {
    static constexpr int kDefaultWidth = 1000;
    static constexpr int kDefaultHeight = 800;
    static constexpr int kMaxSide = 8192;
    // Bounds on the work one scene may ask for; each is named when it is hit.
    static constexpr long long kMaxPixels = 4096LL * 4096LL;  // image area: 64 MiB of ARGB
    static constexpr std::size_t kMaxPathStates = 2000;       // states of one path
    static constexpr std::size_t kMaxStates = 5000;           // states, paths included, of a scene

    std::optional<int> width, height;  // client size in pixels
    std::optional<bool> antialias;
    std::optional<KyGraphLanguage> lang;     // of the chart's texts; see HostLanguage
    std::optional<SceneLabelRule> labels;    // default: the host's placement
    std::optional<double> pressure;    // Pa
    std::optional<double> altitude;    // m; the standard atmosphere's pressure, in place of pressure
    std::optional<Ky::_Formulation> formulation;
    // Every other setting of SettingsSchema the scene gives, by its dotted path in the file
    // ("intervals.d", "design.summer.indoor.rh"): a number, boolean or text as the schema
    // types it. A setting left out is absent.
    std::map<std::string, nlohmann::json> settings;
    SceneStyles styles;
    std::vector<ScenePoint> points;
    std::vector<SceneProcess> processes;
    std::vector<SceneRatioLine> ratioLines;
    SceneExtras extras;  // zones, data sets, extra line families, legend
    // What the reader took as written but the user should hear of ("/points/0/rh: 0.55 is
    // read as 0.55 %; ..."); never written back.
    std::vector<std::string> notes;

    bool operator==(const Scene&) const = default;
};

// One problem with a scene: where it is (a JSON pointer such as "/points/2/rh", "" for the
// whole document, or a line and column for malformed JSON) and what is wrong.
struct SceneError {
    std::string pointer;
    int line = 0;  // 1-based when the text itself is malformed
    int column = 0;
    std::string message;

    // "<source>:/points/2/rh: message", "<source>:3:14: message" or "<source>: message".
    std::string Format(const std::string& source) const;

    // Most problems reported of one scene; the rest are counted.
    static constexpr std::size_t kMaxShown = 20;
    // The first kMaxShown of errors and, when there are more, one that counts the rest.
    static std::vector<SceneError> Shown(const std::vector<SceneError>& errors);
    // text as a message may quote it: at most 64 bytes, cut at a character, "..." when cut.
    static std::string Quoted(const std::string& text);
};

// A JSON pointer for key appended to base, with "~" and "/" escaped.
std::string JsonPointer(const std::string& base, const std::string& key);
std::string JsonPointer(const std::string& base, size_t index);
