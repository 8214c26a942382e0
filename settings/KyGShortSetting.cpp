#include <kygraph/KyGShortSetting.h>

namespace {

struct DefaultName {
    KYSTAPNTPTY pty;
    const wchar_t* name;
};

const DefaultName kDefaults[] = {
    {PTY_DB, L"DB"}, {PTY_WB, L"WB"}, {PTY_RH, L"RH"}, {PTY_H, L"H"},   {PTY_D, L"D"},     {PTY_DP, L"DP"},
    {PTY_FV, L"FV"}, {PTY_SV, L"SV"}, {PTY_PH, L"PH"}, {PTY_PS, L"PS"}, {PTY_RHO, L"\u03C1"},
};

}  // namespace

CKyGShortSetting::CKyGShortSetting()
{
    for (const DefaultName& d : kDefaults) m_mapShort[d.pty] = CString(d.name);
}

CKyGShortSetting::CKyGShortSetting(const CKyGShortSetting& other) : CKyObject(other)
{
    *this = other;
}

CKyGShortSetting& CKyGShortSetting::operator=(const CKyGShortSetting& other)
{
    if (this == &other) return *this;
    CKyObject::operator=(other);
    m_mapShort.RemoveAll();
    POSITION pos = other.m_mapShort.GetStartPosition();
    while (pos) {
        KYSTAPNTPTY key = PTY_DB;
        CString name;
        other.m_mapShort.GetNextAssoc(pos, key, name);
        m_mapShort[key] = name;
    }
    return *this;
}

CKyGShortSetting::~CKyGShortSetting() = default;

CString CKyGShortSetting::toString() const { return CString(L"CKyGShortSetting"); }

CString CKyGShortSetting::GetShortName(KYSTAPNTPTY pty) const
{
    CString name;
    m_mapShort.Lookup(pty, name);  // Lookup never inserts
    return name;
}

CString CKyGShortSetting::SetShortName(KYSTAPNTPTY pty, const CString& name)
{
    CString previous;
    m_mapShort.Lookup(pty, previous);
    m_mapShort[pty] = name;
    return previous;
}
