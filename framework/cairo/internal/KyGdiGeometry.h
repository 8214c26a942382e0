// GDI's geometry in plain numbers, shared by CDC and the backends: how a rectangle and two
// radial points become an elliptical arc, which pixels a one-pixel cosmetic line paints, and
// the clipping that keeps far-away coordinates out of Cairo's 24.8 fixed point.
#pragma once

#include "KyDCBackend.h"

#include <kygraph/WinTypes.h>

#include <cstdint>
#include <vector>

namespace Ky {

struct PointD {
    double x, y;
};
struct RectD {
    double left, top, right, bottom;
};

// Cairo keeps coordinates in 24.8 fixed point (about +-8.4e6); geometry handed over stays
// within half of that.
constexpr double kSafeCoord = 4.0e6;

inline bool IsSafe(double v) { return v >= -kSafeCoord && v <= kSafeCoord; }

// The ellipse inscribed in rect (any corner order) as the outline GDI draws: through the
// centres of the rectangle's first and last pixel columns and rows. False for an empty
// rectangle. start and sweep describe the whole ellipse counter-clockwise.
bool EllipseFromRect(const RECT& rect, KyEllipseArc& out);

// GDI's Arc: the part of the ellipse inscribed in rect from the radial through start to the
// radial through end, counter-clockwise (clockwise when asked) as seen on screen. Radials
// with the same direction give the whole ellipse; a radial point at the centre counts as
// angle 0. False for an empty rectangle.
bool ArcFromRadials(const RECT& rect, POINT start, POINT end, bool clockwise, KyEllipseArc& out);

// The dash pattern of a one-pixel cosmetic pen, in pixels along the line's major axis; null
// (and count 0) for solid.
const int* CosmeticDashes(int style, int& count);

// The pixels a one-pixel cosmetic line from a to b paints, as GDI's Bresenham line does
// without its last pixel, clipped to [0, width) x [0, height) and appended to out as
// rectangles (runs of pixels). styleIndex counts pixels along the pen's dash pattern and is
// carried over to the next segment of a polyline.
void CosmeticLineRuns(POINT a, POINT b, int width, int height, const int* dashes, int dashCount,
                      std::int64_t& styleIndex, std::vector<RECT>& out);

// Liang-Barsky: clips segment a-b to r. False when nothing remains; otherwise a and b are
// moved onto the visible part and t0/t1 (when given) tell where along the original segment.
bool ClipSegment(PointD& a, PointD& b, const RectD& r, double* t0 = nullptr, double* t1 = nullptr);

// Sutherland-Hodgman: clips a closed polygon to r in place.
void ClipPolygon(std::vector<PointD>& poly, const RectD& r);

// Points along the arc, close enough together that the chords stay within a tenth of a
// pixel of the curve (bounded in number for any radius).
void FlattenArc(const KyEllipseArc& arc, std::vector<PointD>& out);

// Whether the arc's bounding box lies within the safe coordinate range.
bool ArcIsSafe(const KyEllipseArc& arc);

// Where a surface of cx x cy lies against an ellipse: wholly inside it or wholly outside it,
// at least margin pixels from its outline either way, or near the outline. A huge ellipse
// need not be flattened unless it is near.
enum class EllipseSide { Inside, Outside, Near };
EllipseSide SurfaceAgainstEllipse(const KyEllipseArc& e, double cx, double cy, double margin);

// Whether a stroke with round ends and joins, of that width, through the points (pixel
// centres, offset by centre) paints the whole of a cx x cy surface: one of its points lies
// within half the width of all four corners.
bool StrokeCoversSurface(const POINT* pts, int n, double width, double centre, double cx, double cy);

}  // namespace Ky
