#include "SceneRenderer.h"

#include "BackgroundLayer.h"
#include "HostLayout.h"
#include "PaperSize.h"
#include "SceneApplier.h"

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>

SceneRenderer::Outcome SceneRenderer::Draw(SceneApplier& applier, CImageWnd& drawWnd, CImageWnd& showWnd,
                                           std::vector<SceneError>& errors, BackgroundLayer* kept, const std::string& key)
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    BackgroundLayer once;  // keeps nothing: its key is empty
    BackgroundLayer& background = kept ? *kept : once;
    const std::string& backgroundKey = kept ? key : std::string();
    const bool host = applier.HostLabels();
    // The host places its labels and the title block by what the chart drew: it records.
    drawWnd.EnableRecording(host);
    chart->AttachDarwWnd(&drawWnd);
    HostLayout layout;
    // The background, then what lies under the overlays (zones, data, extra line families)
    // and the legend, which finds its free space on that drawing: the labels and the block
    // keep clear of their texts (the block moves off a legend drawn over it).
    auto showUnder = [&](bool withTitle, HostLayout* read) {
        if (!background.Show(*chart, drawWnd, backgroundKey, withTitle, read)) return false;
        if (!read) return true;
        const size_t mark = chart->GetChartDC() ? chart->GetChartDC()->GetRecords().size() : 0;
        applier.DrawUnder(*chart);
        RECT legend{};
        applier.DrawLegend(*chart, &legend);
        read->ReadMore(*chart, mark);
        if (legend.right > legend.left && legend.bottom > legend.top) read->AddCovered(legend);
        return true;
    };
    if (!showUnder(true, host ? &layout : nullptr)) return ChartFailed;
    if (host) {
        applier.CollectLabels(*chart, layout);
        if (layout.Place(chart->GetChartDC())) {
            // The block would cover something: the chart draws without it, the layout draws it.
            HostLayout titleless;
            if (!showUnder(false, &titleless)) return ChartFailed;
            layout.MoveTitle(chart->GetChartDC(), titleless);
        }
    }
    const bool overlays = applier.DrawOverlays(*chart, errors, host);
    if (host) chart->Draw(&layout);
    drawWnd.EnableRecording(false);
    if (!overlays) return OverlaysFailed;
    if (&showWnd != &drawWnd) chart->AttachDarwWnd(&showWnd);
    return chart->UptateDrawWnd(0) ? Done : ChartFailed;
}

SceneRenderer::Outcome SceneRenderer::Encode(SceneApplier& applier, int w, int h, CImageWnd::SurfaceKind kind,
                                             bool antialias, std::string& bytes, std::vector<SceneError>& errors,
                                             const PaperSize* paper)
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
        if (paper) {
            drawWnd.SetPaper(paper->WidthMm(), paper->HeightMm(), PaperSize::kMarginMm);
            showWnd.SetPaper(paper->WidthMm(), paper->HeightMm(), PaperSize::kMarginMm);
        }
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
