#include <kygraph/KyGChart.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyGPlotFrame.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Saturate.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cxxabi.h>
#include <mutex>
#include <optional>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>


CKyGChart* CKyGChart::GetKyGChart()
{
    // Init reads the settings singleton, which is complete before this one is built and never
    // reaches back here while it is being built.
    static CKyGChart instance;
    return &instance;
}

CKyGChart::CKyGChart() { Init(); }

CKyGChart::CKyGChart(CKyGChartSetting& settings) : m_pSettings(&settings) { Init(); }

void CKyGChart::Reinit() { Init(); }

CKyGChartSetting* CKyGChart::Settings() const
{
    return m_pSettings ? m_pSettings : CKyGChartSetting::GetKyGChartSetting();
}

CKyGChart::~CKyGChart()
{
    m_dcChart.DeleteDC();
    m_bmpChart.DeleteObject();
}

CString CKyGChart::toString() const { return CString(L"CKyGChart"); }

void CKyGChart::Init()
{
    m_pDrawWnd = nullptr;
    const CKyGChartSetting* set = Settings();
    const double s = set->GetDrawScale();

    // The local slope of constant h at about 20 degC and d = 0 sets the angle of the whole
    // chart; the setters' results are not needed (a failed one gives NaN, and so no angle).
    CKyStaPnt p1, p2;
    p1.SetBy_DandTdb(0.0, 20.001);
    p2.SetBy_HandTdb(p1.GetH(), 20.0);
    const double dd = p2.GetD() - p1.GetD();
    m_dHAngle = std::atan((0.001 * set->m_dTLength * s) / (dd * set->m_dDLength * s));
    m_dTanHAngle = std::tan(m_dHAngle);

    const CKyGRangeSetting& range = set->m_RangeSetting;
    const double dh = range.GetMinDMaxTH() - range.GetMinDMinTH();
    double length = std::fabs(static_cast<double>(GetMinTAndMinDPnt().y) - GetChartOrigin().y);
    length *= std::cos(m_dHAngle);
    // A degenerate temperature range has no enthalpy span to divide by: the scale stays 0.
    m_dPerHLength = (std::isfinite(dh) && dh != 0.0) ? std::fabs(length / dh) : 0.0;
}

CPoint CKyGChart::GetOrigin() const { return m_ptOrigin; }

int CKyGChart::SetOrigin(CPoint pt)
{
    m_ptOrigin = pt;
    return 1;
}

CKyGPlotFrame CKyGChart::Frame() const
{
    return m_pRedrawFrame ? *m_pRedrawFrame : CKyGPlotFrame(*Settings(), m_ptOrigin, m_dTanHAngle);
}

CPoint CKyGChart::GetMinTAndMinDPnt() const { return Frame().MinTMinD(); }

CPoint CKyGChart::GetChartOrigin() const { return Frame().ChartOrigin(); }

CPoint CKyGChart::GetMaxTAndMaxDPnt() const { return Frame().MaxTMaxD(); }

CPoint CKyGChart::GetChartMaxPoint() const
{
    const CKyGChartSetting* set = Settings();
    const double s = set->GetDrawScale();
    return GetMaxTAndMaxDPnt() +
           CSize(Ky::TruncToInt(set->m_dRightMargin * s), Ky::TruncToInt(-set->m_dTopMargin * s));
}

int CKyGChart::GetPoint(double h, double d, CPoint& pt) const { return Frame().PointOf(h, d, pt); }

int CKyGChart::GetH(const CPoint& pt, double& h) const { return Frame().HOf(pt, h); }

int CKyGChart::GetD(const CPoint& pt, double& d) const { return Frame().DOf(pt, d); }

int CKyGChart::Convert(const CPoint& pt, CKyStaPnt& pnt)
{
    CResourceModule::Scope scope(KyGraphModule());
    const CKyGPlotFrame frame = Frame();
    double h = 0.0, d = 0.0;
    if (!frame.HOf(pt, h) || !frame.DOf(pt, d)) {
        m_strLastError.LoadString(IDS_POINT_OUT_OF_RANGE);
        return 0;
    }
    if (!pnt.SetBy_HandD(h, d)) {
        m_strLastError.LoadString(IDS_POINT_INVALID);
        return 0;
    }
    const CKyGRangeSetting& range = frame.Settings().m_RangeSetting;
    const double t = pnt.GetTdb();
    const double dd = pnt.GetD();
    // NaN would slip through the comparisons below: a non-finite state is out of range.
    if (!std::isfinite(t) || !std::isfinite(dd) || t - 1e-9 > range.GetMaxT() || range.GetMinT() > t + 1e-9 ||
        dd - 1e-9 > range.GetMaxD() || range.GetMinD() > dd + 1e-9) {
        m_strLastError.LoadString(IDS_POINT_OUT_OF_RANGE);
        return 0;
    }
    return 1;
}

