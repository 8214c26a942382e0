// CKyAS: a heat-moisture ratio ε = Δh/Δd of a process, kJ/kg (Δh in kJ/kg dry air, Δd in
// kg/kg dry air), with its kind: finite, or one of the two infinite ratios of a process that
// changes enthalpy at constant moisture content.
#pragma once

#include <kygraph/KyObject.h>

class CKyStaPnt;

class KYARITHM_API CKyAS : public CKyObject {
public:
    // Fixed underlying type: callers may store or cast other values into it.
    enum _EnKyASType : int {
        AS_FINITE = 0,        // ε finite (GetValue)
        AS_POSITIVE_INF = 1,  // ε = +∞: Δd = 0, Δh > 0 (sensible heating)
        AS_NEGATIVE_INF = 2,  // ε = -∞: Δd = 0, Δh < 0 (sensible cooling)
    };

    // Finite ratio 0 (an isenthalpic process).
    CKyAS();
    CKyAS(const CKyAS& other);
    const CKyAS& operator=(const CKyAS& other);
    ~CKyAS() override;

    CString toString() const override;  // "CKyAS"

    // A finite ratio, kJ/kg. Refused (false, unchanged) when NaN or infinite; use SetType for
    // the infinite kinds.
    bool SetValue(double epsilon);
    // One of the infinite kinds, or AS_FINITE with value 0. Refused for any other value.
    bool SetType(_EnKyASType type);
    // The ratio of the process from one state to another: Δh / (Δd / 1000). Refused when
    // either point is unset, when they were computed at different pressures, or when both Δh
    // and Δd are zero (no process, no direction).
    bool SetByStates(const CKyStaPnt& from, const CKyStaPnt& to);

    _EnKyASType GetType() const { return m_eType; }
    // ε in kJ/kg; +∞ or -∞ for the infinite kinds.
    double GetValue() const;

    // Display text: "ε=5000", "ε=2537.5", "ε=∞", "ε=-∞". nDecimals (0..6, clamped) is the most
    // digits shown after the point; trailing zeros are dropped. The chart passes 1.
    CString OutputString(int nDecimals) const;

private:
    double m_dValue;  // kJ/kg, meaningful for AS_FINITE
    _EnKyASType m_eType;
};
