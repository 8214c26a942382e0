// CKyGLineFamilies: the constant wet-bulb and constant specific-volume families as hosts draw
// them over the full redraw: each family when its switch in the overlay settings is on, one
// line per interval across the chart's range, labelled when the settings say so.
#pragma once

#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGLineFamilies : public CKyGDrawBase {
public:
    CKyGLineFamilies(CKyGChart* pChart = nullptr);
    CKyGLineFamilies(const CKyGLineFamilies& other) = default;
    CKyGLineFamilies& operator=(const CKyGLineFamilies& other) = default;
    ~CKyGLineFamilies() override = default;

    CString toString() const override;

    // Lines of the last Draw, both families together.
    int GetLineCount() const { return m_nLines; }

protected:
    // 1, also when both families are switched off; 0 without a chart.
    int Draw(CDC* pDC) override;

private:
    int m_nLines = 0;
};
