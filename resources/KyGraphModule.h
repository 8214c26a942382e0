// The KyGraph library's own resources: its string table and version record. Code that loads
// strings makes this module current for the duration of the call:
//     CResourceModule::Scope scope(KyGraphModule());
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/ResourceModule.h>
#include <kygraph/Resource.h>

struct KyVersionRecord {
    const char* name;
    const char* version;
    const char* description;
};

KYGRAPH_API const CResourceModule& KyGraphModule();
KYGRAPH_API const KyVersionRecord& KyGraphVersion();
