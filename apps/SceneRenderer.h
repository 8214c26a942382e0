// SceneRenderer: draws an applied scene (the chart, then its overlays) and encodes the
// drawing as PNG, SVG or PDF. `kygraph render` and the viewer both draw through here, so a
// file written by either is the same drawing.
#pragma once

#include "Scene.h"

#include <kygraph/ImageWnd.h>

#include <string>
#include <vector>

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
    static Outcome Draw(SceneApplier& applier, CImageWnd& drawWnd, CImageWnd& showWnd,
                        std::vector<SceneError>& errors);

    // The drawing at w x h as the bytes of kind. The chart is detached afterwards; bytes is
    // left empty unless the outcome is Done.
    static Outcome Encode(SceneApplier& applier, int w, int h, CImageWnd::SurfaceKind kind, bool antialias,
                          std::string& bytes, std::vector<SceneError>& errors);

private:
    // Cairo writes text as glyph outlines; a <title> gives the document the chart's title as
    // text that viewers, search and screen readers can use.
    static void AddSvgTitle(std::string& svg);
};
