// CGdiObject: the base of pens, brushes, fonts and bitmaps. An object is "created" once it
// holds a description (on Windows: a real GDI handle); DeleteObject returns it to the empty
// state.
#pragma once

#include <kygraph/Object.h>
#include <kygraph/WinTypes.h>

class KYFW_API CGdiObject : public CObject {
public:
    enum Kind { KindPen, KindBrush, KindFont, KindBitmap };

    CGdiObject() = default;
    ~CGdiObject() override;
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;

    virtual Kind GetKind() const = 0;
    // Non-null while the object holds a description (the framework's handle test).
    const void* GetSafeHandle() const;
    virtual BOOL DeleteObject();

    // The framework's stock objects: WHITE_BRUSH, BLACK_BRUSH, NULL_BRUSH, WHITE_PEN,
    // BLACK_PEN, NULL_PEN, DEFAULT_GUI_FONT, SYSTEM_FONT; null for any other index.
    static CGdiObject* GetStockObject(int index);
    // Stock objects cannot be deleted or re-created.
    bool IsStockObject() const { return m_bStock; }

#if defined(_WIN32)
    HGDIOBJ m_hObject = nullptr;
    // The object that owns h: the one that created it, a stock object, or a wrapper made
    // for a handle the framework did not create (kept for the process, never deleting h).
    // Null for a null handle.
    static CGdiObject* FromHandle(HGDIOBJ h);

protected:
    friend class KyForeignGdiObject;
    // Takes ownership of a freshly created handle; FALSE (and empty) for a null one.
    BOOL AttachHandle(HGDIOBJ h);
#endif

protected:
    bool m_bCreated = false;
    bool m_bStock = false;
};
