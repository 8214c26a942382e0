// CWnd and the registry of live windows. The registry holds addresses and handles only, so
// asking about a destroyed or deleted window never reads its memory.
#include <kygraph/Wnd.h>

#include <cstdint>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

namespace {

struct Registry {
    std::mutex mutex;
    std::unordered_set<std::uintptr_t> windows;                // live CWnd addresses
    std::unordered_map<std::uintptr_t, std::uintptr_t> handles;  // live HWND -> CWnd address
    std::uintptr_t nextHandle = 0x1000;                        // handles are never reused
};

Registry& TheRegistry()
{
    // Never destroyed: windows in static objects unregister during exit.
    static Registry* registry = new Registry;
    return *registry;
}

std::uintptr_t Key(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

}  // namespace

CWnd::CWnd() = default;

CWnd::~CWnd() { UnregisterHandle(); }

void CWnd::RegisterHandle()
{
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    if (m_hWnd) return;
    r.nextHandle += 0x10;
    m_hWnd = reinterpret_cast<HWND>(r.nextHandle);
    r.windows.insert(Key(this));
    r.handles.emplace(r.nextHandle, Key(this));
}

void CWnd::UnregisterHandle()
{
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    if (!m_hWnd) return;
    r.windows.erase(Key(this));
    r.handles.erase(Key(m_hWnd));
    m_hWnd = nullptr;
}

void CWnd::GetClientRect(LPRECT rect) const
{
    if (rect) *rect = RECT{0, 0, 0, 0};
}

CDC* CWnd::GetDC() { return nullptr; }

int CWnd::ReleaseDC(CDC*) { return 0; }

BOOL CWnd::DestroyWindow()
{
    if (!m_hWnd) return FALSE;
    UnregisterHandle();
    return TRUE;
}

BOOL CWnd::IsWindowPtr(const CWnd* pWnd)
{
    if (!pWnd) return FALSE;
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return r.windows.count(Key(pWnd)) ? TRUE : FALSE;
}

BOOL IsWindow(HWND h)
{
    if (!h) return FALSE;
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return r.handles.count(Key(h)) ? TRUE : FALSE;
}
