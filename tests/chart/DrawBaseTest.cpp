// The element base's drawing primitives, checked on a recording DC.
#include <kygraph/Bitmap.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGDrawBase.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

class Primitives : public ::testing::Test {
protected:
    void SetUp() override
    {
        wnd.EnableRecording(true);
        wndDC = wnd.GetDC();
        ASSERT_TRUE(dc.CreateCompatibleDC(wndDC));
        ASSERT_TRUE(bmp.CreateCompatibleBitmap(wndDC, 100, 100));
        dc.SelectObject(&bmp);
    }
    void TearDown() override { wnd.ReleaseDC(wndDC); }
    const CDrawRecord& Last() const { return dc.GetRecords().back(); }

    CImageWnd wnd{100, 100};
    CDC* wndDC = nullptr;
    CDC dc;
    CBitmap bmp;
};

using Pts = std::vector<CPoint>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

}  // namespace

TEST(DrawBase, NameRectanglesAndNullDevice)
{
    struct Element : CKyGDrawBase {
        int Draw(CDC*) override { return 1; }
    } e;
    EXPECT_EQ(e.toString(), L"CKyDrawBase");
    EXPECT_EQ(CKyGDrawBase::GetRect(CPoint(10, 10), 5, 5), CRect(8, 8, 12, 12));
    EXPECT_EQ(CKyGDrawBase::GetRect(CPoint(0, 0), -3, 3), CRect(1, -1, -1, 1));
    EXPECT_EQ(CKyGDrawBase::GetRect(CPoint(INT_MAX, 0), 4, 4), CRect(INT_MAX - 2, -2, INT_MAX, 2));

    CVoArray<CPoint> pts;
    pts.Add(CPoint(0, 0));
    pts.Add(CPoint(5, 5));
    RECT r{0, 0, 10, 10};
    EXPECT_EQ(CKyGDrawBase::DrawTextW(nullptr, CPoint(), 10, 0, 0, L"x"), 0);
    EXPECT_EQ(CKyGDrawBase::DrawLine(nullptr, CPoint(), CPoint(5, 5), PS_SOLID, 1, 0), 0);
    EXPECT_EQ(CKyGDrawBase::DrawArc(nullptr, &r, CPoint(), CPoint(), PS_SOLID, 1, 0), 0);
    EXPECT_EQ(CKyGDrawBase::DrawPolyLine(nullptr, pts, PS_SOLID, 1, 0), 0);
    EXPECT_EQ(CKyGDrawBase::DrawEllipse(nullptr, CPoint(), 5, 5, PS_SOLID, 1, 0, 1), 0);
}

TEST_F(Primitives, TextAngleIsTruncatedToWholeDegrees)
{
    const double cases[][2] = {{45.9, 450}, {-0.5, 0}, {12.7, 120}, {0.78, 0}, {2.36, 20}, {kNaN, 0}, {-725, -50},
                               {1e300, 1e300}, {-std::numeric_limits<double>::infinity(), 0}};
    dc.SetTextColor(RGB(1, 2, 3));
    for (const auto& c : cases) {
        EXPECT_NE(CKyGDrawBase::DrawTextW(&dc, CPoint(10, 20), 12.9, c[0], RGB(200, 0, 0), L"25"), 0);
        if (c[1] != 1e300) {
            EXPECT_EQ(Last().escapement, c[1]) << c[0];  // huge angles: any value, no overflow
        }
        EXPECT_EQ(Last().fontHeight, 12);
        EXPECT_EQ(Last().textColor, RGB(200, 0, 0));
        EXPECT_EQ(Last().pts, Pts{CPoint(10, 20)});
    }
    EXPECT_EQ(dc.GetTextColor(), RGB(1, 2, 3));  // restored
    EXPECT_EQ(CKyGDrawBase::GetTextExtent(&dc, 20, L"25").cy, 20);
}

TEST_F(Primitives, LinesPolylinesArcsAndEllipses)
{
    EXPECT_NE(CKyGDrawBase::DrawLine(&dc, CPoint(1, 2), CPoint(30, 40), PS_DASH, 2, RGB(0, 0, 255)), 0);
    EXPECT_EQ(Last().pts, (Pts{CPoint(1, 2), CPoint(30, 40)}));
    EXPECT_EQ(Last().penStyle, PS_DASH);
    EXPECT_EQ(Last().penWidth, 2);
    EXPECT_EQ(Last().penColor, RGB(0, 0, 255));
    dc.LineTo(5, 5);
    EXPECT_EQ(Last().penColor, RGB(0, 0, 0));  // the previous pen is back

    CVoArray<CPoint> pts;
    const size_t before = dc.GetRecords().size();
    EXPECT_EQ(CKyGDrawBase::DrawPolyLine(&dc, pts, PS_SOLID, 1, 0), 0);
    pts.Add(CPoint(3, 3));
    EXPECT_EQ(CKyGDrawBase::DrawPolyLine(&dc, pts, PS_SOLID, 1, 0), 0);
    EXPECT_EQ(dc.GetRecords().size(), before);
    pts.Add(CPoint(9, 4));
    EXPECT_NE(CKyGDrawBase::DrawPolyLine(&dc, pts, PS_SOLID, 1, 0), 0);
    EXPECT_EQ(Last().pts, (Pts{CPoint(3, 3), CPoint(9, 4)}));

    RECT bounds{10, 10, 50, 40};
    EXPECT_NE(CKyGDrawBase::DrawArc(&dc, &bounds, CPoint(50, 25), CPoint(10, 25), PS_SOLID, 1, 0), 0);
    EXPECT_EQ(Last().pts, (Pts{CPoint(10, 10), CPoint(50, 40), CPoint(50, 25), CPoint(10, 25)}));

    EXPECT_NE(CKyGDrawBase::DrawEllipse(&dc, CPoint(10, 10), 5.0, 5.0, PS_SOLID, 1, RGB(0, 255, 0), 1), 0);
    EXPECT_EQ(Last().pts, (Pts{CPoint(12, 12), CPoint(7, 7)}));
    EXPECT_EQ(Last().brushColor, RGB(0, 255, 0));
    EXPECT_NE(CKyGDrawBase::DrawEllipse(&dc, CPoint(10, 10), 5.0, 5.0, PS_SOLID, 1, RGB(0, 255, 0), 0), 0);
    EXPECT_EQ(Last().brushColor, RGB(255, 255, 255));  // whatever the DC holds: the white stock brush
    CKyGDrawBase::DrawEllipse(&dc, CPoint(), kNaN, 1e300, PS_SOLID, 1, 0, 1);
}
