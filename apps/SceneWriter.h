// SceneWriter: writes a Scene as the JSON that SceneReader reads, with only the settings the
// scene gives, in the documented order. Reading the result gives back an equal Scene.
#pragma once

#include "Scene.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

class SceneWriter {
public:
    static nlohmann::ordered_json ToJson(const Scene& scene);
    // ToJson as text, indented by two spaces, ending in a newline.
    static std::string Write(const Scene& scene);
    // Write, keeping the "comment" keys of original (the file's text being replaced) on the
    // objects that are still there, found by the same keys and array positions.
    static std::string WriteKeepingComments(const Scene& scene, std::string_view original);
};
