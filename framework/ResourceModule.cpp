#include <kygraph/ResourceModule.h>

namespace {
// Per thread, as the framework's module state is: a thread that maps a pixel while another
// draws must not see, or restore, the other's current module.
thread_local const CResourceModule* g_current = nullptr;

const CResourceModule& DefaultModule()
{
#if defined(_WIN32)
    static const CResourceModule module("", ::GetModuleHandleW(nullptr));
#else
    static const CResourceModule module("", nullptr, 0);
#endif
    return module;
}
}  // namespace

CResourceModule::CResourceModule(const char* name, const KyStringEntry* entries, int count)
    : m_name(name ? name : ""), m_entries(entries), m_count(entries ? count : 0)
{
}

#if defined(_WIN32)
CResourceModule::CResourceModule(const char* name, HINSTANCE instance, UINT idOffset)
    : m_name(name ? name : ""), m_entries(nullptr), m_count(0), m_instance(instance), m_idOffset(idOffset)
{
}
#endif

BOOL CResourceModule::Load(UINT id, CString& text) const
{
#if defined(_WIN32)
    if (m_instance) {
        // With a zero buffer size LoadStringW points into the resource itself: no copy, no
        // length limit. The entry is not NUL-terminated.
        const wchar_t* res = nullptr;
        const int n = ::LoadStringW(static_cast<HINSTANCE>(m_instance), id + m_idOffset, reinterpret_cast<LPWSTR>(&res), 0);
        if (n <= 0 || !res) return FALSE;
        text = CString(res, n);
        return TRUE;
    }
#endif
    for (int i = 0; i < m_count; ++i)
        if (m_entries[i].id == id) {
            text = CString::FromUtf8(m_entries[i].utf8);
            return TRUE;
        }
    return FALSE;
}

const CResourceModule& CResourceModule::Current() { return g_current ? *g_current : DefaultModule(); }

CResourceModule::Scope::Scope(const CResourceModule& module) : m_prev(g_current) { g_current = &module; }

CResourceModule::Scope::~Scope() { g_current = m_prev; }
