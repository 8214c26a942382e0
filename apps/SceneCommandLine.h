// SceneCommandLine: what the commands that draw a scene share: the client size option,
// loading a scene file and reporting its errors.
#pragma once

#include "Scene.h"

#include <string>
#include <vector>

class SceneCommandLine {
public:
    // "WxH" with both sides 1..Scene::kMaxSide. False with a reason otherwise.
    static bool ParseSize(const std::string& text, int& width, int& height, std::string& error);

    // Reads and checks the scene at path ("" gives the default scene). False after reporting
    // every error, one line each.
    static bool LoadScene(const std::string& path, Scene& scene);

    // Reports errors about source, one line each.
    static void ReportErrors(const std::string& source, const std::vector<SceneError>& errors);

    // The client size: the --size text when given, else the scene's, else the default. False
    // after reporting a malformed --size.
    static bool ClientSize(const std::string& sizeOption, const Scene& scene, int& width, int& height);
};
