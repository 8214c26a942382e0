#include <kygraph/KyObject.h>

const CKyObject& CKyObject::operator=(const CKyObject& other)
{
    CObject::operator=(other);
    m_strLastError = other.m_strLastError;
    m_errorStatus = other.m_errorStatus;
    return *this;
}

CString CKyObject::toString() const { return CString(L"CKyObject"); }

CString CKyObject::GetLastErrorString() const { return m_strLastError; }

void CKyObject::SetError(const CString& text, Ky::_ErrorStatus status)
{
    m_strLastError = text;
    m_errorStatus = status;
}

void CKyObject::SetLastErrorString(const wchar_t* text) { m_strLastError = text ? text : L""; }
