#include <kygraph/ResourceModule.h>

namespace {
const CResourceModule kNoModule("", nullptr, 0);
// Per thread, as the framework's module state is: a thread that maps a pixel while another
// draws must not see, or restore, the other's current module.
thread_local const CResourceModule* g_current = nullptr;
}  // namespace

CResourceModule::CResourceModule(const char* name, const KyStringEntry* entries, int count)
    : m_name(name ? name : ""), m_entries(entries), m_count(entries ? count : 0)
{
}

const char* CResourceModule::Lookup(UINT id) const
{
    for (int i = 0; i < m_count; ++i)
        if (m_entries[i].id == id) return m_entries[i].utf8;
    return nullptr;
}

const CResourceModule& CResourceModule::Current() { return g_current ? *g_current : kNoModule; }

CResourceModule::Scope::Scope(const CResourceModule& module) : m_prev(g_current) { g_current = &module; }

CResourceModule::Scope::~Scope() { g_current = m_prev; }
