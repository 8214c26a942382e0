// CKyGSameRH: one curve of constant relative humidity (a fraction, 1.0 = saturation), sampled every 0.2 °C from the minimum temperature until it leaves the chart, labelled in percent at its end.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameRH : public CKyGSameLine {
public:
    CKyGSameRH(CKyGChart* pChart = nullptr);
    CKyGSameRH(const CKyGSameRH& other) = default;
    CKyGSameRH& operator=(const CKyGSameRH& other) = default;
    ~CKyGSameRH() override = default;

    // Lets go of the states and pixels of the curves kept from earlier redraws (each is kept
    // with all that shapes it, so this never changes a drawing; it frees the memory).
    static void ForgetKept();

protected:
    int Draw(CDC* pDC) override;
};
