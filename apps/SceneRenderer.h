// SceneRenderer: draws an applied scene (the chart, then its overlays) and encodes the
// drawing as PNG, SVG or PDF. `kygraph render` and the viewer both draw through here, so a
// file written by either is the same drawing.
#pragma once

#include "Scene.h"

#include <kygraph/ImageWnd.h>

#include <string>
#include <vector>

class BackgroundLayer;
class PaperSize;
class SceneApplier;

class SceneRenderer {
public:
    enum Outcome {
        Done,            // drawn, shown and (for Encode) encoded
        ChartFailed,     // the chart itself could not be drawn or shown at this size
        OverlaysFailed,  // the chart was drawn, but errors name overlays that were not
        EncodeFailed,    // drawn, but the surface could not be encoded
    };

    // Draws the chart and the overlays of applier's last applied scene into drawWnd and shows
    // the result in showWnd, which may be drawWnd itself. The chart stays attached to showWnd.
    // With kept, the chart's background comes from there when it was kept for key (see
    // BackgroundLayer::KeyOf), and is kept there for it otherwise.
    static Outcome Draw(SceneApplier& applier, CImageWnd& drawWnd, CImageWnd& showWnd,
                        std::vector<SceneError>& errors, BackgroundLayer* kept = nullptr,
                        const std::string& key = std::string());

    // The drawing at w x h as the bytes of kind; SVG and PDF on a page of paper when one is
    // given. The chart is detached afterwards; bytes is left empty unless the outcome is Done.
    static Outcome Encode(SceneApplier& applier, int w, int h, CImageWnd::SurfaceKind kind, bool antialias,
                          std::string& bytes, std::vector<SceneError>& errors, const PaperSize* paper = nullptr);

private:
    // A <title> gives the document the chart's title for browsers' tabs and screen readers.
    static void AddSvgTitle(std::string& svg);
};
