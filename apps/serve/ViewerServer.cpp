#include "ViewerServer.h"

#include "ApiParams.h"
#include "ApiResponse.h"
#include "ChartSession.h"
#include "WebAssets.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace serve {

namespace {

using Json = nlohmann::json;

bool IsLoopbackHost(const std::string& host)
{
    return host == "127.0.0.1" || host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0;
}

// The host name of a Host header, without the port ("[::1]:8080" -> "::1").
std::string HostName(const std::string& header)
{
    if (!header.empty() && header.front() == '[') {
        const std::size_t close = header.find(']');
        return close == std::string::npos ? header : header.substr(1, close - 1);
    }
    return header.substr(0, header.find(':'));
}

struct ImageFormat {
    const char* name;
    ImageKind kind;
    const char* contentType;
};
constexpr ImageFormat kFormats[] = {
    {"png", ImageKind::Png, "image/png"},
    {"svg", ImageKind::Svg, "image/svg+xml"},
    {"pdf", ImageKind::Pdf, "application/pdf"},
};

// The two ends of a connection in memory: reads come from the request, writes go to the
// response. The peer is this machine, as for a loopback socket.
class MemoryStream : public httplib::Stream {
public:
    explicit MemoryStream(const std::string& request) : m_request(request) {}
    bool is_readable() const override { return m_read < m_request.size(); }
    bool is_writable() const override { return true; }
    ssize_t read(char* ptr, size_t size) override
    {
        const size_t n = std::min(size, m_request.size() - m_read);
        m_request.copy(ptr, n, m_read);
        m_read += n;
        return static_cast<ssize_t>(n);
    }
    ssize_t write(const char* ptr, size_t size) override
    {
        response.append(ptr, size);
        return static_cast<ssize_t>(size);
    }
    void get_remote_ip_and_port(std::string& ip, int& port) const override
    {
        ip = "127.0.0.1";
        port = 0;
    }
    void get_local_ip_and_port(std::string& ip, int& port) const override { get_remote_ip_and_port(ip, port); }
    socket_t socket() const override { return INVALID_SOCKET; }

    std::string response;

private:
    const std::string& m_request;
    size_t m_read = 0;
};

}  // namespace

std::string ViewerServer::HttpServer::Exchange(const std::string& request)
{
    MemoryStream stream(request);
    bool closed = false;
    process_request(stream, true, closed, nullptr);
    return std::move(stream.response);
}

std::string ViewerServer::HandleRaw(const std::string& request) { return m_server.Exchange(request); }

ViewerServer::ViewerServer(ChartSession& session) : m_session(session)
{
    m_server.set_payload_max_length(kMaxBodyBytes);
    // Small JSON answers must not wait for a delayed acknowledgement (Nagle).
    m_server.set_tcp_nodelay(true);
    // Slow or stalled clients cannot hold a worker for long.
    m_server.set_read_timeout(5, 0);
    m_server.set_write_timeout(30, 0);
    m_server.set_keep_alive_timeout(5);
    m_server.set_keep_alive_max_count(1000);
    Route();
}

ViewerServer::~ViewerServer() { Stop(); }

bool ViewerServer::Bind(const std::string& host, int port, std::string& error)
{
    if (port < 0 || port > 65535) {
        error = "port must lie within 0..65535";
        return false;
    }
    m_loopback = IsLoopbackHost(host);
    if (port == 0) {
        const int bound = m_server.bind_to_any_port(host);
        if (bound <= 0) {
            error = "cannot listen on " + host;
            return false;
        }
        m_port = bound;
    } else {
        if (!m_server.bind_to_port(host, port)) {
            error = "cannot listen on " + host + ":" + std::to_string(port) + " (in use, or no such address)";
            return false;
        }
        m_port = port;
    }
    return true;
}

void ViewerServer::Run()
{
    m_inRun = true;
    if (!m_stopRequested) m_server.listen_after_bind();
    m_inRun = false;
}

