#include <kygraph/Pen.h>

BOOL CPen::CreatePen(int style, int width, COLORREF color)
{
    if (m_bStock) return FALSE;
    // Stored as given; CDC decides how an odd style or width draws.
    m_nStyle = style;
    m_nWidth = width;
    m_crColor = color & 0x00FFFFFF;
    m_bCreated = true;
    return TRUE;
}
