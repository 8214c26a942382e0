// CResourceModule: a module's string table, and which module's table is current.
// Like the framework's module state on Windows, string-table ids resolve in the current
// module only; code that loads its own strings makes its module current with a Scope.
// A module's table is either a list of entries compiled in, or (on Windows) the STRINGTABLE
// resource of a loaded module, read with LoadStringW.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/String.h>
#include <kygraph/WinTypes.h>

struct KyStringEntry {
    UINT id;
    const char* utf8;
};

class KYFW_API CResourceModule {
public:
    // entries need not be sorted; they must outlive the module object.
    CResourceModule(const char* name, const KyStringEntry* entries, int count);
#if defined(_WIN32)
    // The string resources of a loaded module (an EXE or DLL handle); entry id is read at
    // id + idOffset, so that one module may hold the same table in several languages.
    CResourceModule(const char* name, HINSTANCE instance, UINT idOffset = 0);
#endif

    const char* Name() const { return m_name; }
    // Loads entry id into text; FALSE (text unchanged) when the module has no such entry.
    BOOL Load(UINT id, CString& text) const;

    // The module whose resources are current. When none was made current: on Windows the
    // host's executable, as the framework's resource handle defaults to it; elsewhere an
    // empty module.
    static const CResourceModule& Current();

    // Makes a module current for its lifetime and restores the previous one afterwards.
    class KYFW_API Scope {
    public:
        explicit Scope(const CResourceModule& module);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        const CResourceModule* m_prev;
    };

private:
    const char* m_name;
    const KyStringEntry* m_entries;
    int m_count;
    void* m_instance = nullptr;  // Windows: the module whose resources are read
    UINT m_idOffset = 0;
};
