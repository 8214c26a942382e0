// SceneWriter: writes a Scene as the JSON that SceneReader reads, with only the settings the
// scene gives, in the documented order. Reading the result gives back an equal Scene.
#pragma once

#include "Scene.h"

#include <nlohmann/json.hpp>

#include <string>

class SceneWriter {
public:
    static nlohmann::ordered_json ToJson(const Scene& scene);
    // ToJson as text, indented by two spaces, ending in a newline.
    static std::string Write(const Scene& scene);
};
