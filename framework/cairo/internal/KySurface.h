// KySurface: the pixels (or vector drawing) behind a bitmap or an off-screen window. Shared
// by reference count between the bitmap or window that made it and the DCs drawing on it, so
// deleting a bitmap that is still selected never leaves a DC with freed memory.
#pragma once

#include <kygraph/WinTypes.h>

#include "KyVectorItem.h"

#include <cairo.h>

#include <atomic>
#include <vector>

struct KySurface {
    enum Kind { Raster, Vector };

    Kind kind = Raster;
    int width = 0;
    int height = 0;
    // Null for an empty (0-pixel) surface. Raster: an ARGB32 image surface; vector: a
    // recording surface bounded to width x height.
    cairo_surface_t* cs = nullptr;
    std::atomic<int> refs{1};
    // Raster surfaces: cs may be shared with other surfaces after a whole-surface block
    // transfer (see SharePixels); only a hint, the owner count on cs decides.
    std::atomic<bool> mayShare{false};
    // Raster surfaces: every pixel is still owed the colour `fill`. The fill is written only
    // when the pixels are first read or drawn on, so a surface whose first drawing covers it,
    // or that takes another's pixels, never pays for a pass over its memory.
    mutable std::atomic<bool> unfilled{false};
    COLORREF fill = 0;
    // Raster surfaces: the image's memory is new, not yet mapped in by the system (not a
    // recycled image); read and changed only with `unfilled` set, under the sharing lock.
    mutable bool newMemory = false;
    // Vector surfaces: what was drawn, in order, for the SVG writer.
    std::vector<KyVectorItem> items;
    // Vector surfaces: pen widths and dashes are drawn this many times wider, so that a chart
    // drawn at several pixels per printed point keeps the weight of its lines on paper.
    double penScale = 1.0;
};

namespace Ky {

// Cairo's image surfaces refuse larger sides; vector surfaces share the limit so that both
// kinds accept the same sizes.
constexpr int kMaxSurfaceSide = 32767;

// A surface of that kind and size filled with colour (one reference, owned by the caller).
// A 0-pixel side gives a valid empty surface; null for a negative size, a side above
// kMaxSurfaceSide, or when cairo cannot allocate it.
KySurface* CreateSurface(KySurface::Kind kind, int cx, int cy, COLORREF fill);
KySurface* RefSurface(KySurface* s);
void ReleaseSurface(KySurface* s);

// A block transfer of one whole raster surface onto another of its size lends dst the pixels
// of src instead of copying them: at 4K the copy alone costs more than drawing the chart. The
// copy happens only if either surface is drawn on while they share (OwnPixels). False (dst
// unchanged) unless both are raster images of one size.
bool SharePixels(KySurface* dst, KySurface* src);
// Gives s pixels of its own before it is drawn on: a copy of the shared ones (or the fill it
// owes), or, when the drawing covers every pixel (keep false), memory of that size as it
// comes. False when there is no memory for them; s then keeps the shared pixels, which must
// not be drawn on.
bool OwnPixels(KySurface* s, bool keep);

// The image of a raster surface with every pixel as it reads, the fill it still owes made
// first; null when it has none.
cairo_surface_t* ImageOf(const KySurface* s);

// The colour at (x, y) of a raster surface; 0xFFFFFFFF outside it or for other kinds.
COLORREF SurfacePixel(const KySurface* s, int x, int y);

void SetSourceColor(cairo_t* cr, COLORREF color);

}  // namespace Ky
