// Lines, polylines, pens and rectangles on an aliased raster surface, pixel by pixel.
#include "PixelFixture.h"

#include <kygraph/Bitmap.h>
#include <kygraph/Pen.h>

#include <cairo.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <climits>
#include <cmath>
#include <string>
#include <vector>

using FrameworkLines = PixelTest;

TEST_F(FrameworkLines, LineToLeavesTheLastPixel)
{
    struct Case { POINT from, to; int painted; };
    const Case cases[] = {
        {{5, 10}, {15, 10}, 10}, {{15, 20}, {5, 20}, 10}, {{30, 5}, {30, 25}, 20},
        {{40, 40}, {50, 50}, 10}, {{40, 60}, {60, 50}, 20},
    };
    CPen pen(PS_SOLID, 1, kRed);
    m_dc->SelectObject(&pen);
    for (const Case& c : cases) {
        m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
        m_dc->MoveTo(c.from);
        EXPECT_TRUE(m_dc->LineTo(c.to));
        EXPECT_EQ(CountColor(kRed), c.painted) << c.from.x << "," << c.from.y;
        EXPECT_EQ(Px(c.from.x, c.from.y), kRed);
        EXPECT_EQ(Px(c.to.x, c.to.y), kWhite);
        EXPECT_EQ(m_dc->GetCurrentPosition(), CPoint(c.to));
    }
}

TEST_F(FrameworkLines, ShallowLineHasOnePixelPerColumn)
{
    CPen pen(PS_SOLID, 0, kRed);  // width 0 draws one pixel wide
    m_dc->SelectObject(&pen);
    m_dc->MoveTo(2, 3);
    m_dc->LineTo(61, 40);
    for (int x = 2; x < 61; ++x) EXPECT_EQ(Count(x, 0, x + 1, 64, [](COLORREF c) { return c == kRed; }), 1) << x;
}

TEST_F(FrameworkLines, PolylinePaintsCornersButNotTheEnd)
{
    CPen pen(PS_SOLID, 1, kRed);
    m_dc->SelectObject(&pen);
    const POINT pts[] = {{10, 10}, {30, 10}, {30, 30}};
    EXPECT_TRUE(m_dc->Polyline(pts, 3));
    EXPECT_EQ(Px(30, 10), kRed);
    EXPECT_EQ(Px(30, 29), kRed);
    EXPECT_EQ(Px(30, 30), kWhite);
    EXPECT_EQ(CountColor(kRed), 40);
    EXPECT_FALSE(m_dc->Polyline(pts, 1));
    EXPECT_FALSE(m_dc->Polyline(nullptr, 3));
}

TEST_F(FrameworkLines, PenStyles)
{
    auto paintedOnRow = [&](int style, int width) {
        m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
        CPen pen(style, width, kRed);
        CPen* old = m_dc->SelectObject(&pen);
        m_dc->MoveTo(0, 30);
        m_dc->LineTo(60, 30);
        m_dc->SelectObject(old);
        return Count(0, 30, 64, 31, [](COLORREF c) { return c == kRed; });
    };
    EXPECT_EQ(paintedOnRow(PS_SOLID, 1), 60);
    EXPECT_EQ(paintedOnRow(PS_DASH, 1), 18 + 18 + 12);  // 18 on, 6 off
    EXPECT_EQ(paintedOnRow(PS_DOT, 1), 30);             // 3 on, 3 off
    EXPECT_EQ(paintedOnRow(PS_NULL, 1), 0);
    EXPECT_EQ(paintedOnRow(99, 1), 60);                 // unknown style: solid
    EXPECT_EQ(paintedOnRow(-1, 1), 60);
    // A styled pen wider than one pixel draws solid.
    EXPECT_GE(paintedOnRow(PS_DASH, 3), 60);
    EXPECT_EQ(Count(0, 29, 60, 32, [](COLORREF c) { return c != kRed; }), 0);
}

TEST_F(FrameworkLines, FillSolidRectIsExactAndSetsTheBackground)
{
    m_dc->FillSolidRect(10, 12, 5, 7, kBlue);
    EXPECT_EQ(CountColor(kBlue), 35);
    EXPECT_EQ(Px(10, 12), kBlue);
    EXPECT_EQ(Px(14, 18), kBlue);
    EXPECT_EQ(Px(15, 18), kWhite);
    EXPECT_EQ(m_dc->GetBkColor(), kBlue);
    // COLORREF is 0x00BBGGRR and its high byte is ignored.
    m_dc->FillSolidRect(0, 0, 1, 1, 0xFF0000FF);
    EXPECT_EQ(Px(0, 0), kRed);
}

