// CKyGBackground: the background chart a full redraw draws, as one table walked in drawing
// order. The frame, the two rulers and the protractor come first; then each line family is a
// row of {switch, stepping, element, style}: constant d, relative humidity, dry bulb and
// enthalpy for the redraw, then wet bulb and specific volume, which hosts draw apart as
// overlays. The reference-point markers go over it. The chart only calls the walks; what is
// drawn, at which values and in which style is decided here.
#pragma once

#include <kygraph/KyExport.h>

class CKyGChart;
class CKyGChartSetting;
class CKyStaPnt;
struct tagKyLineStyle;

class KYGRAPH_API CKyGBackground {
public:
    // The line families, in drawing order (the order of the table's rows).
    enum Family : int { SameD, SameRH, SameT, SameH, SameTwb, SameV, FamilyCount };

    // The style family draws in, from the settings singleton as it is now.
    static const tagKyLineStyle& Style(Family family);

    // Frame, rulers, protractor and the families SameD to SameH, each when its switch in set
    // is on, drawn through chart; results ignored, an element that fails loses only itself.
    static void DrawBase(CKyGChart& chart, const CKyGChartSetting& set);
    // The families SameTwb and SameV when their overlay switches in the settings singleton are
    // on; the number of lines handed to chart.
    static int DrawOverlay(CKyGChart& chart);
    // A reference-point marker at point, labelled right or left of its dot.
    static void DrawReferencePoint(CKyGChart& chart, const CKyStaPnt& point, bool labelRight);
};
