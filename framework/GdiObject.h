// CGdiObject: the base of pens, brushes, fonts and bitmaps. An object is "created" once it
// holds a description; DeleteObject returns it to the empty state.
#pragma once

#include <kygraph/Object.h>
#include <kygraph/WinTypes.h>

class KYFW_API CGdiObject : public CObject {
public:
    enum Kind { KindPen, KindBrush, KindFont, KindBitmap };

    CGdiObject() = default;
    ~CGdiObject() override = default;

    virtual Kind GetKind() const = 0;
    // Non-null while the object holds a description (the framework's handle test).
    const void* GetSafeHandle() const { return m_bCreated ? this : nullptr; }
    virtual BOOL DeleteObject();

    // The framework's stock objects: WHITE_BRUSH, BLACK_BRUSH, NULL_BRUSH, WHITE_PEN,
    // BLACK_PEN, NULL_PEN, DEFAULT_GUI_FONT, SYSTEM_FONT; null for any other index.
    static CGdiObject* GetStockObject(int index);
    // Stock objects cannot be deleted or re-created.
    bool IsStockObject() const { return m_bStock; }

protected:
    bool m_bCreated = false;
    bool m_bStock = false;
};
