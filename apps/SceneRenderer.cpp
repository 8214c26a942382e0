#include "SceneRenderer.h"

#include "SceneApplier.h"

#include <kygraph/KyGChart.h>
#include <kygraph/KyGraphModule.h>

SceneRenderer::Outcome SceneRenderer::Draw(SceneApplier& applier, CImageWnd& drawWnd, CImageWnd& showWnd,
                                           std::vector<SceneError>& errors)
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&drawWnd);
    if (!chart->UptateDrawWnd(1)) return ChartFailed;
    if (!applier.DrawOverlays(*chart, errors)) return OverlaysFailed;
    if (&showWnd != &drawWnd) chart->AttachDarwWnd(&showWnd);
    return chart->UptateDrawWnd(0) ? Done : ChartFailed;
}

SceneRenderer::Outcome SceneRenderer::Encode(SceneApplier& applier, int w, int h, CImageWnd::SurfaceKind kind,
                                             bool antialias, std::string& bytes, std::vector<SceneError>& errors)
{
    bytes.clear();
    CImageWnd drawWnd(w, h, RGB(255, 255, 255), kind);
    drawWnd.SetAntialias(antialias);
    Outcome outcome;
    if (kind == CImageWnd::Raster) {
        outcome = Draw(applier, drawWnd, drawWnd, errors);
        if (outcome == Done) bytes = drawWnd.Encode();
    } else {
        // A vector surface keeps every copy made into it, and the library's show step copies
        // the drawing onto the window it is attached to: drawing and showing in one vector
        // window would store the chart twice. So the drawing is shown once in a second window.
        CImageWnd showWnd(w, h, RGB(255, 255, 255), kind);
        outcome = Draw(applier, drawWnd, showWnd, errors);
        if (outcome == Done) bytes = showWnd.Encode();
        if (kind == CImageWnd::Svg && !bytes.empty()) AddSvgTitle(bytes);
    }
    // The windows end here; the chart must not keep pointing at either.
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    if (outcome == Done && bytes.empty()) outcome = EncodeFailed;
    if (outcome != Done) bytes.clear();
    return outcome;
}

void SceneRenderer::AddSvgTitle(std::string& svg)
{
    CString title;
    {
        CResourceModule::Scope scope(KyGraphModule());
        title.LoadString(IDS_CHART_TITLE);
    }
    const size_t open = svg.find("<svg");
    const size_t end = open == std::string::npos ? open : svg.find('>', open);
    if (end == std::string::npos || title.IsEmpty()) return;
    std::string text;
    for (char c : title.ToUtf8()) {
        if (c == '&') text += "&amp;";
        else if (c == '<') text += "&lt;";
        else text += c;
    }
    svg.insert(end + 1, "\n<title>" + text + "</title>");
}
