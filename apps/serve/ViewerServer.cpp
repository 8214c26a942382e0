#include "ViewerServer.h"

#include "ApiParams.h"
#include "ApiResponse.h"
#include "ChartSession.h"
#include "HostLanguage.h"
#include "PaperSize.h"
#include "SettingsSchema.h"
#include "SocketStream.h"
#include "StateProperties.h"
#include "WebAssets.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace serve {

namespace {

using Json = nlohmann::json;

// Names of this machine's loopback interface, as a browser writes them in a Host header.
constexpr const char* kLoopbackNames[] = {"127.0.0.1", "localhost", "[::1]"};

bool IsLoopbackAddress(const std::string& host) { return host == "127.0.0.1" || host == "::1" || host == "localhost"; }

// How long a connection may wait for its next request, and how long a request may take to
// arrive whole; a client slower than that loses its connection.
constexpr std::chrono::seconds kIdleTimeout{5};
constexpr std::chrono::seconds kRequestTimeout{10};
// Requests one connection may carry before it is closed.
constexpr int kRequestsPerConnection = 1000;
// Bytes a request may read: its head (request line and headers) plus the body limit and the
// framing of a chunked body.
constexpr std::size_t kMaxHeadBytes = 64 * 1024;
constexpr std::size_t kMaxRequestBytes = kMaxHeadBytes + kMaxBodyBytes + 64 * 1024;

// Set by a handler that left part of its request unread (a refused or too large body): the
// connection cannot carry another request. Handlers run on the connection's own thread.
thread_local bool t_closeConnection = false;

void CloseAfter(httplib::Response& res)
{
    t_closeConnection = true;
    res.set_header("Connection", "close");
}

// Reads the body through reader, at most kMaxBodyBytes whatever the transfer encoding. false
// with a 413 or 400 answer in res otherwise.
bool ReadBody(const httplib::ContentReader& reader, httplib::Response& res, std::string& body)
{
    bool tooLarge = false;
    const bool whole = reader([&](const char* data, size_t size) {
        if (body.size() + size > kMaxBodyBytes) {
            tooLarge = true;
            return false;
        }
        body.append(data, size);
        return true;
    });
    if (whole && !tooLarge) return true;
    CloseAfter(res);
    if (tooLarge || res.status == 413)
        SendError(res, 413, "the request body is larger than " + std::to_string(kMaxBodyBytes) + " bytes");
    else
        SendError(res, 400, "the request body could not be read");
    return false;
}

// Whether a drawing of w x h fits the pixel budget of one request; a 413 naming it otherwise.
bool WithinPixelBudget(int w, int h, httplib::Response& res)
{
    if (static_cast<long long>(w) * h <= kMaxImagePixels) return true;
    SendError(res, 413, "an image of " + std::to_string(w) + " x " + std::to_string(h) + " pixels is beyond the " +
                            std::to_string(kMaxImagePixels) + " pixels one request may draw");
    return false;
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

bool ViewerServer::HttpServer::Process(httplib::Stream& stream, bool last, bool& closed)
{
    return process_request(stream, last, closed, nullptr);
}

std::string ViewerServer::HandleRaw(const std::string& request)
{
    t_closeConnection = false;
    return m_server.Exchange(request);
}

ViewerServer::ViewerServer(ChartSession& session) : m_session(session)
{
    m_server.set_payload_max_length(kMaxBodyBytes);
    for (const char* name : kLoopbackNames) m_hosts.push_back(name);
    Route();
}

ViewerServer::~ViewerServer()
{
    Stop();
    if (m_listenFd >= 0) ::close(m_listenFd);
    for (int fd : m_wake)
        if (fd >= 0) ::close(fd);
}

bool ViewerServer::Bind(const std::string& host, int port, std::string& error, bool allowRemote)
{
    if (port < 0 || port > 65535) {
        error = "port must lie within 0..65535";
        return false;
    }
    if (host.empty()) {
        error = "--host: no address given";
        return false;
    }
    if (!allowRemote && !IsLoopbackAddress(host)) {
        error = "--host " + host + " would let other machines reach the viewer; add --allow-remote if that is meant";
        return false;
    }
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const std::string service = std::to_string(port);
    if (::getaddrinfo(host.c_str(), service.c_str(), &hints, &found) != 0 || !found) {
        error = "cannot listen on " + host + ": no such address";
        return false;
    }
    int fd = -1;
    int lastErrno = 0;
    for (addrinfo* a = found; a && fd < 0; a = a->ai_next) {
        fd = ::socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC, a->ai_protocol);
        if (fd < 0) continue;
        // SO_REUSEADDR only lets a restarted viewer take its port back from connections still
        // closing; unlike SO_REUSEPORT it never lets two listeners share one port.
        const int yes = 1;
        ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        if (::bind(fd, a->ai_addr, a->ai_addrlen) != 0 || ::listen(fd, 64) != 0) {
            lastErrno = errno;
            ::close(fd);
            fd = -1;
        }
    }
    ::freeaddrinfo(found);
    if (fd < 0) {
        error = lastErrno == EADDRINUSE
                    ? "port " + service + " on " + host + " is in use (another viewer?); choose another with --port"
                    : "cannot listen on " + host + ":" + service + ": " + std::strerror(lastErrno);
        return false;
    }
    sockaddr_storage addr{};
    socklen_t len = sizeof addr;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len);
    m_port = ntohs(addr.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6*>(&addr)->sin6_port
                                              : reinterpret_cast<sockaddr_in*>(&addr)->sin_port);
    m_listenFd = fd;
    // The names a browser may use for us: the loopback ones and the one we were told, each
    // with the port.
    std::vector<std::string> names(std::begin(kLoopbackNames), std::end(kLoopbackNames));
    if (!IsLoopbackAddress(host)) names.push_back(host.find(':') != std::string::npos ? "[" + host + "]" : host);
    m_hosts.clear();
    for (const std::string& n : names) m_hosts.push_back(n + ":" + std::to_string(m_port));
    return true;
}

