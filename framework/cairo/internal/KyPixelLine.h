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

// A pen's colour as lines write it: opaque ARGB, and its mixes over white paper, where most of
// a line's pixels fall and a mix depends on the coverage alone. One serves a whole polyline;
// the mixes are kept per thread for the last few colours, each worked out on first use.
class LineInk {
public:
    explicit LineInk(COLORREF color);
    std::uint32_t Argb() const { return m_argb; }
    // The colour over white with coverage cov of 256 (1..255).
    std::uint32_t OverWhite(unsigned cov);

private:
    std::uint32_t m_argb;
    std::uint32_t* m_mix;  // 0 marks a mix not yet worked out: every mix is opaque
};

void PixelLine(const PixelBuffer& buf, POINT a, POINT b, LineInk& ink, bool antialias, const int* dashes, int dashCount,
               std::int64_t& styleIndex);

}  // namespace Ky