TEST_F(FrameworkLines, BitBltCopiesExactlyTheBlock)
{
    CDC mem;
    ASSERT_TRUE(mem.CreateCompatibleDC(m_dc));
    CBitmap bmp;
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(m_dc, 20, 20));
    mem.SelectObject(&bmp);
    mem.FillSolidRect(0, 0, 20, 20, kBlue);
    EXPECT_TRUE(m_dc->BitBlt(5, 6, 7, 3, &mem, 2, 2, SRCCOPY));
    EXPECT_EQ(CountColor(kBlue), 21);
    EXPECT_EQ(Px(5, 6), kBlue);
    EXPECT_EQ(Px(11, 8), kBlue);
    // Blocks reaching past either surface copy only what both have.
    EXPECT_TRUE(m_dc->BitBlt(60, 60, 50, 50, &mem, 0, 0, SRCCOPY));
    EXPECT_EQ(CountColor(kBlue), 21 + 16);
    EXPECT_TRUE(m_dc->BitBlt(0, 40, 50, 50, &mem, 15, 15, SRCCOPY));
    EXPECT_EQ(CountColor(kBlue), 21 + 16 + 25);
    EXPECT_FALSE(m_dc->BitBlt(0, 0, 5, 5, &mem, 0, 0, 0x00EE0086));  // only SRCCOPY
    EXPECT_FALSE(m_dc->BitBlt(0, 0, 5, 5, nullptr, 0, 0, SRCCOPY));
}

// A whole surface copied onto another of its size lends its pixels until either is drawn on:
// whichever of them is drawn on next (through a DC made before the copy, through a fill of
// every pixel, or after the source is gone) changes only itself.
TEST_F(FrameworkLines, WholeSurfaceCopiesStayApart)
{
    CDC* later = m_wnd.GetDC();  // a second DC of the window, drawing before any copy
    CPen wide(PS_SOLID, 3, kRed);
    later->SelectObject(&wide);
    later->MoveTo(0, 30);
    later->LineTo(64, 30);
    CDC mem, other;
    CBitmap bmp, otherBmp;
    ASSERT_TRUE(mem.CreateCompatibleDC(m_dc) && other.CreateCompatibleDC(m_dc));
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(m_dc, 64, 64) && otherBmp.CreateCompatibleBitmap(m_dc, 64, 64));
    mem.SelectObject(&bmp);
    other.SelectObject(&otherBmp);
    mem.FillSolidRect(0, 0, 64, 64, kBlue);
    mem.FillSolidRect(3, 3, 1, 1, kRed);
    ASSERT_TRUE(m_dc->BitBlt(0, 0, 64, 64, &mem, 0, 0, SRCCOPY));
    ASSERT_TRUE(other.BitBlt(0, 0, 64, 64, &mem, 0, 0, SRCCOPY));
    EXPECT_EQ(Px(3, 3), kRed);
    EXPECT_EQ(CountColor(kBlue), 64 * 64 - 1);

    mem.SelectObject(&wide);
    mem.MoveTo(0, 10);
    mem.LineTo(64, 10);  // the source: neither copy sees it
    EXPECT_EQ(mem.GetPixel(20, 10), kRed);
    EXPECT_EQ(Px(20, 10), kBlue);
    EXPECT_EQ(other.GetPixel(20, 10), kBlue);

    later->FillSolidRect(0, 20, 5, 5, kWhite);  // the window, through the older DC
    later->MoveTo(0, 40);
    later->LineTo(64, 40);
    EXPECT_EQ(Px(0, 20), kWhite);
    EXPECT_EQ(m_dc->GetPixel(20, 40), kRed);
    for (CDC* copy : {&other, &mem}) EXPECT_EQ(copy->GetPixel(0, 20), kBlue);
    for (CDC* copy : {&other, &mem}) EXPECT_EQ(copy->GetPixel(20, 40), kBlue);

    other.FillSolidRect(0, 0, 64, 64, kWhite);  // every pixel of the second copy
    EXPECT_EQ(other.GetPixel(3, 3), kWhite);
    EXPECT_EQ(Px(3, 3), kRed);

    // The window copies the second one, fills a strip (what it shows beside stays), and the
    // source is deleted: what it shows stays.
    ASSERT_TRUE(m_dc->BitBlt(0, 0, 64, 64, &other, 0, 0, SRCCOPY));
    m_dc->FillSolidRect(0, 0, 10, 64, kBlue);
    EXPECT_EQ(other.GetPixel(5, 5), kWhite);
    other.DeleteDC();
    otherBmp.DeleteObject();
    EXPECT_EQ(CountColor(kWhite), 54 * 64);
    EXPECT_EQ(mem.GetPixel(20, 10), kRed);
    m_wnd.ReleaseDC(later);
}

