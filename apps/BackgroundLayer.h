// BackgroundLayer: the chart without the host's overlays, kept between drawings by the viewer.
// A change that touches only state points, processes or ratio lines redraws from it: the kept
// background is copied onto the chart's surface and only the overlays are drawn over it.
// It is keyed on the whole scene but its overlays, and on the size, so that any setting that
// shapes the background (range, styles, switches, pressure, antialiasing, ...) draws afresh.
// Two backgrounds are kept: with the chart's title block and without it, for when the host
// moves the block (see HostLayout), each with what the host read of its drawing.
#pragma once

#include "HostLayout.h"
#include "Scene.h"

#include <kygraph/Bitmap.h>
#include <kygraph/DC.h>

#include <string>

class CKyGChart;
class CWnd;

class BackgroundLayer {
public:
    // What the background of scene drawn at w x h depends on.
    static std::string KeyOf(const Scene& scene, int w, int h);

    // Puts the chart's background, with its title block or without, on the surface of wnd,
    // the window the chart is attached to: drawn afresh, or copied from the one kept for key. An
    // empty key draws and keeps nothing. When read is given, it gets the host's reading of the
    // drawing (the chart must then record). False when the chart could not be drawn.
    bool Show(CKyGChart& chart, CWnd& wnd, const std::string& key, bool withTitle, HostLayout* read);
    // Drops the kept backgrounds: the next Show draws the whole chart.
    void Forget();

private:
    struct Kept {
        CDC dc;
        CBitmap bmp;
        HostLayout read;
        bool valid = false;
    };
    std::string m_key;  // what both kept backgrounds were drawn for
    Kept m_kept[2];     // [0] without the title block, [1] with it
};
