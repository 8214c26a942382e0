// CKyGPlotFrame: what one redraw or one mapping call needs of the chart, computed once: the
// settings it was built from, the plot corners at their draw scale, tan of the enthalpy axis's
// angle, the drawing's origin and the state model's conditions (pressure and formulation).
// The chart builds one for each mapping call, and one for a whole redraw that every element
// drawn in it reads, so nothing in a redraw goes back to the singletons for these.
#pragma once
#include <kygraph/KyExport.h>
#include <kygraph/KyTypes.h>
#include <kygraph/Point.h>

class CKyGChartSetting;

class KYGRAPH_API CKyGPlotFrame {
public:
    // settings must outlive the frame; pressure and formulation are read from the model now.
    CKyGPlotFrame(const CKyGChartSetting& settings, CPoint origin, double tanH);

    const CKyGChartSetting& Settings() const { return *m_pSettings; }
    double Scale() const { return m_dScale; }
    double TanH() const { return m_dTanH; }
    CPoint Origin() const { return m_ptOrigin; }       // bottom-left of the whole drawing
    CPoint MinTMinD() const { return m_ptMinTMinD; }   // bottom-left of the plot area
    CPoint ChartOrigin() const { return m_ptChartOrigin; }  // top-left of the plot area
    CPoint MaxTMaxD() const { return m_ptMaxTMaxD; }   // top-right of the plot area
    double B() const { return m_dB; }                  // Pa
    Ky::_Formulation Formulation() const { return m_eFormulation; }

    // (h kJ/kg, d g/kg) to a pixel; 0 when d lies left of the left edge (pt untouched), h
    // below the bottom reference (pt.x already written), or the range gives no mapping.
    int PointOf(double h, double d, CPoint& pt) const;
    // All that PointOf reads: frames whose mappings compare equal put every state on the same
    // pixel, so pixels worked out for one serve the other.
    struct Mapping {
        double minD, maxD, minH, maxH, tanH;  // the range's corner values, tan of the h angle
        CPoint chartOrigin, maxTMaxD, minTMinD;
        bool operator==(const Mapping&) const = default;
    };
    Mapping GetMapping() const;
    // Pixel to enthalpy / moisture content; 0 below the bottom reference or left of the left
    // edge, or when the geometry gives no mapping.
    int HOf(const CPoint& pt, double& h) const;
    int DOf(const CPoint& pt, double& d) const;

private:
    const CKyGChartSetting* m_pSettings;
    double m_dScale;
    double m_dTanH;
    CPoint m_ptOrigin;
    CPoint m_ptMinTMinD;
    CPoint m_ptChartOrigin;
    CPoint m_ptMaxTMaxD;
    double m_dB;
    Ky::_Formulation m_eFormulation;
};
