// CPen: a cosmetic pen (style, width in pixels, colour). Width 0 draws one pixel wide as in
// GDI; an unknown style draws solid.
#pragma once

#include <kygraph/GdiObject.h>

class KYFW_API CPen : public CGdiObject {
public:
    CPen() = default;
    CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }

    Kind GetKind() const override { return KindPen; }
    BOOL CreatePen(int style, int width, COLORREF color);
    int GetStyle() const { return m_nStyle; }
    int GetWidth() const { return m_nWidth; }
    COLORREF GetColor() const { return m_crColor; }

private:
    friend class KyForeignGdiObject;  // describes handles the framework did not create
    int m_nStyle = PS_SOLID;
    int m_nWidth = 1;
    COLORREF m_crColor = 0;
};