// A new surface's fill is written only when first needed: every way of reading one sees it.
TEST_F(FrameworkLines, UntouchedSurfacesReadAsTheirFill)
{
    // The window, whole, onto a new (black) bitmap: the bitmap shows the window's white, then
    // draws on pixels of its own.
    CDC mem;
    CBitmap bmp;
    ASSERT_TRUE(mem.CreateCompatibleDC(m_dc) && bmp.CreateCompatibleBitmap(m_dc, 64, 64));
    mem.SelectObject(&bmp);
    ASSERT_TRUE(mem.BitBlt(0, 0, 64, 64, m_dc, 0, 0, SRCCOPY));
    mem.FillSolidRect(0, 0, 2, 2, kRed);
    EXPECT_EQ(mem.GetPixel(40, 40), kWhite);
    EXPECT_EQ(Px(0, 0), kWhite);

    CImageWnd blue(64, 64, kBlue);
    CDC* blueDc = blue.GetDC();
    ASSERT_TRUE(m_dc->BitBlt(10, 10, 4, 4, blueDc, 0, 0, SRCCOPY));  // a block of it
    EXPECT_EQ(Px(11, 11), kBlue);
    EXPECT_EQ(Px(9, 9), kWhite);
    blue.ReleaseDC(blueDc);

    const std::string png = CImageWnd(64, 64, kBlue).Encode();
    struct Reader {
        const std::string& bytes;
        size_t at = 0;
    } reader{png};
    cairo_surface_t* decoded = cairo_image_surface_create_from_png_stream(
        [](void* closure, unsigned char* data, unsigned int length) {
            auto& r = *static_cast<Reader*>(closure);
            if (r.bytes.size() - r.at < length) return CAIRO_STATUS_READ_ERROR;
            std::memcpy(data, r.bytes.data() + r.at, length);
            r.at += length;
            return CAIRO_STATUS_SUCCESS;
        },
        &reader);
    ASSERT_EQ(cairo_surface_status(decoded), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(decoded))[100], 0xFF0000FFu);
    cairo_surface_destroy(decoded);
}

TEST_F(FrameworkLines, BitBltWithinOneSurface)
{
    m_dc->FillSolidRect(0, 0, 10, 10, kBlue);
    EXPECT_TRUE(m_dc->BitBlt(5, 5, 10, 10, m_dc, 0, 0, SRCCOPY));
    EXPECT_EQ(Px(14, 14), kBlue);
    EXPECT_EQ(CountColor(kBlue), 100 + 100 - 25);
}

TEST_F(FrameworkLines, AntialiasedLinesStayNearTheirPixels)
{
    m_dc->SetAntialias(true);
    CPen pen(PS_SOLID, 1, kRed);
    m_dc->SelectObject(&pen);
    m_dc->MoveTo(5, 10);
    m_dc->LineTo(40, 10);
    EXPECT_EQ(Px(20, 10), kRed);
    EXPECT_EQ(Px(20, 9), kWhite);
    EXPECT_EQ(Px(20, 11), kWhite);
}

// Integer-width pens cover whole pixels in both modes: a w-pixel pen paints exactly w rows
// (columns) in full colour and none in half tones across its middle.
TEST_F(FrameworkLines, PensCoverWholePixels)
{
    for (bool antialias : {false, true}) {
        for (int width : {1, 2, 3, 4}) {
            m_dc->SetAntialias(antialias);
            m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
            CPen pen(PS_SOLID, width, kRed);
            CPen* old = m_dc->SelectObject(&pen);
            m_dc->MoveTo(8, 20);
            m_dc->LineTo(56, 20);
            m_dc->MoveTo(40, 30);
            m_dc->LineTo(40, 60);
            m_dc->SelectObject(old);
            const auto red = [](COLORREF c) { return c == kRed; };
            const auto tone = [](COLORREF c) { return c != kRed && c != kWhite; };
            EXPECT_EQ(Count(30, 0, 31, 64, red), width) << width << " aa " << antialias;
            EXPECT_EQ(Count(30, 0, 31, 64, tone), 0) << width << " aa " << antialias;
            EXPECT_EQ(Count(0, 45, 64, 46, red), width) << width << " aa " << antialias;
            EXPECT_EQ(Count(0, 45, 64, 46, tone), 0) << width << " aa " << antialias;
        }
    }
}

