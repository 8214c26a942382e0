// CKyGSameH: one line of constant specific enthalpy h (kJ/kg dry air), running in the chart's
// oblique enthalpy direction from its lower-right end (bottom edge, right edge or saturation
// curve) to its upper-left end (left or top edge). Also gives the pipeline the chart's
// enthalpy span.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameH : public CKyGSameLine {
public:
    CKyGSameH(CKyGChart* pChart = nullptr);
    CKyGSameH(const CKyGSameH& other) = default;
    CKyGSameH& operator=(const CKyGSameH& other) = default;
    ~CKyGSameH() override = default;

    // Enthalpy of the range's corner at minimum d and minimum temperature.
    static double GetMinValue();
    // Enthalpy of the range's corner at maximum d and maximum temperature.
    static double GetMaxValue();

protected:
    int Draw(CDC* pDC) override;
};
