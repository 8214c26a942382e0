// CKyGChartFrame: the page border, three edges of the chart body, the two axis titles and,
// when enabled, the title block (name, atmospheric pressure, both enthalpy formulas).
#pragma once

#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGChartFrame : public CKyGDrawBase {
public:
    CKyGChartFrame(CKyGChart* pChart = nullptr);
    CKyGChartFrame(const CKyGChartFrame& other) = default;
    CKyGChartFrame& operator=(const CKyGChartFrame& other) = default;
    ~CKyGChartFrame() override = default;

    CString toString() const override;
    void SetTitleEnable(int enable) { m_bTitleEnable = enable; }
    int GetTitleEnable() const { return m_bTitleEnable; }

protected:
    // Always 1.
    int Draw(CDC* pDC) override;

    int m_bTitleEnable = 1;
};
