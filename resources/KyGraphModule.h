// The KyGraph library's own resources: its string table, in Chinese and in English, and its
// version record. Code that loads strings makes the module of the chosen language current for
// the duration of the call:
//     CResourceModule::Scope scope(KyGraphModule());
// The language is the process's, chosen by the host; Chinese unless the host says otherwise.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/ResourceModule.h>
#include <kygraph/Resource.h>

struct KyVersionRecord {
    const char* name;
    const char* version;
    const char* description;
};

enum class KyGraphLanguage { Chinese, English };

KYGRAPH_API void KyGraphSetLanguage(KyGraphLanguage language);
KYGRAPH_API KyGraphLanguage KyGraphGetLanguage();

// The string table of the chosen language; KyGraphModule(language) that of any.
KYGRAPH_API const CResourceModule& KyGraphModule();
KYGRAPH_API const CResourceModule& KyGraphModule(KyGraphLanguage language);
KYGRAPH_API const KyVersionRecord& KyGraphVersion();
