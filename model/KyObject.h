// CKyObject: the base of every state-model and chart class; it holds the last error text.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyTypes.h>
#include <kygraph/Object.h>
#include <kygraph/String.h>

class KYARITHM_API CKyObject : public CObject {
public:
    CKyObject() = default;
    CKyObject(const CKyObject& other) = default;
    const CKyObject& operator=(const CKyObject& other);
    ~CKyObject() override = default;

    const char* GetRuntimeClassName() const override { return "CKyObject"; }
    virtual CString toString() const;
    virtual CString GetLastErrorString() const;
    virtual void SetError(const CString& text, Ky::_ErrorStatus status);
    virtual void SetLastErrorString(const wchar_t* text);

    Ky::_ErrorStatus GetLastErrorStatus() const { return m_errorStatus; }

protected:
    CString m_strLastError;
    Ky::_ErrorStatus m_errorStatus = Ky::ERR_OK;
};
