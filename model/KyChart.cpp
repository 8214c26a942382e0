#include <kygraph/KyChart.h>

#include <kygraph/KyMessages.h>

#include "internal/KyFail.h"

#include <cmath>

CKyChart* CKyChart::InstanceGloble()
{
    // Constructed on first use and dependent on nothing, so any other static may use it.
    static CKyChart s_instance;
    return &s_instance;
}

double CKyChart::StandardPressure(double altitude)
{
    if (!(altitude >= kMinAltitude && altitude <= kMaxAltitude)) return std::nan("");
    return 101325.0 * std::pow(1.0 - 2.25577e-5 * altitude, 5.2559);
}

bool CKyChart::SetGlobleB(double pa)
{
    if (!(pa >= kMinB && pa <= kMaxB))  // also false for NaN
        return Ky::Detail::Fail(
            *this, std::isfinite(pa) ? Ky::ERR_OUT_OF_DOMAIN : Ky::ERR_INVALID_INPUT, L"%ls",
            Ky::Detail::WithNumbers(
                CKyMessages::Localize(L"大气压力 %g Pa 不合法：应为 %g～%g Pa 之间的有限数，仍保持 %g Pa。"),
                {pa, kMinB, kMaxB, m_dB})
                .c_str());
    m_dB = pa;
    return true;
}

bool CKyChart::SetFormulation(Ky::_Formulation formulation)
{
    if (formulation != Ky::FORMULATION_CHART && formulation != Ky::FORMULATION_ASHRAE2017 &&
        formulation != Ky::FORMULATION_REALGAS)
        return Ky::Detail::Fail(*this, Ky::ERR_INVALID_INPUT, L"未知的湿空气计算公式 %d，仍保持原公式。",
                                static_cast<int>(formulation));
    m_eFormulation = formulation;
    return true;
}

void CKyChart::ResetDefaults()
{
    m_dB = kDefaultB;
    m_eFormulation = Ky::FORMULATION_CHART;
}

CString CKyChart::toString() const { return CString(L"CKyChart"); }
