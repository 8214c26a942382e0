// CKyGSameT: one isotherm: one line of constant dry-bulb temperature (°C) from the chart's left edge to the saturation curve (or the right or top edge), labelled at its left end.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameT : public CKyGSameLine {
public:
    CKyGSameT(CKyGChart* pChart = nullptr);
    CKyGSameT(const CKyGSameT& other) = default;
    CKyGSameT& operator=(const CKyGSameT& other) = default;
    ~CKyGSameT() override = default;

protected:
    int Draw(CDC* pDC) override;
};
