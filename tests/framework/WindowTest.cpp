// Off-screen windows: the live-window registry, sizes, PNG output and the vector kinds.
#include <kygraph/Bitmap.h>
#include <kygraph/DC.h>
#include <kygraph/Font.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/Pen.h>

#include <cairo.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

TEST(FrameworkWindows, IsWindowPtrSurvivesDestroyAndDelete)
{
    auto* wnd = new CImageWnd(10, 10);
    const CWnd* dangling = wnd;
    const HWND h = wnd->GetSafeHwnd();
    EXPECT_TRUE(CWnd::IsWindowPtr(dangling));
    EXPECT_TRUE(IsWindow(h));
    EXPECT_TRUE(wnd->DestroyWindow());
    EXPECT_FALSE(CWnd::IsWindowPtr(dangling));
    EXPECT_FALSE(IsWindow(h));
    EXPECT_EQ(wnd->GetDC(), nullptr);
    EXPECT_EQ(wnd->SavePng("/tmp/never.png"), 0);
    EXPECT_FALSE(wnd->SetClientSize(5, 5));
    EXPECT_FALSE(wnd->DestroyWindow());
    delete wnd;
    EXPECT_FALSE(CWnd::IsWindowPtr(dangling));  // compares the address only

    auto* live = new CImageWnd(10, 10);
    delete live;  // never destroyed explicitly
    EXPECT_FALSE(CWnd::IsWindowPtr(live));
    EXPECT_FALSE(CWnd::IsWindowPtr(nullptr));
    EXPECT_FALSE(IsWindow(nullptr));
}

TEST(FrameworkWindows, WindowDcCarriesTheBackground)
{
    CImageWnd wnd(30, 20, RGB(10, 20, 30));
    CDC* dc = wnd.GetDC();
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(dc->GetBkColor(), RGB(10, 20, 30));
    EXPECT_EQ(wnd.GetPixel(29, 19), RGB(10, 20, 30));
    RECT rc;
    wnd.GetClientRect(&rc);
    EXPECT_EQ(CRect(rc), CRect(0, 0, 30, 20));
    // A window DC is no memory DC: it takes no bitmap.
    CBitmap bmp;
    bmp.CreateCompatibleBitmap(dc, 4, 4);
    EXPECT_EQ(dc->SelectObject(&bmp), nullptr);
    EXPECT_EQ(wnd.ReleaseDC(dc), 1);
    EXPECT_EQ(wnd.ReleaseDC(dc), 0);
}

TEST(FrameworkWindows, ResizeAndDestroyWithDcsOut)
{
    CImageWnd wnd(30, 20, RGB(0, 0, 255));
    CDC* dc = wnd.GetDC();
    EXPECT_TRUE(wnd.SetClientSize(50, 40));
    RECT rc;
    wnd.GetClientRect(&rc);
    EXPECT_EQ(CRect(rc), CRect(0, 0, 50, 40));
    EXPECT_EQ(wnd.GetPixel(49, 39), RGB(0, 0, 255));
    dc->FillSolidRect(45, 35, 5, 5, RGB(255, 0, 0));  // the DC follows the new surface
    EXPECT_EQ(wnd.GetPixel(49, 39), RGB(255, 0, 0));
    EXPECT_FALSE(wnd.SetClientSize(-1, 5));
    EXPECT_FALSE(wnd.SetClientSize(40000, 5));
    wnd.GetClientRect(&rc);
    EXPECT_EQ(rc.right, 50);

    EXPECT_TRUE(wnd.DestroyWindow());
    EXPECT_EQ(dc->GetSafeHdc(), nullptr);  // deleted with the window, still safe to call
    EXPECT_FALSE(dc->LineTo(5, 5));
    EXPECT_EQ(wnd.ReleaseDC(dc), 1);
}

