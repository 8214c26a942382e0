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
//
// The viewer is a local server that web pages in the same browser can reach, so it answers
// only requests addressed to it by name and port (exactly one Host, one of 127.0.0.1,
// localhost, [::1] or the name it was told to listen on, with its port), refuses an Origin
// or fetch site other than its own page, and bounds what a request may cost: its bytes and
// the time it takes to arrive, the connections open at once, the pixels of an image.
#pragma once

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace serve {

class ChartSession;

class ViewerServer {
public:
    explicit ViewerServer(ChartSession& session);
    ~ViewerServer();
    ViewerServer(const ViewerServer&) = delete;
    ViewerServer& operator=(const ViewerServer&) = delete;

    // Binds host:port; port 0 picks a free port. A host that is not a loopback address needs
    // allowRemote. A port another program (another viewer) listens on is refused, never
    // shared. false with a one-line reason when it cannot.
    bool Bind(const std::string& host, int port, std::string& error, bool allowRemote = false);
    // The bound port (0 before Bind).
    int Port() const { return m_port; }
    // Serves on the calling thread until Stop, each connection on a thread of its own, at
    // most kMaxConnections at once. Call after a successful Bind.
    void Run();
    // Ends Run and every connection; callable from any thread, also before Run started.
    void Stop();

    // Connections served at once; one more is answered 503 and closed.
    static constexpr int kMaxConnections = 32;

    // Answers one raw HTTP request in process, as a connection from this machine would be
    // answered (guard, routes, error handlers), and returns the raw response. Needs no Bind:
    // tests and fuzzing reach the handlers this way without a socket.
    std::string HandleRaw(const std::string& request);

private:
    // httplib's server with its processing of one request, which is protected, open to us.
    class HttpServer : public httplib::Server {
    public:
        std::string Exchange(const std::string& request);
        bool Process(httplib::Stream& stream, bool last, bool& closed);
    };

    // Serves the requests of one accepted connection, then closes it.
    void ServeConnection(int fd);

    void Route();
    // Refuses requests that a page of another site could have made through the browser (a Host
    // that is not ours, as after DNS rebinding; an Origin or fetch site not ours; bodies that
    // are not JSON) and requests whose framing is ambiguous (two Hosts, two lengths, a length
    // that is no number).
    bool Guard(const httplib::Request& req, httplib::Response& res) const;
    // 200 with the session's scene as JSON.
    void SendSceneJson(httplib::Response& res);

    HttpServer m_server;
    ChartSession& m_session;
    int m_port = 0;
    int m_listenFd = -1;
    int m_wake[2] = {-1, -1};            // Stop writes here to end Run's wait
    std::vector<std::string> m_hosts;    // the Host values answered, port included
    std::atomic<bool> m_stopRequested{false};
    std::mutex m_connectionsMutex;
    std::condition_variable m_connectionsDone;
    std::set<int> m_connections;         // open connections, shut down by Stop
};

}  // namespace serve
