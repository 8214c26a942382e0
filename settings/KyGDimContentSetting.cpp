#include <kygraph/KyGDimContentSetting.h>

CKyGDimContentSetting::CKyGDimContentSetting() : m_dwContent(0), m_nSpare(1) {}

CKyGDimContentSetting::CKyGDimContentSetting(const CKyGDimContentSetting& other) = default;

CKyGDimContentSetting& CKyGDimContentSetting::operator=(const CKyGDimContentSetting& other) = default;

CKyGDimContentSetting::~CKyGDimContentSetting() = default;

CString CKyGDimContentSetting::toString() const { return CString(L"CKyGDimContentSetting"); }

DWORD CKyGDimContentSetting::SetDimContent(DWORD dwContent)
{
    const DWORD previous = m_dwContent;
    m_dwContent = dwContent;
    return previous;
}

DWORD CKyGDimContentSetting::AddDimContent(DWORD dwContent)
{
    const DWORD previous = m_dwContent;
    m_dwContent |= dwContent;
    return previous;
}

DWORD CKyGDimContentSetting::RemoveDimContent(DWORD dwContent)
{
    const DWORD previous = m_dwContent;
    m_dwContent &= ~dwContent;
    return previous;
}

DWORD CKyGDimContentSetting::GetDimContent() const { return m_dwContent; }

int CKyGDimContentSetting::IsDim(KYSTAPNTPTY pty) const
{
    return (m_dwContent & static_cast<DWORD>(pty)) != 0 ? 1 : 0;
}
