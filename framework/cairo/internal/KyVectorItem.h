// KyVectorItem: one primitive of a vector surface's display list, kept as drawn (resolved pen,
// brush and font, geometry in the surface's pixels) so that a document writer can turn it
// into elements people can read: lines per pen, texts as text.
#pragma once

#include "KyDCBackend.h"

#include <string>
#include <vector>

struct KyVectorItem {
    enum Kind { Polyline, Arc, Ellipse, FillRect, Polygon, Text, GroupBegin, GroupEnd };  // groups: utf8 names them

    Kind kind = Polyline;
    std::vector<POINT> pts;  // Polyline: the points as CDC gave them
    KyEllipseArc arc;        // Arc, Ellipse
    RECT rect{};             // FillRect (normalised)
    KyPen pen;
    KyBrush brush;           // Ellipse; FillRect's and Polygon's colour is brush.color
    double alpha = 1.0;      // Polygon: opacity of its fill, 0..1 (pts: its corners)
    // Text: the run, with its font resolved.
    std::string utf8;
    int x = 0, y = 0, escapement = 0;
    COLORREF textColor = 0, bkColor = 0;
    bool opaque = false;
    std::string family;
    int weight = 400;
    bool italic = false;
    double em = 0, cell = 0, ascent = 0, width = 0;
};
