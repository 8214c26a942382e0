// CKyGStaPnt: one state point over the chart: a filled dot and, optionally, the point's name
// on one of four sides.
#pragma once

#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyStaPnt.h>

class KYGRAPH_API CKyGStaPnt : public CKyGDrawBase {
public:
    // Fixed underlying type: hosts may store any int here, and other values are drawn with the
    // label's corner on the dot.
    enum DimPosition : int { DimLeft = 0, DimTop = 1, DimRight = 2, DimBottom = 3 };

    CKyGStaPnt(CKyGChart* pChart = nullptr);
    CKyGStaPnt(const CKyGStaPnt& other) = default;
    CKyGStaPnt& operator=(const CKyGStaPnt& other) = default;
    ~CKyGStaPnt() override = default;

    CString toString() const override;

    void SetValue(const CKyStaPnt& pnt) { m_Value = pnt; }
    CKyStaPnt GetValue() const { return m_Value; }
    void SetDimEnable(int enable) { m_bDimEnable = enable; }
    int GetDimEnable() const { return m_bDimEnable; }
    void SetDimPosition(DimPosition pos) { m_DimPosition = pos; }
    DimPosition GetDimPosition() const { return m_DimPosition; }

protected:
    // 0 (with the chart's message) when the point cannot be placed; otherwise 1.
    int Draw(CDC* pDC) override;

    int m_bDimEnable = 1;
    CKyStaPnt m_Value;
    DimPosition m_DimPosition = DimTop;
};
