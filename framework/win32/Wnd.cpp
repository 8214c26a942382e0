// CWnd on Windows: a real HWND, made by the host and attached, or made by a subclass. The
// registry of live CWnd objects lets IsWindowPtr answer for a pointer to an object that was
// destroyed without reading it; User32 answers for the handle.
#include <kygraph/Wnd.h>

#include <kygraph/DC.h>

#include <algorithm>
#include <mutex>
#include <unordered_set>

namespace {

struct Registry {
    std::mutex mutex;
    std::unordered_set<const CWnd*> windows;  // live CWnd objects
};

Registry& TheRegistry()
{
    // Never destroyed: windows in static objects unregister during exit.
    static Registry* registry = new Registry;
    return *registry;
}

}  // namespace

CWnd::CWnd()
{
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    r.windows.insert(this);
}

CWnd::~CWnd()
{
    for (auto& dc : m_dcs) ::ReleaseDC(m_hWnd, dc->Detach());
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    r.windows.erase(this);
}

// Handles are the system's; nothing to allocate or free.
void CWnd::RegisterHandle() {}
void CWnd::UnregisterHandle() { m_hWnd = nullptr; }

BOOL CWnd::Attach(HWND hWnd)
{
    if (m_hWnd || !::IsWindow(hWnd)) return FALSE;
    m_hWnd = hWnd;
    return TRUE;
}

HWND CWnd::Detach()
{
    HWND h = m_hWnd;
    for (auto& dc : m_dcs) ::ReleaseDC(h, dc->Detach());
    m_dcs.clear();
    m_hWnd = nullptr;
    return h;
}

void CWnd::GetClientRect(LPRECT rect) const
{
    if (!rect) return;
    if (!m_hWnd || !::GetClientRect(m_hWnd, rect)) *rect = RECT{0, 0, 0, 0};
}

CDC* CWnd::GetDC()
{
    if (!::IsWindow(m_hWnd)) return nullptr;
    HDC h = ::GetDC(m_hWnd);
    if (!h) return nullptr;
    auto dc = std::make_unique<CDC>();
    dc->Attach(h);
    m_dcs.push_back(std::move(dc));
    return m_dcs.back().get();
}

int CWnd::ReleaseDC(CDC* pDC)
{
    auto it = std::find_if(m_dcs.begin(), m_dcs.end(), [pDC](const std::unique_ptr<CDC>& d) { return d.get() == pDC; });
    if (!pDC || it == m_dcs.end()) return 0;
    const int released = ::ReleaseDC(m_hWnd, (*it)->Detach());
    m_dcs.erase(it);
    return released;
}

BOOL CWnd::DestroyWindow()
{
    if (!m_hWnd) return FALSE;
    HWND h = Detach();
    return ::DestroyWindow(h);
}

BOOL CWnd::IsWindowPtr(const CWnd* pWnd)
{
    if (!pWnd) return FALSE;
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return r.windows.count(pWnd) && ::IsWindow(pWnd->m_hWnd) ? TRUE : FALSE;
}
