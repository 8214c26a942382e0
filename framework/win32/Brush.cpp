#include <kygraph/Brush.h>

BOOL CBrush::CreateSolidBrush(COLORREF color)
{
    if (m_bStock) return FALSE;
    DeleteObject();
    if (!AttachHandle(::CreateSolidBrush(color & 0x00FFFFFF))) return FALSE;
    m_crColor = color & 0x00FFFFFF;
    m_bNull = false;
    return TRUE;
}

BOOL CBrush::CreateNullBrush()
{
    if (m_bStock) return FALSE;
    DeleteObject();
    const LOGBRUSH lb{BS_NULL, 0, 0};
    if (!AttachHandle(::CreateBrushIndirect(&lb))) return FALSE;
    m_crColor = 0;
    m_bNull = true;
    return TRUE;
}