TEST(FrameworkWindows, Sizes)
{
    CImageWnd empty(0, 0);
    EXPECT_TRUE(CWnd::IsWindowPtr(&empty));
    CDC* dc = empty.GetDC();
    ASSERT_NE(dc, nullptr);
    EXPECT_TRUE(dc->LineTo(10, 10));  // draws nothing, fails nothing
    EXPECT_TRUE(dc->TextOut(0, 0, CString("湿")));
    EXPECT_EQ(empty.SavePng("/tmp/empty.png"), 0);
    empty.ReleaseDC(dc);

    for (auto size : {std::pair{-1, 10}, std::pair{10, -5}, std::pair{32768, 1}, std::pair{1, 1 << 30}}) {
        CImageWnd bad(size.first, size.second);
        EXPECT_FALSE(CWnd::IsWindowPtr(&bad));
        EXPECT_EQ(bad.GetDC(), nullptr);
    }

    CImageWnd big(20000, 20000);  // 1.6 GB: made, or refused cleanly
    if (CWnd::IsWindowPtr(&big)) {
        CDC* bdc = big.GetDC();
        bdc->FillSolidRect(19990, 19990, 10, 10, RGB(255, 0, 0));
        EXPECT_EQ(big.GetPixel(19999, 19999), RGB(255, 0, 0));
        big.ReleaseDC(bdc);
    }
}

TEST(FrameworkWindows, SavePngWritesWhatWasCopied)
{
    CImageWnd wnd(20, 10);
    CDC* dc = wnd.GetDC();
    dc->FillSolidRect(0, 0, 5, 5, RGB(0, 128, 255));
    const std::string path = ::testing::TempDir() + "kyfw_save.png";
    ASSERT_EQ(wnd.SavePng(path.c_str()), 1);
    cairo_surface_t* png = cairo_image_surface_create_from_png(path.c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(png), 20);
    auto* data = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(png));
    EXPECT_EQ(data[0], 0xFF0080FFu);  // ARGB of RGB(0, 128, 255)
    EXPECT_EQ(data[10], 0xFFFFFFFFu);
    cairo_surface_destroy(png);
    std::remove(path.c_str());

    EXPECT_EQ(wnd.SavePng("/nonexistent-dir/x.png"), 0);
    EXPECT_EQ(wnd.SavePng(nullptr), 0);
    EXPECT_EQ(wnd.SavePng(""), 0);
    EXPECT_EQ(wnd.Encode().substr(1, 3), "PNG");
    wnd.ReleaseDC(dc);

    // Noise packs to more than the writer first allows for, over several bands of rows: every
    // pixel must still come back.
    CImageWnd noise(700, 300);
    CDC* ndc = noise.GetDC();
    std::uint32_t seed = 12345;
    std::vector<COLORREF> drawn;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 700; ++x) {
            seed = seed * 1664525u + 1013904223u;
            drawn.push_back(seed >> 8 & 0xFFFFFF);
            ndc->FillSolidRect(x, y, 1, 1, drawn.back());
        }
    noise.ReleaseDC(ndc);
    ASSERT_EQ(noise.SavePng(path.c_str()), 1);
    png = cairo_image_surface_create_from_png(path.c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    const int stride = cairo_image_surface_get_stride(png);
    int wrong = 0;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 700; ++x) {
            const std::uint32_t px = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(png) + y * stride)[x];
            const COLORREF c = drawn[static_cast<size_t>(y) * 700 + x];
            wrong += px != (0xFF000000u | GetRValue(c) << 16 | GetGValue(c) << 8 | GetBValue(c));
        }
    EXPECT_EQ(wrong, 0);
    cairo_surface_destroy(png);
    std::remove(path.c_str());
}

// The chart's redraw path on a vector window: draw into a compatible memory DC, copy it over.
TEST(FrameworkVector, BlockTransferStaysVector)
{
    for (auto kind : {CImageWnd::Svg, CImageWnd::Pdf}) {
        CImageWnd wnd(120, 80, RGB(255, 255, 255), kind);
        CDC* dc = wnd.GetDC();
        CDC mem;
        ASSERT_TRUE(mem.CreateCompatibleDC(dc));
        CBitmap bmp;
        ASSERT_TRUE(bmp.CreateCompatibleBitmap(dc, 120, 80));
        CBitmap* old = mem.SelectObject(&bmp);
        EXPECT_EQ(old, CBitmap::GetStockBitmap());
        mem.FillSolidRect(0, 0, 120, 80, dc->GetBkColor());
        CPen pen(PS_DASH, 1, RGB(255, 0, 0));
        mem.SelectObject(&pen);
        mem.MoveTo(5, 5);
        mem.LineTo(100, 60);
        mem.Arc(10, 10, 60, 60, 35, 70, 35, 0);
        mem.TextOut(20, 30, CString("湿空气"));
        EXPECT_TRUE(dc->BitBlt(0, 0, 120, 80, &mem, 0, 0, SRCCOPY));
        // The window keeps what was copied after the memory surface is gone.
        mem.SelectObject(old);
        bmp.DeleteObject();

        const std::string doc = wnd.Encode();
        if (kind == CImageWnd::Svg) {
            EXPECT_NE(doc.find("<svg"), std::string::npos);
            EXPECT_NE(doc.find("stroke-dasharray"), std::string::npos);
            EXPECT_EQ(doc.find("<image"), std::string::npos);
        } else {
            EXPECT_EQ(doc.substr(0, 5), "%PDF-");
        }
        EXPECT_EQ(wnd.SavePng("/tmp/x.png"), 0);  // vector windows write vectors only
        const std::string path = ::testing::TempDir() + (kind == CImageWnd::Svg ? "kyfw.svg" : "kyfw.pdf");
        EXPECT_EQ(wnd.SaveVector(path.c_str()), 1);
        std::remove(path.c_str());
        EXPECT_EQ(wnd.SaveVector("/nonexistent-dir/x.svg"), 0);
        wnd.ReleaseDC(dc);
    }
}

