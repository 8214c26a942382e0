// The viewer's API against a real server on a loopback port: bad input of every kind gets a
// JSON 400 and never hurts the server, images come at the asked size, the mouse maps to the
// states the chart draws, points and scenes change only when valid, and saving is atomic.
#include "ApiParams.h"
#include "ChartSession.h"
#include "SettingsSchema.h"
#include "ViewerServer.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using Json = nlohmann::json;

// A body beyond the viewer's limit.
constexpr std::size_t kBigBody = serve::kMaxBodyBytes + 512 * 1024;

class ViewerApi : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::vector<SceneError> errors;
        ASSERT_TRUE(session.Open(Scene{}, ScenePath(), errors));
        std::string error;
        ASSERT_TRUE(server.Bind("127.0.0.1", 0, error)) << error;
        worker = std::thread([this] { server.Run(); });
        client = std::make_unique<httplib::Client>("127.0.0.1", server.Port());
        client->set_read_timeout(60, 0);
    }
    void TearDown() override
    {
        server.Stop();
        worker.join();
    }
    // The file "save" writes; none unless a test says so.
    virtual std::string ScenePath() const { return ""; }

    Json GetJson(const std::string& path, int expectStatus = 200)
    {
        auto res = client->Get(path.c_str());
        EXPECT_TRUE(res);
        if (!res) return Json();
        EXPECT_EQ(res->status, expectStatus) << path << ": " << res->body;
        return Json::parse(res->body, nullptr, false);
    }
    httplib::Result Send(const char* method, const std::string& path, const std::string& body)
    {
        const std::string type = "application/json";
        return std::string(method) == "PUT" ? client->Put(path.c_str(), body, type.c_str())
                                            : client->Post(path.c_str(), body, type.c_str());
    }
    Json Geometry() { return GetJson("/api/geometry?w=1000&h=800"); }

    serve::ChartSession session;
    serve::ViewerServer server{session};
    std::thread worker;
    std::unique_ptr<httplib::Client> client;
};

// Width and height from a PNG's header; (0, 0) when it is no PNG.
std::pair<int, int> PngSize(const std::string& png)
{
    if (png.size() < 24 || png.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0) return {0, 0};
    auto be = [&](std::size_t at) {
        int v = 0;
        for (std::size_t i = 0; i < 4; ++i) v = (v << 8) | static_cast<unsigned char>(png[at + i]);
        return v;
    };
    return {be(16), be(20)};
}

TEST_F(ViewerApi, BadQueriesAreRefusedWithAMessage)
{
    const char* bad[] = {
        "/api/chart",                                  // no size
        "/api/chart?w=1000",                           // no height
        "/api/chart?w=0&h=800",                        // zero
        "/api/chart?w=-5&h=800",                       // negative
        "/api/chart?w=8193&h=800",                     // above 8192
        "/api/chart?w=99999999999999999999&h=800",     // beyond any int
        "/api/chart?w=nan&h=800",                      // NaN
        "/api/chart?w=inf&h=800",                      // infinity
        "/api/chart?w=1e3&h=800",                      // not an integer
        "/api/chart?w=10.5&h=800",                     // not an integer
        "/api/chart?w=&h=800",                         // empty
        "/api/chart?w=100&w=200&h=800",                // given twice
        "/api/chart?w=100&h=80&format=gif",            // unknown format
        "/api/chart?w=100&h=80&download=yes",          // not a flag
        "/api/chart?w=100&h=80&colour=red",            // unknown parameter
        "/api/chart?w=100&h=80&format=pdf&paper=A5",   // no such paper
        "/api/chart?w=100&h=80&paper=A4",              // a page is SVG or PDF
        "/api/state?x=10&y=10&w=100",                  // no height
        "/api/state?x=100&y=10&w=100&h=80",            // x outside the image
        "/api/state?x=-1&y=10&w=100&h=80",             // negative pixel
        "/api/state?x=1&y=nan&w=100&h=80",             // NaN pixel
        "/api/geometry?w=100",                         // no height
        "/api/scene?w=100",                            // half a size
        "/api/info?x=1",                               // unknown parameter
        "/api/schema?x=1",                             // unknown parameter
    };
    for (const char* path : bad) {
        auto res = client->Get(path);
        ASSERT_TRUE(res) << path;
        EXPECT_EQ(res->status, 400) << path;
        const Json j = Json::parse(res->body, nullptr, false);
        EXPECT_TRUE(j.is_object() && j.contains("error") && j["error"].is_string()) << path << ": " << res->body;
    }
    // None of it hurt the server.
    EXPECT_EQ(GetJson("/api/state?x=300&y=300&w=1000&h=800")["inside"], true);
}

