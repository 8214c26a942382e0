// minimal_host: the smallest complete host of the KyGraph chart. It draws the default chart
// into an off-screen window, adds its own state point, an air-handling process and a
// heat-moisture-ratio line, maps a "mouse" pixel to a state, and saves the window as PNG.
//
//     minimal_host [out.png]        (default: minimal_host.png)
//
// Exit status: 0 when the chart was drawn and saved, 1 otherwise.
#include <kygraph/KyGraph.h>

#include <cmath>
#include <cstdio>
#include <numbers>

namespace {

int Fail(const char* what, const CString& why)
{
    std::fprintf(stderr, "minimal_host: %s: %s\n", what, why.ToUtf8().c_str());
    return 1;
}

CKyStaPnt Named(double tdb, double rh, const wchar_t* name)
{
    CKyStaPnt p;
    p.SetBy_TdbandRH(tdb, rh);  // a refused state stays unset; drawing it fails and says why
    p.SetName(CString(name));
    return p;
}

}  // namespace

int main(int argc, char** argv)
{
    const char* out = argc > 1 ? argv[1] : "minimal_host.png";

    // [attach] The window the chart draws into, then the chart singleton fitted into it.
    CImageWnd wnd(1000, 800, RGB(255, 255, 255));
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);

    // [settings] Settings are plain fields of the settings singleton, read at every redraw.
    CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    set->m_DrawHstSetting.m_dTInterval = 5.0;
    set->m_StyleSetting.m_ProcessStyle.crColor = RGB(200, 0, 0);

    // [redraw] Full redraw: background chart and the two design points.
    if (!chart->UptateDrawWnd(1)) return Fail("redraw", CString(L"no window or no surface"));

    // The states of a summer air handler: fresh and return air mixed 1:3, then cooled and
    // dried on the coil to the supply state.
    const CKyStaPnt fresh = Named(32.0, 0.55, L"新风");
    const CKyStaPnt ret = Named(26.0, 0.55, L"回风");
    const CKyStaPnt supply = Named(15.0, 0.92, L"送风");

    // [ratio] The room's heat-moisture ratio through the supply state, drawn in the
    // direction CalculateAng measures and past the return state, so that its label (at the
    // upper end) stays clear of the markers.
    CKyAS ratio;
    CPoint from, to;
    if (!ratio.SetByStates(supply, ret)) return Fail("ratio", ratio.GetLastErrorString());
    if (!chart->Convert(supply, from) || !chart->Convert(ret, to))
        return Fail("ratio", chart->GetLastErrorString());
    CKyGSameAS line;
    const double angle = line.CalculateAng(from, ratio.GetValue());  // radians, screen-up positive
    const CSize span = to - from;  // pixel arithmetic saturates instead of overflowing
    const double length = 1.6 * std::hypot(span.cx, span.cy);
    line.SetValue(ratio);
    line.SetStartPoint(from);
    line.SetEndPoint(from + CSize(Ky::TruncToInt(length * std::cos(angle)), Ky::TruncToInt(-length * std::sin(angle))));
    chart->Draw(&line);
    std::printf("%s runs at %.1f degrees\n", ratio.OutputString(1).ToUtf8().c_str(), angle * 180.0 / std::numbers::pi);

    // [process] The air handler as a process; its markers go over the ratio line.
    CKyProcess process;
    CKyStaPnt mix;
    if (!process.AddMixing(CString(L"混合"), fresh, 1.0, ret, 3.0, &mix) ||
        !process.AddCoolingDehumidify(CString(L"冷却"), mix, supply))
        return Fail("process", process.GetLastErrorString());
    CKyGProcess path;
    path.SetValue(process);
    if (!chart->Draw(&path)) return Fail("process", path.GetLastErrorString());

    // [mouse] A click at a pixel becomes a state, which is marked and described.
    const CPoint click(600, 200);
    CKyStaPnt clicked;
    if (chart->Convert(click, clicked)) {
        clicked.SetName(CString(L"点击点"));
        CKyGStaPnt marker;
        marker.SetValue(clicked);
        marker.SetDimPosition(CKyGStaPnt::DimBottom);
        chart->Draw(&marker);
        std::printf("pixel (%d, %d): t = %.1f °C, φ = %.0f %%, d = %.2f g/kg, h = %.1f kJ/kg\n", click.x, click.y,
                    clicked.GetTdb(), clicked.GetRH() * 100.0, clicked.GetD(), clicked.GetH());
    } else {
        std::printf("pixel (%d, %d): %s\n", click.x, click.y, chart->GetLastErrorString().ToUtf8().c_str());
    }

    // [present] Copy the finished surface to the window (also the repaint path), then save.
    if (!chart->UptateDrawWnd(0)) return Fail("present", CString(L"no surface to copy"));
    if (!wnd.SavePng(out)) return Fail("save", CString(out));
    std::printf("wrote %s\n", out);
    return 0;
}