int CKyGChart::Convert(const CKyStaPnt& pnt, CPoint& pt)
{
    CResourceModule::Scope scope(KyGraphModule());
    const CKyGPlotFrame frame = Frame();
    const CKyGRangeSetting& range = frame.Settings().m_RangeSetting;
    const double t = pnt.GetTdb();
    const double d = pnt.GetD();
    if (!std::isfinite(t) || !std::isfinite(d) || t - 1e-6 > range.GetMaxT() || range.GetMinT() > t + 1e-6 ||
        d - 1e-6 > range.GetMaxD() || range.GetMinD() > d + 1e-6) {
        m_strLastError.LoadString(IDS_POINT_OUT_OF_RANGE);
        return 0;
    }
    if (!frame.PointOf(pnt.GetH(), d, pt)) {
        m_strLastError.LoadString(IDS_POINT_OUT_OF_RANGE);
        return 0;
    }
    return 1;
}

int CKyGChart::IsValid(const CPoint& pt)
{
    CKyStaPnt pnt;
    return Convert(pt, pnt);
}

double CKyGChart::GetHAngle() const { return m_dHAngle; }

double CKyGChart::GetPerHLength() const { return m_dPerHLength; }

void CKyGChart::SetZoomScale(double scale) { m_dZoomScale = scale; }

double CKyGChart::GetZoomScale() const { return m_dZoomScale; }

double CKyGChart::GetInitScale() const { return m_dInitScale; }

CKyStaPnt CKyGChart::GetStaPntN() const { return m_StaPntN; }

CKyStaPnt CKyGChart::GetStaPntW() const { return m_StaPntW; }

bool CKyGChart::HasWindow() const { return m_pDrawWnd != nullptr && CWnd::IsWindowPtr(m_pDrawWnd); }

int CKyGChart::AttachDarwWnd(CWnd* pWnd)
{
    m_pDrawWnd = pWnd;
    if (!HasWindow()) return 1;
    FitToWindow();
    return 1;
}

void CKyGChart::FitToWindow()
{
    CKyGChartSetting* set = Settings();
    CRect client;
    m_pDrawWnd->GetClientRect(&client);
    const double w = static_cast<double>(client.Width()) - 40.0;
    const double h = static_cast<double>(client.Height()) - 40.0;

    const double paperW = set->m_dLeftMargin + set->m_dRightMargin + set->m_RangeSetting.GetDRange() * set->m_dDLength;
    const double paperH = set->m_dBottomMargin + set->m_dTopMargin + set->m_RangeSetting.GetTRange() * set->m_dTLength;
    m_dZoomScale = 1.0;
    // A page the host has zeroed or negated has no scale: keep the previous fit.
    if (!(std::isfinite(paperW) && paperW > 0.0 && std::isfinite(paperH) && paperH > 0.0)) return;
    const double k = std::min(w / paperW, h / paperH);
    if (!std::isfinite(k)) return;

    // A window too small for any drawing gives k < 0.5 (even negative): stored here, refused
    // by the settings, so the drawing is larger than the space it is centred in. Intended.
    m_dInitScale = k;
    set->SetDrawScale(k);
    const CPoint origin(Ky::TruncToInt((w - paperW * k) / 2.0 + 20.0),
                        Ky::TruncToInt(h - (h - paperH * k) / 2.0 + 20.0));
    // Always into the singleton, also when this is a chart of the host's own, unless the chart
    // has settings of its own: then it is wholly apart from the singleton.
    (m_pSettings ? this : GetKyGChart())->SetOrigin(origin);
}

int CKyGChart::UptateDrawWnd(int bRedraw)
{
    if (!HasWindow()) return 0;
    CRect client;
    m_pDrawWnd->GetClientRect(&client);
    const int w = client.Width();
    const int h = client.Height();

    if (bRedraw) {
        CDC* pWndDC = m_pDrawWnd->GetDC();
        if (pWndDC == nullptr) return 0;
        // A raster surface of the same size is kept for a raster window: the fill below covers
        // all of it, and a new one would be cleared twice. A vector surface would keep the
        // last drawing, and a raster window drawn through one would rasterise it all again.
        const bool keep = m_sizeSurface == CSize(w, h) && m_dcChart.GetDeviceCaps(TECHNOLOGY) == DT_RASDISPLAY &&
                          pWndDC->GetDeviceCaps(TECHNOLOGY) == DT_RASDISPLAY;
        m_dcChart.DeleteDC();
        if (!keep) m_bmpChart.DeleteObject();
        m_dcChart.ClearRecords();  // a recording host sees the primitives of this redraw only
        m_sizeSurface = CSize();
        const bool created =
            m_dcChart.CreateCompatibleDC(pWndDC) && (keep || m_bmpChart.CreateCompatibleBitmap(pWndDC, w, h));
        const COLORREF background = pWndDC->GetBkColor();
        m_pDrawWnd->ReleaseDC(pWndDC);
        if (!created) {
            // No surface (empty window, or no memory for it): nothing to draw on or copy. The
            // pass still runs, drawing nothing, so that the reference points follow the settings.
            m_dcChart.DeleteDC();
            m_bmpChart.DeleteObject();
            DrawAllChart();
            return 0;
        }
        m_dcChart.SelectObject(&m_bmpChart);
        m_sizeSurface = CSize(w, h);
        m_dcChart.FillSolidRect(0, 0, w, h, background);
        DrawAllChart();
    }

    if (m_sizeSurface.cx <= 0 || m_sizeSurface.cy <= 0) return 0;
    CDC* pWndDC = m_pDrawWnd->GetDC();
    if (pWndDC == nullptr) return 0;
    // After the window grew only the old surface exists to be copied.
    const int result = pWndDC->BitBlt(0, 0, std::min<int>(w, m_sizeSurface.cx), std::min<int>(h, m_sizeSurface.cy), &m_dcChart,
                                      0, 0, SRCCOPY);
    m_pDrawWnd->ReleaseDC(pWndDC);
    return result;
}

