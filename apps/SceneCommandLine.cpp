#include "SceneCommandLine.h"

#include "CommandLine.h"
#include "SceneReader.h"

bool SceneCommandLine::ParseSize(const std::string& text, int& width, int& height, std::string& error)
{
    // Digits only: no sign, no spaces, at most five digits a side.
    auto side = [](const std::string& s, int& out) {
        if (s.empty() || s.size() > 5 || s.find_first_not_of("0123456789") != std::string::npos) return false;
        out = std::stoi(s);
        return out >= 1 && out <= Scene::kMaxSide;
    };
    const size_t x = text.find_first_of("xX");
    if (x == std::string::npos || !side(text.substr(0, x), width) || !side(text.substr(x + 1), height)) {
        error = "--size: expected WxH with sides 1.." + std::to_string(Scene::kMaxSide) + ", got \"" + text + "\"";
        return false;
    }
    if (static_cast<long long>(width) * height > Scene::kMaxPixels) {
        error = "--size: " + text + " is beyond the " + std::to_string(Scene::kMaxPixels) + " pixels one drawing may have";
        return false;
    }
    return true;
}

void SceneCommandLine::ReportErrors(const std::string& source, const std::vector<SceneError>& errors)
{
    for (const SceneError& e : SceneError::Shown(errors)) CommandLine::Error(e.Format(source));
}

bool SceneCommandLine::LoadScene(const std::string& path, Scene& scene)
{
    scene = Scene();
    if (path.empty()) return true;
    std::vector<SceneError> errors;
    if (SceneReader::ReadFile(path, scene, errors)) {
        for (const std::string& note : scene.notes) CommandLine::Error(path + ":" + note);
        return true;
    }
    ReportErrors(path, errors);
    return false;
}

bool SceneCommandLine::ClientSize(const std::string& sizeOption, const Scene& scene, int& width, int& height)
{
    width = scene.width.value_or(Scene::kDefaultWidth);
    height = scene.height.value_or(Scene::kDefaultHeight);
    if (sizeOption.empty()) return true;
    std::string error;
    if (ParseSize(sizeOption, width, height, error)) return true;
    CommandLine::Error(error);
    return false;
}
