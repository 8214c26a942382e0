#include "BackgroundLayer.h"

#include "SceneWriter.h"

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/Wnd.h>

namespace {

// Whether dc draws on a surface of exactly w x h: the pixel at its far corner exists and the
// ones just beyond it do not (GetPixel answers 0xFFFFFFFF outside the surface).
bool SurfaceIs(CDC& dc, int w, int h)
{
    constexpr COLORREF kInvalid = 0xFFFFFFFF;
    return dc.GetPixel(w - 1, h - 1) != kInvalid && dc.GetPixel(w, h - 1) == kInvalid && dc.GetPixel(w - 1, h) == kInvalid;
}

}  // namespace

std::string BackgroundLayer::KeyOf(const Scene& scene, int w, int h)
{
    Scene background = scene;
    background.points.clear();
    background.processes.clear();
    background.ratioLines.clear();
    return SceneWriter::ToJson(background).dump() + "@" + std::to_string(w) + "x" + std::to_string(h);
}

void BackgroundLayer::Forget()
{
    m_key.clear();
    for (Kept& k : m_kept) {
        k.valid = false;
        k.dc.DeleteDC();
        k.bmp.DeleteObject();
        k.read = HostLayout();
    }
}

bool BackgroundLayer::Show(CKyGChart& chart, CWnd& wnd, const std::string& key, bool withTitle, HostLayout* read)
{
    CDC* surface = chart.GetChartDC();
    if (!surface) return chart.UptateDrawWnd(1) != 0;  // not attached: the chart says why
    RECT rc{};
    wnd.GetClientRect(&rc);
    // The chart's surface may have been redrawn at another size since (another session, or a
    // drawing that failed): then only a whole redraw will do.
    if (key != m_key || !SurfaceIs(*surface, rc.right, rc.bottom)) Forget();
    Kept& kept = m_kept[withTitle ? 1 : 0];
    if (!key.empty() && kept.valid) {
        if (read) *read = kept.read;
        return surface->BitBlt(0, 0, rc.right, rc.bottom, &kept.dc, 0, 0, SRCCOPY) != 0;
    }

    CKyGDrawHstSetting& hst = CKyGChartSetting::GetKyGChartSetting()->m_DrawHstSetting;
    const int title = hst.m_bShowTitle;
    if (!withTitle) hst.m_bShowTitle = 0;
    const bool drawn = chart.UptateDrawWnd(1) != 0;
    hst.m_bShowTitle = title;
    if (!drawn) return false;
    if (read) read->ReadChart(chart);
    if (key.empty()) return true;
    m_key = key;
    if (kept.dc.CreateCompatibleDC(surface) && kept.bmp.CreateCompatibleBitmap(surface, rc.right, rc.bottom)) {
        kept.dc.SelectObject(&kept.bmp);
        if (kept.dc.BitBlt(0, 0, rc.right, rc.bottom, surface, 0, 0, SRCCOPY)) {
            if (read) kept.read = *read;
            kept.valid = true;
        }
    }
    return true;
}