// SVG for people: pixel units, one path per run of a pen (even widths on pixel edges, odd on
// pixel centres), labels as text with their cell and turn, all moved by the block transfer.
TEST(FrameworkVector, SvgHoldsPathsPerPenAndTextElements)
{
    CImageWnd wnd(120, 80, RGB(255, 255, 255), CImageWnd::Svg);
    CDC* dc = wnd.GetDC();
    CDC mem;
    ASSERT_TRUE(mem.CreateCompatibleDC(dc));
    CBitmap bmp;
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(dc, 100, 70));
    CBitmap* old = mem.SelectObject(&bmp);
    mem.FillSolidRect(0, 0, 100, 70, RGB(255, 255, 255));
    CPen wide(PS_SOLID, 2, RGB(0, 0, 255)), dashed(PS_DASH, 1, RGB(255, 0, 0));
    mem.SelectObject(&wide);
    mem.MoveTo(5, 5);
    mem.LineTo(50, 5);
    mem.MoveTo(5, 10);
    mem.LineTo(50, 10);
    mem.SelectObject(&dashed);
    mem.MoveTo(5, 5);
    mem.LineTo(90, 60);
    LOGFONT lf{};
    lf.lfHeight = 12;
    lf.lfEscapement = 900;
    CFont font;
    font.CreateFontIndirect(&lf);
    mem.SelectObject(&font);
    mem.SetBkColor(RGB(0, 255, 0));
    mem.TextOut(20, 30, CString("湿空气 <25>"));
    const POINT zone[] = {{60, 40}, {80, 40}, {70, 55}};
    mem.BeginGroup(CString("CKyGZone"));
    mem.FillPolygonAlpha(zone, 3, RGB(255, 128, 0), 64);
    mem.EndGroup();
    ASSERT_TRUE(dc->BitBlt(7, 3, 100, 70, &mem, 0, 0, SRCCOPY));
    mem.SelectObject(old);

    const std::string doc = wnd.Encode();
    for (const char* part : {
             "width=\"120px\" height=\"80px\" viewBox=\"0 0 120 80\"",
             "stroke=\"#0000ff\" stroke-width=\"2\" stroke-linecap=\"round\" stroke-linejoin=\"round\" d=\"M12 8l45 0M12 13l45 0\"",
             "stroke=\"#ff0000\" stroke-width=\"1\" stroke-dasharray=\"18 6\" d=\"M12.5 8.5l85 55\"",
             "font-family=\"Noto Sans CJK SC, sans-serif\" font-size=\"12px\"",
             "<rect x=\"27\" y=\"33\"",
             "fill=\"#00ff00\" transform=\"rotate(-90 27 33)\"/>",
             "transform=\"rotate(-90 27 33)\">湿空气 &lt;25&gt;</text>",
             "<g class=\"CKyGZone\">\n<path d=\"M67.5 43.5 L87.5 43.5 L77.5 58.5 Z\" fill-rule=\"evenodd\" fill=\"#ff8000\" fill-opacity=\"0.25\"/>\n</g>",
         })
        EXPECT_NE(doc.find(part), std::string::npos) << part << "\n" << doc;
    wnd.ReleaseDC(dc);
}
