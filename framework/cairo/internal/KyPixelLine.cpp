#include "KyPixelLine.h"

#include "KyGdiGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <vector>

namespace Ky {

namespace {

// sRGB to linear light and back, as tables. Anti-aliased one-pixel lines share their ink
// between two pixels; mixed in linear light, the ink a column of the line shows is the same
// whether it falls on one pixel or is split over two, so the line keeps an even weight along
// its length instead of looking heavier wherever it is split.
struct GammaTables {
    float toLinear[256];
    std::uint8_t toSrgb[4096];
    GammaTables()
    {
        for (int i = 0; i < 256; ++i) {
            const double c = i / 255.0;
            toLinear[i] = static_cast<float>(c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
        }
        for (int i = 0; i < 4096; ++i) {
            const double l = i / 4095.0;
            const double c = l <= 0.0031308 ? l * 12.92 : 1.055 * std::pow(l, 1.0 / 2.4) - 0.055;
            toSrgb[i] = static_cast<std::uint8_t>(std::lround(std::clamp(c, 0.0, 1.0) * 255.0));
        }
    }
};

const GammaTables& Gamma()
{
    static const GammaTables tables;
    return tables;
}

// The colour mixed in linear light over an opaque pixel d with coverage 1..255 of 256.
std::uint32_t MixOpaque(std::uint32_t argb, std::uint32_t d, unsigned cov)
{
    const GammaTables& g = Gamma();
    const float a = static_cast<float>(cov) / 256.0f;
    std::uint32_t out = 0xFF000000u;
    for (int shift = 0; shift < 24; shift += 8) {
        const float l = g.toLinear[(argb >> shift) & 0xFF] * a + g.toLinear[(d >> shift) & 0xFF] * (1.0f - a);
        out |= static_cast<std::uint32_t>(g.toSrgb[static_cast<int>(l * 4095.0f + 0.5f)]) << shift;
    }
    return out;
}

// The mixes over white of the last few colours drawn on this thread (several charts may draw
// at once).
struct WhiteMixes {
    struct Entry {
        std::uint32_t argb = 0;  // never a pen's colour, which is opaque
        std::uint32_t mix[256];
    };
    Entry entries[4];
    unsigned next = 0;
};

// Blends colour over one pixel with coverage 0..256, in linear light where the pixel is opaque.
inline void Blend(const PixelBuffer& buf, std::int64_t x, std::int64_t y, LineInk& ink, unsigned cov)
{
    const std::uint32_t argb = ink.Argb();
    if (x < 0 || y < 0 || x >= buf.width || y >= buf.height || cov == 0) return;
    auto* p = reinterpret_cast<std::uint32_t*>(buf.data + y * buf.stride) + x;
    if (cov >= 256) {
        *p = argb;
        return;
    }
    const std::uint32_t d = *p;
    if (d == 0xFFFFFFFFu) {
        *p = ink.OverWhite(cov);
        return;
    }
    if ((d >> 24) != 0xFF) {
        // A translucent pixel (a fresh bitmap): mix the premultiplied values directly.
        const unsigned inv = 256 - cov;
        std::uint32_t out = 0;
        for (int shift = 0; shift < 32; shift += 8) {
            const unsigned s = (argb >> shift) & 0xFF, t = (d >> shift) & 0xFF;
            out |= static_cast<std::uint32_t>((s * cov + t * inv) >> 8) << shift;
        }
        *p = out;
        return;
    }
    *p = MixOpaque(argb, d, cov);
}

}  // namespace

namespace {
std::uint32_t OpaqueArgb(COLORREF color)
{
    return 0xFF000000u | (static_cast<std::uint32_t>(GetRValue(color)) << 16) | (GetGValue(color) << 8) | GetBValue(color);
}
}  // namespace

LineInk::LineInk(COLORREF color) : m_argb(OpaqueArgb(color))
{
    static thread_local WhiteMixes cache;
    for (WhiteMixes::Entry& e : cache.entries)
        if (e.argb == m_argb) {
            m_mix = e.mix;
            return;
        }
    WhiteMixes::Entry& e = cache.entries[cache.next++ % std::size(cache.entries)];
    e.argb = m_argb;
    std::fill(std::begin(e.mix), std::end(e.mix), 0u);
    m_mix = e.mix;
}

std::uint32_t LineInk::OverWhite(unsigned cov)
{
    std::uint32_t& m = m_mix[cov];
    if (m == 0) m = MixOpaque(m_argb, 0xFFFFFFFFu, cov);
    return m;
}

void PixelFill(const PixelBuffer& buf, const RECT& rc, COLORREF color)
{
    const std::int64_t left = std::max<std::int64_t>(rc.left, 0), right = std::min<std::int64_t>(rc.right, buf.width);
    const std::int64_t top = std::max<std::int64_t>(rc.top, 0), bottom = std::min<std::int64_t>(rc.bottom, buf.height);
    if (left >= right || top >= bottom) return;
    const std::uint32_t argb = OpaqueArgb(color);
    const std::size_t rowBytes = static_cast<std::size_t>(right - left) * 4;
    // White, black and greys repeat one byte: memset, which streams large fills past the cache.
    const bool oneByte = (argb & 0xFF) * 0x01010101u == argb;
    if (oneByte && left == 0 && right == buf.width && static_cast<std::size_t>(buf.stride) == rowBytes) {
        std::memset(buf.data + top * buf.stride, static_cast<int>(argb & 0xFF), rowBytes * static_cast<std::size_t>(bottom - top));
        return;
    }
    for (std::int64_t y = top; y < bottom; ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(buf.data + y * buf.stride) + left;
        if (oneByte) std::memset(row, static_cast<int>(argb & 0xFF), rowBytes);
        else std::fill_n(row, right - left, argb);
    }
}

void PixelLine(const PixelBuffer& buf, POINT a, POINT b, LineInk& ink, bool antialias, const int* dashes, int dashCount,
               std::int64_t& styleIndex)
{
    const std::uint32_t argb = ink.Argb();
    if (!antialias) {
        std::vector<RECT> runs;
        CosmeticLineRuns(a, b, buf.width, buf.height, dashes, dashCount, styleIndex, runs);
        for (const RECT& r : runs)
            for (LONG y = r.top; y < r.bottom; ++y)
                std::fill_n(reinterpret_cast<std::uint32_t*>(buf.data + static_cast<std::int64_t>(y) * buf.stride) + r.left,
                            r.right - r.left, argb);
        return;
    }

    const std::int64_t dx = static_cast<std::int64_t>(b.x) - a.x, dy = static_cast<std::int64_t>(b.y) - a.y;
    const bool xMajor = (dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy);
    const std::int64_t steps = xMajor ? (dx < 0 ? -dx : dx) : (dy < 0 ? -dy : dy);
    const std::int64_t baseIndex = styleIndex;
    styleIndex += steps;
    if (steps == 0) return;
    const std::int64_t major0 = xMajor ? a.x : a.y, minor0 = xMajor ? a.y : a.x;
    const int majorStep = (xMajor ? dx : dy) < 0 ? -1 : 1;
    const double slope = static_cast<double>(xMajor ? dy : dx) / static_cast<double>(steps);
    const std::int64_t majorLimit = xMajor ? buf.width : buf.height;

    // Visit only the steps whose major coordinate is on the surface.
    std::int64_t lo = majorStep > 0 ? -major0 : major0 - (majorLimit - 1);
    std::int64_t hi = majorStep > 0 ? majorLimit - 1 - major0 : major0;
    lo = std::max<std::int64_t>(lo, 0);
    hi = std::min<std::int64_t>(hi, steps - 1);

    std::int64_t period = 0;
    for (int k = 0; k < dashCount; ++k) period += dashes[k];
    for (std::int64_t i = lo; i <= hi; ++i) {
        if (period > 0) {
            std::int64_t p = (baseIndex + i) % period;
            int k = 0;
            while (k < dashCount && p >= dashes[k]) p -= dashes[k++];
            if (k % 2) continue;
        }
        // The line's minor coordinate at this pixel's centre, split between the two nearest
        // pixel rows (columns) by distance.
        const double m = static_cast<double>(minor0) + slope * static_cast<double>(i);
        const double f = std::floor(m);
        const std::int64_t row = static_cast<std::int64_t>(f);
        // Rounded half away from zero, as lround would, without its call: the share is not negative.
        const double share = (m - f) * 256.0;
        const double whole = static_cast<double>(static_cast<std::int64_t>(share));
        const unsigned cov2 = static_cast<unsigned>(whole) + (share - whole >= 0.5 ? 1u : 0u);
        const std::int64_t major = major0 + majorStep * i;
        if (xMajor) {
            Blend(buf, major, row, ink, 256 - cov2);
            Blend(buf, major, row + 1, ink, cov2);
        } else {
            Blend(buf, row, major, ink, 256 - cov2);
            Blend(buf, row + 1, major, ink, cov2);
        }
    }
}

}  // namespace Ky
