// What only the Windows build can get wrong: real HWNDs coming and going under the chart,
// GDI objects selected into and restored from a real HDC, and the library's string table
// read from KyGraph.dll while the host has entries of its own with the same ids.
#include "chart/ChartTestSupport.h"

#include <kygraph/Brush.h>
#include <kygraph/Font.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/Pen.h>

#include <functional>
#include <vector>

#include <winver.h>

namespace {

constexpr wchar_t kHostClass[] = L"KyTestHost";

HWND MakeHostWindow(int cx, int cy)
{
    static const ATOM cls = [] {
        WNDCLASSEXW wc{};
        wc.cbSize = sizeof wc;
        wc.lpfnWndProc = DefWindowProcW;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = kHostClass;
        return RegisterClassExW(&wc);
    }();
    (void)cls;
    RECT rc{0, 0, cx, cy};
    AdjustWindowRect(&rc, WS_OVERLAPPEDWINDOW, FALSE);
    return CreateWindowExW(0, kHostClass, L"KyGraph test host", WS_OVERLAPPEDWINDOW, 0, 0, rc.right - rc.left,
                           rc.bottom - rc.top, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

int InkedPixels(CDC* dc, int cx, int cy)
{
    int inked = 0;
    for (int y = 0; y < cy; y += 4)
        for (int x = 0; x < cx; x += 4) inked += dc->GetPixel(x, y) != RGB(255, 255, 255);
    return inked;
}

}  // namespace

using WindowsHost = ChartFixture;

TEST_F(WindowsHost, RealWindowFromAttachToDestroy)
{
    HWND hwnd = MakeHostWindow(640, 480);
    ASSERT_NE(hwnd, nullptr);
    CWnd host;
    EXPECT_EQ(chart->AttachDarwWnd(&host), 1);
    EXPECT_EQ(chart->UptateDrawWnd(1), 0) << "a CWnd that never attached a handle is no window";

    ASSERT_TRUE(host.Attach(hwnd));
    EXPECT_FALSE(host.Attach(hwnd)) << "a second attach must not replace the first";
    RECT rc{};
    host.GetClientRect(&rc);
    EXPECT_EQ(rc.right, 640);
    EXPECT_EQ(rc.bottom, 480);

    chart->AttachDarwWnd(&host);
    EXPECT_NE(chart->UptateDrawWnd(1), 0);
    EXPECT_GT(InkedPixels(chart->GetChartDC(), 640, 480), 500) << "the surface shows no chart";
    EXPECT_NE(chart->UptateDrawWnd(0), 0) << "repaint";
    CKyGChartFrame frame;
    EXPECT_EQ(chart->Draw(&frame), 1);

    // A client area of nothing: no surface can be made, so nothing is drawn.
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOZORDER);
    host.GetClientRect(&rc);
    if (rc.right == 0 || rc.bottom == 0) {
        EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    }

    // The host destroys its window behind the chart's back.
    ASSERT_TRUE(DestroyWindow(hwnd));
    EXPECT_EQ(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(chart->UptateDrawWnd(0), 0);
    EXPECT_EQ(chart->DrawAllChart(), 0);
    EXPECT_EQ(chart->Draw(&frame), 0);
    EXPECT_EQ(host.Detach(), hwnd);
}

TEST(WindowsGdi, PrimitivesRestoreWhatTheDcHeld)
{
    CImageWnd wnd(200, 100);
    CDC* wndDC = wnd.GetDC();
    CDC dc;
    CBitmap bmp;
    ASSERT_TRUE(dc.CreateCompatibleDC(wndDC));
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(wndDC, 200, 100));
    CBitmap* stockBitmap = dc.SelectObject(&bmp);
    ASSERT_NE(stockBitmap, nullptr) << "the previous bitmap comes back as an object";
    dc.FillSolidRect(0, 0, 200, 100, RGB(255, 255, 255));

    HDC h = dc.GetSafeHdc();
    const HGDIOBJ pen = GetCurrentObject(h, OBJ_PEN), brush = GetCurrentObject(h, OBJ_BRUSH),
                  font = GetCurrentObject(h, OBJ_FONT);
    const COLORREF text = GetTextColor(h);
    CVoArray<CPoint> pts;
    pts.Add(CPoint(10, 80));
    pts.Add(CPoint(60, 20));
    pts.Add(CPoint(110, 80));
    RECT box{120, 10, 180, 70};
    const std::function<int()> primitives[] = {
        [&] { return CKyGDrawBase::DrawLine(&dc, CPoint(0, 50), CPoint(200, 50), PS_SOLID, 2, RGB(255, 0, 0)); },
        [&] { return CKyGDrawBase::DrawTextW(&dc, CPoint(5, 5), 14.0, 0.0, RGB(0, 0, 255), CString(L"温度 25")); },
        [&] { return CKyGDrawBase::DrawArc(&dc, &box, CPoint(180, 40), CPoint(120, 40), PS_DOT, 1, RGB(0, 0, 0)); },
        [&] { return CKyGDrawBase::DrawPolyLine(&dc, pts, PS_DASH, 1, RGB(0, 128, 0)); },
        [&] { return CKyGDrawBase::DrawEllipse(&dc, CPoint(150, 80), 9.0, 9.0, PS_SOLID, 1, RGB(0, 0, 0), 1); },
    };
    for (size_t i = 0; i < std::size(primitives); ++i) {
        SCOPED_TRACE(i);
        EXPECT_NE(primitives[i](), 0);
        EXPECT_EQ(GetCurrentObject(h, OBJ_PEN), pen);
        EXPECT_EQ(GetCurrentObject(h, OBJ_BRUSH), brush);
        EXPECT_EQ(GetCurrentObject(h, OBJ_FONT), font);
        EXPECT_EQ(GetTextColor(h), text);
    }
    EXPECT_EQ(dc.GetPixel(100, 50), RGB(255, 0, 0)) << "GDI drew the 2-pixel line";
    EXPECT_EQ(dc.GetPixel(150, 80), RGB(0, 0, 0)) << "the filled dot";
    EXPECT_EQ(dc.SelectObject(stockBitmap), &bmp);
    wnd.ReleaseDC(wndDC);
}

TEST_F(WindowsHost, LibraryReadsItsOwnStringsOverTheHosts)
{
    CString host;
    ASSERT_TRUE(host.LoadString(103));
    EXPECT_EQ(host, L"host entry 103") << "outside the library the host's own table answers";

    CImageWnd wnd(1000, 800);
    wnd.EnableRecording(true);
    chart->AttachDarwWnd(&wnd);
    ASSERT_NE(chart->UptateDrawWnd(1), 0);
    EXPECT_EQ(chart->IsValid(CPoint(-5, -5)), 0);
    EXPECT_EQ(chart->GetLastErrorString(), L"指定点不在焓湿图的有效范围之内。");
    bool title = false;
    for (const CDrawRecord& r : chart->GetChartDC()->GetRecords()) {
        EXPECT_NE(r.text, L"host title");
        title = title || r.text == L"湿空气焓湿图";
    }
    EXPECT_TRUE(title) << "the title comes from KyGraph.dll's table";

    ASSERT_TRUE(host.LoadString(103));
    EXPECT_EQ(host, L"host entry 103") << "the library put the host's module back";

    // The DLL's version record is its own (a runtime statically linked in once replaced it).
    wchar_t path[MAX_PATH];
    ASSERT_GT(GetModuleFileNameW(GetModuleHandleW(L"KyGraph.dll"), path, MAX_PATH), 0u);
    std::vector<char> info(GetFileVersionInfoSizeW(path, nullptr));
    ASSERT_FALSE(info.empty());
    ASSERT_TRUE(GetFileVersionInfoW(path, 0, static_cast<DWORD>(info.size()), info.data()));
    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(info.data(), L"\\StringFileInfo\\080404b0\\OriginalFilename", &value, &length));
    EXPECT_STREQ(static_cast<const wchar_t*>(value), L"KyGraph.dll");
}
