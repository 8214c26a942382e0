// One-pixel lines written straight into ARGB32 pixels. Cairo 1.16 strokes a thin
// anti-aliased line at about 50 ns per pixel and the chart draws mostly such lines, so raster
// targets take this path: GDI's Bresenham pixels when aliased, two-pixel coverage (Wu's
// line) when anti-aliased. Both leave the last pixel out, so polyline joints are painted
// once, and count dash patterns along the major axis as GDI does.
#pragma once

#include <kygraph/WinTypes.h>

#include <cstdint>

namespace Ky {

struct PixelBuffer {
    unsigned char* data;  // premultiplied ARGB32, as cairo's image surfaces hold it
    int stride;
    int width;
    int height;
};

// Sets the pixels of rc (clipped to the buffer) to the opaque colour, as an aliased fill of
// that rectangle would.
void PixelFill(const PixelBuffer& buf, const RECT& rc, COLORREF color);

void PixelLine(const PixelBuffer& buf, POINT a, POINT b, COLORREF color, bool antialias, const int* dashes,
               int dashCount, std::int64_t& styleIndex);

}  // namespace Ky
