// CKyGChartSetting: the one object holding every setting of the chart. Elements and the chart
// core read it afresh at each draw, so a change by the host shows at the next redraw.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyGDimContentSetting.h>
#include <kygraph/KyGDrawHstSetting.h>
#include <kygraph/KyGOverlaySetting.h>
#include <kygraph/KyGRangeSetting.h>
#include <kygraph/KyGShortSetting.h>
#include <kygraph/KyGStyleSetting.h>
#include <kygraph/KyObject.h>
#include <kygraph/String.h>

class KYGRAPH_API CKyGChartSetting : public CKyObject {
public:
    // The singleton, built on the first call. Its construction never reaches the chart.
    static CKyGChartSetting* GetKyGChartSetting();

    // A snapshot for the host; there is no assignment back.
    CKyGChartSetting(const CKyGChartSetting& other);
    CKyGChartSetting& operator=(const CKyGChartSetting&) = delete;
    ~CKyGChartSetting() override;

    CString toString() const override;

    // Range extent x length per unit x the singleton's draw scale, in pixels. Intended: a
    // snapshot's lengths follow the live draw scale, not its own.
    double GetTRangeLength() const;
    double GetDRangeLength() const;
    double GetDrawScale() const;
    // Stores scale when it is at least 0.5; smaller values and NaN are ignored silently.
    void SetDrawScale(double scale);

    CKyGRangeSetting m_RangeSetting;            // extent of the chart body
    CKyGStyleSetting m_StyleSetting;            // the ten style records
    CKyGDimContentSetting m_DimContentSetting;  // properties to label (host only)
    CKyGShortSetting m_ShortSetting;            // property short names (host only)
    CKyGDrawHstSetting m_DrawHstSetting;        // switches, intervals, design conditions
    CKyGOverlaySetting m_OverlaySetting;        // optional overlays drawn by hosts (zones, data, ...)
    double m_dLeftMargin;    // blank width left of the chart body at draw scale 1; 20
    double m_dRightMargin;   // blank width right of the chart body; 20
    double m_dBottomMargin;  // blank height below the chart body; 30
    double m_dTopMargin;     // blank height above the chart body (d-axis title); 50
    double m_dTLength;       // vertical length of one kelvin of range at draw scale 1; 4
    double m_dDLength;       // horizontal length of one g/kg of range at draw scale 1; 10
    double m_dDrawScale;     // factor on every margin, length, text height and marker size; 1

protected:
    CKyGChartSetting();
};
