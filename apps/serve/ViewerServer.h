// ViewerServer: the viewer's HTTP side: the embedded page and the JSON API, on cpp-httplib.
// Requests are validated here (400 with {"error": ...} for anything wrong) and handed to the
// ChartSession, which alone touches the chart library.
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

private:
    void Route();
    // Refuses requests that a page of another site could have made through the browser:
    // a Host that is not this machine's (DNS rebinding) and bodies that are not JSON.
    bool Guard(const httplib::Request& req, httplib::Response& res) const;
    // 200 with the session's scene as JSON.
    void SendSceneJson(httplib::Response& res);

    httplib::Server m_server;
    ChartSession& m_session;
    int m_port = 0;
    bool m_loopback = true;  // bound to a loopback address: only loopback Host names pass
    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_inRun{false};
};

}  // namespace serve