void ViewerServer::Stop()
{
    m_stopRequested = true;
    // Run may not have started listening yet: wait (boundedly) until it does or has returned.
    for (int i = 0; i < 500; ++i) {
        if (m_server.is_running()) {
            m_server.stop();
            return;
        }
        if (!m_inRun) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

bool ViewerServer::Guard(const httplib::Request& req, httplib::Response& res) const
{
    if (m_loopback && req.has_header("Host") && !IsLoopbackHost(HostName(req.get_header_value("Host")))) {
        SendError(res, 403, "this viewer answers only requests addressed to this machine");
        return false;
    }
    if ((req.method == "POST" || req.method == "PUT") &&
        req.get_header_value("Content-Type").rfind("application/json", 0) != 0) {
        SendError(res, 415, "the request body must be application/json");
        return false;
    }
    return true;
}

void ViewerServer::Route()
{
    m_server.set_pre_routing_handler([this](const httplib::Request& req, httplib::Response& res) {
        return Guard(req, res) ? httplib::Server::HandlerResponse::Unhandled
                               : httplib::Server::HandlerResponse::Handled;
    });
    // Errors httplib produces itself (no route, body too large) get a JSON message too.
    m_server.set_error_handler([](const httplib::Request&, httplib::Response& res) {
        if (!res.body.empty()) return;
        const char* message = res.status == 404   ? "no such resource"
                              : res.status == 413 ? "the request body is too large"
                                                  : "bad request";
        SendError(res, res.status, message);
    });
    m_server.set_exception_handler([](const httplib::Request&, httplib::Response& res, std::exception_ptr) {
        SendError(res, 500, "internal error");
    });

    m_server.Get("/", [](const httplib::Request& req, httplib::Response& res) {
        const WebAsset* asset = FindWebAsset(req.path);
        res.set_content(asset->body.data(), asset->body.size(), std::string(asset->contentType).c_str());
    });
    m_server.Get(R"(/[A-Za-z0-9_.-]+\.(html|css|js|svg))", [](const httplib::Request& req, httplib::Response& res) {
        const WebAsset* asset = FindWebAsset(req.path);
        if (!asset) {
            SendError(res, 404, "no such resource");
            return;
        }
        res.set_content(asset->body.data(), asset->body.size(), std::string(asset->contentType).c_str());
    });

    // The chart as an image: w, h, format png (default), svg or pdf; download=1 names a file.
    m_server.Get("/api/chart", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {"w", "h", "format", "download"});
        int w = 0, h = 0;
        q.ImageSize(w, h);
        const std::string format = q.Choice("format", {"png", "svg", "pdf"}, "png");
        const bool download = q.Flag("download");
        if (!q.Ok()) return SendError(res, 400, q.Error());
        const ImageFormat* f = &kFormats[0];
        for (const ImageFormat& c : kFormats)
            if (format == c.name) f = &c;
        std::string bytes = m_session.Render(w, h, f->kind);
        if (bytes.empty()) return SendError(res, 500, "the chart could not be drawn at this size");
        res.set_header("Cache-Control", "no-store");
        if (download)
            res.set_header("Content-Disposition", std::string("attachment; filename=\"kygraph-chart.") + f->name + "\"");
        res.set_content(std::move(bytes), f->contentType);
    });

    // The state under a pixel: x, y within the image of w x h.
    m_server.Get("/api/state", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {"x", "y", "w", "h"});
        int w = 0, h = 0;
        q.ImageSize(w, h);
        const int x = q.Int("x", 0, w - 1);
        const int y = q.Int("y", 0, h - 1);
        if (!q.Ok()) return SendError(res, 400, q.Error());
        SendJson(res, 200, m_session.StateAt(x, y, w, h));
    });

    m_server.Get("/api/geometry", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {"w", "h"});
        int w = 0, h = 0;
        q.ImageSize(w, h);
        if (!q.Ok()) return SendError(res, 400, q.Error());
        Json j = m_session.Geometry(w, h);
        if (j.is_null()) return SendError(res, 500, "the chart could not be drawn at this size");
        SendJson(res, 200, j);
    });

    // The scene as a scene file; with w and h, sized as the browser shows it.
    m_server.Get("/api/scene", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {"w", "h", "download"});
        int w = 0, h = 0;
        if (q.Has("w") || q.Has("h")) q.ImageSize(w, h);
        const bool download = q.Flag("download");
        if (!q.Ok()) return SendError(res, 400, q.Error());
        const std::string text = m_session.SceneJson(w, h).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
        res.set_header("Cache-Control", "no-store");
        if (download) res.set_header("Content-Disposition", "attachment; filename=\"kygraph-scene.json\"");
        res.set_content(text, "application/json; charset=utf-8");
    });

    // Replaces the whole scene; the page edits points, processes, ratio lines and settings
    // this way. The scene-file reader checks it as it checks a file.
    m_server.Put("/api/scene", [this](const httplib::Request& req, httplib::Response& res) {
        if (!req.params.empty()) return SendError(res, 400, "unknown parameter '" + req.params.begin()->first + "'");
        std::vector<SceneError> errors;
        if (!m_session.ReplaceScene(req.body, errors)) return SendJson(res, 400, ErrorsJson(errors));
        SendSceneJson(res);
    });

    // A state point at the clicked pixel: {x, y, w, h, name?}.
    m_server.Post("/api/points", [this](const httplib::Request& req, httplib::Response& res) {
        JsonBody b(req.body, {"x", "y", "w", "h", "name"});
        const int w = b.Int("w", 1, kMaxImageSide);
        const int h = b.Int("h", 1, kMaxImageSide);
        const int x = b.Int("x", 0, w - 1);
        const int y = b.Int("y", 0, h - 1);
        const std::string name = b.String("name", kMaxNameBytes);
        if (!b.Ok()) return SendError(res, 400, b.Error());
        std::string error;
        if (!m_session.AddPointAt(x, y, w, h, name, error)) return SendError(res, 400, error);
        SendSceneJson(res);
    });

    // Writes the scene back to the file the viewer was started with.
    m_server.Post("/api/save", [this](const httplib::Request& req, httplib::Response& res) {
        JsonBody b(req.body, {});
        if (!b.Ok()) return SendError(res, 400, b.Error());
        std::string error;
        const std::string path = m_session.Path();
        if (path.empty()) return SendError(res, 409, "the viewer was started without a scene file; export the scene instead");
        if (!m_session.Save(error)) return SendError(res, 500, "the scene was not saved: " + error);
        SendJson(res, 200, Json{{"saved", path}});
    });

    m_server.Get("/api/settings", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {});
        if (!q.Ok()) return SendError(res, 400, q.Error());
        SendJson(res, 200, m_session.EffectiveSettings());
    });

    m_server.Get("/api/info", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {});
        if (!q.Ok()) return SendError(res, 400, q.Error());
        const std::string path = m_session.Path();
        SendJson(res, 200, Json{{"file", path.empty() ? Json(nullptr) : Json(path)}, {"maxSide", kMaxImageSide}});
    });
}

void ViewerServer::SendSceneJson(httplib::Response& res)
{
    res.status = 200;
    res.set_header("Cache-Control", "no-store");
    res.set_content(m_session.SceneJson().dump(-1, ' ', false, Json::error_handler_t::replace),
                    "application/json; charset=utf-8");
}

}  // namespace serve
