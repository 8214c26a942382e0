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
        ASSERT_NE(wndDC, nullptr);
        ASSERT_TRUE(dc.CreateCompatibleDC(wndDC));
        ASSERT_TRUE(bmp.CreateCompatibleBitmap(wndDC, 100, 100));
        dc.SelectObject(&bmp);
    }
    void TearDown() override
    {
        dc.DeleteDC();
        wnd.ReleaseDC(wndDC);
    }
    const CDrawRecord& Last() const { return dc.GetRecords().back(); }

    CImageWnd wnd{100, 100};
    CDC* wndDC = nullptr;
    CDC dc;
    CBitmap bmp;
};

}  // namespace

TEST(DrawBase, NameAndNullDevice)
{
    struct Element : CKyGDrawBase {
        int Draw(CDC*) override { return 1; }
    } e;
    EXPECT_EQ(e.toString(), L"CKyDrawBase");
    EXPECT_EQ(e.GetChart(), nullptr);

    CVoArray<CPoint> pts;
    pts.Add(CPoint(0, 0));
    pts.Add(CPoint(5, 5));
    RECT r{0, 0, 10, 10};
    EXPECT_EQ(CKyGDrawBase::DrawTextW(nullptr, CPoint(), 10, 0, 0, L"x"), 0);
    EXPECT_EQ(CKyGDrawBase::DrawLine(nullptr, CPoint(), CPoint(5, 5), PS_SOLID, 1, 0), 0);
    EXPECT_EQ(CKyGDrawBase::DrawArc(nullptr, &r, CPoint(), CPoint(), PS_SOLID, 1, 0), 0);
    EXPECT_EQ(CKyGDrawBase::DrawPolyLine(nullptr, pts, PS_SOLID, 1, 0), 0);
    EXPECT_EQ(CKyGDrawBase::DrawEllipse(nullptr, CPoint(), 5, 5, PS_SOLID, 1, 0, 1), 0);
    EXPECT_EQ(CKyGDrawBase::GetTextExtent(nullptr, 10, L"x"), CSize(0, 0));
}

TEST(DrawBase, GetRectHalvesTruncateTowardZero)
{
    EXPECT_EQ(CKyGDrawBase::GetRect(CPoint(10, 10), 5, 5), CRect(8, 8, 12, 12));
    EXPECT_EQ(CKyGDrawBase::GetRect(CPoint(0, 0), -3, 3), CRect(1, -1, -1, 1));
    EXPECT_EQ(CKyGDrawBase::GetRect(CPoint(INT_MAX, INT_MIN), 4, 4), CRect(INT_MAX - 2, INT_MIN, INT_MAX, INT_MIN + 2));
}

TEST_F(Primitives, TextAngleIsTruncatedToWholeDegrees)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double angle;
        int escapement;
    } cases[] = {{45.9, 450}, {-0.5, 0}, {12.7, 120}, {0.78, 0}, {2.36, 20}, {nan, 0}, {-725.0, -50}};
    dc.SetTextColor(RGB(1, 2, 3));
    for (const auto& c : cases) {
        EXPECT_NE(CKyGDrawBase::DrawTextW(&dc, CPoint(10, 20), 12.9, c.angle, RGB(200, 0, 0), L"25"), 0);
        EXPECT_EQ(Last().kind, CDrawRecord::Text);
        EXPECT_EQ(Last().escapement, c.escapement) << c.angle;
        EXPECT_EQ(Last().fontHeight, 12);
        EXPECT_EQ(Last().textColor, RGB(200, 0, 0));
        EXPECT_EQ(Last().pts.at(0), CPoint(10, 20));
    }
    for (double wild : {1e300, -std::numeric_limits<double>::infinity()})
        CKyGDrawBase::DrawTextW(&dc, CPoint(), 10, wild, 0, L"x");  // must not overflow
    EXPECT_EQ(dc.GetTextColor(), RGB(1, 2, 3));  // restored

    const CSize size = CKyGDrawBase::GetTextExtent(&dc, 20, L"25");
    EXPECT_EQ(size.cy, 20);
    EXPECT_GT(size.cx, 0);
}

TEST_F(Primitives, LinesPolylinesArcsAndEllipses)
{
    EXPECT_NE(CKyGDrawBase::DrawLine(&dc, CPoint(1, 2), CPoint(30, 40), PS_DASH, 2, RGB(0, 0, 255)), 0);
    EXPECT_EQ(Last().kind, CDrawRecord::Line);
    EXPECT_EQ(Last().pts, (std::vector<CPoint>{CPoint(1, 2), CPoint(30, 40)}));
    EXPECT_EQ(Last().penStyle, PS_DASH);
    EXPECT_EQ(Last().penWidth, 2);
    EXPECT_EQ(Last().penColor, RGB(0, 0, 255));

    dc.MoveTo(0, 0);
    dc.LineTo(5, 5);
    EXPECT_EQ(Last().penColor, RGB(0, 0, 0));  // the previous pen is back

    CVoArray<CPoint> pts;
    const size_t before = dc.GetRecords().size();
    EXPECT_EQ(CKyGDrawBase::DrawPolyLine(&dc, pts, PS_SOLID, 1, 0), 0);
    pts.Add(CPoint(3, 3));
    EXPECT_EQ(CKyGDrawBase::DrawPolyLine(&dc, pts, PS_SOLID, 1, 0), 0);
    EXPECT_EQ(dc.GetRecords().size(), before);
    pts.Add(CPoint(9, 4));
    pts.Add(CPoint(20, 30));
    EXPECT_NE(CKyGDrawBase::DrawPolyLine(&dc, pts, PS_SOLID, 1, 0), 0);
    EXPECT_EQ(Last().pts, (std::vector<CPoint>{CPoint(3, 3), CPoint(9, 4), CPoint(20, 30)}));

    RECT bounds{10, 10, 50, 40};
    EXPECT_NE(CKyGDrawBase::DrawArc(&dc, &bounds, CPoint(50, 25), CPoint(10, 25), PS_SOLID, 1, 0), 0);
    EXPECT_EQ(Last().kind, CDrawRecord::Arc);
    EXPECT_EQ(Last().pts.at(2), CPoint(50, 25));

    EXPECT_NE(CKyGDrawBase::DrawEllipse(&dc, CPoint(10, 10), 5.0, 5.0, PS_SOLID, 1, RGB(0, 255, 0), 1), 0);
    EXPECT_EQ(Last().pts, (std::vector<CPoint>{CPoint(12, 12), CPoint(7, 7)}));
    EXPECT_EQ(Last().brushColor, RGB(0, 255, 0));
    EXPECT_NE(CKyGDrawBase::DrawEllipse(&dc, CPoint(10, 10), 5.0, 5.0, PS_SOLID, 1, RGB(0, 255, 0), 0), 0);
    EXPECT_EQ(Last().brushColor, RGB(255, 255, 255));  // whatever the DC holds: white stock brush
    CKyGDrawBase::DrawEllipse(&dc, CPoint(), std::numeric_limits<double>::quiet_NaN(), 1e300, PS_SOLID, 1, 0, 1);
}
