#include <kygraph/KyGraphModule.h>

#include "internal/KyGraphStrings.h"

#include <kygraph/KyMessages.h>

#include <atomic>
#include <iterator>

namespace {
// Process-wide: the chart and its state model are singletons, so one host speaks one
// language at a time; atomic because a viewer reads the model on several threads.
std::atomic<KyGraphLanguage> g_language{KyGraphLanguage::Chinese};
}  // namespace

void KyGraphSetLanguage(KyGraphLanguage language)
{
    g_language.store(language);
    // The state model's error texts follow the chart's.
    CKyMessages::SetEnglish(language == KyGraphLanguage::English);
}

KyGraphLanguage KyGraphGetLanguage() { return g_language.load(); }

const CResourceModule& KyGraphModule() { return KyGraphModule(KyGraphGetLanguage()); }

#if defined(_WIN32)

// The string table is the module's own STRINGTABLE resource (KyGraph.rc), the English entries
// at an offset from the Chinese ones.
const CResourceModule& KyGraphModule(KyGraphLanguage language)
{
    static const HMODULE self = [] {
        HMODULE handle = nullptr;
        ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             reinterpret_cast<LPCWSTR>(&g_language), &handle);
        return handle;
    }();
    static const CResourceModule chinese("KyGraph", self);
    static const CResourceModule english("KyGraph", self, KYGRAPH_ENGLISH_ID_OFFSET);
    return language == KyGraphLanguage::English ? english : chinese;
}

#else

namespace {
#define KY_STRING_ZH(id, zh, en) {id, zh},
#define KY_STRING_EN(id, zh, en) {id, en},
const KyStringEntry kChinese[] = {KYGRAPH_STRINGS(KY_STRING_ZH)};
const KyStringEntry kEnglish[] = {KYGRAPH_STRINGS(KY_STRING_EN)};
#undef KY_STRING_ZH
#undef KY_STRING_EN
}  // namespace

const CResourceModule& KyGraphModule(KyGraphLanguage language)
{
    static const CResourceModule chinese("KyGraph", kChinese, static_cast<int>(std::size(kChinese)));
    static const CResourceModule english("KyGraph", kEnglish, static_cast<int>(std::size(kEnglish)));
    return language == KyGraphLanguage::English ? english : chinese;
}

#endif

const KyVersionRecord& KyGraphVersion()
{
    static const KyVersionRecord record{"KyGraph", "1.0.0",
                                        "Psychrometric enthalpy-moisture-content chart of moist air"};
    return record;
}
