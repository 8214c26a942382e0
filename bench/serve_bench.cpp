// The viewer's chart work without HTTP: a hover (scene applied, chart fitted, one pixel
// converted), a full redraw to PNG, and the same with a scene of 50 points, so that the
// per-request cost of re-applying the scene shows. Then the same hover and redraw as whole
// round trips: real requests on loopback to a ViewerServer serving on its own thread.
#include "ChartSession.h"
#include "SceneWriter.h"
#include "ViewerServer.h"

#include <benchmark/benchmark.h>
#include <httplib.h>

#include <memory>
#include <string>
#include <thread>

namespace {

// The pixel of the i-th hover: spread over the plot of a 1000 x 800 chart.
int HoverX(int i) { return 90 + (i * 37) % 820; }
int HoverY(int i) { return 110 + (i * 53) % 620; }

Scene SceneWithPoints(int n)
{
    Scene s;
    for (int i = 0; i < n; ++i) {
        ScenePoint p;
        p.state.name = "P" + std::to_string(i + 1);
        p.state.input.Set(StateInput::Tdb, 15.0 + i % 20);
        p.state.input.Set(StateInput::RH, 30.0 + i % 50);
        s.points.push_back(p);
    }
    return s;
}

void BM_ServeHover(benchmark::State& state)
{
    serve::ChartSession session;
    std::vector<SceneError> errors;
    session.Open(SceneWithPoints(static_cast<int>(state.range(0))), "", errors);
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(session.StateAt(HoverX(i), HoverY(i), 1000, 800));
        ++i;
    }
}
BENCHMARK(BM_ServeHover)->Arg(0)->Arg(50)->Unit(benchmark::kMicrosecond);

void BM_ServeRedrawPng(benchmark::State& state)
{
    serve::ChartSession session;
    std::vector<SceneError> errors;
    session.Open(SceneWithPoints(static_cast<int>(state.range(0))), "", errors);
    for (auto _ : state) benchmark::DoNotOptimize(session.Render(1000, 800, serve::ImageKind::Png));
}
BENCHMARK(BM_ServeRedrawPng)->Arg(0)->Arg(50)->Unit(benchmark::kMillisecond);

// What the viewer does when the user moves a point: the scene replaced by one that differs
// only in an overlay, then the chart drawn again as PNG.
void BM_ServeOverlayChange(benchmark::State& state)
{
    serve::ChartSession session;
    std::vector<SceneError> errors;
    session.Open(SceneWithPoints(3), "", errors);
    std::string texts[2];
    for (int k = 0; k < 2; ++k) {
        Scene s = SceneWithPoints(3);
        s.points[0].state.input.Set(StateInput::Tdb, 20.0 + k);
        texts[k] = SceneWriter::Write(s);
    }
    session.Render(1000, 800, serve::ImageKind::Png);
    int i = 0;
    for (auto _ : state) {
        if (!session.ReplaceScene(texts[i++ & 1], errors) || session.Render(1000, 800, serve::ImageKind::Png).empty()) {
            state.SkipWithError("the changed scene could not be drawn");
            break;
        }
    }
}
BENCHMARK(BM_ServeOverlayChange)->Unit(benchmark::kMillisecond);

// The viewer serving the default scene on a loopback port the system picks, and one client
// that keeps its connection open, as a browser does.
class LoopbackViewer {
public:
    LoopbackViewer()
    {
        std::vector<SceneError> errors;
        std::string error;
        if (!m_session.Open(Scene{}, "", errors) || !m_server.Bind("127.0.0.1", 0, error)) return;
        m_worker = std::thread([this] { m_server.Run(); });
        m_client = std::make_unique<httplib::Client>("127.0.0.1", m_server.Port());
        m_client->set_keep_alive(true);
        m_client->set_tcp_nodelay(true);
        m_client->set_read_timeout(30, 0);
    }
    ~LoopbackViewer()
    {
        m_client.reset();  // closes the kept-alive connection, so the server's worker is free to stop
        m_server.Stop();
        if (m_worker.joinable()) m_worker.join();
    }
    bool Serving() const { return m_client != nullptr; }
    // True when the answer to GET path is a 200 with a body.
    bool Get(const std::string& path)
    {
        const httplib::Result res = m_client->Get(path.c_str());
        return res && res->status == 200 && !res->body.empty();
    }

private:
    serve::ChartSession m_session;
    serve::ViewerServer m_server{m_session};
    std::thread m_worker;
    std::unique_ptr<httplib::Client> m_client;
};

void BM_ViewerHttp(benchmark::State& state, std::string (*path)(int))
{
    LoopbackViewer viewer;
    if (!viewer.Serving()) {
        state.SkipWithError("the viewer could not listen on 127.0.0.1");
        return;
    }
    int i = 0;
    for (auto _ : state) {
        if (!viewer.Get(path(i++))) {
            state.SkipWithError("a request was not answered with 200");
            break;
        }
    }
}

std::string HoverPath(int i)
{
    return "/api/state?x=" + std::to_string(HoverX(i)) + "&y=" + std::to_string(HoverY(i)) + "&w=1000&h=800";
}

std::string RedrawPath(int) { return "/api/chart?w=1000&h=800"; }

// The work happens on the server's threads: wall-clock time is the round trip.
BENCHMARK_CAPTURE(BM_ViewerHttp, hover, HoverPath)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_ViewerHttp, redraw_png, RedrawPath)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
