#include <kygraph/Pen.h>

BOOL CPen::CreatePen(int style, int width, COLORREF color)
{
    if (m_bStock) return FALSE;
    DeleteObject();
    if (!AttachHandle(::CreatePen(style, width, color & 0x00FFFFFF))) return FALSE;
    m_nStyle = style;
    m_nWidth = width;
    m_crColor = color & 0x00FFFFFF;
    return TRUE;
}
