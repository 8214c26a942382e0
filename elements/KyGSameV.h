// CKyGSameV: one line of constant specific volume (m³/kg dry air), from dry air to the saturation curve, labelled at its saturated end. Cut to the plot area.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameV : public CKyGSameLine {
public:
    CKyGSameV(CKyGChart* pChart = nullptr);
    CKyGSameV(const CKyGSameV& other) = default;
    CKyGSameV& operator=(const CKyGSameV& other) = default;
    ~CKyGSameV() override = default;

    CString toString() const override;

protected:
    // 0 with the state model's text when no state has the value; 1 otherwise (a line that
    // misses the plot area draws nothing and still succeeds, as the other families do).
    int Draw(CDC* pDC) override;
};
