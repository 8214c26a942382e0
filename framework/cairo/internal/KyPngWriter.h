// KyPngWriter: encodes a raster surface as PNG, tuned for charts: libdeflate at a fast level
// over unfiltered rows (charts are mostly flat colour with thin lines, and deflate finds the
// runs in the pixels themselves; unfiltered rows came out both smaller and faster than any
// filter). Cairo's own writer tries every filter on every row with zlib's default level, which
// made encoding cost several times the drawing; this writes files of about its size. An
// opaque surface is written as RGB, one with any transparency as RGBA with the
// premultiplication undone.
#pragma once

#include <cairo.h>

#include <string>

class KyPngWriter {
public:
    // The image surface cs as PNG bytes appended to out; false (out unchanged) for a surface
    // that is not an ARGB32/RGB24 image, is empty or in error, or when deflate fails.
    static bool Encode(cairo_surface_t* cs, std::string& out);

    // The deflate level, chosen for speed at a size close to the default's.
    static constexpr int kLevel = 2;
};
