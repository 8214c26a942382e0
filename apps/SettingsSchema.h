// SettingsSchema: the one table of the chart settings a scene can give. Each row says where the
// setting sits in a scene file, its type, unit and bounds, where it lives in a Scene and in the
// chart's settings, and how the viewer's form and the scene documentation show it. The scene
// reader, writer and applier, the viewer's effective settings and its form, and the settings
// table of docs/scene.md are all driven by it: a new setting is a row here plus its member of
// the chart's settings.
// Sizes, language, label placement, styles and overlays have shapes of their own and are not
// rows.
#pragma once

#include "Scene.h"

#include <kygraph/KyGChartSetting.h>

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

class SettingsSchema {
public:
    enum class Type { Number, Bool, Text, Formulation };

    // One value of a Scene that has a member of its own (the model's pressure, altitude and
    // formulation): null when the scene leaves it out. A formulation is its key.
    struct SceneAccess {
        nlohmann::json (*get)(const Scene&);
        void (*set)(Scene&, const nlohmann::json&);
    };
    // One value of the chart's settings. set is null for what the state model holds (pressure,
    // formulation: the applier sets the model itself), get null for what nothing keeps.
    struct ChartAccess {
        nlohmann::json (*get)(const CKyGChartSetting&);
        void (*set)(CKyGChartSetting&, const nlohmann::json&);
    };

    struct Field {
        const char* path;     // in a scene file, dot-separated: "intervals.d" is {"intervals": {"d": ...}}
        Type type;
        const char* unit;     // "g/kg"; "" when none
        double min, max;      // bounds of a number, both included
        const char* group;    // the viewer form's fieldset; null when the form leaves it out
        const char* label;    // the form's label
        const char* meaning;  // the documentation's words
        ChartAccess chart;
        SceneAccess scene;    // none: the value is Scene::settings[path]

        // A row of the table, as it is written there.
        Field(const char* path, Type type, const char* unit, double min, double max, const char* group, const char* label,
              const char* meaning, ChartAccess chart, SceneAccess scene = {nullptr, nullptr})
            : path(path), type(type), unit(unit), min(min), max(max), group(group), label(label), meaning(meaning),
              chart(chart), scene(scene)
        {
        }
    };

    // Every row, in the order a scene file is read and written.
    static const std::vector<Field>& Fields();
    // The value a scene gives of f, null when it gives none; and setting it.
    static nlohmann::json Get(const Field& f, const Scene& scene);
    static void Set(const Field& f, Scene& scene, const nlohmann::json& value);
    // The keys directly under prefix ("" for the top level, "design.summer"), in table order.
    static std::vector<std::string> KeysUnder(std::string_view prefix);
    // The JSON pointer of a dot-separated path: "design.summer" -> "/design/summer".
    static std::string Pointer(std::string_view path);

    // The values settings draws with of every field of the form, in the scene file's shape.
    static nlohmann::json Effective(const CKyGChartSetting& settings);
    // The form's fields for the viewer: [{"path", "type", "unit", "min", "max", "group",
    // "label"}, ...] by fieldset, then in table order; a formulation also has "choices":
    // [{"value", "label"}].
    static nlohmann::json Form();
    // The settings table of docs/scene.md (markdown, one row per field, the library's defaults).
    static std::string MarkdownTable();
};
