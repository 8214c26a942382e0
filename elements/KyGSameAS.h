// CKyGSameAS: one line of constant heat-moisture ratio between two pixels the host chooses,
// labelled with the ratio's text; CalculateAng measures on the chart the screen direction of
// a ratio through a pixel.
#pragma once

#include <kygraph/KyAS.h>
#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGSameAS : public CKyGDrawBase {
public:
    CKyGSameAS(CKyGChart* pChart = nullptr);
    CKyGSameAS(const CKyGSameAS& other) = default;
    CKyGSameAS& operator=(const CKyGSameAS& other) = default;
    ~CKyGSameAS() override = default;

    CString toString() const override;

    void SetValue(CKyAS value) { m_Value = value; }
    CKyAS GetValue() const { return m_Value; }
    void SetDimEnable(int enable) { m_bDimEnable = enable; }
    int GetDimEnable() const { return m_bDimEnable; }
    void SetStartPoint(CPoint pt) { m_ptStart = pt; }
    void SetEndPoint(CPoint pt) { m_ptEnd = pt; }
    CPoint GetStartPoint() const { return m_ptStart; }
    CPoint GetEndPoint() const { return m_ptEnd; }

    // Screen angle in radians (counter-clockwise, screen-up positive, within -pi/2..pi/2) of a
    // line of heat-moisture ratio `ratio` (kJ/kg) through pt; 0.0 on failure.
    double CalculateAng(CPoint pt, double ratio);

protected:
    // Always 1.
    int Draw(CDC* pDC) override;

    CKyAS m_Value;
    int m_bDimEnable = 1;
    // Zero-initialised (CPoint), so a label is never placed from an unset anchor.
    CPoint m_ptStart;
    CPoint m_ptEnd;
};
