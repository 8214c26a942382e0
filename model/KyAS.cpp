#include <kygraph/KyAS.h>

#include <kygraph/KyStaPnt.h>

#include "internal/KyFail.h"

#include <cmath>
#include <cwchar>

CKyAS::CKyAS() : m_dValue(0.0), m_eType(AS_FINITE) {}

CKyAS::CKyAS(const CKyAS& other) = default;

const CKyAS& CKyAS::operator=(const CKyAS& other)
{
    CKyObject::operator=(other);
    m_dValue = other.m_dValue;
    m_eType = other.m_eType;
    return *this;
}

CKyAS::~CKyAS() = default;

CString CKyAS::toString() const { return CString(L"CKyAS"); }

bool CKyAS::SetValue(double epsilon)
{
    if (!std::isfinite(epsilon))
        return Ky::Detail::Fail(*this, Ky::ERR_INVALID_INPUT,
                                L"热湿比 %g kJ/kg 不是有限数；无穷大的热湿比请按类型设置。", epsilon);
    m_dValue = epsilon;
    m_eType = AS_FINITE;
    return true;
}

bool CKyAS::SetType(_EnKyASType type)
{
    if (type != AS_FINITE && type != AS_POSITIVE_INF && type != AS_NEGATIVE_INF)
        return Ky::Detail::Fail(*this, Ky::ERR_INVALID_INPUT, L"未知的热湿比类型 %d。", static_cast<int>(type));
    m_eType = type;
    m_dValue = 0.0;
    return true;
}

bool CKyAS::SetByStates(const CKyStaPnt& from, const CKyStaPnt& to)
{
    if (!from.IsValid() || !to.IsValid())
        return Ky::Detail::Fail(*this, Ky::ERR_INVALID_INPUT, L"计算热湿比的状态点尚未设定。");
    if (from.GetB() != to.GetB() || from.GetFormulation() != to.GetFormulation())
        return Ky::Detail::Fail(*this, Ky::ERR_INCONSISTENT,
                                L"两个状态点的大气压力（%g Pa 与 %g Pa）或计算公式不同，不能计算热湿比。",
                                from.GetB(), to.GetB());
    const double dh = to.GetH() - from.GetH();           // kJ/kg
    const double dw = (to.GetD() - from.GetD()) / 1000.0;  // kg/kg
    if (dw == 0.0 && dh == 0.0)
        return Ky::Detail::Fail(*this, Ky::ERR_INCONSISTENT,
                                L"两个状态点相同（焓 %g kJ/kg，含湿量 %g g/kg），热湿比无定义。", from.GetH(),
                                from.GetD());
    const double eps = dh / dw;
    // A moisture change too small for a finite quotient is a process at constant d.
    if (!std::isfinite(eps)) {
        m_eType = dh > 0.0 ? AS_POSITIVE_INF : AS_NEGATIVE_INF;
        m_dValue = 0.0;
        return true;
    }
    m_dValue = eps;
    m_eType = AS_FINITE;
    return true;
}

double CKyAS::GetValue() const
{
    switch (m_eType) {
    case AS_FINITE: return m_dValue;
    case AS_POSITIVE_INF: return HUGE_VAL;
    case AS_NEGATIVE_INF: return -HUGE_VAL;
    }
    return std::nan("");  // a value cast into the enumeration
}

CString CKyAS::OutputString(int nDecimals) const
{
    if (m_eType == AS_POSITIVE_INF) return CString(L"ε=∞");
    if (m_eType == AS_NEGATIVE_INF) return CString(L"ε=-∞");
    if (m_eType != AS_FINITE) return CString(L"ε=?");
    const int n = nDecimals < 0 ? 0 : (nDecimals > 6 ? 6 : nDecimals);
    wchar_t buf[64];
    // Fixed notation up to 1e15 (beyond, %f would print hundreds of digits).
    if (std::fabs(m_dValue) < 1e15)
        std::swprintf(buf, 64, L"%.*f", n, m_dValue);
    else
        std::swprintf(buf, 64, L"%.6g", m_dValue);
    std::wstring text(buf);
    if (text.find(L'.') != std::wstring::npos && text.find(L'e') == std::wstring::npos) {
        while (!text.empty() && text.back() == L'0') text.pop_back();
        if (!text.empty() && text.back() == L'.') text.pop_back();
    }
    if (text == L"-0") text = L"0";
    return CString(L"ε=") + CString(text);
}
