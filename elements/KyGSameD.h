// CKyGSameD: one line of constant moisture content d (g/kg dry air): vertical, from the saturation curve or the bottom edge up to the top edge, labelled above its top end.
#pragma once

#include <kygraph/KyGSameLine.h>

class KYGRAPH_API CKyGSameD : public CKyGSameLine {
public:
    CKyGSameD(CKyGChart* pChart = nullptr);
    CKyGSameD(const CKyGSameD& other) = default;
    CKyGSameD& operator=(const CKyGSameD& other) = default;
    ~CKyGSameD() override = default;

protected:
    int Draw(CDC* pDC) override;
};
