// Fuzz target: arbitrary settings, then a full redraw. Every member of the settings singleton
// gets either its default or a value from the input (so each input starts from the defaults,
// whatever the one before left), the chart redraws into a window of arbitrary size, a state
// point, a process and a ratio line are drawn over it, and pixels and states are converted
// both ways. Besides the sanitizers, libFuzzer's -timeout catches a redraw that does not end.
#include "FuzzValues.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyAS.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGSameAS.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyProcess.h>

#include <cmath>
#include <cstdio>
#include <optional>
#include <cstdlib>

namespace {

using fuzz::AnyDouble;
using fuzz::AnyInt;
using fuzz::AnyText;

// Larger windows only cost time: every drawing path is reached at these sizes already, and
// the densest settings still redraw at this size well within the one second allowed.
constexpr int kMaxSide = 1200;
constexpr int kSmallSide = 400;

void Require(bool ok, const char* what)
{
    if (ok) return;
    std::fprintf(stderr, "chart invariant broken: %s\n", what);
    std::abort();
}

// The settings as the library builds them; their constructor is open to derived classes.
struct DefaultSettings : CKyGChartSetting {
    DefaultSettings() = default;
};

// The default, or (half of the time) a value from the input.
double Pick(FuzzedDataProvider& in, double def) { return in.ConsumeBool() ? AnyDouble(in) : def; }
int PickInt(FuzzedDataProvider& in, int def) { return in.ConsumeBool() ? AnyInt(in) : def; }

tagKyLineStyle LineStyle(FuzzedDataProvider& in, const tagKyLineStyle& def)
{
    tagKyLineStyle s = def;
    if (!in.ConsumeBool()) return s;
    s.crColor = in.ConsumeIntegral<COLORREF>();
    s.nPenStyle = PickInt(in, def.nPenStyle);
    s.nWidth = PickInt(in, def.nWidth);
    s.nTextHeight = PickInt(in, def.nTextHeight);
    s.dSpare = Pick(in, def.dSpare);
    return s;
}

void FillSettings(FuzzedDataProvider& in, CKyGChartSetting& set, const CKyGChartSetting& def)
{
    CKyGRangeSetting& range = set.m_RangeSetting;
    range = def.m_RangeSetting;
    range.SetMinT(Pick(in, def.m_RangeSetting.GetMinT()));
    range.SetMaxT(Pick(in, def.m_RangeSetting.GetMaxT()));
    range.SetMinD(Pick(in, def.m_RangeSetting.GetMinD()));
    range.SetMaxD(Pick(in, def.m_RangeSetting.GetMaxD()));

    CKyGStyleSetting& style = set.m_StyleSetting;
    const CKyGStyleSetting& ds = def.m_StyleSetting;
    for (tagKyLineStyle CKyGStyleSetting::*m :
         {&CKyGStyleSetting::m_SameDStyle, &CKyGStyleSetting::m_SameHStyle, &CKyGStyleSetting::m_SameTStyle,
          &CKyGStyleSetting::m_SameRHStyle, &CKyGStyleSetting::m_SameASStyle, &CKyGStyleSetting::m_ProcessStyle,
          &CKyGStyleSetting::m_ASChartStyle, &CKyGStyleSetting::m_FrameStyle, &CKyGStyleSetting::m_SpareStyle})
        style.*m = LineStyle(in, ds.*m);
    style.m_StaPntStyle = ds.m_StaPntStyle;
    if (in.ConsumeBool()) {
        style.m_StaPntStyle.crColor = in.ConsumeIntegral<COLORREF>();
        style.m_StaPntStyle.dSize = Pick(in, ds.m_StaPntStyle.dSize);
        style.m_StaPntStyle.nTextHeight = PickInt(in, ds.m_StaPntStyle.nTextHeight);
    }

    // Label content and short names: held for the host, but still settings a host may set.
    set.m_DimContentSetting = def.m_DimContentSetting;
    set.m_ShortSetting = def.m_ShortSetting;
    if (in.ConsumeBool()) {
        CKyGDimContentSetting& dim = set.m_DimContentSetting;
        dim.SetDimContent(in.ConsumeIntegral<DWORD>());
        dim.AddDimContent(in.ConsumeIntegral<DWORD>());
        dim.RemoveDimContent(in.ConsumeIntegral<DWORD>());
        dim.IsDim(static_cast<KYSTAPNTPTY>(AnyInt(in)));
        const auto pty = static_cast<KYSTAPNTPTY>(AnyInt(in));
        set.m_ShortSetting.SetShortName(pty, AnyText(in));
        set.m_ShortSetting.GetShortName(pty);
    }

    CKyGDrawHstSetting& hst = set.m_DrawHstSetting;
    const CKyGDrawHstSetting& dh = def.m_DrawHstSetting;
    hst = dh;
    hst.m_dPressure = Pick(in, dh.m_dPressure);
    hst.m_dDInterval = Pick(in, dh.m_dDInterval);
    hst.m_dHInterval = Pick(in, dh.m_dHInterval);
    hst.m_dTInterval = Pick(in, dh.m_dTInterval);
    hst.m_dRHInterval = Pick(in, dh.m_dRHInterval);
    hst.m_nSpare = PickInt(in, dh.m_nSpare);
    if (in.ConsumeBool()) hst.m_strCity = AnyText(in);
    for (int CKyGDrawHstSetting::*m :
         {&CKyGDrawHstSetting::m_bShowASChart, &CKyGDrawHstSetting::m_bShowSameT, &CKyGDrawHstSetting::m_bShowSameD,
          &CKyGDrawHstSetting::m_bShowSameH, &CKyGDrawHstSetting::m_bShowSameRH, &CKyGDrawHstSetting::m_bShowTitle,
          &CKyGDrawHstSetting::m_bWinter})
        hst.*m = PickInt(in, dh.*m);
    for (double CKyGDrawHstSetting::*m :
         {&CKyGDrawHstSetting::m_dSummerOutTdb, &CKyGDrawHstSetting::m_dSummerOutTwb,
          &CKyGDrawHstSetting::m_dSummerInTdb, &CKyGDrawHstSetting::m_dSummerInRH,
          &CKyGDrawHstSetting::m_dWinterOutTdb, &CKyGDrawHstSetting::m_dWinterOutRH,
          &CKyGDrawHstSetting::m_dWinterInTdb, &CKyGDrawHstSetting::m_dWinterInRH})
        hst.*m = Pick(in, dh.*m);

    for (double CKyGChartSetting::*m :
         {&CKyGChartSetting::m_dLeftMargin, &CKyGChartSetting::m_dRightMargin, &CKyGChartSetting::m_dBottomMargin,
          &CKyGChartSetting::m_dTopMargin, &CKyGChartSetting::m_dTLength, &CKyGChartSetting::m_dDLength,
          &CKyGChartSetting::m_dDrawScale})
        set.*m = Pick(in, def.*m);
    if (in.ConsumeBool()) set.SetDrawScale(AnyDouble(in));
}

// A state point from any setter, so that both good and refused points reach the drawing.
CKyStaPnt AnyPoint(FuzzedDataProvider& in)
{
    CKyStaPnt p;
    const double a = AnyDouble(in), b = AnyDouble(in);
    switch (in.ConsumeIntegralInRange(0, 3)) {
    case 0: p.SetBy_TdbandRH(a, b); break;
    case 1: p.SetBy_HandD(a, b); break;
    case 2: p.SetBy_DandTdb(a, b); break;
    default: break;  // never set
    }
    if (in.ConsumeBool()) p.SetName(AnyText(in));
    return p;
}

CPoint AnyPixel(FuzzedDataProvider& in, int w, int h)
{
    if (in.ConsumeBool()) return CPoint(in.ConsumeIntegralInRange(-10, w + 10), in.ConsumeIntegralInRange(-10, h + 10));
    return CPoint(AnyInt(in), AnyInt(in));
}

void DrawOverlays(FuzzedDataProvider& in, CKyGChart& chart, int w, int h)
{
    CKyGStaPnt marker;
    marker.SetValue(AnyPoint(in));
    marker.SetDimEnable(AnyInt(in));
    marker.SetDimPosition(static_cast<CKyGStaPnt::DimPosition>(AnyInt(in)));
    chart.Draw(&marker);

    CKyProcess process;
    CKyStaPntArray path;
    const int count = in.ConsumeIntegralInRange(1, 4);
    for (int i = 0; i < count; ++i) {
        CKyStaPnt p = AnyPoint(in);
        path.Add(p);
    }
    process.AddPath(AnyText(in, 4), path);
    process.AddSensible(CString(L"sensible"), path[0], AnyDouble(in));
    CKyGProcess processElem;
    processElem.SetValue(process);
    chart.Draw(&processElem);

    CKyAS ratio;
    if (in.ConsumeBool()) ratio.SetValue(AnyDouble(in));
    else ratio.SetType(static_cast<CKyAS::_EnKyASType>(in.ConsumeIntegralInRange(-1, 3)));
    CKyGSameAS line;
    line.SetValue(ratio);
    line.SetDimEnable(AnyInt(in));
    line.SetStartPoint(AnyPixel(in, w, h));
    line.SetEndPoint(AnyPixel(in, w, h));
    chart.Draw(&line);
    line.CalculateAng(AnyPixel(in, w, h), AnyDouble(in));
}

// Whether the plot area lies where pixel arithmetic is exact: settings that push a corner
// to the ends of the int range saturate the mapping, which then cannot be inverted.
bool Unsaturated(const CKyGChart& chart)
{
    constexpr int kFar = 1 << 24;
    for (CPoint p : {chart.GetMinTAndMinDPnt(), chart.GetChartOrigin(), chart.GetMaxTAndMaxDPnt()})
        if (p.x < -kFar || p.x > kFar || p.y < -kFar || p.y > kFar) return false;
    return true;
}

// Whether the mapping has an inverse at all: a range with extent in t and d, finite positive
// lengths and draw scale, and a plot area where pixel arithmetic is exact. Otherwise (an empty
// temperature range, a length or scale of -inf, an origin at INT_MIN) the way from a pixel may
// still land on a state, since every pixel of a zero enthalpy span reads its one value, while
// the way back has that zero span to divide by: there is nothing to map back to.
bool Invertible(const CKyGChart& chart)
{
    const CKyGChartSetting& set = *CKyGChartSetting::GetKyGChartSetting();
    const CKyGRangeSetting& range = set.m_RangeSetting;
    const auto positive = [](double v) { return std::isfinite(v) && v > 0.0; };
    return range.GetMinT() < range.GetMaxT() && range.GetMinD() < range.GetMaxD() && positive(set.m_dTLength) &&
           positive(set.m_dDLength) && positive(set.GetDrawScale()) && Unsaturated(chart);
}

void ConvertBothWays(FuzzedDataProvider& in, CKyGChart& chart, int w, int h)
{
    CKyStaPnt pnt;
    CPoint pt = AnyPixel(in, w, h);
    if (chart.Convert(pt, pnt)) {
        Require(pnt.IsValid(), "a pixel inside the chart has a state");
        CPoint back;
        const bool mapsBack = chart.Convert(pnt, back) == 1;
        if (Invertible(chart)) Require(mapsBack, "a state taken from a pixel maps back");
        const long long dx = std::llabs(static_cast<long long>(back.x) - pt.x);
        const long long dy = std::llabs(static_cast<long long>(back.y) - pt.y);
        if ((dx > 2 || dy > 2) && Unsaturated(chart) && pt.x >= 0 && pt.x < w && pt.y >= 0 && pt.y < h) {
            // Reported, not fatal: with settings changed after the enthalpy direction was fixed
            // the two directions need not meet again, and that is no crash.
            std::fprintf(stderr, "pixel %d,%d -> h %.17g d %.17g -> pixel %d,%d\n", pt.x, pt.y, pnt.GetH(), pnt.GetD(),
                         back.x, back.y);
        }
    }
    chart.IsValid(AnyPixel(in, w, h));
    CPoint out;
    chart.Convert(AnyPoint(in), out);
    const double hv = AnyDouble(in);
    chart.GetPoint(hv, AnyDouble(in), out);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider in(data, size);
    CKyChart* model = CKyChart::InstanceGloble();
    model->ResetDefaults();
    // Built at the default pressure, which the corner points of the range depend on.
    static const DefaultSettings defaults;
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(nullptr);
    chart->SetOrigin(CPoint(0, 0));

    // The size first, so that it stays put while the fuzzer grows the rest of the input;
    // mostly small, since the chart fits itself into any size and small ones draw faster.
    const int maxSide = in.ConsumeIntegralInRange(0, 7) == 0 ? kMaxSide : kSmallSide;
    const int w = in.ConsumeIntegralInRange(0, maxSide);
    const int h = in.ConsumeIntegralInRange(0, maxSide);
    if (in.ConsumeBool()) model->SetGlobleB(AnyDouble(in));
    if (in.ConsumeBool()) model->SetFormulation(Ky::FORMULATION_ASHRAE2017);
    CKyGChartSetting& set = *CKyGChartSetting::GetKyGChartSetting();
    FillSettings(in, set, defaults);

    // Some inputs draw on a chart of their own, whose enthalpy angle comes from these settings
    // rather than from the defaults the singleton was built with.
    std::optional<CKyGChart> own;
    if (in.ConsumeIntegralInRange(0, 3) == 0) own.emplace();
    CKyGChart& target = own ? *own : *chart;

    CImageWnd wnd(w, h);
    wnd.SetAntialias(in.ConsumeBool());
    target.AttachDarwWnd(&wnd);
    // Attaching fits the origin and draw scale to the window; a host may still set its own.
    if (in.ConsumeBool()) set.m_dDrawScale = AnyDouble(in);
    if (in.ConsumeBool()) target.SetOrigin(AnyPixel(in, w, h));
    target.SetZoomScale(AnyDouble(in));
    target.UptateDrawWnd(1);
    DrawOverlays(in, target, w, h);
    ConvertBothWays(in, target, w, h);
    target.UptateDrawWnd(0);
    target.AttachDarwWnd(nullptr);
    model->ResetDefaults();
    return 0;
}
