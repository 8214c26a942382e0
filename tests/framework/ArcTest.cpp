// Arcs and ellipses on an aliased raster surface: which parts of the ellipse get painted.
#include "PixelFixture.h"

#include <kygraph/Brush.h>
#include <kygraph/Pen.h>

#include <chrono>

namespace {
bool IsRed(COLORREF c) { return c == RGB(255, 0, 0); }
}  // namespace

class FrameworkArcs : public PixelTest {
protected:
    FrameworkArcs() : m_pen(PS_SOLID, 1, kRed) { m_dc->SelectObject(&m_pen); }
    // Painted pixels left and right of the ellipse's vertical axis (x = 32).
    int Left() const { return Count(0, 0, 31, 64, IsRed); }
    int Right() const { return Count(33, 0, 64, 64, IsRed); }
    int Top() const { return Count(0, 0, 64, 31, IsRed); }
    int Bottom() const { return Count(0, 33, 64, 64, IsRed); }
    CPen m_pen;
};

TEST_F(FrameworkArcs, BottomToTopIsTheRightHalf)
{
    EXPECT_TRUE(m_dc->Arc(12, 12, 52, 52, 32, 60, 32, 0));
    EXPECT_GT(Right(), 40);
    EXPECT_EQ(Left(), 0);
    EXPECT_EQ(Px(51, 32), kRed);  // the rightmost pixel column of the ellipse

    m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
    m_dc->Arc(12, 12, 52, 52, 32, 0, 32, 60);  // top to bottom: the left half
    EXPECT_GT(Left(), 40);
    EXPECT_EQ(Right(), 0);
    EXPECT_EQ(Px(12, 32), kRed);
}

TEST_F(FrameworkArcs, DirectionAndQuadrants)
{
    m_dc->Arc(12, 12, 52, 52, 60, 32, 32, 0);  // right to top: upper right quarter
    EXPECT_EQ(Bottom(), 0);
    EXPECT_EQ(Left(), 0);
    EXPECT_GT(Count(33, 0, 64, 31, IsRed), 15);

    m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
    EXPECT_EQ(m_dc->SetArcDirection(AD_CLOCKWISE), AD_COUNTERCLOCKWISE);
    m_dc->Arc(12, 12, 52, 52, 60, 32, 32, 0);  // the other three quarters
    EXPECT_GT(Bottom(), 40);
    EXPECT_GT(Left(), 40);
    EXPECT_EQ(Count(34, 0, 64, 30, IsRed), 0);
    EXPECT_EQ(m_dc->SetArcDirection(12345), 0);
}

TEST_F(FrameworkArcs, CoincidentRadialsDrawTheWholeEllipse)
{
    const POINT radials[][2] = {{{60, 40}, {60, 40}}, {{40, 36}, {50, 41}}, {{32, 32}, {32, 32}}, {{32, 32}, {99, 32}}};
    m_dc->Ellipse(12, 12, 52, 52);
    m_dc->SelectStockObject(NULL_BRUSH);
    const int full = CountColor(kRed);
    for (const auto& r : radials) {
        m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
        EXPECT_TRUE(m_dc->Arc(12, 12, 52, 52, r[0].x, r[0].y, r[1].x, r[1].y));
        // Whole up to where the Bezier pieces start, which moves with the start radial.
        EXPECT_NEAR(CountColor(kRed), full, full / 25) << r[0].x << "," << r[0].y;
        EXPECT_GT(Left(), 40);
        EXPECT_GT(Right(), 40);
        EXPECT_GT(Top(), 40);
        EXPECT_GT(Bottom(), 40);
    }
}

TEST_F(FrameworkArcs, ArcOfAnInvertedOrFlatRectangle)
{
    EXPECT_TRUE(m_dc->Arc(52, 52, 12, 12, 32, 60, 32, 0));  // corners in either order
    EXPECT_GT(Right(), 40);
    EXPECT_EQ(Left(), 0);
    // Zero width or height must not break the context for later drawing.
    EXPECT_TRUE(m_dc->Arc(20, 20, 20, 40, 0, 0, 0, 0));
    EXPECT_TRUE(m_dc->Arc(20, 20, 21, 40, 0, 0, 1, 1));
    EXPECT_TRUE(m_dc->Ellipse(5, 5, 5, 9));
    m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
    m_dc->MoveTo(0, 0);
    m_dc->LineTo(10, 0);
    EXPECT_EQ(CountColor(kRed), 10);
}

TEST_F(FrameworkArcs, EllipseFillsWithTheSelectedBrush)
{
    m_dc->FillSolidRect(0, 0, 64, 64, kBlue);
    // A fresh DC holds the white stock brush.
    EXPECT_TRUE(m_dc->Ellipse(12, 12, 52, 52));
    EXPECT_EQ(Px(32, 32), kWhite);
    EXPECT_EQ(Px(32, 12), kRed);
    EXPECT_EQ(Px(32, 51), kRed);
    EXPECT_EQ(Px(11, 32), kBlue);
    EXPECT_EQ(Px(52, 32), kBlue);

    CBrush green(RGB(0, 128, 0));
    CBrush* old = m_dc->SelectObject(&green);
    EXPECT_EQ(old, CGdiObject::GetStockObject(WHITE_BRUSH));
    m_dc->Ellipse(20, 20, 44, 44);
    EXPECT_EQ(Px(32, 32), RGB(0, 128, 0));

    m_dc->SelectStockObject(NULL_BRUSH);
    m_dc->FillSolidRect(0, 0, 64, 64, kBlue);
    m_dc->Ellipse(12, 12, 52, 52);
    EXPECT_EQ(Px(32, 32), kBlue);
    EXPECT_EQ(Px(32, 12), kRed);
}

// Found by fuzzing: a state-point marker of any size is an ellipse of any size, and one beyond
// Cairo's coordinate range was flattened into 600000 points, for its fill and again for its
// outline, even with the whole surface inside it or far outside it: a handful of markers took
// a second. Such an ellipse now paints the surface, or nothing, at once.
TEST_F(FrameworkArcs, HugeEllipsesAroundOrAwayFromTheSurfaceAreNotFlattened)
{
    CBrush green(RGB(0, 128, 0));
    CBrush* old = m_dc->SelectObject(&green);
    const auto start = std::chrono::steady_clock::now();
    for (int k = 0; k < 50; ++k) {
        m_dc->FillSolidRect(0, 0, 64, 64, kBlue);
        EXPECT_TRUE(m_dc->Ellipse(-1000000000, -1000000000, 1000000000, 1000000000));  // around
        EXPECT_EQ(Count(0, 0, 64, 64, [](COLORREF c) { return c == RGB(0, 128, 0); }), 64 * 64);
        EXPECT_TRUE(m_dc->Ellipse(500000000, -1000000000, 2000000000, 1000000000));  // away
        EXPECT_EQ(Count(0, 0, 64, 64, [](COLORREF c) { return c == RGB(0, 128, 0); }), 64 * 64);
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_LT(took.count(), 0.5) << "100 ellipses; before, each took a tenth of a second";

    // One whose outline crosses the surface is still drawn there.
    m_dc->FillSolidRect(0, 0, 64, 64, kBlue);
    m_dc->Ellipse(-1999999968, -1000000000, 32, 1000000000);  // its right end at x = 32
    m_dc->SelectObject(old);
    EXPECT_EQ(Px(20, 32), RGB(0, 128, 0));
    EXPECT_EQ(Px(60, 32), kBlue);
    EXPECT_GT(Count(30, 0, 34, 64, IsRed), 0);
}
