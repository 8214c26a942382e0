// CKyGShortSetting: the short name under which each state-point property is labelled.
// Held for the host; no drawing code reads it.
#pragma once

#include <cstddef>  // before the map header, which uses size_t unqualified

#include <kygraph/KyExport.h>
#include <kygraph/KyMap.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyStaPntPty.h>
#include <kygraph/String.h>

class KYGRAPH_API CKyGShortSetting : public CKyObject {
public:
    // Fills the map with the eleven defaults "DB", "WB", ..., "ρ".
    CKyGShortSetting();
    CKyGShortSetting(const CKyGShortSetting& other);
    CKyGShortSetting& operator=(const CKyGShortSetting& other);
    ~CKyGShortSetting() override;

    CString toString() const override;

    // The name of pty, or an empty string when it has none; never adds an entry.
    CString GetShortName(KYSTAPNTPTY pty) const;
    // Stores name for pty (adding an entry if needed); returns the previous name, empty when
    // there was none.
    CString SetShortName(KYSTAPNTPTY pty, const CString& name);

    CKyMap<KYSTAPNTPTY, KYSTAPNTPTY, CString, CString&> m_mapShort;
};
