// CKyGDRuler: the water-vapour partial-pressure ruler above the chart: a 10^2 Pa scale with
// upward ticks and an mmHg scale with downward ticks on one baseline, titled "水蒸汽分压力".
#pragma once

#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGDRuler : public CKyGDrawBase {
public:
    CKyGDRuler(CKyGChart* pChart = nullptr);
    CKyGDRuler(const CKyGDRuler& other) = default;
    CKyGDRuler& operator=(const CKyGDRuler& other) = default;
    ~CKyGDRuler() override = default;

    CString toString() const override;

protected:
    // 0 when a pressure span is empty (the first scale stays drawn if the second fails).
    int Draw(CDC* pDC) override;
};
