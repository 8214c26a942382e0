// CKyGSameTwb: one line of constant wet-bulb temperature (°C), from the saturation curve, where it meets the isotherm of the same value, towards dry air, labelled at its saturated end. Cut to the plot area.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameTwb : public CKyGSameLine {
public:
    CKyGSameTwb(CKyGChart* pChart = nullptr);
    CKyGSameTwb(const CKyGSameTwb& other) = default;
    CKyGSameTwb& operator=(const CKyGSameTwb& other) = default;
    ~CKyGSameTwb() override = default;

    CString toString() const override;

protected:
    // 0 with the state model's text when no state has the value; 1 otherwise (a line that
    // misses the plot area draws nothing and still succeeds, as the other families do).
    int Draw(CDC* pDC) override;
};
