// CKyGSameLine: what the four constant-value line families (isotherms, constant-d,
// constant-h and relative-humidity curves) share: one value, a label switch, and the
// process path's name string, which all four report on purpose.
#pragma once

#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGSameLine : public CKyGDrawBase {
public:
    CKyGSameLine(const CKyGSameLine& other) = default;
    CKyGSameLine& operator=(const CKyGSameLine& other) = default;
    ~CKyGSameLine() override = default;

    // "CKyGProcess" for every family: shared with the process path on purpose.
    CString toString() const override;

    // Stored without any check; the pipeline hands over one value past the range maximum.
    void SetValue(double value) { m_dValue = value; }
    double GetValue() const { return m_dValue; }
    void SetDimEnable(int enable) { m_bDimEnable = enable; }
    int GetDimEnable() const { return m_bDimEnable; }

protected:
    CKyGSameLine(CKyGChart* pChart, double initialValue);

    // Takes over the last-error text of the object that refused the line (a state point) and
    // returns 0, the failed Draw's result.
    int FailWith(const CKyObject& source);

    // The end of a segment that leaves the plot area through its top edge (y = topY), moved
    // onto that edge: x = baseX + dy1 * (to.x - baseX) / (dy2 + dy1) with dy1 = fromY - topY
    // and dy2 = topY - to.y, truncated toward zero. The segment runs from a point at height
    // fromY whose x the caller chooses as baseX. When dy2 + dy1 is 0 (the earlier point lies
    // as high as the end) no cut exists and `to` comes back unchanged.
    static CPoint CutAtTopEdge(int baseX, int fromY, CPoint to, int topY);

    double m_dValue;
    int m_bDimEnable = 1;
};