TEST_F(ViewerApi, BadBodiesAreRefusedWithAMessage)
{
    struct Case {
        const char* method;
        const char* path;
        std::string body;
        int status;
    };
    const Case cases[] = {
        {"POST", "/api/points", "not json", 400},
        {"POST", "/api/points", "[1, 2]", 400},
        {"POST", "/api/points", R"({"x": 1, "y": 1, "w": 100})", 400},
        {"POST", "/api/points", R"({"x": 1, "y": 1, "w": 100, "h": 80, "colour": 1})", 400},
        {"POST", "/api/points", R"({"x": 1.5, "y": 1, "w": 100, "h": 80})", 400},
        {"POST", "/api/points", R"({"x": "1", "y": 1, "w": 100, "h": 80})", 400},
        {"POST", "/api/points", R"({"x": 1, "y": 1, "w": 18446744073709551615, "h": 80})", 400},
        {"POST", "/api/points", R"({"x": 1, "y": 1, "w": -100, "h": 80})", 400},
        {"POST", "/api/points", R"({"x": 1, "y": 1, "w": 100, "h": 80, "name": 7})", 400},
        {"POST", "/api/points", R"({"x": 1, "y": 1, "w": 100, "h": 80, "name": ")" + std::string(300, 'n') + "\"}", 400},
        {"POST", "/api/save", "{\"path\": \"/tmp/x\"}", 400},
        {"PUT", "/api/scene", "{", 400},
        {"PUT", "/api/scene", R"({"unknown": 1})", 400},
        {"PUT", "/api/scene", R"({"size": {"width": 0}})", 400},
        {"PUT", "/api/scene", R"({"range": {"tmin": 50, "tmax": 10}})", 400},
        {"PUT", "/api/scene", R"({"points": [{"name": "A", "tdb": 25, "rh": 300}]})", 400},
        {"PUT", "/api/scene", R"({"points": [{"name": "A", "tdb": 20, "rh": 50}, {"name": "A", "tdb": 25, "rh": 50}]})", 400},
        {"PUT", "/api/scene", R"({"lang": "fr"})", 400},
        {"PUT", "/api/scene", R"({"labels": "none"})", 400},
        {"PUT", "/api/scene", std::string(serve::kMaxBodyBytes + 10, ' '), 413},
    };
    for (const Case& c : cases) {
        auto res = Send(c.method, c.path, c.body);
        ASSERT_TRUE(res) << c.path << " " << c.body.substr(0, 80);
        EXPECT_EQ(res->status, c.status) << c.path << " " << c.body.substr(0, 80) << ": " << res->body;
        EXPECT_TRUE(Json::parse(res->body, nullptr, false).contains("error")) << res->body;
    }
    // A scene with a thousand points is more than the viewer holds.
    Json many = {{"points", Json::array()}};
    for (int i = 0; i < 501; ++i) many["points"].push_back({{"name", "p" + std::to_string(i)}, {"tdb", 20}, {"rh", 50}});
    EXPECT_EQ(Send("PUT", "/api/scene", many.dump())->status, 400);
    // Nothing of it changed the scene.
    EXPECT_EQ(GetJson("/api/scene"), Json::object());
}

