#include <kygraph/KyGraphApp.h>

// The module's one application object, as every module of the framework has.
static CKyGraphApp theApp;

CKyGraphApp::CKyGraphApp() : CWinApp(L"KyGraph") {}

CKyGraphApp::~CKyGraphApp() = default;

BOOL CKyGraphApp::InitInstance()
{
    CWinApp::InitInstance();
    return TRUE;
}
