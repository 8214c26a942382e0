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

    double m_dValue;
    int m_bDimEnable = 1;
};
