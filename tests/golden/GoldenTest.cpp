// The default chart (1000 x 800, default settings) against a reviewed image, so that an
// unintended change to any element shows. Text may move by a pixel between font versions: a
// pixel matches when a pixel of the other image within one pixel of it is within
// kChannelTolerance in every channel, and a handful of unmatched pixels is allowed.
// Regenerating after an intended change is described in README.md beside this file.
#include "support/ImageCompare.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr int kChannelTolerance = 64;
constexpr int kAllowedUnmatched = 16;

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

    const imagetest::Pixels actual = imagetest::LoadPng(rendered), expected = imagetest::LoadPng(golden);
    ASSERT_EQ(expected.w, 1000) << "no golden image at " << golden;
    ASSERT_EQ(actual.w, expected.w);
    ASSERT_EQ(actual.h, expected.h);
    const imagetest::Difference diff = imagetest::Compare(actual, expected, kChannelTolerance);
    EXPECT_LE(diff.unmatched, kAllowedUnmatched) << "pixels differ from " << golden << " within (" << diff.left << ", "
                                                 << diff.top << ")-(" << diff.right << ", " << diff.bottom
                                                 << "); rendered: " << rendered;
}