namespace {

CString ClassNameOf(const CKyGDrawBase& element)
{
    // A redraw names some eighty elements of a dozen classes: each class is demangled once.
    // Never destroyed: elements of static objects may be drawn during exit.
    static auto* mutex = new std::mutex;
    static auto* names = new std::unordered_map<std::type_index, CString>;
    const std::type_index type(typeid(element));
    std::lock_guard<std::mutex> lock(*mutex);
    if (const auto known = names->find(type); known != names->end()) return known->second;
    const char* mangled = typeid(element).name();
    int status = -1;
    char* name = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
    const CString result = CString::FromUtf8(status == 0 && name ? name : mangled);
    std::free(name);
    return names->emplace(type, result).first->second;
}

}  // namespace

int CKyGChart::Draw(CKyGDrawBase* pElem)
{
    if (pElem == nullptr) return 0;
    pElem->SetChart(this);
    // Without a surface (before the first redraw, or after one of an empty window) there is
    // nothing to draw on: an element run anyway would report a drawing that never happened.
    if (!HasWindow() || m_sizeSurface.cx <= 0 || m_sizeSurface.cy <= 0) return 0;
    CDC* dc = GetChartDC();
    // Each element is one part of the drawing, which a vector document keeps as a group named
    // by its class (toString is not that: the line families answer "CKyGProcess").
    dc->BeginGroup(ClassNameOf(*pElem));
    // An element drawn on its own reads one frame for the whole of its drawing, as those of a
    // redraw read the redraw's.
    // Within a redraw the frame is already there: building one per line would be wasted.
    const CKyGPlotFrame* outer = m_pRedrawFrame;
    std::optional<CKyGPlotFrame> own;
    if (outer == nullptr) m_pRedrawFrame = &own.emplace(Frame());
    int result = 0;
    try {
        result = pElem->Draw(dc);
    } catch (...) {
        // Nothing is thrown across the interface: an element that throws only loses its
        // own drawing.
        result = 0;
    }
    m_pRedrawFrame = outer;
    dc->EndGroup();
    return result;
}

CDC* CKyGChart::GetChartDC() { return &m_dcChart; }

int CKyGChart::DrawAllChart()
{
    if (!HasWindow()) return 0;
    const CKyGChartSetting* set = Settings();
    const CKyGDrawHstSetting& hst = set->m_DrawHstSetting;
    // Every element goes through the singleton, whichever chart runs the redraw, and reads the
    // one frame built here for the whole redraw.
    CKyGChart* chart = GetKyGChart();
    const CKyGPlotFrame frame = chart->Frame();
    const CKyGPlotFrame* outer = chart->m_pRedrawFrame;
    chart->m_pRedrawFrame = &frame;
    CKyGBackground::DrawBase(*chart, *set);

    {
        CResourceModule::Scope scope(KyGraphModule());
        CString outdoorName, indoorName;
        outdoorName.LoadString(IDS_OUTDOOR_POINT);
        indoorName.LoadString(IDS_INDOOR_POINT);
        m_StaPntW.SetName(outdoorName);
        m_StaPntN.SetName(indoorName);
    }
    bool outdoor = false, indoor = false;
    if (hst.m_bWinter) {
        outdoor = m_StaPntW.SetBy_TdbandRH(hst.m_dWinterOutTdb, hst.m_dWinterOutRH / 100.0);
        indoor = m_StaPntN.SetBy_TdbandRH(hst.m_dWinterInTdb, hst.m_dWinterInRH / 100.0);
    } else {
        outdoor = m_StaPntW.SetBy_TdbandTwb(hst.m_dSummerOutTdb, hst.m_dSummerOutTwb);
        indoor = m_StaPntN.SetBy_TdbandRH(hst.m_dSummerInTdb, hst.m_dSummerInRH / 100.0);
    }
    if (outdoor) CKyGBackground::DrawReferencePoint(*chart, m_StaPntW, true);
    if (indoor) CKyGBackground::DrawReferencePoint(*chart, m_StaPntN, false);
    chart->m_pRedrawFrame = outer;
    return 1;
}
