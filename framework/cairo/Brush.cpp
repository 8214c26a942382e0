#include <kygraph/Brush.h>

BOOL CBrush::CreateSolidBrush(COLORREF color)
{
    if (m_bStock) return FALSE;
    m_crColor = color & 0x00FFFFFF;
    m_bNull = false;
    m_bCreated = true;
    return TRUE;
}

BOOL CBrush::CreateNullBrush()
{
    if (m_bStock) return FALSE;
    m_crColor = 0;
    m_bNull = true;
    m_bCreated = true;
    return TRUE;
}
