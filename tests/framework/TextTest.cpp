// Text: GDI's cell geometry (height, turning, opaque cell) on real pixels, and Chinese glyphs.
#include "PixelFixture.h"

#include <kygraph/Font.h>
#include <kygraph/ImageWnd.h>

#include "framework/cairo/internal/KyTextEngine.h"

#include <climits>

namespace {

LOGFONT Font(int height, int escapement = 0)
{
    LOGFONT lf{};
    lf.lfHeight = height;
    lf.lfWeight = FW_NORMAL;
    lf.lfEscapement = lf.lfOrientation = escapement;
    return lf;
}

bool IsWhite(COLORREF c) { return c == RGB(255, 255, 255); }

}  // namespace

class FrameworkText : public PixelTest {
protected:
    FrameworkText() : PixelTest(200, 160) {}
    void Select(int height, int escapement = 0)
    {
        LOGFONT lf = Font(height, escapement);
        m_font.DeleteObject();
        m_font.CreateFontIndirect(&lf);
        m_dc->SelectObject(&m_font);
    }
    // Bounding box of the pixels that are not white.
    RECT Ink() const
    {
        RECT r{INT_MAX, INT_MAX, INT_MIN, INT_MIN};
        for (int y = 0; y < 160; ++y)
            for (int x = 0; x < 200; ++x)
                if (!IsWhite(Px(x, y))) {
                    r.left = std::min<LONG>(r.left, x), r.top = std::min<LONG>(r.top, y);
                    r.right = std::max<LONG>(r.right, x + 1), r.bottom = std::max<LONG>(r.bottom, y + 1);
                }
        return r;
    }
    CFont m_font;
};

TEST_F(FrameworkText, PositiveHeightIsTheCellHeight)
{
    for (int h : {8, 13, 20, 31}) {
        Select(h);
        const CSize ext = m_dc->GetTextExtent(CString("湿空气 25.5"));
        EXPECT_EQ(ext.cy, h);
        EXPECT_GT(ext.cx, h * 2);
        // The opaque cell is exactly the extent, at the reference point.
        m_dc->FillSolidRect(0, 0, 200, 160, kWhite);
        m_dc->SetBkColor(kBlue);
        EXPECT_TRUE(m_dc->TextOut(10, 20, CString("湿空气 25.5")));
        const RECT ink = Ink();
        EXPECT_EQ(ink.left, 10);
        EXPECT_EQ(ink.top, 20);
        EXPECT_EQ(ink.right, 10 + ext.cx);
        EXPECT_EQ(ink.bottom, 20 + h);
        EXPECT_EQ(Px(10, 20), kBlue);
        EXPECT_EQ(Px(10 + ext.cx - 1, 20 + h - 1), kBlue);
    }
}

TEST_F(FrameworkText, HeightRules)
{
    Select(-20);  // character height: the cell is no shorter
    EXPECT_GE(m_dc->GetTextExtent(CString("字")).cy, 20);
    Select(0);  // default size
    EXPECT_EQ(m_dc->GetTextExtent(CString("字")).cy, KyTextEngine::kDefaultCellHeight);
    Select(20);
    // Width grows with the text; an empty text has the font's height only.
    EXPECT_LT(m_dc->GetTextExtent(CString("1")).cx, m_dc->GetTextExtent(CString("12")).cx);
    EXPECT_EQ(m_dc->GetTextExtent(CString("")), CSize(0, 20));
    // Extents do not depend on a bitmap being selected.
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    mem.SelectObject(&m_font);
    EXPECT_EQ(mem.GetTextExtent(CString("湿空气")), m_dc->GetTextExtent(CString("湿空气")));
    EXPECT_FALSE(mem.TextOut(0, 0, CString("湿空气")));
}

TEST_F(FrameworkText, TransparentModeFillsNoCell)
{
    Select(20);
    m_dc->SetBkColor(kBlue);
    m_dc->SetBkMode(TRANSPARENT);
    m_dc->SetTextColor(kRed);
    m_dc->TextOut(10, 20, CString("湿空气"));
    EXPECT_EQ(CountColor(kBlue), 0);
    EXPECT_GT(CountNot(kWhite), 50);
    const RECT ink = Ink();
    EXPECT_GE(ink.top, 20);
    EXPECT_LE(ink.bottom, 40);
}

TEST_F(FrameworkText, TurnedTextRunsUpwardFromItsReferencePoint)
{
    Select(20, 900);
    const CSize ext = m_dc->GetTextExtent(CString("湿空气焓湿图"));
    m_dc->SetBkColor(kBlue);
    EXPECT_TRUE(m_dc->TextOut(50, 150, CString("湿空气焓湿图")));
    const RECT ink = Ink();
    // The cell's top edge now runs up from (50, 150); its height extends to the right.
    EXPECT_EQ(ink.left, 50);
    EXPECT_EQ(ink.bottom, 150);
    EXPECT_NEAR(ink.right, 50 + 20, 1);
    EXPECT_NEAR(ink.top, 150 - ext.cx, 1);

    // Escapement is reduced to a turn: 3600 + 900 draws the same.
    m_dc->FillSolidRect(0, 0, 200, 160, kWhite);
    Select(20, 3600 * 5 + 900);
    m_dc->SetBkColor(kBlue);
    m_dc->TextOut(50, 150, CString("湿空气焓湿图"));
    EXPECT_EQ(Ink().left, ink.left);
    EXPECT_EQ(Ink().top, ink.top);
}

