// Fuzz target: the web viewer's request handlers, in process. Each input is a short sequence of
// requests to a fresh session (so a scene put by one request is seen by the next): a method
// and path, query parameters, Host and Content-Type headers and a body, all from the input,
// sent through ViewerServer::HandleRaw. Besides the sanitizers it checks that every answer is
// a complete HTTP response, that no handler lets an exception out (the 500 "internal error"),
// and that every JSON answer is JSON.
#include "ApiParams.h"
#include "ChartSession.h"
#include "DecimalNumber.h"
#include "ViewerServer.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <unistd.h>

namespace {

// Images are drawn at most this large: a larger one takes longer, not another path.
constexpr int kMaxSide = 600;

void Require(bool ok, const char* what, const std::string& request, const std::string& response)
{
    if (ok) return;
    std::fprintf(stderr, "viewer invariant broken: %s\n--- request\n%s\n--- response\n%.2000s\n", what,
                 request.c_str(), response.c_str());
    std::abort();
}

std::string PercentEncoded(const std::string& s)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : s) {
        out += '%';
        out += kHex[c >> 4];
        out += kHex[c & 15];
    }
    return out;
}

std::string Pick(FuzzedDataProvider& in, std::initializer_list<const char*> choices)
{
    const std::size_t i = in.ConsumeIntegralInRange<std::size_t>(0, choices.size());
    return i < choices.size() ? std::string(choices.begin()[i]) : in.ConsumeRandomLengthString(16);
}

std::string QueryValue(FuzzedDataProvider& in, const std::string& name)
{
    std::string v;
    switch (in.ConsumeIntegralInRange(0, 3)) {
    case 0: v = std::to_string(in.ConsumeIntegralInRange(-2, kMaxSide + 2)); break;
    case 1: v = Pick(in, {"", "0", "1", "-1", "+5", "8192", "8193", "1e3", "0x10", "NaN", "png", "svg", "pdf"}); break;
    default: v = in.ConsumeRandomLengthString(12); break;
    }
    long long n = 0;
    if ((name == "w" || name == "h") && DecimalNumber::ParseInt(v, n) && n > kMaxSide) v = std::to_string(kMaxSide);
    return v;
}

// A pixel or size of a JSON body: mostly one that fits the image, sometimes one that cannot.
long long Coordinate(FuzzedDataProvider& in)
{
    static constexpr long long kEdges[] = {-1, 0, 8192, 8193, 2147483648LL, -2147483649LL};
    return in.ConsumeBool() ? in.ConsumeIntegralInRange(0, kMaxSide) : in.PickValueInArray(kEdges);
}

// Small scenes the page would put, for the requests after them to draw.
constexpr const char* kScenes[] = {
    R"({"points": [{"name": "A", "tdb": 26, "rh": 55}, {"name": "B", "tdb": 12, "rh": 95}],
        "processes": [{"steps": [{"type": "mixing", "a": "A", "b": "B", "mass_a": 1, "mass_b": 3}]}],
        "ratio_lines": [{"from": "A", "ratio": 8000, "rh": 90}]})",
    R"({"range": {"tmin": -10, "tmax": 40, "dmin": 0, "dmax": 30}, "pressure": 84000, "winter": true,
        "display": {"protractor": false}, "intervals": {"t": 2, "rh": 5}})",
};

