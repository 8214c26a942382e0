// SceneReader: reads a scene file (JSON, docs/scene.md) into a Scene and checks everything
// that can be checked without the state model: JSON syntax, unknown and repeated keys, types,
// and that every number lies in its range. States are resolved later, by SceneApplier.
#pragma once

#include "Scene.h"

#include <string>
#include <string_view>
#include <vector>

class SceneReader {
public:
    // True with scene filled when text is a valid scene. Otherwise false with every error
    // found (a malformed text stops at its first); scene may then be partly filled. A "comment"
    // key is accepted and ignored in every object.
    static bool Parse(std::string_view text, Scene& scene, std::vector<SceneError>& errors);

    // Parse of a file's contents; a file that cannot be read is one error at the document.
    static bool ReadFile(const std::string& path, Scene& scene, std::vector<SceneError>& errors);
};
