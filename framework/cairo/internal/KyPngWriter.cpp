#include "KyPngWriter.h"

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

bool Opaque(const unsigned char* data, int stride, int w, int h)
{
    for (int y = 0; y < h; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
        for (int x = 0; x < w; ++x)
            if ((row[x] >> 24) != 0xFF) return false;
    }
    return true;
}

// One row of native-endian premultiplied ARGB as RGB or straight RGBA bytes.
void ConvertRow(const std::uint32_t* in, int w, bool alpha, unsigned char* out)
{
    if (!alpha) {
        // The common case, on its own so that it stays a plain byte copy.
        for (int x = 0; x < w; ++x, out += 3) {
            const std::uint32_t p = in[x];
            out[0] = static_cast<unsigned char>(p >> 16);
            out[1] = static_cast<unsigned char>(p >> 8);
            out[2] = static_cast<unsigned char>(p);
        }
        return;
    }
    for (int x = 0; x < w; ++x) {
        const std::uint32_t p = in[x];
        const unsigned a = alpha ? p >> 24 : 0xFF;
        unsigned r = (p >> 16) & 0xFF, g = (p >> 8) & 0xFF, b = p & 0xFF;
        if (a != 0xFF) {
            auto un = [a](unsigned v) { return a == 0 ? 0u : (v * 255 + a / 2) / a; };
            r = un(r), g = un(g), b = un(b);
        }
        *out++ = static_cast<unsigned char>(r);
        *out++ = static_cast<unsigned char>(g);
        *out++ = static_cast<unsigned char>(b);
        if (alpha) *out++ = static_cast<unsigned char>(a);
    }
}

void PutBigEndian(std::string& out, std::uint32_t v)
{
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>((v >> shift) & 0xFF);
}

// One chunk: length, type, data, and the CRC of type and data.
void PutChunk(std::string& out, const char* type, const unsigned char* data, std::size_t length)
{
    PutBigEndian(out, static_cast<std::uint32_t>(length));
    const std::size_t at = out.size();
    out.append(type, 4);
    if (length) out.append(reinterpret_cast<const char*>(data), length);
    PutBigEndian(out, crc32_gzip_refl(0, reinterpret_cast<const unsigned char*>(out.data() + at), length + 4));
}

// The rows, each after its filter byte (0: none), as one zlib stream, as a PNG's image data
// is. They are converted a band at a time, so that the unpacked image never sits in memory
// whole: fresh memory is much of the cost of a one-off render.
bool DeflateRows(const unsigned char* data, int stride, int w, int h, bool alpha, std::vector<unsigned char>& out)
{
    static_assert(KyPngWriter::kLevel == 1, "the level's work buffer is sized for level 1");
    const std::size_t rowBytes = static_cast<std::size_t>(w) * (alpha ? 4 : 3) + 1;
    const int band = static_cast<int>(std::clamp<std::size_t>((512 * 1024) / rowBytes, 1, static_cast<std::size_t>(h)));
    std::vector<unsigned char> rows(rowBytes * static_cast<std::size_t>(band));
    std::vector<unsigned char> work(ISAL_DEF_LVL1_DEFAULT);
    isal_zstream z;
    isal_deflate_init(&z);
    z.level = KyPngWriter::kLevel;
    z.level_buf = work.data();
    z.level_buf_size = static_cast<std::uint32_t>(work.size());
    z.gzip_flag = IGZIP_ZLIB;
    z.flush = NO_FLUSH;
    // A chart packs to a tenth or less; noise asks for more as it goes.
    out.resize(rowBytes * static_cast<std::size_t>(h) / 8 + 4096);
    z.next_out = out.data();
    z.avail_out = static_cast<std::uint32_t>(out.size());
    for (int y0 = 0; y0 < h; y0 += band) {
        const int n = std::min(band, h - y0);
        for (int i = 0; i < n; ++i) {
            unsigned char* row = rows.data() + rowBytes * static_cast<std::size_t>(i);
            row[0] = 0;
            ConvertRow(reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y0 + i) * stride), w, alpha,
                       row + 1);
        }
        z.next_in = rows.data();
        z.avail_in = static_cast<std::uint32_t>(rowBytes * static_cast<std::size_t>(n));
        z.end_of_stream = y0 + n == h ? 1 : 0;
        for (;;) {
            if (z.avail_out == 0) {
                out.resize(out.size() * 2);
                z.next_out = out.data() + z.total_out;
                z.avail_out = static_cast<std::uint32_t>(out.size() - z.total_out);
            }
            if (isal_deflate(&z) != COMP_OK) return false;
            const bool done = z.end_of_stream ? z.internal_state.state == ZSTATE_END : z.avail_in == 0;
            if (done) break;
            if (z.avail_out != 0) return false;  // stopped with room to write: it would not go on
        }
    }
    out.resize(z.total_out);
    return true;
}

}  // namespace

bool KyPngWriter::Encode(cairo_surface_t* cs, std::string& out)
{
    if (!cs || cairo_surface_status(cs) != CAIRO_STATUS_SUCCESS || cairo_surface_get_type(cs) != CAIRO_SURFACE_TYPE_IMAGE)
        return false;
    const cairo_format_t format = cairo_image_surface_get_format(cs);
    if (format != CAIRO_FORMAT_ARGB32 && format != CAIRO_FORMAT_RGB24) return false;
    cairo_surface_flush(cs);
    const unsigned char* data = cairo_image_surface_get_data(cs);
    const int w = cairo_image_surface_get_width(cs), h = cairo_image_surface_get_height(cs);
    const int stride = cairo_image_surface_get_stride(cs);
    if (!data || w <= 0 || h <= 0) return false;
    const bool alpha = format == CAIRO_FORMAT_ARGB32 && !Opaque(data, stride, w, h);
    std::vector<unsigned char> idat;
    if (!DeflateRows(data, stride, w, h, alpha, idat)) return false;
    const std::size_t packed = idat.size();

    unsigned char header[13];
    const std::uint32_t fields[2] = {static_cast<std::uint32_t>(w), static_cast<std::uint32_t>(h)};
    for (int i = 0; i < 8; ++i) header[i] = static_cast<unsigned char>(fields[i / 4] >> (24 - 8 * (i % 4)));
    header[8] = 8;                // bits per channel
    header[9] = alpha ? 6 : 2;    // RGBA or RGB
    header[10] = header[11] = header[12] = 0;  // deflate, adaptive filtering, no interlace
    std::string bytes("\x89PNG\r\n\x1a\n", 8);
    PutChunk(bytes, "IHDR", header, sizeof header);
    PutChunk(bytes, "IDAT", idat.data(), packed);
    PutChunk(bytes, "IEND", nullptr, 0);
    out += bytes;
    return true;
}