void ViewerServer::Run()
{
    if (m_listenFd < 0 || ::pipe2(m_wake, O_CLOEXEC) != 0) return;
    while (!m_stopRequested) {
        pollfd fds[2] = {{m_listenFd, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        if (::poll(fds, 2, 1000) <= 0 || fds[1].revents) continue;
        const int fd = ::accept4(m_listenFd, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) continue;
        const int yes = 1;  // small JSON answers must not wait for a delayed acknowledgement
        ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        {
            std::lock_guard<std::mutex> lock(m_connectionsMutex);
            if (static_cast<int>(m_connections.size()) < kMaxConnections) {
                m_connections.insert(fd);
                std::thread([this, fd] { ServeConnection(fd); }).detach();
                continue;
            }
        }
        static const char kBusy[] =
            "HTTP/1.1 503 Service Unavailable\r\nContent-Type: application/json\r\nConnection: close\r\n"
            "Content-Length: 49\r\n\r\n{\"error\": \"too many connections; try again later\"}";
        [[maybe_unused]] const ssize_t ignored = ::send(fd, kBusy, sizeof kBusy - 1, MSG_NOSIGNAL | MSG_DONTWAIT);
        ::close(fd);
    }
    // Every connection ends promptly once shut down; wait for their threads to let go of us.
    std::unique_lock<std::mutex> lock(m_connectionsMutex);
    for (int fd : m_connections) ::shutdown(fd, SHUT_RDWR);
    m_connectionsDone.wait(lock, [this] { return m_connections.empty(); });
}

void ViewerServer::ServeConnection(int fd)
{
    SocketStream stream(fd);
    for (int n = 0; n < kRequestsPerConnection && !m_stopRequested; ++n) {
        if (!stream.WaitForRequest(kIdleTimeout)) break;
        stream.StartRequest(kMaxRequestBytes, SocketStream::Clock::now() + kRequestTimeout);
        t_closeConnection = false;
        bool closed = false;
        const bool ok = m_server.Process(stream, n + 1 == kRequestsPerConnection, closed);
        if (!ok || closed || t_closeConnection || stream.Exhausted()) break;
    }
    // A lingering close: the client may still be sending what was refused, and closing with
    // unread bytes would reset the connection before it read our answer. Bounded like a request.
    ::shutdown(fd, SHUT_WR);
    stream.StartRequest(kMaxRequestBytes, SocketStream::Clock::now() + std::chrono::seconds(2));
    char sink[4096];
    while (!m_stopRequested && stream.read(sink, sizeof sink) > 0) {
    }
    ::close(fd);
    std::lock_guard<std::mutex> lock(m_connectionsMutex);
    m_connections.erase(fd);
    m_connectionsDone.notify_all();
}

void ViewerServer::Stop()
{
    m_stopRequested = true;
    if (m_wake[1] >= 0) [[maybe_unused]] const ssize_t ignored = ::write(m_wake[1], "x", 1);
    std::lock_guard<std::mutex> lock(m_connectionsMutex);
    for (int fd : m_connections) ::shutdown(fd, SHUT_RDWR);
}

bool ViewerServer::Guard(const httplib::Request& req, httplib::Response& res) const
{
    const auto refuse = [&](int status, const std::string& message) {
        // What is left of the request (a body) is not read: the connection cannot go on.
        CloseAfter(res);
        SendError(res, status, message);
        return false;
    };
    // Our names, with the port; without one only in process, where there is no port.
    const auto ours = [this](const std::string& name) {
        return std::find(m_hosts.begin(), m_hosts.end(), name) != m_hosts.end() ||
               (m_port == 0 && std::find(std::begin(kLoopbackNames), std::end(kLoopbackNames), name) !=
                                   std::end(kLoopbackNames));
    };
    if (req.get_header_value_count("Host") != 1) return refuse(400, "a request needs exactly one Host header");
    if (!ours(req.get_header_value("Host")))
        return refuse(403, "this viewer answers only requests addressed to " + m_hosts.front());
    // A page of another site: the browser says so in Origin (any request that sends a body)
    // and in Sec-Fetch-Site (also for the images it loads).
    const std::string origin = req.get_header_value("Origin");
    if (req.has_header("Origin") && (origin.rfind("http://", 0) != 0 || !ours(origin.substr(7))))
        return refuse(403, "this viewer answers only its own page");
    const std::string site = req.get_header_value("Sec-Fetch-Site");
    if (req.path.rfind("/api/", 0) == 0 && !site.empty() && site != "same-origin" && site != "none")
        return refuse(403, "this viewer answers only its own page");
    // One framing of the body, and one the server reads the same way as any proxy would.
    const std::size_t lengths = req.get_header_value_count("Content-Length");
    const std::string length = req.get_header_value("Content-Length");
    if (lengths > 1 || (lengths == 1 && (length.empty() || length.find_first_not_of("0123456789") != std::string::npos)))
        return refuse(400, "a request needs at most one Content-Length, a decimal number");
    if (req.has_header("Transfer-Encoding") && (lengths > 0 || req.get_header_value_count("Transfer-Encoding") != 1 ||
                                                req.get_header_value("Transfer-Encoding") != std::string("chunked")))
        return refuse(400, "a request body is framed by one Content-Length or by chunked encoding alone");
    if ((req.method == "POST" || req.method == "PUT") &&
        req.get_header_value("Content-Type").rfind("application/json", 0) != 0)
        return refuse(415, "the request body must be application/json");
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

    // The chart as an image: w, h, format png (default), svg or pdf; download=1 names a file;
    // paper=A4|A3|A2 (landscape=1) makes an SVG or PDF a page of that paper.
    m_server.Get("/api/chart", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {"w", "h", "format", "download", "paper", "landscape"});
        int w = 0, h = 0;
        q.ImageSize(w, h);
        const std::string format = q.Choice("format", {"png", "svg", "pdf"}, "png");
        const bool download = q.Flag("download");
        const bool landscape = q.Flag("landscape");
        if (!q.Ok()) return SendError(res, 400, q.Error());
        PaperSize paper;
        const bool onPaper = q.Has("paper");
        if (onPaper) {
            std::string error;
            if (!PaperSize::Find(req.get_param_value("paper"), landscape, paper, error))
                return SendError(res, 400, "paper: " + error);
            if (format == "png") return SendError(res, 400, "paper: applies to svg and pdf");
            w = paper.ChartWidth(), h = paper.ChartHeight();
        }
        if (!onPaper && !WithinPixelBudget(w, h, res)) return;  // a paper is a fixed, vector size
        const ImageFormat* f = &kFormats[0];
        for (const ImageFormat& c : kFormats)
            if (format == c.name) f = &c;
        std::string bytes = m_session.Render(w, h, f->kind, onPaper ? &paper : nullptr);
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
        if (!WithinPixelBudget(w, h, res)) return;
        Json j = m_session.Geometry(w, h);
        if (j.is_null()) return SendError(res, 500, "the chart could not be drawn at this size");
        SendJson(res, 200, j);
    });

    // The design report as PDF: the chart at w x h, the named states and the steps' loads.
    m_server.Get("/api/report", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {"w", "h", "lang"});
        int w = 0, h = 0;
        q.ImageSize(w, h);
        // Without lang, the report speaks the chart's language.
        const std::string lang = req.has_param("lang") ? req.get_param_value("lang")
                                 : HostLanguage::Chosen() == KyGraphLanguage::English ? "en" : "zh";
        if (!q.Ok()) return SendError(res, 400, q.Error());
        if (lang != "zh" && lang != "en") return SendError(res, 400, "lang: \"" + lang + "\" is not one of zh, en");
        if (!WithinPixelBudget(2 * w, 2 * h, res)) return;
        const std::string pdf = m_session.Report(w, h, lang == "en");
        if (pdf.empty()) return SendError(res, 500, "the report could not be made");
        res.set_header("Cache-Control", "no-store");
        res.set_header("Content-Disposition", "attachment; filename=\"kygraph-report.pdf\"");
        res.set_content(pdf, "application/pdf");
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
    m_server.Put("/api/scene", [this](const httplib::Request& req, httplib::Response& res,
                                      const httplib::ContentReader& reader) {
        std::string body;
        if (!ReadBody(reader, res, body)) return;
        if (!req.params.empty()) return SendError(res, 400, "unknown parameter '" + req.params.begin()->first + "'");
        std::vector<SceneError> errors;
        if (!m_session.ReplaceScene(body, errors)) return SendJson(res, 400, ErrorsJson(errors));
        SendSceneJson(res);
    });

    // A state point at the clicked pixel: {x, y, w, h, name?}.
    m_server.Post("/api/points", [this](const httplib::Request&, httplib::Response& res,
                                        const httplib::ContentReader& reader) {
        std::string body;
        if (!ReadBody(reader, res, body)) return;
        JsonBody b(body, {"x", "y", "w", "h", "name"});
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

    // A CSV table of states to draw as a data set: {name, csv}, the file's name and its text.
    m_server.Post("/api/data", [this](const httplib::Request&, httplib::Response& res,
                                      const httplib::ContentReader& reader) {
        std::string body;
        if (!ReadBody(reader, res, body)) return;
        JsonBody b(body, {"name", "csv"});
        std::string name = b.String("name", kMaxNameBytes);
        std::string csv = b.String("csv", kMaxBodyBytes);
        if (!b.Ok()) return SendError(res, 400, b.Error());
        if (name.empty()) name = "data.csv";
        std::string note, error;
        if (!m_session.ImportData(name, std::move(csv), note, error)) return SendError(res, 400, error);
        const Json scene = Json::parse(m_session.SceneJson().dump(-1, ' ', false, Json::error_handler_t::replace));
        SendJson(res, 200, Json{{"scene", scene}, {"note", note}});
    });

    // Writes the scene back to the file the viewer was started with.
    m_server.Post("/api/save", [this](const httplib::Request&, httplib::Response& res,
                                      const httplib::ContentReader& reader) {
        std::string body;
        if (!ReadBody(reader, res, body)) return;
        JsonBody b(body, {});
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

    // What the page builds its settings form and its state readout from.
    m_server.Get("/api/schema", [](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {});
        if (!q.Ok()) return SendError(res, 400, q.Error());
        SendJson(res, 200, Json{{"settings", SettingsSchema::Form()}, {"state", StateProperties::ViewerRows()}});
    });

    m_server.Get("/api/info", [this](const httplib::Request& req, httplib::Response& res) {
        QueryParams q(req.params, {});
        if (!q.Ok()) return SendError(res, 400, q.Error());
        const std::string path = m_session.Path();
        SendJson(res, 200, Json{{"file", path.empty() ? Json(nullptr) : Json(path)}, {"maxSide", kMaxImageSide},
                                {"lang", HostLanguage::Code(HostLanguage::Messages())}});
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
