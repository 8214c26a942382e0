// What the tests of the kygraph program share: running the built binary, scratch files, and
// comparing a rendered PNG with a reviewed one.
#pragma once

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace clitest {

inline const std::string kBinary = std::string(KY_BINARY_DIR) + "/bin/kygraph";
inline const std::string kExamples = std::string(KY_SOURCE_DIR) + "/examples/scenes";

// A folder of its own under the build tree for one test, emptied first.
inline std::filesystem::path ScratchDir(const std::string& name)
{
    const std::filesystem::path dir = std::filesystem::path(KY_BINARY_DIR) / "cli-test" / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

inline std::string ReadText(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void WriteText(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

struct Run {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string Quote(const std::string& s)
{
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// Runs kygraph with args in dir and collects its exit status and both streams.
inline Run RunKygraph(const std::vector<std::string>& args, const std::filesystem::path& dir)
{
    // Under the leak sanitizer the program would end its stderr with a table of suppressions.
    std::string cmd = "cd " + Quote(dir.string()) + " && LSAN_OPTIONS=\"$LSAN_OPTIONS:print_suppressions=0\" " +
                      Quote(kBinary);
    for (const std::string& a : args) cmd += " " + Quote(a);
    cmd += " >.stdout 2>.stderr";
    Run r;
    const int raw = std::system(cmd.c_str());
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.out = ReadText(dir / ".stdout");
    r.err = ReadText(dir / ".stderr");
    std::filesystem::remove(dir / ".stdout");
    std::filesystem::remove(dir / ".stderr");
    return r;
}

// An opaque image as 0x00RRGGBB pixels (cairo's premultiplication is moot without alpha).
struct Pixels {
    int w = 0, h = 0;
    std::vector<std::uint32_t> rgb;
    std::uint32_t At(int x, int y) const { return rgb[static_cast<size_t>(y) * w + x]; }
};

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

// Pixels of a with no pixel of b within one pixel of them that is within channelTolerance
// in every channel, counted both ways so that a line gone counts as much as a line come.
// Text may move by a pixel between font versions; geometry may not change.
inline int UnmatchedPixels(const Pixels& a, const Pixels& b, int channelTolerance)
{
    auto matched = [&](const Pixels& p, const Pixels& q, int x, int y) {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx) {
                const int qx = x + dx, qy = y + dy;
                if (qx < 0 || qy < 0 || qx >= q.w || qy >= q.h) continue;
                int d = 0;
                for (int shift = 0; shift < 24; shift += 8)
                    d = std::max(d, std::abs(int(p.At(x, y) >> shift & 0xFF) - int(q.At(qx, qy) >> shift & 0xFF)));
                if (d <= channelTolerance) return true;
            }
        return false;
    };
    int n = 0;
    for (int y = 0; y < a.h; ++y)
        for (int x = 0; x < a.w; ++x) n += matched(a, b, x, y) && matched(b, a, x, y) ? 0 : 1;
    return n;
}

}  // namespace clitest
