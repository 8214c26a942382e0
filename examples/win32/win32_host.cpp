// win32_host: a Windows desktop host of the KyGraph chart. Its main window holds the chart
// view and a status line; the view attaches the chart, redraws it when resized, repaints with
// UptateDrawWnd(0), shows the state under the mouse (t, φ, d, h) in the status line with
// Convert, and places a named state point where it is clicked.
//
//     win32_host.exe                       an ordinary window
//     win32_host.exe --screenshot out.png  shows the window, moves the mouse over the chart,
//                                          clicks once, writes what the screen shows of the
//                                          window and exits (0 when the chart was drawn)
//     win32_host.exe --render out.png      draws the default chart at 1000 x 800 into an
//                                          off-screen window through GDI and writes it
#include <kygraph/KyGraph.h>

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int kStatusHeight = 24;

struct Host {
    HWND main = nullptr;
    HWND view = nullptr;
    HWND status = nullptr;
    CWnd chartWnd;                 // the view, as the chart sees it
    std::vector<CKyStaPnt> points;  // placed by clicking, redrawn after every full redraw
};

Host g_host;

// Every state point of the host, on the surface the last full redraw left.
void DrawHostPoints()
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    for (const CKyStaPnt& p : g_host.points) {
        CKyGStaPnt marker;
        marker.SetValue(p);
        marker.SetDimEnable(1);
        chart->Draw(&marker);
    }
}

void Redraw()
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&g_host.chartWnd);
    chart->UptateDrawWnd(1);
    DrawHostPoints();
    chart->UptateDrawWnd(0);
}

void ShowState(int x, int y)
{
    CKyStaPnt state;
    CString text;
    if (CKyGChart::GetKyGChart()->Convert(CPoint(x, y), state)) {
        text.Format(L"t = %.1f °C   φ = %.0f %%   d = %.2f g/kg   h = %.1f kJ/kg", state.GetTdb(),
                    state.GetRH() * 100.0, state.GetD(), state.GetH());
    } else {
        text = L"outside the chart";
    }
    SetWindowTextW(g_host.status, text.GetString());
}

void PlacePoint(int x, int y)
{
    CKyStaPnt state;
    if (!CKyGChart::GetKyGChart()->Convert(CPoint(x, y), state)) {
        MessageBeep(MB_ICONWARNING);
        return;
    }
    CString name;
    name.Format(L"P%d", static_cast<int>(g_host.points.size()) + 1);
    state.SetName(name);
    g_host.points.push_back(state);
    CKyGStaPnt marker;
    marker.SetValue(state);
    marker.SetDimEnable(1);
    CKyGChart::GetKyGChart()->Draw(&marker);
    CKyGChart::GetKyGChart()->UptateDrawWnd(0);
}

LRESULT CALLBACK ViewProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    switch (msg) {
    case WM_SIZE:
        Redraw();
        return 0;
    case WM_PAINT: {
        PAINTSTRUCT ps;
        BeginPaint(hwnd, &ps);
        EndPaint(hwnd, &ps);
        // The finished bitmap, copied in one block: a repaint never shows a half-drawn chart.
        CKyGChart::GetKyGChart()->UptateDrawWnd(0);
        return 0;
    }
    case WM_ERASEBKGND: return 1;
    case WM_MOUSEMOVE: ShowState(static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))); return 0;
    case WM_LBUTTONDOWN: PlacePoint(static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))); return 0;
    default: return DefWindowProcW(hwnd, msg, wp, lp);
    }
}

LRESULT CALLBACK MainProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    switch (msg) {
    case WM_SIZE: {
        const int cx = LOWORD(lp), cy = HIWORD(lp);
        MoveWindow(g_host.view, 0, 0, cx, cy > kStatusHeight ? cy - kStatusHeight : 0, TRUE);
        MoveWindow(g_host.status, 0, cy > kStatusHeight ? cy - kStatusHeight : 0, cx, kStatusHeight, TRUE);
        return 0;
    }
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcW(hwnd, msg, wp, lp);
    }
}

void PumpMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

// What the screen shows of the main window's client area, written as PNG through an
// off-screen window of the same size.
bool SaveScreenshot(const char* path)
{
    RECT rc;
    GetClientRect(g_host.main, &rc);
    POINT origin{0, 0};
    ClientToScreen(g_host.main, &origin);
    CImageWnd shot(rc.right, rc.bottom);
    CDC screen;
    HDC hScreen = GetDC(nullptr);
    screen.Attach(hScreen);
    CDC* dc = shot.GetDC();
    const bool ok = dc && dc->BitBlt(0, 0, rc.right, rc.bottom, &screen, origin.x, origin.y, SRCCOPY);
    shot.ReleaseDC(dc);
    ReleaseDC(nullptr, screen.Detach());
    return ok && shot.SavePng(path);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show)
{
    const char* screenshot = nullptr;
    for (int i = 1; i + 1 < __argc; ++i) {
        if (std::strcmp(__argv[i], "--screenshot") == 0) screenshot = __argv[i + 1];
        if (std::strcmp(__argv[i], "--render") == 0) {
            CImageWnd wnd(1000, 800);
            CKyGChart* chart = CKyGChart::GetKyGChart();
            chart->AttachDarwWnd(&wnd);
            return chart->UptateDrawWnd(1) && wnd.SavePng(__argv[i + 1]) ? 0 : 1;
        }
    }

    WNDCLASSEXW wc{};
    wc.cbSize = sizeof wc;
    wc.hInstance = instance;
    wc.hCursor = LoadCursor(nullptr, IDC_CROSS);
    wc.lpfnWndProc = ViewProc;
    wc.lpszClassName = L"KyGraphView";
    RegisterClassExW(&wc);
    wc.lpfnWndProc = MainProc;
    wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = L"KyGraphHost";
    RegisterClassExW(&wc);

    g_host.main = CreateWindowExW(0, L"KyGraphHost", L"KyGraph", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 40, 40, 1000,
                                  800, nullptr, nullptr, instance, nullptr);
    g_host.view = CreateWindowExW(0, L"KyGraphView", L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, g_host.main, nullptr,
                                  instance, nullptr);
    g_host.status = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_LEFT, 0, 0, 0, 0, g_host.main,
                                    nullptr, instance, nullptr);
    if (!g_host.main || !g_host.view || !g_host.status || !g_host.chartWnd.Attach(g_host.view)) {
        std::fprintf(stderr, "win32_host: cannot create the windows\n");
        return 1;
    }
    ShowWindow(g_host.main, screenshot ? SW_SHOWNORMAL : show);
    UpdateWindow(g_host.main);

    if (screenshot) {
        // A visitor's mouse: over the indoor design point, then a click on it.
        PumpMessages();
        CPoint at;
        const bool onChart = CKyGChart::GetKyGChart()->Convert(CKyGChart::GetKyGChart()->GetStaPntN(), at) != 0;
        SendMessageW(g_host.view, WM_MOUSEMOVE, 0, MAKELPARAM(at.x + 40, at.y));
        SendMessageW(g_host.view, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x + 40, at.y));
        for (int i = 0; i < 20; ++i) {
            PumpMessages();
            Sleep(25);
        }
        wchar_t status[256] = L"";
        GetWindowTextW(g_host.status, status, 256);
        std::printf("status: %s\npoints: %d\n", CString(status).ToUtf8().c_str(), static_cast<int>(g_host.points.size()));
        const bool saved = SaveScreenshot(screenshot);
        DestroyWindow(g_host.main);
        return onChart && saved && g_host.points.size() == 1 ? 0 : 1;
    }

    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return 0;
}
