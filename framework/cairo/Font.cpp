#include <kygraph/Font.h>

BOOL CFont::CreateFontIndirect(const LOGFONTW* lf)
{
    if (!lf || m_bStock) return FALSE;
    m_lf = *lf;
    m_bCreated = true;
    return TRUE;
}

BOOL CFont::GetLogFont(LOGFONTW* lf) const
{
    if (!lf || !m_bCreated) return FALSE;
    *lf = m_lf;
    return TRUE;
}
