// The DC's state machine: selection, defaults, null and deleted DCs, recording, and bad input
// that must neither crash nor break later drawing.
#include "PixelFixture.h"

#include <kygraph/Bitmap.h>
#include <kygraph/Brush.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>

#include <climits>
#include <cmath>
#include <limits>

TEST(FrameworkDC, SelectReturnsThePreviousObject)
{
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    CPen a(PS_SOLID, 1, 0), b(PS_DASH, 1, 0);
    EXPECT_EQ(dc.SelectObject(&a), CGdiObject::GetStockObject(BLACK_PEN));
    EXPECT_EQ(dc.SelectObject(&b), &a);
    EXPECT_EQ(dc.SelectObject(static_cast<CGdiObject*>(&a)), &b);
    CFont font;
    EXPECT_EQ(dc.SelectObject(&font), nullptr);  // not created
    LOGFONT lf{};
    font.CreateFontIndirect(&lf);
    EXPECT_EQ(dc.SelectObject(&font), CGdiObject::GetStockObject(SYSTEM_FONT));
    EXPECT_EQ(dc.SelectStockObject(12345), nullptr);

    // Stock objects cannot be changed.
    auto* white = static_cast<CBrush*>(CGdiObject::GetStockObject(WHITE_BRUSH));
    EXPECT_FALSE(white->DeleteObject());
    EXPECT_FALSE(white->CreateSolidBrush(RGB(1, 2, 3)));
    EXPECT_EQ(white->GetColor(), RGB(255, 255, 255));
}

TEST(FrameworkDC, NullAndDeletedDcsDoNothing)
{
    CDC fresh, deleted;
    deleted.CreateCompatibleDC(nullptr);
    EXPECT_TRUE(deleted.DeleteDC());
    EXPECT_FALSE(deleted.DeleteDC());
    CPen pen(PS_SOLID, 1, 0);
    const POINT pts[] = {{0, 0}, {5, 5}};
    for (CDC* dc : {&fresh, &deleted}) {
        EXPECT_EQ(dc->GetSafeHdc(), nullptr);
        EXPECT_EQ(dc->SelectObject(&pen), nullptr);
        EXPECT_FALSE(dc->LineTo(5, 5));
        EXPECT_FALSE(dc->Polyline(pts, 2));
        EXPECT_FALSE(dc->Arc(0, 0, 10, 10, 0, 0, 0, 0));
        EXPECT_FALSE(dc->Ellipse(0, 0, 10, 10));
        EXPECT_FALSE(dc->TextOut(0, 0, CString("湿")));
        EXPECT_EQ(dc->GetTextExtent(CString("湿")), CSize(0, 0));
        EXPECT_EQ(dc->GetBkColor(), 0xFFFFFFFFu);
        EXPECT_EQ(dc->SetTextColor(0), 0xFFFFFFFFu);
        EXPECT_EQ(dc->SetBkMode(OPAQUE), 0);
        dc->FillSolidRect(0, 0, 5, 5, 0);
        EXPECT_FALSE(dc->BitBlt(0, 0, 5, 5, dc, 0, 0, SRCCOPY));
        EXPECT_EQ(dc->GetPixel(0, 0), 0xFFFFFFFFu);
        CDC other;
        EXPECT_FALSE(other.CreateCompatibleDC(dc));
        CBitmap bmp;
        EXPECT_FALSE(bmp.CreateCompatibleBitmap(dc, 5, 5));
    }
}

