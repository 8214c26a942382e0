// CKyGProcess: one air-treatment process of the host: every path as a polyline through its
// state points, then a named marker at each point, crowded labels turned to other sides.
#pragma once

#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyProcess.h>

class KYGRAPH_API CKyGProcess : public CKyGDrawBase {
public:
    CKyGProcess(CKyGChart* pChart = nullptr);
    CKyGProcess(const CKyGProcess& other) = default;
    CKyGProcess& operator=(const CKyGProcess& other) = default;
    ~CKyGProcess() override = default;

    CString toString() const override;

    void SetValue(const CKyProcess& process) { m_Process = process; }
    CKyProcess GetValue() const { return m_Process; }

protected:
    // 0 with entry 114 when a point cannot be placed (what was drawn before stays).
    int Draw(CDC* pDC) override;

    CKyProcess m_Process;
};
