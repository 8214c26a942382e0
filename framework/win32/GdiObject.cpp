// CGdiObject on Windows: a real GDI handle. A process-wide map finds the object that owns a
// handle, so SelectObject can hand back the previously selected object as GDI names it.
#include <kygraph/GdiObject.h>

#include <kygraph/Bitmap.h>
#include <kygraph/Brush.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>

#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace {

struct HandleMap {
    std::mutex mutex;
    std::unordered_map<HGDIOBJ, CGdiObject*> owned;                     // created by the framework
    std::unordered_map<HGDIOBJ, std::unique_ptr<CGdiObject>> wrappers;  // stock and foreign handles
    std::vector<std::unique_ptr<CGdiObject>> retired;                   // wrappers of reused handles
};

int KindOf(HGDIOBJ h)
{
    switch (::GetObjectType(h)) {
    case OBJ_PEN: return CGdiObject::KindPen;
    case OBJ_BRUSH: return CGdiObject::KindBrush;
    case OBJ_FONT: return CGdiObject::KindFont;
    case OBJ_BITMAP: return CGdiObject::KindBitmap;
    default: return -1;
    }
}

HandleMap& Handles()
{
    // Never destroyed: objects in static storage delete their handles during exit.
    static HandleMap* map = new HandleMap;
    return *map;
}

bool IsFrameworkStock(int index)
{
    switch (index) {
    case WHITE_BRUSH: case BLACK_BRUSH: case NULL_BRUSH: case WHITE_PEN: case BLACK_PEN: case NULL_PEN:
    case DEFAULT_GUI_FONT: case SYSTEM_FONT: return true;
    default: return false;
    }
}

}  // namespace

// A wrapper of a handle the framework did not create: it describes the handle and never
// deletes it.
class KyForeignGdiObject {
public:
    static std::unique_ptr<CGdiObject> Make(HGDIOBJ h)
    {
        std::unique_ptr<CGdiObject> obj;
        switch (::GetObjectType(h)) {
        case OBJ_PEN: {
            LOGPEN lp{};
            auto pen = std::make_unique<CPen>();
            if (::GetObjectW(h, sizeof lp, &lp) == sizeof lp) {
                pen->m_nStyle = static_cast<int>(lp.lopnStyle);
                pen->m_nWidth = static_cast<int>(lp.lopnWidth.x);
                pen->m_crColor = lp.lopnColor;
            }
            obj = std::move(pen);
            break;
        }
        case OBJ_BRUSH: {
            LOGBRUSH lb{};
            auto brush = std::make_unique<CBrush>();
            if (::GetObjectW(h, sizeof lb, &lb) == sizeof lb) {
                brush->m_bNull = lb.lbStyle == BS_NULL;
                brush->m_crColor = brush->m_bNull ? 0 : lb.lbColor;
            }
            obj = std::move(brush);
            break;
        }
        case OBJ_FONT: {
            auto font = std::make_unique<CFont>();
            ::GetObjectW(h, sizeof font->m_lf, &font->m_lf);
            obj = std::move(font);
            break;
        }
        case OBJ_BITMAP: obj = std::make_unique<CBitmap>(); break;
        default: return nullptr;
        }
        obj->m_hObject = h;
        obj->m_bCreated = true;
        obj->m_bStock = true;
        return obj;
    }
};

CGdiObject::~CGdiObject()
{
    if (!m_bStock) DeleteObject();
}

const void* CGdiObject::GetSafeHandle() const { return m_hObject; }

BOOL CGdiObject::AttachHandle(HGDIOBJ h)
{
    if (!h) return FALSE;
    HandleMap& map = Handles();
    std::lock_guard<std::mutex> lock(map.mutex);
    m_hObject = h;
    m_bCreated = true;
    map.owned[h] = this;
    return TRUE;
}

BOOL CGdiObject::DeleteObject()
{
    if (m_bStock || !m_hObject) return FALSE;
    {
        HandleMap& map = Handles();
        std::lock_guard<std::mutex> lock(map.mutex);
        map.owned.erase(m_hObject);
    }
    const BOOL ok = ::DeleteObject(m_hObject);
    m_hObject = nullptr;
    m_bCreated = false;
    return ok ? TRUE : FALSE;
}

CGdiObject* CGdiObject::FromHandle(HGDIOBJ h)
{
    if (!h) return nullptr;
    HandleMap& map = Handles();
    std::lock_guard<std::mutex> lock(map.mutex);
    if (auto it = map.owned.find(h); it != map.owned.end()) return it->second;
    // A wrapper handed out stays valid for the process; a handle value GDI reuses for an
    // object of another kind gets a new one.
    auto& wrapper = map.wrappers[h];
    if (!wrapper || KindOf(h) != static_cast<int>(wrapper->GetKind())) {
        if (wrapper) map.retired.push_back(std::move(wrapper));
        wrapper = KyForeignGdiObject::Make(h);
    }
    return wrapper.get();
}

CGdiObject* CGdiObject::GetStockObject(int index)
{
    return IsFrameworkStock(index) ? FromHandle(::GetStockObject(index)) : nullptr;
}
