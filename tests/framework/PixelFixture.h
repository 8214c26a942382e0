// A small aliased raster window with its DC, and pixel-reading helpers shared by the
// framework's pixel tests.
#pragma once

#include <kygraph/DC.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/WinTypes.h>

#include <gtest/gtest.h>

#include <functional>

class PixelTest : public ::testing::Test {
protected:
    static constexpr COLORREF kWhite = RGB(255, 255, 255);
    static constexpr COLORREF kRed = RGB(255, 0, 0);
    static constexpr COLORREF kBlue = RGB(0, 0, 255);

    explicit PixelTest(int cx = 64, int cy = 64) : m_wnd(cx, cy, kWhite)
    {
        m_wnd.SetAntialias(false);
        m_dc = m_wnd.GetDC();
    }
    ~PixelTest() override { m_wnd.ReleaseDC(m_dc); }

    COLORREF Px(int x, int y) const { return m_wnd.GetPixel(x, y); }
    // Pixels in [l, r) x [t, b) for which pred holds.
    int Count(int l, int t, int r, int b, const std::function<bool(COLORREF)>& pred) const
    {
        int n = 0;
        for (int y = t; y < b; ++y)
            for (int x = l; x < r; ++x) n += pred(Px(x, y)) ? 1 : 0;
        return n;
    }
    int CountColor(COLORREF c) const
    {
        RECT rc;
        m_wnd.GetClientRect(&rc);
        return Count(0, 0, rc.right, rc.bottom, [c](COLORREF p) { return p == c; });
    }
    int CountNot(COLORREF c) const
    {
        RECT rc;
        m_wnd.GetClientRect(&rc);
        return Count(0, 0, rc.right, rc.bottom, [c](COLORREF p) { return p != c; });
    }

    CImageWnd m_wnd;
    CDC* m_dc = nullptr;
};
