// CDrawRecord: one primitive as a recording DC saw it, with its exact integer arguments and
// the GDI state it was drawn in. Geometry tests read these instead of pixels.
#pragma once

#include <kygraph/Point.h>
#include <kygraph/String.h>
#include <kygraph/WinTypes.h>

#include <vector>

struct KYFW_API CDrawRecord {
    enum Kind { Line, Polyline, Arc, Ellipse, Text, FillRect, BitBlt, FillPolygon };

    Kind kind = Line;
    // Line: from, to. Polyline: the points. Arc: bounding-rectangle corners (left, top),
    // (right, bottom), then start and end radial points. Ellipse: the two corners as given.
    // Text: the reference point. FillRect: (left, top), (right, bottom). BitBlt: destination
    // (x, y), size (w, h) as a point, source (x, y). FillPolygon: the points, with brushColor
    // the fill and alpha its opacity.
    std::vector<CPoint> pts;
    CString text;          // Text only
    int fontHeight = 0;    // Text: the selected font's lfHeight
    int escapement = 0;    // Text: tenths of a degree
    int penStyle = PS_SOLID;
    int penWidth = 1;
    COLORREF penColor = 0;
    bool brushNull = false;
    COLORREF brushColor = 0;
    COLORREF textColor = 0;
    COLORREF bkColor = 0;
    int bkMode = OPAQUE;
    int alpha = 255;       // FillPolygon: opacity, 0..255
};
