// CKyGraphApp: the library's application object, the module frame the framework expects of
// every module. Start-up does nothing beyond the framework's own.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/WinApp.h>

class KYGRAPH_API CKyGraphApp : public CWinApp {
public:
    CKyGraphApp();
    ~CKyGraphApp() override;

    // Runs the framework's start-up and succeeds.
    BOOL InitInstance() override;
};