// An anti-aliased one-pixel line shows the same ink in every column, whether a column falls
// on one pixel or is shared by two (measured in linear light).
TEST_F(FrameworkLines, AntialiasedLineHasEvenWeight)
{
    m_dc->SetAntialias(true);
    CPen pen(PS_SOLID, 1, RGB(0, 0, 0));
    m_dc->SelectObject(&pen);
    m_dc->MoveTo(2, 20);
    m_dc->LineTo(62, 27);
    const auto linear = [](int v) {
        const double c = v / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    for (int x = 3; x < 60; ++x) {
        double ink = 0.0;
        for (int y = 0; y < 64; ++y) ink += 1.0 - linear(GetGValue(Px(x, y)));
        EXPECT_NEAR(ink, 1.0, 0.03) << x;
    }
    // A second colour's half tones are its own, not those of the colour drawn before it.
    CPen red(PS_SOLID, 1, kRed);
    m_dc->SelectObject(&red);
    m_dc->MoveTo(2, 40);
    m_dc->LineTo(62, 47);
    int tones = 0;
    for (int x = 3; x < 60; ++x)
        for (int y = 38; y < 50; ++y)
            if (Px(x, y) != kWhite) {
                ++tones;
                EXPECT_EQ(GetRValue(Px(x, y)), 255) << x << "," << y;
            }
    EXPECT_GT(tones, 57);
}

// Found by fuzzing: a pen far wider than the surface (the chart's styles take any width, and
// CDC draws at most 65535) made Cairo build every stroke whole, round ends and joins
// included, though each one paints the surface over: 256 curves of such a pen on a 3 x 172
// window took over a second. A stroke that covers the surface now paints it at once.
class FrameworkWidePens : public PixelTest {
protected:
    FrameworkWidePens() : PixelTest(3, 172) {}
};

TEST_F(FrameworkWidePens, AStrokeCoveringTheSurfacePaintsItAtOnce)
{
    std::vector<POINT> curve;
    for (int i = 0; i < 300; ++i) curve.push_back({40 + i, 100 - i / 3 - i * i / 500});
    CPen wide(PS_SOLID, INT_MAX, kRed);
    CPen* old = m_dc->SelectObject(&wide);
    const auto start = std::chrono::steady_clock::now();
    for (int k = 0; k < 1024; ++k) ASSERT_TRUE(m_dc->Polyline(curve.data(), static_cast<int>(curve.size())));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(CountColor(kRed), 3 * 172);
    EXPECT_LT(took.count(), 0.5) << "1024 strokes; before, each took milliseconds";

    // A pen that reaches only part of the surface still strokes: its round end shows.
    m_dc->FillSolidRect(0, 0, 3, 172, kWhite);
    CPen round(PS_SOLID, 100, kBlue);
    m_dc->SelectObject(&round);
    m_dc->MoveTo(1, 0);
    m_dc->LineTo(1, 10);
    m_dc->SelectObject(old);
    EXPECT_EQ(Px(1, 55), kBlue);
    EXPECT_EQ(Px(1, 65), kWhite);
}

TEST_F(FrameworkLines, TranslucentPolygonBlendsInsideOnlyAndCutsHugeCoordinates)
{
    // Red at half opacity over white and over blue; the pen and brush stay as they were.
    m_dc->FillSolidRect(0, 0, 64, 32, kBlue);
    const POINT square[] = {{8, 8}, {40, 8}, {40, 40}, {8, 40}};
    ASSERT_TRUE(m_dc->FillPolygonAlpha(square, 4, kRed, 128));
    const auto near = [](COLORREF a, COLORREF b) {
        return std::abs(GetRValue(a) - GetRValue(b)) <= 2 && std::abs(GetGValue(a) - GetGValue(b)) <= 2 &&
               std::abs(GetBValue(a) - GetBValue(b)) <= 2;
    };
    EXPECT_PRED2(near, Px(20, 36), RGB(255, 127, 127));  // over white
    EXPECT_PRED2(near, Px(20, 20), RGB(128, 0, 127));    // over blue
    EXPECT_EQ(Px(4, 36), kWhite);                         // outside, untouched
    EXPECT_EQ(Px(44, 20), kBlue);
    // The hole of a self-overlapping outline stays unfilled (alternate rule).
    const POINT twice[] = {{48, 40}, {62, 40}, {62, 62}, {48, 62}, {48, 40},
                           {52, 44}, {58, 44}, {58, 58}, {52, 58}, {52, 44}};
    ASSERT_TRUE(m_dc->FillPolygonAlpha(twice, 10, kRed, 255));
    EXPECT_EQ(Px(50, 50), kRed);
    EXPECT_EQ(Px(55, 50), kWhite);
    // Far-away corners: only the visible part is filled, quickly and without overflow.
    m_dc->FillSolidRect(0, 0, 64, 64, kWhite);
    const POINT huge[] = {{-2000000000, -2000000000}, {2000000000, -2000000000}, {0, 2000000000}};
    ASSERT_TRUE(m_dc->FillPolygonAlpha(huge, 3, kBlue, 255));
    EXPECT_EQ(Px(32, 32), kBlue);
    EXPECT_FALSE(m_dc->FillPolygonAlpha(square, 2, kRed, 255));
    EXPECT_FALSE(m_dc->FillPolygonAlpha(nullptr, 4, kRed, 255));
}
