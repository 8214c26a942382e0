// The default chart (1000 x 800, default settings) against a reviewed image, so that an
// unintended change to any element shows. Text may move by a pixel between font versions, so
// a pixel matches when some pixel of the other image within one pixel of it differs by at
// most kChannelTolerance in every channel; a handful of unmatched pixels is allowed.
//
// To regenerate after an intended change, review the new picture, then run
//     KY_UPDATE_GOLDEN=1 build/bin/test_golden
// which writes tests/golden/default_1000x800.png in the source tree. On a failure the
// rendered image and a difference map (unmatched pixels in red) are left in
// <build>/golden/ for review.
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr int kChannelTolerance = 64;
constexpr int kAllowedUnmatched = 16;

const std::string kGolden = std::string(KY_SOURCE_DIR) + "/tests/golden/default_1000x800.png";
const std::filesystem::path kOutDir = std::filesystem::path(KY_BINARY_DIR) / "golden";

struct SurfaceDeleter {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

Surface LoadPng(const std::string& path)
{
    Surface s(cairo_image_surface_create_from_png(path.c_str()));
    if (cairo_surface_status(s.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    // Compare in one pixel format whatever the file held.
    Surface rgb(cairo_image_surface_create(CAIRO_FORMAT_RGB24, cairo_image_surface_get_width(s.get()),
                                           cairo_image_surface_get_height(s.get())));
    cairo_t* cr = cairo_create(rgb.get());
    cairo_set_source_surface(cr, s.get(), 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
    cairo_surface_flush(rgb.get());
    return rgb;
}

class Image {
public:
    explicit Image(cairo_surface_t* s)
        : w(cairo_image_surface_get_width(s)), h(cairo_image_surface_get_height(s)),
          m_stride(cairo_image_surface_get_stride(s)), m_data(cairo_image_surface_get_data(s))
    {
    }
    std::uint32_t At(int x, int y) const
    {
        return reinterpret_cast<const std::uint32_t*>(m_data + static_cast<std::ptrdiff_t>(y) * m_stride)[x];
    }
    const int w, h;

private:
    int m_stride;
    const unsigned char* m_data;
};

int ChannelDistance(std::uint32_t a, std::uint32_t b)
{
    int d = 0;
    for (int shift = 0; shift < 24; shift += 8)
        d = std::max(d, std::abs(static_cast<int>((a >> shift) & 0xFF) - static_cast<int>((b >> shift) & 0xFF)));
    return d;
}

// Whether a's pixel at (x, y) has a counterpart in b within one pixel.
bool Matched(const Image& a, const Image& b, int x, int y)
{
    if (ChannelDistance(a.At(x, y), b.At(x, y)) <= kChannelTolerance) return true;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const int bx = x + dx, by = y + dy;
            if (bx >= 0 && by >= 0 && bx < b.w && by < b.h &&
                ChannelDistance(a.At(x, y), b.At(bx, by)) <= kChannelTolerance)
                return true;
        }
    return false;
}

}  // namespace

TEST(Golden, DefaultChartMatchesTheReviewedImage)
{
    CImageWnd wnd(1000, 800);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    ASSERT_NE(chart->UptateDrawWnd(1), 0);
    std::filesystem::create_directories(kOutDir);
    const std::string actualPath = (kOutDir / "default_1000x800.png").string();
    ASSERT_EQ(wnd.SavePng(actualPath.c_str()), 1);
    chart->AttachDarwWnd(nullptr);

    const char* update = std::getenv("KY_UPDATE_GOLDEN");
    if (update && std::string(update) == "1") {
        std::filesystem::copy_file(actualPath, kGolden, std::filesystem::copy_options::overwrite_existing);
        GTEST_SKIP() << "golden image rewritten: " << kGolden;
    }

    const Surface actualSurface = LoadPng(actualPath), goldenSurface = LoadPng(kGolden);
    ASSERT_TRUE(actualSurface);
    ASSERT_TRUE(goldenSurface) << "no golden image at " << kGolden << " (KY_UPDATE_GOLDEN=1 writes it)";
    const Image actual(actualSurface.get()), golden(goldenSurface.get());
    ASSERT_EQ(actual.w, golden.w);
    ASSERT_EQ(actual.h, golden.h);

    // Both ways: a line gone from the chart and a line come into it are both changes.
    Surface diff(cairo_image_surface_create(CAIRO_FORMAT_RGB24, actual.w, actual.h));
    auto* diffData = cairo_image_surface_get_data(diff.get());
    const int diffStride = cairo_image_surface_get_stride(diff.get());
    int unmatched = 0;
    for (int y = 0; y < actual.h; ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(diffData + static_cast<std::ptrdiff_t>(y) * diffStride);
        for (int x = 0; x < actual.w; ++x) {
            const bool bad = !Matched(actual, golden, x, y) || !Matched(golden, actual, x, y);
            unmatched += bad;
            // Unmatched pixels red over a faded copy of the golden image.
            row[x] = bad ? 0xFF0000u : (golden.At(x, y) >> 2 & 0x3F3F3Fu) + 0xC0C0C0u;
        }
    }
    cairo_surface_mark_dirty(diff.get());
    if (unmatched > kAllowedUnmatched) {
        const std::string diffPath = (kOutDir / "default_1000x800.diff.png").string();
        cairo_surface_write_to_png(diff.get(), diffPath.c_str());
        ADD_FAILURE() << unmatched << " pixels differ from " << kGolden << "; rendered: " << actualPath
                      << ", differences in red: " << diffPath;
    }
}