// A connection to the viewer on loopback; Exchange sends bytes as they are and returns the
// status line of the answer ("" when there is none).
class RawConnection {
public:
    explicit RawConnection(int port) : m_fd(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_port = htons(static_cast<uint16_t>(port));
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        timeval timeout{10, 0};  // a guard against a hang, not a measure of speed
        ::setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
        m_connected = ::connect(m_fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
    }
    ~RawConnection() { ::close(m_fd); }
    bool Send(const std::string& bytes) { return m_connected && ::send(m_fd, bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0; }
    std::string StatusLine()
    {
        std::string got;
        char c = 0;
        while (got.find("\r\n") == std::string::npos && ::recv(m_fd, &c, 1, 0) == 1) got += c;
        return got.substr(0, got.find("\r\n"));
    }
    std::string Exchange(const std::string& bytes)
    {
        Send(bytes);
        return StatusLine();
    }

private:
    int m_fd;
    bool m_connected = false;
};

TEST_F(ViewerApi, RequestsFromOtherSitesAndAmbiguousRequestsAreRefused)
{
    const std::string port = std::to_string(server.Port());
    const std::string host = "Host: 127.0.0.1:" + port + "\r\n";
    const std::string json = "Content-Type: application/json\r\n";
    const std::string big(kBigBody, ' ');
    const auto chunked = [](const std::string& body) {
        std::string out;
        for (std::size_t at = 0; at < body.size(); at += 65536) {
            const std::string part = body.substr(at, 65536);
            char size[16];
            std::snprintf(size, sizeof size, "%zx", part.size());
            out += std::string(size) + "\r\n" + part + "\r\n";
        }
        return out + "0\r\n\r\n";
    };
    const struct {
        std::string request;
        const char* status;
    } cases[] = {
        // Names: only ours, exactly, with the port, once.
        {"GET /api/info HTTP/1.1\r\nHost: localhost:" + port + "\r\n\r\n", "200"},
        {"GET /api/info HTTP/1.1\r\nHost: [::1]:" + port + "\r\n\r\n", "200"},
        {"GET /api/scene HTTP/1.1\r\nHost: 127.evil.example:" + port + "\r\n\r\n", "403"},
        {"GET /api/scene HTTP/1.1\r\nHost: attacker.example:8080\r\n\r\n", "403"},
        {"GET /api/scene HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n", "403"},
        {"GET /api/scene HTTP/1.1\r\n" + host + "Host: evil.example\r\n\r\n", "400"},
        {"GET /api/scene HTTP/1.1\r\n\r\n", "400"},
        // Pages of other sites, by Origin or by what the browser says it is fetching for.
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Origin: http://evil.example\r\nContent-Length: 2\r\n\r\n{}", "403"},
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Origin: http://127.0.0.1:" + port + "\r\nContent-Length: 2\r\n\r\n{}", "200"},
        {"GET /api/chart?w=10&h=10 HTTP/1.1\r\n" + host + "Sec-Fetch-Site: cross-site\r\n\r\n", "403"},
        {"POST /api/points HTTP/1.1\r\n" + host + "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 3\r\n\r\nx=1", "415"},
        // One framing of the body, read against the limit whatever it is.
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Content-Length: abc\r\n\r\n{}", "400"},
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Content-Length: 2\r\nContent-Length: 0\r\n\r\n{}", "400"},
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Content-Length: " + std::to_string(big.size()) + "\r\n\r\n" + big, "413"},
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Transfer-Encoding: chunked\r\n\r\n" + chunked(big), "413"},
        {"PUT /api/scene HTTP/1.1\r\n" + host + json + "Transfer-Encoding: chunked\r\n\r\n" + chunked("{}"), "200"},
        // Work beyond one request's budget.
        {"GET /api/chart?w=8192&h=8192 HTTP/1.1\r\n" + host + "\r\n", "413"},
        {"GET /api/nothing HTTP/1.1\r\n" + host + "\r\n", "404"},
    };
    for (const auto& c : cases) {
        RawConnection conn(server.Port());
        const std::string status = conn.Exchange(c.request);
        EXPECT_EQ(status.substr(0, 12), std::string("HTTP/1.1 ") + c.status) << c.request.substr(0, 120);
    }
    EXPECT_EQ(GetJson("/api/scene"), Json::object());
}

TEST_F(ViewerApi, PortsAndAddressesAreNeverSharedOrWidenedSilently)
{
    serve::ChartSession other;
    serve::ViewerServer second(other);
    std::string error;
    EXPECT_FALSE(second.Bind("127.0.0.1", server.Port(), error));
    EXPECT_NE(error.find("is in use"), std::string::npos) << error;
    const struct {
        const char* host;
        bool allowRemote;
        const char* reason;
    } refused[] = {{"", false, "no address"}, {"0.0.0.0", false, "--allow-remote"}, {"no.such.host.invalid", true, "no such"}};
    for (const auto& c : refused) {
        serve::ViewerServer s(other);
        EXPECT_FALSE(s.Bind(c.host, 0, error, c.allowRemote)) << c.host;
        EXPECT_NE(error.find(c.reason), std::string::npos) << error;
    }
}

TEST_F(ViewerApi, StalledConnectionsNeitherBlockHoverNorGrowWithoutBound)
{
    // Clients that send half a request and stop hold a connection each, not the server.
    std::vector<std::unique_ptr<RawConnection>> stalled;
    for (int i = 0; i < 8; ++i) {
        stalled.push_back(std::make_unique<RawConnection>(server.Port()));
        stalled.back()->Send("GET /api/info HTTP/1.1\r\nHo");
    }
    httplib::Client c("127.0.0.1", server.Port());
    c.set_read_timeout(3, 0);  // a hover queued behind the stalled clients would not come back in time
    auto hover = c.Get("/api/state?x=300&y=400&w=1000&h=800");
    ASSERT_TRUE(hover);
    EXPECT_EQ(hover->status, 200);
    c.stop();
    // Beyond the limit a connection is told so at once.
    while (static_cast<int>(stalled.size()) < serve::ViewerServer::kMaxConnections) {
        stalled.push_back(std::make_unique<RawConnection>(server.Port()));
        stalled.back()->Send("GET /api/info HTTP/1.1\r\nHo");
    }
    // The hover's own connection may hold its place a moment after it closed: a probe served
    // in that place stays open, and the next one is over the limit.
    const std::string request = "GET /api/info HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) + "\r\n\r\n";
    std::string status;
    for (int probe = 0; probe < 3 && status != "HTTP/1.1 503 Service Unavailable"; ++probe) {
        stalled.push_back(std::make_unique<RawConnection>(server.Port()));
        status = stalled.back()->Exchange(request);
    }
    EXPECT_EQ(status, "HTTP/1.1 503 Service Unavailable");
}

TEST_F(ViewerApi, InProcessRequestsAreAnsweredAsOverTheSocket)
{
    const auto raw = [this](const std::string& head, const std::string& body = "") {
        const std::string answer =
            server.HandleRaw(head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
        const std::size_t end = answer.find("\r\n\r\n");
        return std::pair{answer.substr(0, answer.find("\r\n")), end == std::string::npos ? "" : answer.substr(end + 4)};
    };
    const std::string host = "Host: 127.0.0.1:" + std::to_string(server.Port()) + "\r\n";
    const auto [status, body] = raw("GET /api/info HTTP/1.1\r\n" + host);
    EXPECT_EQ(status, "HTTP/1.1 200 OK");
    EXPECT_EQ(body, client->Get("/api/info")->body);
    // The same guard and error handlers as a connection.
    EXPECT_EQ(raw("GET /api/scene HTTP/1.1\r\nHost: attacker.example\r\n").first, "HTTP/1.1 403 Forbidden");
    EXPECT_EQ(raw("GET /api/nothing HTTP/1.1\r\n" + host).first, "HTTP/1.1 404 Not Found");
    EXPECT_EQ(raw("not a request\r\n").first, "HTTP/1.1 400 Bad Request");
    // And the same session: a point added in process is in the scene the socket serves.
    EXPECT_EQ(raw("POST /api/points HTTP/1.1\r\nContent-Type: application/json\r\n" + host,
                  R"({"x": 300, "y": 300, "w": 1000, "h": 800})")
                  .first,
              "HTTP/1.1 200 OK");
    EXPECT_EQ(GetJson("/api/scene")["points"].size(), 1u);
}

TEST_F(ViewerApi, ThePageAndImagesAreServed)
{
    auto page = client->Get("/");
    ASSERT_TRUE(page);
    EXPECT_EQ(page->status, 200);
    EXPECT_NE(page->body.find("viewer.js"), std::string::npos);
    for (const char* asset : {"/viewer.js", "/viewer.css"}) EXPECT_EQ(client->Get(asset)->status, 200) << asset;

    for (auto [w, h] : {std::pair{1000, 800}, std::pair{1, 1}, std::pair{37, 2000}}) {
        auto png = client->Get(("/api/chart?w=" + std::to_string(w) + "&h=" + std::to_string(h)).c_str());
        ASSERT_TRUE(png);
        EXPECT_EQ(png->status, 200);
        EXPECT_EQ(png->get_header_value("Content-Type"), "image/png");
        EXPECT_EQ(PngSize(png->body), std::make_pair(w, h));
    }
    auto svg = client->Get("/api/chart?w=300&h=200&format=svg&download=1");
    ASSERT_TRUE(svg);
    EXPECT_NE(svg->body.find("<svg"), std::string::npos);
    EXPECT_NE(svg->get_header_value("Content-Disposition").find(".svg"), std::string::npos);
    auto pdf = client->Get("/api/chart?w=300&h=200&format=pdf");
    ASSERT_TRUE(pdf);
    EXPECT_EQ(pdf->body.rfind("%PDF", 0), 0u);
    // A page of paper, whatever the window's size.
    auto sheet = client->Get("/api/chart?w=300&h=200&format=svg&paper=a3&landscape=1");
    ASSERT_TRUE(sheet);
    EXPECT_NE(sheet->body.find("width=\"420.0mm\" height=\"297.0mm\""), std::string::npos);
    EXPECT_NE(client->Get("/api/chart?w=300&h=200&format=pdf&paper=A2")->body.find("/MediaBox [ 0 0 1190.551181 1683.779528 ]"),
              std::string::npos);
    EXPECT_EQ(client->Get("/paper-export.js")->status, 200);
}

TEST_F(ViewerApi, HoverReadsTheStateThatIsDrawnThere)
{
    const Json g = Geometry();
    ASSERT_TRUE(g["indoor"].is_object());
    const int x = g["indoor"]["pixel"]["x"], y = g["indoor"]["pixel"]["y"];
    const Json s = GetJson("/api/state?x=" + std::to_string(x) + "&y=" + std::to_string(y) + "&w=1000&h=800");
    ASSERT_EQ(s["inside"], true);
    // One pixel is about 0.15 K and 0.06 g/kg at this size.
    EXPECT_NEAR(s["tdb"].get<double>(), 25.0, 0.3);
    EXPECT_NEAR(s["rh"].get<double>(), 60.0, 1.5);  // percent, as in scenes
    for (const char* key : {"twb", "tdp", "d", "h", "pv", "rho"}) EXPECT_TRUE(s[key].is_number()) << key;

    // The map follows the size asked for: the same pixel of a smaller chart is another state.
    const Json small = GetJson("/api/state?x=" + std::to_string(x) + "&y=" + std::to_string(y) + "&w=700&h=560");
    EXPECT_FALSE(small["inside"] == true && std::abs(small["tdb"].get<double>() - 25.0) < 0.3);

    // Outside the chart: the chart's own message.
    const Json out = GetJson("/api/state?x=2&y=2&w=1000&h=800");
    EXPECT_EQ(out["inside"], false);
    EXPECT_EQ(out["message"], "指定点不在焓湿图的有效范围之内。");
}

TEST_F(ViewerApi, PointsAreAddedWhereClickedAndOnlyWhenValid)
{
    const Json g = Geometry();
    const int x = g["outdoor"]["pixel"]["x"].get<int>() - 60, y = g["outdoor"]["pixel"]["y"].get<int>() - 10;
    const std::string at = "\"x\": " + std::to_string(x) + ", \"y\": " + std::to_string(y) + ", \"w\": 1000, \"h\": 800";
    auto first = Send("POST", "/api/points", "{" + at + "}");
    ASSERT_EQ(first->status, 200) << first->body;
    auto second = Send("POST", "/api/points", "{" + at + ", \"name\": \"送风\"}");
    ASSERT_EQ(second->status, 200) << second->body;
    const Json scene = Json::parse(second->body);
    ASSERT_EQ(scene["points"].size(), 2u);
    EXPECT_EQ(scene["points"][0]["name"], "P1");
    EXPECT_EQ(scene["points"][1]["name"], "送风");

    // The point holds exactly the state under the pixel.
    const Json s = GetJson("/api/state?x=" + std::to_string(x) + "&y=" + std::to_string(y) + "&w=1000&h=800");
    EXPECT_DOUBLE_EQ(scene["points"][0]["h"].get<double>(), s["h"].get<double>());
    EXPECT_DOUBLE_EQ(scene["points"][0]["d"].get<double>(), s["d"].get<double>());

    // A name already taken, or a pixel off the chart, changes nothing.
    EXPECT_EQ(Send("POST", "/api/points", "{" + at + ", \"name\": \"P1\"}")->status, 400);
    auto off = Send("POST", "/api/points", R"({"x": 2, "y": 2, "w": 1000, "h": 800})");
    EXPECT_EQ(off->status, 400);
    EXPECT_EQ(Json::parse(off->body)["error"], "指定点不在焓湿图的有效范围之内。");
    EXPECT_EQ(GetJson("/api/scene"), scene);

    // The scene can join them into a process and draw a ratio line from one.
    Json next = scene;
    next["processes"] = {{{"steps", {{{"type", "path"}, {"points", {"P1", "送风"}}}}}}};
    next["ratio_lines"] = {{{"from", "P1"}, {"ratio", 5000}, {"d", 8}}};
    auto put = Send("PUT", "/api/scene", next.dump());
    ASSERT_EQ(put->status, 200) << put->body;
    EXPECT_EQ(Json::parse(put->body), next);
}

TEST_F(ViewerApi, SettingsChangeTheImageAndReadBack)
{
    const std::string before = client->Get("/api/chart?w=600&h=500")->body;
    ASSERT_EQ(Send("PUT", "/api/scene", R"({"display": {"isotherms": false}, "winter": true, "pressure": 90000})")->status, 200);
    const Json eff = GetJson("/api/settings");
    EXPECT_EQ(eff["display"]["isotherms"], false);
    EXPECT_EQ(eff["display"]["title"], true);
    EXPECT_EQ(eff["winter"], true);
    EXPECT_EQ(eff["pressure"], 90000.0);
    // Every field of the page's form reads back, of its type; the altitude is the scene's alone.
    const Json schema = GetJson("/api/schema");
    ASSERT_GE(schema["settings"].size(), 20u);
    for (const Json& f : schema["settings"]) {
        const Json v = eff.value(Json::json_pointer(SettingsSchema::Pointer(f["path"].get<std::string>())), Json());
        const char* type = f["path"] == "altitude" ? "null" : f["type"] == "number" ? "number" : f["type"] == "bool" ? "boolean" : "string";
        EXPECT_EQ(v.type_name(), std::string(type)) << f;
    }
    EXPECT_NE(client->Get("/api/chart?w=600&h=500")->body, before);
    // Back to the defaults, back to the same picture.
    ASSERT_EQ(Send("PUT", "/api/scene", "{}")->status, 200);
    EXPECT_EQ(client->Get("/api/chart?w=600&h=500")->body, before);
}

TEST_F(ViewerApi, ConcurrentRequestsAreServedOneChartCallAtATime)
{
    // The chart library is single-threaded; mixed requests from several clients must all
    // succeed and agree with what one client alone gets.
    const Json alone = GetJson("/api/state?x=300&y=400&w=1000&h=800");
    std::atomic<int> failures{0};
    std::vector<std::thread> clients;
    for (int t = 0; t < 4; ++t) {
        clients.emplace_back([&, t] {
            httplib::Client c("127.0.0.1", server.Port());
            for (int i = 0; i < 15; ++i) {
                auto s = c.Get("/api/state?x=300&y=400&w=1000&h=800");
                if (!s || s->status != 200 || Json::parse(s->body, nullptr, false) != alone) ++failures;
                const std::string size = "w=" + std::to_string(200 + 50 * t) + "&h=" + std::to_string(150 + 40 * i);
                auto png = c.Get(("/api/chart?" + size).c_str());
                if (!png || png->status != 200 || PngSize(png->body).first != 200 + 50 * t) ++failures;
            }
        });
    }
    for (std::thread& t : clients) t.join();
    EXPECT_EQ(failures, 0);
}

TEST_F(ViewerApi, HoverIsAnsweredWhileTheChartIsBeingDrawn)
{
    // The drawing lock held as a long redraw holds it: a hover must not need it.
    const Json alone = GetJson("/api/state?x=300&y=400&w=1000&h=800");
    std::lock_guard<std::mutex> drawing(serve::ChartMutex());
    httplib::Client c("127.0.0.1", server.Port());
    c.set_read_timeout(10, 0);  // a hover that waited for the lock would never come back
    auto res = c.Get("/api/state?x=300&y=400&w=1000&h=800");
    ASSERT_TRUE(res);
    EXPECT_EQ(Json::parse(res->body, nullptr, false), alone);
}

TEST_F(ViewerApi, SaveWithoutAFileIsRefused)
{
    auto res = Send("POST", "/api/save", "{}");
    ASSERT_TRUE(res);
    EXPECT_EQ(res->status, 409);
    EXPECT_TRUE(GetJson("/api/info")["file"].is_null());
}

class ViewerSave : public ViewerApi {
protected:
    std::string ScenePath() const override { return path.string(); }
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("kygraph-serve-" + std::to_string(::getpid()) + "-" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::path path = dir / "scene.json";

    void SetUp() override
    {
        std::filesystem::create_directories(dir);
        ViewerApi::SetUp();
    }
    void TearDown() override
    {
        ViewerApi::TearDown();
        std::filesystem::remove_all(dir);
    }
    static std::string Read(const std::filesystem::path& p)
    {
        std::ifstream in(p);
        std::stringstream ss;
        ss << in.rdbuf();
        return ss.str();
    }
};

TEST_F(ViewerSave, SaveKeepsTheScenesOwnPrintSize)
{
    // Whatever the browser's window, the file keeps the size the scene gives, or none.
    for (const char* size : {R"("size": {"width": 1600, "height": 1200}, )", ""}) {
        ASSERT_EQ(Send("PUT", "/api/scene", std::string("{") + size + R"("lang": "en", "points": [{"name": "A", "tdb": 26, "rh": 55}]})")->status, 200);
        ASSERT_EQ(client->Get("/api/chart?w=640&h=480")->status, 200);
        auto res = Send("POST", "/api/save", "{}");
        ASSERT_EQ(res->status, 200) << res->body;
        const Json saved = Json::parse(Read(path));
        EXPECT_EQ(saved.contains("size"), *size != 0) << size;
        if (*size) {
            EXPECT_EQ(saved["size"], (Json{{"width", 1600}, {"height", 1200}}));
        }
        EXPECT_EQ(saved["lang"], "en");
        EXPECT_EQ(saved["points"][0]["name"], "A");
        EXPECT_EQ(GetJson("/api/scene"), saved);
    }
    // The file's own comments outlive an edit in the page.
    { std::ofstream(path) << R"({"comment": "site A", "points": [{"comment": "the room", "name": "A", "tdb": 26, "rh": 55}]})"; }
    ASSERT_EQ(Send("PUT", "/api/scene", R"({"points": [{"name": "A", "tdb": 25, "rh": 50}]})")->status, 200);
    ASSERT_EQ(Send("POST", "/api/save", "{}")->status, 200);
    const Json commented = Json::parse(Read(path));
    EXPECT_EQ(commented["comment"], "site A");
    EXPECT_EQ(commented["points"][0]["comment"], "the room");
    EXPECT_EQ(commented["points"][0]["tdb"], 25);
    // A table imported in the page is saved beside the scene, so the file opens with it; a
    // different file of its name is left alone and the save refused.
    ASSERT_EQ(Send("POST", "/api/data", R"({"name": "t.csv", "csv": "tdb,rh\n25,60\n"})")->status, 200);
    ASSERT_EQ(Send("POST", "/api/save", "{}")->status, 200);
    EXPECT_EQ(Read(dir / "t.csv"), "tdb,rh\n25,60\n");
    EXPECT_EQ(Json::parse(Read(path))["data"][0]["file"], "t.csv");
    { std::ofstream(dir / "t.csv") << "other"; }
    EXPECT_EQ(Send("POST", "/api/save", "{}")->status, 500);
    EXPECT_EQ(Read(dir / "t.csv"), "other");
}

TEST_F(ViewerSave, AFailedSaveLeavesWhatWasThere)
{
    // The scene's name now belongs to a folder: the final rename fails (even for root), and
    // neither the folder nor a temporary file may be left changed behind.
    std::filesystem::create_directory(path);
    { std::ofstream(path / "keep") << "kept"; }
    auto res = Send("POST", "/api/save", "{}");
    ASSERT_TRUE(res);
    EXPECT_EQ(res->status, 500);
    EXPECT_NE(Json::parse(res->body)["error"].get<std::string>().find("not saved"), std::string::npos);
    EXPECT_EQ(Read(path / "keep"), "kept");
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(dir)) ++entries;
    EXPECT_EQ(entries, 1u);
}

// The viewer reuses one chart for every scene, and the background of the last one; a scene
// that changes what the chart fixes when it is built (lengths, range, pressure, formulation),
// or only its overlays, must still draw and map as a fresh `kygraph render` of it does,
// whatever scene came before.
TEST_F(ViewerApi, AnExportedSceneRendersToTheSameImage)
{
    const std::string program = std::string(KY_BINARY_DIR) + "/bin/kygraph";
    if (!std::filesystem::exists(program)) GTEST_SKIP() << program << " is not built";
    const char* scenes[] = {
        R"({"points": [{"name": "A", "tdb": 28, "rh": 50}], "display": {"h_lines": false}})",
        // only the point moves: drawn over the background kept from the scene before
        R"({"points": [{"name": "A", "tdb": 20, "rh": 40}], "display": {"h_lines": false}})",
        R"({"lengths": {"t": 9, "d": 3}, "points": [{"name": "A", "tdb": 28, "rh": 50}]})",
        R"({"pressure": 70000, "formulation": "ashrae", "range": {"tmin": 0, "tmax": 40, "dmin": 5, "dmax": 30}})",
    };
    const auto dir = std::filesystem::temp_directory_path() / ("kygraph-export-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    for (const char* scene : scenes) {
        ASSERT_EQ(Send("PUT", "/api/scene", scene)->status, 200) << scene;
        const std::string shown = client->Get("/api/chart?w=800&h=600")->body;
        // Warm and dry, a quarter into the plot area from its top-left corner: a state in any
        // of these scenes.
        const Json plot = GetJson("/api/geometry?w=800&h=600")["plot"];
        const int x = (3 * plot["left"].get<int>() + plot["right"].get<int>()) / 4;
        const int y = (3 * plot["top"].get<int>() + plot["bottom"].get<int>()) / 4;
        const Json hover = GetJson("/api/state?x=" + std::to_string(x) + "&y=" + std::to_string(y) + "&w=800&h=600");
        { std::ofstream(dir / "scene.json") << client->Get("/api/scene?w=800&h=600&download=1")->body; }
        const std::string cmd = program + " render " + (dir / "scene.json").string() + " -o " + (dir / "out.png").string() +
                                " && " + program + " locate --json --scene " + (dir / "scene.json").string() + " " +
                                std::to_string(x) + " " + std::to_string(y) + " >" + (dir / "locate.json").string();
        ASSERT_EQ(std::system(cmd.c_str()), 0) << cmd;
        std::ifstream in(dir / "out.png", std::ios::binary);
        const std::string rendered((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        EXPECT_EQ(PngSize(rendered), std::make_pair(800, 600));
        EXPECT_TRUE(rendered == shown) << "kygraph render drew " << scene << " differently";
        const Json located = Json::parse(std::ifstream(dir / "locate.json"), nullptr, false);
        ASSERT_EQ(hover["inside"], true) << scene << ": " << hover.dump();
        EXPECT_NEAR(hover["h"].get<double>(), located["h"].get<double>(), 1e-9) << scene;
        EXPECT_NEAR(hover["d"].get<double>(), located["d"].get<double>(), 1e-9) << scene;
    }
    std::filesystem::remove_all(dir);
}

}  // namespace

TEST_F(ViewerApi, ImportedDataIsDrawnKeptAcrossEditsAndRefusedWithAMessage)
{
    const std::string csv = "time,tdb,rh\\n0,25,60\\n1,oops,60\\n2,28,50\\n";
    auto ok = Send("POST", "/api/data", R"({"name": "year.csv", "csv": ")" + csv + "\"}");
    ASSERT_EQ(ok->status, 200) << ok->body;
    const Json r = Json::parse(ok->body);
    EXPECT_EQ(r["note"], "year.csv: 1 of 3 rows are not states (line 3) and are not drawn");
    ASSERT_EQ(r["scene"]["data"].size(), 1u);
    EXPECT_EQ(r["scene"]["data"][0]["file"], "year.csv");
    // The page sends the scene back without the table; the server keeps it by its name.
    Json next = r["scene"];
    next["legend"] = {{"show", true}};
    ASSERT_EQ(Send("PUT", "/api/scene", next.dump())->status, 200);
    auto png = client->Get("/api/chart?w=600&h=480");
    ASSERT_TRUE(png);
    EXPECT_EQ(png->status, 200);

    const struct {
        std::string body;
        const char* error;
    } bad[] = {
        {R"({"name": "x.csv", "csv": "1,2\n3,4\n"})", "x.csv: no recognisable header"},
        {R"({"name": "x.csv"})", "csv"},
        {R"({"name": "x.csv", "csv": 7})", "csv"},
        {R"({"name": "../x.csv", "csv": "tdb,rh\n25,60\n"})", "not a plain file name"},
    };
    for (const auto& b : bad) {
        auto res = Send("POST", "/api/data", b.body);
        EXPECT_EQ(res->status, 400) << b.body;
        EXPECT_NE(Json::parse(res->body)["error"].get<std::string>().find(b.error), std::string::npos) << res->body;
    }
}