// The body of a request: none, a points body, a scene, or arbitrary bytes; the last request
// may take the rest of the input.
std::string Body(FuzzedDataProvider& in)
{
    switch (in.ConsumeIntegralInRange(0, 5)) {
    case 0: return "";
    case 1: return "{}";
    case 2: {
        nlohmann::json j = {{"x", Coordinate(in)}, {"y", Coordinate(in)}, {"w", Coordinate(in)}, {"h", Coordinate(in)}};
        if (in.ConsumeBool()) j["name"] = in.ConsumeRandomLengthString(16);
        if (in.ConsumeBool()) j.erase(Pick(in, {"x", "y", "w", "h"}));
        return j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    case 3: return in.PickValueInArray(kScenes);
    case 4: return in.ConsumeRandomLengthString(4096);
    default: return in.ConsumeRemainingBytesAsString();
    }
}

std::string Request(FuzzedDataProvider& in)
{
    struct Route {
        const char* method;
        const char* path;
    };
    static constexpr Route kRoutes[] = {
        {"GET", "/api/chart"},  {"GET", "/api/state"},   {"GET", "/api/geometry"}, {"GET", "/api/scene"},
        {"PUT", "/api/scene"},  {"POST", "/api/points"}, {"POST", "/api/save"},    {"GET", "/api/settings"},
        {"GET", "/api/info"},   {"GET", "/"},            {"GET", "/viewer.js"},    {"GET", "/missing.js"},
        {"DELETE", "/api/scene"}, {"POST", "/api/chart"}, {"GET", "/api/nothing"},
    };
    const Route route = in.PickValueInArray(kRoutes);
    std::string request = std::string(route.method) + " " + route.path;
    const int params = in.ConsumeIntegralInRange(0, 5);
    for (int i = 0; i < params; ++i) {
        const std::string name = Pick(in, {"w", "h", "x", "y", "format", "download", "name"});
        request += (i == 0 ? "?" : "&") + PercentEncoded(name) + "=" + PercentEncoded(QueryValue(in, name));
    }
    request += " HTTP/1.1\r\n";
    if (in.ConsumeProbability<double>() < 0.9)
        request += "Host: " + Pick(in, {"127.0.0.1", "localhost", "[::1]", "127.0.0.1:8080", "example.com"}) + "\r\n";
    if (route.method[0] != 'G' || in.ConsumeBool())
        request += "Content-Type: " + Pick(in, {"application/json", "application/json; charset=utf-8", "text/plain"}) +
                   "\r\n";
    const std::string body = Body(in);
    request += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    return request;
}

void CheckResponse(const std::string& request, const std::string& response)
{
    Require(response.rfind("HTTP/1.1 ", 0) == 0 && response.size() >= 12, "an answer has a status line", request,
            response);
    const std::size_t end = response.find("\r\n\r\n");
    Require(end != std::string::npos, "an answer has a header", request, response);
    const std::string head = response.substr(0, end);
    const std::string body = response.substr(end + 4);
    if (head.find("Content-Type: application/json") == std::string::npos) return;
    const nlohmann::json j = nlohmann::json::parse(body, nullptr, false);
    Require(!j.is_discarded(), "a JSON answer is JSON", request, response);
    const bool thrown = response.rfind("HTTP/1.1 500", 0) == 0 && j.is_object() && j.contains("error") &&
                        j["error"] == "internal error";
    Require(!thrown, "no handler throws", request, response);
}

// The folder "save" writes into, made on first use and removed at exit. A plain array, not a
// std::string: a static string would be destroyed before the exit handler runs.
char g_saveDir[4096];

void RemoveSaveDir() { std::filesystem::remove_all(g_saveDir); }

std::string ScenePath()
{
    if (!g_saveDir[0]) {
        const auto pattern = std::filesystem::temp_directory_path() / "kygraph-fuzz-viewer-XXXXXX";
        std::snprintf(g_saveDir, sizeof g_saveDir, "%s", pattern.c_str());
        if (!mkdtemp(g_saveDir)) std::abort();
        std::atexit(RemoveSaveDir);
    }
    return std::string(g_saveDir) + "/scene.json";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider in(data, size);
    serve::ChartSession session;
    std::vector<SceneError> errors;
    if (!session.Open(Scene{}, in.ConsumeBool() ? ScenePath() : std::string(), errors)) std::abort();
    serve::ViewerServer server(session);
    for (int i = 0; i < 4 && in.remaining_bytes() > 0; ++i) {
        const std::string request = Request(in);
        CheckResponse(request, server.HandleRaw(request));
    }
    return 0;
}
