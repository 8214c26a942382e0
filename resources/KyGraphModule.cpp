#include <kygraph/KyGraphModule.h>

#include "internal/KyGraphStrings.h"

#if defined(_WIN32)

// The string table is the module's own STRINGTABLE resource (KyGraph.rc).
const CResourceModule& KyGraphModule()
{
    static const CResourceModule module = [] {
        HMODULE self = nullptr;
        ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             reinterpret_cast<LPCWSTR>(&KyGraphModule), &self);
        return CResourceModule("KyGraph", self);
    }();
    return module;
}

#else

namespace {
#define KY_STRING_ENTRY(id, text) {id, text},
const KyStringEntry kStrings[] = {KYGRAPH_STRINGS(KY_STRING_ENTRY)};
#undef KY_STRING_ENTRY
}  // namespace

const CResourceModule& KyGraphModule()
{
    static const CResourceModule module("KyGraph", kStrings, static_cast<int>(sizeof(kStrings) / sizeof(kStrings[0])));
    return module;
}

#endif

const KyVersionRecord& KyGraphVersion()
{
    static const KyVersionRecord record{"KyGraph", "1.0.0",
                                        "Psychrometric enthalpy-moisture-content chart of moist air"};
    return record;
}
