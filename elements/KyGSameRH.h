// CKyGSameRH: one curve of constant relative humidity (a fraction, 1.0 = saturation), sampled every 0.2 °C from the minimum temperature until it leaves the chart, labelled in percent at its end.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameRH : public CKyGSameLine {
public:
    CKyGSameRH(CKyGChart* pChart = nullptr);
    CKyGSameRH(const CKyGSameRH& other) = default;
    CKyGSameRH& operator=(const CKyGSameRH& other) = default;
    ~CKyGSameRH() override = default;

protected:
    int Draw(CDC* pDC) override;
};
