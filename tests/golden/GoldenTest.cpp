// The default chart (1000 x 800, default settings) against a reviewed image, so that an
// unintended change to any element shows. Text may move by a pixel between font versions: a
// pixel matches when a pixel of the other image within one pixel of it is within
// kChannelTolerance in every channel, and a handful of unmatched pixels is allowed.
// Regenerating after an intended change is described in README.md beside this file.
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/Rect.h>

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int kChannelTolerance = 64;
constexpr int kAllowedUnmatched = 16;

struct Pixels {
    int w = 0, h = 0;
    std::vector<std::uint32_t> rgb;  // 0x00RRGGBB
    std::uint32_t At(int x, int y) const { return rgb[static_cast<size_t>(y) * w + x]; }
};

// Both images are opaque, so the alpha byte (and cairo's premultiplication) can be ignored.
Pixels LoadPng(const std::string& path)
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

// Whether a's pixel at (x, y) has a counterpart in b at most one pixel away.
bool Matched(const Pixels& a, const Pixels& b, int x, int y)
{
    const int offsets[] = {0, -1, 1};  // the same pixel first
    for (int dy : offsets)
        for (int dx : offsets) {
            const int bx = x + dx, by = y + dy;
            if (bx < 0 || by < 0 || bx >= b.w || by >= b.h) continue;
            int d = 0;
            for (int shift = 0; shift < 24; shift += 8)
                d = std::max(d, std::abs(int(a.At(x, y) >> shift & 0xFF) - int(b.At(bx, by) >> shift & 0xFF)));
            if (d <= kChannelTolerance) return true;
        }
    return false;
}

}  // namespace

TEST(Golden, DefaultChartMatchesTheReviewedImage)
{
    const std::string golden = std::string(KY_SOURCE_DIR) + "/tests/golden/default_1000x800.png";
    const std::filesystem::path out = std::filesystem::path(KY_BINARY_DIR) / "golden";
    std::filesystem::create_directories(out);
    const std::string rendered = (out / "default_1000x800.png").string();

    CImageWnd wnd(1000, 800);
    CKyGChart::GetKyGChart()->AttachDarwWnd(&wnd);
    ASSERT_NE(CKyGChart::GetKyGChart()->UptateDrawWnd(1), 0);
    CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    ASSERT_EQ(wnd.SavePng(rendered.c_str()), 1);
    if (const char* update = std::getenv("KY_UPDATE_GOLDEN"); update && std::string(update) == "1") {
        std::filesystem::copy_file(rendered, golden, std::filesystem::copy_options::overwrite_existing);
        GTEST_SKIP() << "rewrote " << golden;
    }

    const Pixels actual = LoadPng(rendered), expected = LoadPng(golden);
    ASSERT_EQ(expected.w, 1000) << "no golden image at " << golden;
    ASSERT_EQ(actual.w, expected.w);
    ASSERT_EQ(actual.h, expected.h);
    // Both ways, so a line gone from the chart counts as much as a line come into it.
    int unmatched = 0;
    CRect box(actual.w, actual.h, -1, -1);
    for (int y = 0; y < actual.h; ++y)
        for (int x = 0; x < actual.w; ++x)
            if (!Matched(actual, expected, x, y) || !Matched(expected, actual, x, y)) {
                ++unmatched;
                box = CRect(std::min<int>(box.left, x), std::min<int>(box.top, y), std::max<int>(box.right, x),
                            std::max<int>(box.bottom, y));
            }
    EXPECT_LE(unmatched, kAllowedUnmatched) << "pixels differ from " << golden << " within (" << box.left << ", "
                                            << box.top << ")-(" << box.right << ", " << box.bottom
                                            << "); rendered: " << rendered;
}
