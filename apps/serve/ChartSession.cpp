#include "ChartSession.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyStaPnt.h>

namespace serve {

namespace {

// A window that is only a client size: enough for the chart to fit itself for a mapping,
// without the raster surface a drawing window would allocate.
class SizeOnlyWnd : public CWnd {
public:
    SizeOnlyWnd(int w, int h) : m_w(w), m_h(h) { RegisterHandle(); }
    void GetClientRect(LPRECT rect) const override
    {
        if (rect) *rect = RECT{0, 0, m_w, m_h};
    }

private:
    int m_w;
    int m_h;
};

// Images above this many pixels are not kept between requests (a 8192 x 8192 raster is
// 256 MiB); the browser's own size stays cached.
constexpr long long kKeepPixels = 4096LL * 4096LL;

nlohmann::json PointJson(const CPoint& pt) { return nlohmann::json{{"x", pt.x}, {"y", pt.y}}; }

nlohmann::json StateJson(const CKyStaPnt& p)
{
    return nlohmann::json{{"tdb", p.GetTdb()}, {"twb", p.GetTwb()}, {"tdp", p.GetTdp()}, {"rh", p.GetRH()},
                          {"d", p.GetD()},     {"h", p.GetH()},     {"pv", p.GetPv()},   {"rho", p.GetRho()}};
}

}  // namespace

std::mutex& ChartMutex()
{
    static std::mutex mutex;
    return mutex;
}

ChartSession::ChartSession() = default;

ChartSession::~ChartSession()
{
    std::lock_guard<std::mutex> lock(ChartMutex());
    // The chart must not keep pointing at a window of ours.
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    m_raster.reset();
}

void ChartSession::Prepare(int w, int h)
{
    (void)w;
    (void)h;
}

bool ChartSession::RedrawRaster(int w, int h)
{
    RECT rc{};
    if (m_raster) m_raster->GetClientRect(&rc);
    if (!m_raster || rc.right != w || rc.bottom != h) {
        m_raster.reset();
        m_raster = std::make_unique<CImageWnd>(w, h);
    }
    if (!CWnd::IsWindowPtr(m_raster.get())) return false;
    Prepare(w, h);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(m_raster.get());
    chart->UptateDrawWnd(1);
    return true;
}

std::string ChartSession::Render(int w, int h, ImageKind kind)
{
    std::lock_guard<std::mutex> lock(ChartMutex());
    CKyGChart* chart = CKyGChart::GetKyGChart();
    std::string bytes;
    if (kind == ImageKind::Png) {
        if (RedrawRaster(w, h)) bytes = m_raster->Encode();
        if (static_cast<long long>(w) * h > kKeepPixels) m_raster.reset();
    } else {
        CImageWnd wnd(w, h, RGB(255, 255, 255), kind == ImageKind::Svg ? CImageWnd::Svg : CImageWnd::Pdf);
        Prepare(w, h);
        chart->AttachDarwWnd(&wnd);
        chart->UptateDrawWnd(1);
        bytes = wnd.Encode();
    }
    chart->AttachDarwWnd(nullptr);
    return bytes;
}

nlohmann::json ChartSession::StateAt(int x, int y, int w, int h)
{
    std::lock_guard<std::mutex> lock(ChartMutex());
    CKyGChart* chart = CKyGChart::GetKyGChart();
    SizeOnlyWnd wnd(w, h);
    Prepare(w, h);
    chart->AttachDarwWnd(&wnd);
    CKyStaPnt pnt;
    const bool inside = chart->Convert(CPoint(x, y), pnt) != 0;
    chart->AttachDarwWnd(nullptr);
    if (!inside) return nlohmann::json{{"inside", false}, {"message", chart->GetLastErrorString().ToUtf8()}};
    nlohmann::json j = StateJson(pnt);
    j["inside"] = true;
    return j;
}

nlohmann::json ChartSession::Geometry(int w, int h)
{
    std::lock_guard<std::mutex> lock(ChartMutex());
    CKyGChart* chart = CKyGChart::GetKyGChart();
    nlohmann::json j;
    if (!RedrawRaster(w, h)) return j;
    const CPoint topLeft = chart->GetChartOrigin();
    const CPoint bottomLeft = chart->GetMinTAndMinDPnt();
    const CPoint topRight = chart->GetMaxTAndMaxDPnt();
    j["plot"] = {{"left", topLeft.x}, {"top", topLeft.y}, {"right", topRight.x}, {"bottom", bottomLeft.y}};
    const auto place = [chart](const CKyStaPnt& p) {
        CPoint pt;
        if (!p.IsValid() || !chart->Convert(p, pt)) return nlohmann::json(nullptr);
        nlohmann::json s = StateJson(p);
        s["pixel"] = PointJson(pt);
        s["name"] = p.GetName().ToUtf8();
        return s;
    };
    j["indoor"] = place(chart->GetStaPntN());
    j["outdoor"] = place(chart->GetStaPntW());
    chart->AttachDarwWnd(nullptr);
    if (static_cast<long long>(w) * h > kKeepPixels) m_raster.reset();
    return j;
}

}  // namespace serve