TEST(FrameworkDC, MemoryDcDrawsOnlyIntoASelectedBitmap)
{
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    EXPECT_FALSE(dc.LineTo(5, 5));
    EXPECT_FALSE(dc.Ellipse(0, 0, 5, 5));
    EXPECT_EQ(dc.GetTextExtent(CString("湿")).cy, 16);  // the system font, measured anyway

    CBitmap bmp;
    for (auto size : {std::pair{0, 5}, std::pair{5, -1}, std::pair{32768, 5}, std::pair{INT_MIN, INT_MAX}})
        EXPECT_FALSE(bmp.CreateCompatibleBitmap(&dc, size.first, size.second));
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(&dc, 8, 8));
    EXPECT_EQ(bmp.GetSize(), CSize(8, 8));
    CBitmap* old = dc.SelectObject(&bmp);
    EXPECT_EQ(dc.GetPixel(3, 3), RGB(0, 0, 0));  // compatible bitmaps start black
    EXPECT_TRUE(dc.Ellipse(0, 0, 5, 5));
    // Deleting a bitmap still selected leaves the DC drawing safely on its own reference.
    bmp.DeleteObject();
    EXPECT_TRUE(dc.LineTo(7, 7));
    EXPECT_EQ(dc.SelectObject(old), &bmp);
    EXPECT_FALSE(dc.LineTo(1, 1));
    // A new bitmap of the same size (which may reuse the released pixels) starts black again.
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(&dc, 8, 8));
    dc.SelectObject(&bmp);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) ASSERT_EQ(dc.GetPixel(x, y), RGB(0, 0, 0)) << x << ", " << y;
}

TEST(FrameworkDC, RecordingKeepsExactArguments)
{
    CImageWnd wnd(40, 40);
    wnd.EnableRecording(true);
    CDC* wdc = wnd.GetDC();
    CDC mem;
    mem.CreateCompatibleDC(wdc);  // records too
    CBitmap bmp;
    bmp.CreateCompatibleBitmap(wdc, 40, 40);
    mem.SelectObject(&bmp);
    CPen pen(PS_DOT, 3, RGB(1, 2, 3));
    mem.SelectObject(&pen);
    mem.MoveTo(1, 2);
    mem.LineTo(INT_MAX, -7);
    mem.Arc(10, 10, 0, 0, 5, 6, 7, 8);
    LOGFONT lf{};
    lf.lfHeight = 17;
    lf.lfEscapement = 450;
    CFont font;
    font.CreateFontIndirect(&lf);
    mem.SelectObject(&font);
    mem.SetBkMode(TRANSPARENT);
    mem.TextOut(3, 4, CString("湿"));
    wdc->BitBlt(1, 2, 30, 31, &mem, 4, 5, SRCCOPY);

    const auto& r = mem.GetRecords();
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(r[0].kind, CDrawRecord::Line);
    EXPECT_EQ(r[0].pts, (std::vector<CPoint>{CPoint(1, 2), CPoint(INT_MAX, -7)}));
    EXPECT_EQ(r[0].penStyle, PS_DOT);
    EXPECT_EQ(r[0].penWidth, 3);
    EXPECT_EQ(r[0].penColor, RGB(1, 2, 3));
    EXPECT_EQ(r[1].pts, (std::vector<CPoint>{CPoint(10, 10), CPoint(0, 0), CPoint(5, 6), CPoint(7, 8)}));
    EXPECT_EQ(r[2].kind, CDrawRecord::Text);
    EXPECT_EQ(r[2].text, CString("湿"));
    EXPECT_EQ(r[2].fontHeight, 17);
    EXPECT_EQ(r[2].escapement, 450);
    EXPECT_EQ(r[2].bkMode, TRANSPARENT);
    ASSERT_EQ(wdc->GetRecords().size(), 1u);
    EXPECT_EQ(wdc->GetRecords()[0].pts, (std::vector<CPoint>{CPoint(1, 2), CPoint(30, 31), CPoint(4, 5)}));
    mem.ClearRecords();
    EXPECT_TRUE(mem.GetRecords().empty());
    wnd.ReleaseDC(wdc);
}

// Extreme coordinates and sizes: each call must return without undefined behaviour (the
// sanitizer build checks), and the surface must still draw afterwards.
class FrameworkBadInput : public PixelTest {
protected:
    FrameworkBadInput() : PixelTest(300, 200) {}
    void ExpectStillDraws()
    {
        CPen pen(PS_SOLID, 1, kBlue);
        CPen* old = m_dc->SelectObject(&pen);
        m_dc->FillSolidRect(0, 0, 300, 200, kWhite);
        m_dc->MoveTo(0, 0);
        m_dc->LineTo(10, 0);
        EXPECT_EQ(CountColor(kBlue), 10);
        m_dc->SelectObject(old);
    }
};

