// Comparing a rendered PNG with a reviewed one. Text may move by a pixel between font
// versions while geometry may not change: a pixel matches when a pixel of the other image
// within one pixel of it is within a channel tolerance in every channel.
#pragma once

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace imagetest {

// An opaque image as 0x00RRGGBB pixels (cairo's premultiplication is moot without alpha).
struct Pixels {
    int w = 0, h = 0;
    std::vector<std::uint32_t> rgb;
    std::uint32_t At(int x, int y) const { return rgb[static_cast<size_t>(y) * w + x]; }
};

// The image of a PNG file; 0 x 0 when it cannot be read.
inline Pixels LoadPng(const std::string& path)
{
    Pixels p;
    cairo_surface_t* png = cairo_image_surface_create_from_png(path.c_str());
    if (cairo_surface_status(png) == CAIRO_STATUS_SUCCESS) {
        p.w = cairo_image_surface_get_width(png);
        p.h = cairo_image_surface_get_height(png);
        const unsigned char* data = cairo_image_surface_get_data(png);
        for (int y = 0; y < p.h; ++y) {
            const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * cairo_image_surface_get_stride(png));
            for (int x = 0; x < p.w; ++x) p.rgb.push_back(row[x] & 0xFFFFFFu);
        }
    }
    cairo_surface_destroy(png);
    return p;
}

// Where two images of one size differ: how many pixels lack a match, and the box holding them.
struct Difference {
    int unmatched = 0;
    int left = 0, top = 0, right = -1, bottom = -1;
};

// Counted both ways, so that a line gone counts as much as a line come.
inline Difference Compare(const Pixels& a, const Pixels& b, int channelTolerance)
{
    const auto matched = [channelTolerance](const Pixels& p, const Pixels& q, int x, int y) {
        const int offsets[] = {0, -1, 1};  // the same pixel first
        for (int dy : offsets)
            for (int dx : offsets) {
                const int qx = x + dx, qy = y + dy;
                if (qx < 0 || qy < 0 || qx >= q.w || qy >= q.h) continue;
                int d = 0;
                for (int shift = 0; shift < 24; shift += 8)
                    d = std::max(d, std::abs(int(p.At(x, y) >> shift & 0xFF) - int(q.At(qx, qy) >> shift & 0xFF)));
                if (d <= channelTolerance) return true;
            }
        return false;
    };
    Difference diff;
    diff.left = a.w;
    diff.top = a.h;
    for (int y = 0; y < a.h; ++y)
        for (int x = 0; x < a.w; ++x)
            if (!matched(a, b, x, y) || !matched(b, a, x, y)) {
                ++diff.unmatched;
                diff.left = std::min(diff.left, x);
                diff.top = std::min(diff.top, y);
                diff.right = std::max(diff.right, x);
                diff.bottom = std::max(diff.bottom, y);
            }
    return diff;
}

}  // namespace imagetest
