#include <kygraph/Font.h>

BOOL CFont::CreateFontIndirect(const LOGFONTW* lf)
{
    if (!lf || m_bStock) return FALSE;
    DeleteObject();
    if (!AttachHandle(::CreateFontIndirectW(lf))) return FALSE;
    m_lf = *lf;
    return TRUE;
}

BOOL CFont::GetLogFont(LOGFONTW* lf) const
{
    if (!lf || !m_hObject) return FALSE;
    *lf = m_lf;
    return TRUE;
}
