#include <kygraph/GdiObject.h>

#include <kygraph/Brush.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>

#include <initializer_list>

CGdiObject::~CGdiObject() = default;

const void* CGdiObject::GetSafeHandle() const { return m_bCreated ? this : nullptr; }

BOOL CGdiObject::DeleteObject()
{
    if (m_bStock || !m_bCreated) return FALSE;
    m_bCreated = false;
    return TRUE;
}

// Stock objects are built once and never destroyed, so a DC may still hold one at exit.
CGdiObject* CGdiObject::GetStockObject(int index)
{
    static CBrush* const whiteBrush = new CBrush(RGB(255, 255, 255));
    static CBrush* const blackBrush = new CBrush(RGB(0, 0, 0));
    static CBrush* const nullBrush = [] { auto* b = new CBrush; b->CreateNullBrush(); return b; }();
    static CPen* const whitePen = new CPen(PS_SOLID, 1, RGB(255, 255, 255));
    static CPen* const blackPen = new CPen(PS_SOLID, 1, RGB(0, 0, 0));
    static CPen* const nullPen = new CPen(PS_NULL, 1, RGB(0, 0, 0));
    auto font = [](int height, LONG weight) {
        LOGFONT lf{};
        lf.lfHeight = height;
        lf.lfWeight = weight;
        auto* f = new CFont;
        f->CreateFontIndirect(&lf);
        return f;
    };
    static CFont* const guiFont = font(-12, FW_NORMAL);
    static CFont* const systemFont = font(16, FW_NORMAL);
    static const bool marked = [] {
        for (CGdiObject* o : std::initializer_list<CGdiObject*>{whiteBrush, blackBrush, nullBrush, whitePen, blackPen,
                                                               nullPen, guiFont, systemFont})
            o->m_bStock = true;
        return true;
    }();
    (void)marked;
    switch (index) {
    case WHITE_BRUSH: return whiteBrush;
    case BLACK_BRUSH: return blackBrush;
    case NULL_BRUSH: return nullBrush;
    case WHITE_PEN: return whitePen;
    case BLACK_PEN: return blackPen;
    case NULL_PEN: return nullPen;
    case DEFAULT_GUI_FONT: return guiFont;
    case SYSTEM_FONT: return systemFont;
    default: return nullptr;
    }
}
