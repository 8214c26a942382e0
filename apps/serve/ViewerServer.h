// ViewerServer: the viewer's HTTP side: the embedded page and the JSON API, on cpp-httplib.
// Requests are validated here (400 with {"error": ...} for anything wrong) and handed to the
// ChartSession, which alone touches the chart library.
//
// The API (sizes w, h are the browser's image in pixels, 1..8192; x, y a pixel of it):
//   GET  /api/chart?w&h[&format=png|svg|pdf][&download=1]   the chart as an image
//   GET  /api/state?x&y&w&h        the state under a pixel, or the chart's message
//   GET  /api/geometry?w&h         plot corners and the design points' pixels
//   GET  /api/scene[?w&h][&download=1]   the scene file (sized when w, h are given)
//   PUT  /api/scene                replace the scene (checked as a scene file is)
//   POST /api/points {x,y,w,h[,name]}    a state point at a pixel
//   POST /api/save {}              write the scene back to its file, atomically
//   GET  /api/settings             the settings in effect, defaults included
//   GET  /api/info                 the scene file's path
// Answers are JSON; every refusal is {"error": message} with a 4xx status.
#pragma once

#include <httplib.h>

#include <atomic>
#include <string>

namespace serve {

class ChartSession;

class ViewerServer {
public:
    explicit ViewerServer(ChartSession& session);
    ~ViewerServer();
    ViewerServer(const ViewerServer&) = delete;
    ViewerServer& operator=(const ViewerServer&) = delete;

    // Binds host:port; port 0 picks a free port. false with a reason when it cannot.
    bool Bind(const std::string& host, int port, std::string& error);
    // The bound port (0 before Bind).
    int Port() const { return m_port; }
    // Serves on the calling thread until Stop. Call after a successful Bind.
    void Run();
    // Ends Run; callable from any thread, also before Run started.
    void Stop();

    // Answers one raw HTTP request in process, as a connection from this machine would be
    // answered (guard, routes, error handlers), and returns the raw response. Needs no Bind:
    // tests and fuzzing reach the handlers this way without a socket.
    std::string HandleRaw(const std::string& request);

private:
    // httplib's server with its processing of one request, which is protected, open to us.
    class HttpServer : public httplib::Server {
    public:
        std::string Exchange(const std::string& request);
    };

    void Route();
    // Refuses requests that a page of another site could have made through the browser:
    // a Host that is not this machine's (DNS rebinding) and bodies that are not JSON.
    bool Guard(const httplib::Request& req, httplib::Response& res) const;
    // 200 with the session's scene as JSON.
    void SendSceneJson(httplib::Response& res);

    HttpServer m_server;
    ChartSession& m_session;
    int m_port = 0;
    bool m_loopback = true;  // bound to a loopback address: only loopback Host names pass
    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_inRun{false};
};

}  // namespace serve
