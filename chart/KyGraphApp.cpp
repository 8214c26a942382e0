#include <kygraph/KyGraphApp.h>

CKyGraphApp::CKyGraphApp() : CWinApp(L"KyGraph") {}

CKyGraphApp::~CKyGraphApp() = default;

BOOL CKyGraphApp::InitInstance()
{
    CWinApp::InitInstance();
    return TRUE;
}
