// CKyChart: the state model's global parameters, the atmospheric pressure B and the choice
// of formulation, read by every state point when one of its setters runs.
#pragma once

#include <kygraph/KyObject.h>

class KYARITHM_API CKyChart : public CKyObject {
public:
    static constexpr double kDefaultB = 101325.0;  // Pa, standard sea-level atmosphere
    static constexpr double kMinB = 50000.0;       // Pa, about 5 500 m altitude
    static constexpr double kMaxB = 110000.0;      // Pa, below the Dead Sea shore and then some
    // Altitudes the standard atmosphere below is valid for, m (the troposphere).
    static constexpr double kMinAltitude = -500.0;
    static constexpr double kMaxAltitude = 11000.0;

    // Pressure of the standard atmosphere at altitude z (m above sea level), Pa:
    // p = 101.325 (1 - 2.25577e-5 z)^5.2559 kPa (ASHRAE Handbook - Fundamentals (2017) ch. 1
    // eq. 3). NaN outside kMinAltitude..kMaxAltitude (and for NaN); from about 5 400 m up the
    // result lies below kMinB, which SetGlobleB refuses.
    static double StandardPressure(double altitude);

    // The process-wide instance. A function-local static with no dependencies, so that it is
    // safe to reach from other singletons' constructors. The name is spelled so on purpose.
    static CKyChart* InstanceGloble();

    CKyChart(const CKyChart&) = delete;
    CKyChart& operator=(const CKyChart&) = delete;

    // Atmospheric pressure B, Pa. Default 101325.
    double GetGlobleB() const { return m_dB; }
    // Sets B in Pa. Refused (false, previous value kept, last error set) unless finite and
    // within kMinB..kMaxB. Existing state points keep the B they were computed with.
    bool SetGlobleB(double pa);

    // The moist-air relations used by state points set from now on; default FORMULATION_CHART.
    // An unknown value is refused (false, previous formulation kept).
    bool SetFormulation(Ky::_Formulation formulation);
    Ky::_Formulation GetFormulation() const { return m_eFormulation; }

    // Restores B = 101325 Pa and the chart's formulation (handy for hosts and tests).
    void ResetDefaults();

    CString toString() const override;

private:
    CKyChart() = default;
    ~CKyChart() override = default;

    double m_dB = kDefaultB;
    Ky::_Formulation m_eFormulation = Ky::FORMULATION_CHART;
};
