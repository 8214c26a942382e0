// CKyGOverlaySetting: the switches, intervals and styles of the chart's optional overlays that
// hosts draw over the full redraw: the constant wet-bulb and constant specific-volume line
// families, measured or hourly data sets, zones and the legend. Elements read it afresh at
// each draw, as they read every other setting.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyLineStyle.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyPntStyle.h>
#include <kygraph/String.h>

class KYGRAPH_API CKyGOverlaySetting : public CKyObject {
public:
    CKyGOverlaySetting();
    CKyGOverlaySetting(const CKyGOverlaySetting& other) = default;
    CKyGOverlaySetting& operator=(const CKyGOverlaySetting& other) = default;
    ~CKyGOverlaySetting() override = default;

    CString toString() const override;

    int m_bShowSameTwb;         // non-zero: draw constant wet-bulb lines; 0
    int m_bDimSameTwb;          // non-zero: label them; 1
    double m_dTwbInterval;      // spacing of constant wet-bulb lines, degC; 5
    tagKyLineStyle m_SameTwbStyle;  // RGB(0, 128, 160), PS_DASH, width 1, text height 7

    int m_bShowSameV;           // non-zero: draw constant specific-volume lines; 0
    int m_bDimSameV;            // non-zero: label them; 1
    double m_dVInterval;        // spacing of constant-volume lines, m3/kg dry air; 0.01
    tagKyLineStyle m_SameVStyle;    // RGB(150, 90, 30), PS_DOT, width 1, text height 7

    tagKyPntStyle m_DataStyle;  // data-set points and density cells; RGB(30, 90, 200), size 3
    int m_nDensityThreshold;    // a data set with more states than this draws as a density; 2000
    double m_dDensityCell;      // side of a density cell in pixels at draw scale 1; 6

    tagKyLineStyle m_ZoneStyle; // zone outline pen and name height (colour is the zone's); width 1, text 8
    int m_nZoneAlpha;           // opacity of a zone's fill, 0..255; 56

    tagKyLineStyle m_LegendStyle;  // legend box border and text; RGB(96, 96, 96), text height 8
};