TEST_F(FrameworkText, ChineseHasRealGlyphs)
{
    Select(20);
    m_dc->SetBkMode(TRANSPARENT);
    m_dc->TextOut(10, 10, CString("湿空气焓湿图"));
    const int covered = CountNot(kWhite);
    EXPECT_GT(covered, 300);

    KyTextEngine& engine = KyTextEngine::Instance();
    auto lock = engine.Lock();
    KyTextEngine::Font font;
    ASSERT_TRUE(engine.Resolve(Font(20), font));
    const KyTextEngine::Layout* layout = engine.GetLayout(font, "湿空气焓湿图");
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(pango_layout_get_unknown_glyphs_count(layout->layout), 0);
    // The default face is the Simplified Chinese one, for every run of a mixed string.
    for (const char* text : {"湿空气焓湿图", "大气压 101325Pa/760mmHg"}) {
        layout = engine.GetLayout(font, text);
        ASSERT_NE(layout, nullptr);
        PangoLayoutLine* line = pango_layout_get_line_readonly(layout->layout, 0);
        ASSERT_TRUE(line && line->runs);
        for (GSList* r = line->runs; r; r = r->next) {
            auto* run = static_cast<PangoGlyphItem*>(r->data);
            PangoFontDescription* desc = pango_font_describe(run->item->analysis.font);
            EXPECT_STREQ(pango_font_description_get_family(desc), "Noto Sans CJK SC") << text;
            pango_font_description_free(desc);
        }
    }
}

// Glyphs fill their cell as Windows' Chinese faces do, at label sizes and large ones, and
// aliased text has no grey edge.
TEST_F(FrameworkText, GlyphsFillTheirCell)
{
    struct Case {
        const char* text;
        double minFill;  // inked rows / cell height
    };
    for (int cell : {8, 10, 12, 40}) {
        for (const Case& c : {Case{"含", 0.85}, Case{"室", 0.85}, Case{"0", 0.65}, Case{"8", 0.65}}) {
            Select(cell);
            m_dc->FillSolidRect(0, 0, 200, 160, kWhite);
            m_dc->SetBkMode(TRANSPARENT);
            m_dc->TextOut(10, 10, CString(c.text));
            const RECT ink = Ink();
            EXPECT_GE(ink.top, 10) << c.text << " " << cell;
            EXPECT_LE(ink.bottom, 10 + cell) << c.text << " " << cell;
            EXPECT_GE(ink.bottom - ink.top, c.minFill * cell) << c.text << " " << cell;
            const int grey = Count(0, 0, 200, 160, [](COLORREF p) { return p != RGB(0, 0, 0) && !IsWhite(p); });
            EXPECT_EQ(grey, 0) << c.text << " " << cell;
        }
    }
}

// Labels at every usual size are glyphs (from the glyph cache on raster surfaces, text in
// SVG); only text beyond the largest shaped size is filled as outlines.
TEST(FrameworkTextOutput, OnlyHugeTextBecomesOutlines)
{
    const struct {
        int height;
        bool glyphs;
    } cases[] = {{7, true}, {12, true}, {13, true}, {-15, true}, {26, true}, {-256, true}, {-300, false}};
    for (const auto& c : cases) {
        CImageWnd wnd(400, 400, RGB(255, 255, 255), CImageWnd::Pdf);
        CDC* dc = wnd.GetDC();
        const LOGFONT lf = Font(c.height);
        CFont font;
        font.CreateFontIndirect(&lf);
        dc->SelectObject(&font);
        ASSERT_TRUE(dc->TextOut(0, 0, CString("25")));
        // Glyphs from the cache embed a font in the PDF; outlines are paths only.
        const std::string pdf = wnd.Encode();
        EXPECT_EQ(pdf.find("/FontFile") != std::string::npos, c.glyphs) << "height " << c.height;
        wnd.ReleaseDC(dc);
    }
}

TEST_F(FrameworkText, HugeTextIsDrawnOrSkippedQuickly)
{
    Select(20000);  // a path, not glyph bitmaps
    m_dc->SetBkMode(TRANSPARENT);
    EXPECT_TRUE(m_dc->TextOut(-3000, -3000, CString("湿")));
    Select(INT_MAX);  // cannot be placed within the surface's coordinates: refused
    EXPECT_FALSE(m_dc->TextOut(0, 0, CString("湿")));
    Select(20);
    EXPECT_TRUE(m_dc->TextOut(INT_MAX, INT_MIN, CString("far away")));
    Select(INT_MIN, INT_MIN);
    m_dc->TextOut(5, 5, CString("x"));
    m_dc->GetTextExtent(CString("x"));
    // A string with NULs and control characters is one line of glyphs.
    Select(20);
    const wchar_t odd[] = {L'a', L'\0', L'\n', L'b'};
    EXPECT_EQ(m_dc->GetTextExtent(odd, 4).cy, 20);
    EXPECT_TRUE(m_dc->TextOut(0, 100, odd, 4));
    EXPECT_FALSE(m_dc->TextOut(0, 0, nullptr, 3));
    EXPECT_FALSE(m_dc->TextOut(0, 0, odd, -1));
}