TEST_F(FrameworkBadInput, ExtremeCoordinates)
{
    const int v[] = {INT_MIN, -8400000, -1, 0, 150, 8400000, INT_MAX};
    for (int width : {0, 1, 5, INT_MAX, -3}) {
        for (int style : {PS_SOLID, PS_DASHDOTDOT}) {
            CPen pen(style, width, kRed);
            m_dc->SelectObject(&pen);
            m_dc->SetAntialias(width != 5);
            for (int a : v)
                for (int b : v) {
                    m_dc->MoveTo(a, b);
                    EXPECT_TRUE(m_dc->LineTo(b, a));
                    const POINT pts[] = {{a, b}, {b, a}, {150, 100}, {a, a}};
                    EXPECT_TRUE(m_dc->Polyline(pts, 4));
                    m_dc->FillSolidRect(a, b, a, b, kRed);
                }
            m_dc->SetAntialias(false);
            m_dc->SelectStockObject(BLACK_PEN);
            ExpectStillDraws();
        }
    }
    // Curves cost more when huge (they are flattened), so one pen each way.
    for (bool antialias : {false, true}) {
        m_dc->SetAntialias(antialias);
        for (int a : v)
            for (int b : v) {
                EXPECT_TRUE(m_dc->Arc(a, b, b, a, a, a, b, b));
                EXPECT_TRUE(m_dc->Ellipse(a, a, b, b));
            }
    }
    m_dc->SetAntialias(false);
    ExpectStillDraws();
}

TEST_F(FrameworkBadInput, HugeShapesDrawTheirVisiblePart)
{
    CBrush blue(kBlue);
    m_dc->SelectObject(&blue);
    m_dc->SelectStockObject(NULL_PEN);
    // A circle of radius 1e9 whose right edge passes x = 150 around the surface's rows.
    EXPECT_TRUE(m_dc->Ellipse(150 - 2000000000, 100 - 1000000000, 150, 100 + 1000000000));
    EXPECT_EQ(Px(140, 100), kBlue);
    EXPECT_EQ(Px(160, 100), kWhite);
    // A circle containing the whole surface fills all of it.
    m_dc->Ellipse(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    EXPECT_EQ(CountNot(kBlue), 0);

    m_dc->FillSolidRect(0, 0, 300, 200, kWhite);
    CPen red(PS_DASH, 1, kRed);
    m_dc->SelectObject(&red);
    m_dc->SetAntialias(true);
    m_dc->MoveTo(-2000000000, 50);
    m_dc->LineTo(2000000000, 50);
    EXPECT_GT(Count(0, 50, 300, 51, [](COLORREF c) { return c == RGB(255, 0, 0); }), 150);
    m_dc->SetAntialias(false);
    ExpectStillDraws();
}

TEST_F(FrameworkBadInput, BadSizesAndRops)
{
    CDC mem;
    mem.CreateCompatibleDC(m_dc);
    CBitmap bmp;
    bmp.CreateCompatibleBitmap(m_dc, 10, 10);
    mem.SelectObject(&bmp);
    EXPECT_FALSE(m_dc->BitBlt(0, 0, -5, 5, &mem, 0, 0, SRCCOPY));
    EXPECT_TRUE(m_dc->BitBlt(INT_MAX, INT_MIN, INT_MAX, INT_MAX, &mem, INT_MIN, INT_MAX, SRCCOPY));
    EXPECT_TRUE(m_dc->BitBlt(0, 0, 0, 0, &mem, 0, 0, SRCCOPY));
    EXPECT_EQ(CountNot(kWhite), 0);
    EXPECT_EQ(m_dc->SetBkMode(7), 0);
    EXPECT_EQ(m_dc->GetBkMode(), OPAQUE);
    EXPECT_FALSE(m_dc->Arc(nullptr, POINT{}, POINT{}));
    EXPECT_FALSE(m_dc->Ellipse(nullptr));
    ExpectStillDraws();
}
