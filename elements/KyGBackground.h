// CKyGBackground: the background chart a full redraw draws, as one table walked in drawing
// order. The frame, the two rulers and the protractor come first; then each line family is a
// row of {switch, stepping, element, style}: constant d, relative humidity, dry bulb and
// enthalpy for the redraw, then wet bulb and specific volume, which hosts draw apart as
// overlays. The reference-point markers go over it. The chart only calls the walks; what is
// drawn, at which values and in which style is decided here, and the legend reads the same rows.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/WinTypes.h>

#include <vector>

class CKyGChart;
class CKyGChartSetting;
class CKyGSameLine;
class CKyStaPnt;
struct tagKyLineStyle;

class KYGRAPH_API CKyGBackground {
public:
    // The style of family's row, from the settings singleton as it is now; a line class of a
    // host's own that is no family's gets a default style.
    static const tagKyLineStyle& Style(const CKyGSameLine& family);

    // Frame, rulers, protractor and the redraw's families, each when its switch in set is on,
    // drawn through chart; results ignored, an element that fails loses only itself.
    static void DrawBase(CKyGChart& chart, const CKyGChartSetting& set);
    // The overlay families whose switches in the settings singleton are on; the number of
    // lines handed to chart.
    static int DrawOverlay(CKyGChart& chart);
    // A reference-point marker at point, labelled right or left of its dot.
    static void DrawReferencePoint(CKyGChart& chart, const CKyStaPnt& point, bool labelRight);

    // The families switched on in the settings singleton, in the legend's order (isotherms,
    // constant d, constant h, relative humidity, then the overlays): name entry and style.
    struct Shown {
        UINT text;
        const tagKyLineStyle* style;
    };
    static std::vector<Shown> ShownFamilies();
};
