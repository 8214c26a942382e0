// CKyGChart: the chart singleton. It owns the geometry of the chart on screen (where the
// drawing lies in the window, the oblique enthalpy axis), the mapping between pixels and
// psychrometric states in both directions, the off-screen surface with the full redraw, and
// the two design reference points. Elements place everything they draw through it.
#pragma once

#include <kygraph/Bitmap.h>
#include <kygraph/DC.h>
#include <kygraph/KyExport.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyGPlotFrame.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Point.h>
#include <kygraph/String.h>
#include <kygraph/Wnd.h>

class CKyGChartSetting;
class CKyGDrawBase;

class KYGRAPH_API CKyGChart : public CKyObject {
public:
    // The singleton, built on first use (after the settings singleton, which Init reads).
    static CKyGChart* GetKyGChart();

    // A chart of its own; it shares nothing with the singleton except that attaching a
    // window stores the fitted origin into the singleton.
    CKyGChart();
    ~CKyGChart() override;
    CKyGChart(const CKyGChart&) = delete;
    CKyGChart& operator=(const CKyGChart&) = delete;

    CString toString() const override;

    // Extensions beyond the library's original interface. The chart fixes its enthalpy angle
    // and pixels per kJ/kg when it is built; a host that shows one scene after another needs
    // them to follow each scene, and a host that answers from several threads needs to map
    // pixels while another thread draws.
    //
    // Re-runs the computation of construction from the settings, pressure and formulation in
    // effect now, as if the chart were built afresh: the enthalpy angle, the pixels per kJ/kg,
    // and no window attached (the surface and the reference points are kept). A host calls it
    // after changing lengths, range, draw scale, pressure or formulation, before attaching.
    void Reinit();
    // A chart of the host's own that reads settings (not owned; it must outlive the chart)
    // instead of the settings singleton, and keeps its fitted origin and draw scale to itself
    // and settings. With a copy of the singleton's settings it maps pixels and states exactly
    // as the singleton would, without touching anything the singleton's drawing uses. An
    // element drawn through it reads these settings; its full redraw still draws through the
    // singleton.
    explicit CKyGChart(CKyGChartSetting& settings);

    // Bottom-left corner of the whole drawing (plot area plus margins) in client pixels;
    // (0, 0) until a window is attached. SetOrigin always returns 1.
    CPoint GetOrigin() const;
    int SetOrigin(CPoint pt);

    // Corners of the plot area and of the drawing, from the origin, the settings' margins,
    // range lengths and draw scale; each offset component truncated separately.
    CPoint GetMinTAndMinDPnt() const;  // bottom-left of the plot area
    CPoint GetChartOrigin() const;     // top-left of the plot area
    CPoint GetMaxTAndMaxDPnt() const;  // top-right of the plot area
    CPoint GetChartMaxPoint() const;   // top-right of the whole drawing

    // (h kJ/kg, d g/kg) to a pixel. Values above the range map beyond the plot area; 0 when
    // d lies left of the left edge (pt untouched) or h below the bottom reference (pt.x
    // already written), or when the range gives no mapping at all. Sets no error text.
    int GetPoint(double h, double d, CPoint& pt) const;

    // Pixel to state inside the range (tolerance 1e-9). 0 with entry 103 when the pixel is
    // outside the range, 104 when the state model refuses its (h, d); pnt then keeps what was
    // set in it.
    int Convert(const CPoint& pt, CKyStaPnt& pnt);
    // State to pixel. The tolerance is 1e-6, deliberately wider than the other direction's,
    // so a state taken from a pixel always maps back. 0 with entry 103 when out of range.
    int Convert(const CKyStaPnt& pnt, CPoint& pt);
    // Whether pt converts to a state inside the range (sets the error text as Convert does).
    int IsValid(const CPoint& pt);

    // Angle of the constant-enthalpy lines below the horizontal, radians; fixed at
    // construction.
    double GetHAngle() const;
    // Pixels per kJ/kg perpendicular to the constant-enthalpy lines; fixed at construction.
    double GetPerHLength() const;

    void SetZoomScale(double scale);  // held for the host, unchecked
    double GetZoomScale() const;
    // The fit-to-window scale of the last attach (may be below the 0.5 the settings accept).
    double GetInitScale() const;

    // Copies of the indoor ("室内点") and outdoor ("室外点") reference points of the last
    // full redraw.
    CKyStaPnt GetStaPntN() const;
    CKyStaPnt GetStaPntW() const;

    // Remembers pWnd (not owned) and, when it is a window, fits the drawing into its client
    // area less a 20-pixel border. Always 1.
    int AttachDarwWnd(CWnd* pWnd);
    // Non-zero bRedraw: re-creates the surface at client size, clears it to the window's
    // background and redraws the whole chart; then copies the surface to the window. Returns
    // the copy's result; 0 without a valid window or surface.
    int UptateDrawWnd(int bRedraw);
    // Draws the background chart and the two reference points onto the surface, in a fixed
    // order. 1; 0 without a valid window.
    int DrawAllChart();
    // Hands pElem this chart and draws it onto the surface: the element's result, or 0
    // without a valid window or surface (the element keeps the chart pointer).
    int Draw(CKyGDrawBase* pElem);
    // The off-screen surface's DC, for hosts and elements that draw on it themselves.
    CDC* GetChartDC();
    // What a mapping or a drawing reads of this chart: during a full redraw the frame that
    // redraw built, otherwise one built now from the settings, origin and model in effect.
    CKyGPlotFrame Frame() const;

protected:
    // Pixel to enthalpy / moisture content; 0 below the bottom reference or left of the
    // left edge, or when the geometry gives no mapping.
    int GetH(const CPoint& pt, double& h) const;
    int GetD(const CPoint& pt, double& d) const;

private:
    // Computes the enthalpy-axis angle and the pixels per kJ/kg from the current settings.
    void Init();
    // The settings this chart reads: its own, else the singleton's.
    CKyGChartSetting* Settings() const;
    // The fit-to-window computation of an attach.
    void FitToWindow();
    bool HasWindow() const;

    double m_dHAngle = 0.0;       // radians below the horizontal
    double m_dTanHAngle = 0.0;    // tan(m_dHAngle), for the mappings
    double m_dPerHLength = 0.0;   // pixels per kJ/kg
    CPoint m_ptOrigin;            // bottom-left of the drawing; (0, 0) until attached
    CWnd* m_pDrawWnd = nullptr;   // host window, not owned
    CDC m_dcChart;                // the off-screen surface
    CBitmap m_bmpChart;           // selected into m_dcChart
    CKyStaPnt m_StaPntN;          // indoor reference point
    CKyStaPnt m_StaPntW;          // outdoor reference point
    double m_dZoomScale = 1.0;    // held for the host
    double m_dInitScale = 1.0;    // fit-to-window scale of the last attach
    CSize m_sizeSurface;          // size of m_bmpChart; (0, 0) while there is no surface
    CKyGChartSetting* m_pSettings = nullptr;  // the host's settings, not owned; null: the singleton
    const CKyGPlotFrame* m_pRedrawFrame = nullptr;  // the running redraw's frame, else null
};
