// KyPngWriter: encodes a raster surface as PNG, tuned for charts: ISA-L's deflate at its fast
// level over unfiltered rows (charts are mostly flat colour with thin lines, and deflate finds
// the runs in the pixels themselves; no filter made files smaller). Cairo's own writer tries
// every filter on every row with zlib's default level, which made encoding cost several times
// the drawing; ISA-L writes the default chart in a fifth of libdeflate's fastest time, at a
// size within a tenth of Cairo's. An
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

    // ISA-L's deflate level: 1 compresses as well as 2 here, and 3 takes five times as long.
    static constexpr int kLevel = 1;
};
