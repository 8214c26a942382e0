// CKyGDimContentSetting: which state-point properties the host wants labelled, as a set of
// KYSTAPNTPTY bits. Held for the host; no drawing code reads it.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyStaPntPty.h>
#include <kygraph/String.h>
#include <kygraph/WinTypes.h>

class KYGRAPH_API CKyGDimContentSetting : public CKyObject {
public:
    CKyGDimContentSetting();
    CKyGDimContentSetting(const CKyGDimContentSetting& other);
    CKyGDimContentSetting& operator=(const CKyGDimContentSetting& other);
    ~CKyGDimContentSetting() override;

    CString toString() const override;

    // Each modifier returns the content as it was before the call.
    DWORD SetDimContent(DWORD dwContent);
    DWORD AddDimContent(DWORD dwContent);
    DWORD RemoveDimContent(DWORD dwContent);
    DWORD GetDimContent() const;
    // 1 when any bit of pty is in the set (a combination answers 1 on any overlap).
    int IsDim(KYSTAPNTPTY pty) const;

    DWORD m_dwContent;  // KYSTAPNTPTY bits to label; default 0 (nothing)
    int m_nSpare;       // held and copied, read by nothing; default 1
};
