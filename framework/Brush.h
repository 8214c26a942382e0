// CBrush: a solid brush of one colour, or the null (hollow) brush.
#pragma once

#include <kygraph/GdiObject.h>

class KYFW_API CBrush : public CGdiObject {
public:
    CBrush() = default;
    explicit CBrush(COLORREF color) { CreateSolidBrush(color); }

    Kind GetKind() const override { return KindBrush; }
    BOOL CreateSolidBrush(COLORREF color);
    BOOL CreateNullBrush();
    bool IsNull() const { return m_bNull; }
    COLORREF GetColor() const { return m_crColor; }

private:
    friend class KyForeignGdiObject;  // describes handles the framework did not create
    COLORREF m_crColor = 0;
    bool m_bNull = false;
};
