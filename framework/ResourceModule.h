// CResourceModule: a module's string table, and which module's table is current.
// Like the framework's module state on Windows, string-table ids resolve in the current
// module only; code that loads its own strings makes its module current with a Scope.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/WinTypes.h>

struct KyStringEntry {
    UINT id;
    const char* utf8;
};

class KYFW_API CResourceModule {
public:
    // entries need not be sorted; they must outlive the module object.
    CResourceModule(const char* name, const KyStringEntry* entries, int count);

    const char* Name() const { return m_name; }
    // The UTF-8 text of id, or null when the module has no such entry.
    const char* Lookup(UINT id) const;

    // The module whose resources are current; an empty module when none was made current.
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
};
