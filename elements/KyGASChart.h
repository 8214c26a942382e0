// CKyGASChart: the heat-moisture-ratio protractor in the bottom-right corner: an outer
// kJ/kg half circle (-10000..+10000, "∞" and "-∞") and an inner kcal/kg one (-2500..+2500),
// every ray measured on the chart itself so it stays true to the oblique enthalpy axis.
#pragma once

#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGASChart : public CKyGDrawBase {
public:
    CKyGASChart(CKyGChart* pChart = nullptr);
    CKyGASChart(const CKyGASChart& other) = default;
    CKyGASChart& operator=(const CKyGASChart& other) = default;
    ~CKyGASChart() override = default;

    CString toString() const override;

protected:
    // 0 when a ratio cannot be laid on the chart (what was drawn before stays).
    int Draw(CDC* pDC) override;
    // One graduation along the unit direction (dx, dy): on the outer circle (outer != 0,
    // tick outwards, text beyond it) or the inner one (tick inwards, text inside). Always true.
    bool DrawLabelLine(CDC* pDC, CPoint ptCenter, double dx, double dy, double length, CString text, int outer);
};
