#include <kygraph/WinApp.h>

CWinApp::CWinApp(const wchar_t* appName) : m_pszAppName(appName ? appName : L"") {}

BOOL CWinApp::InitInstance() { return TRUE; }

int CWinApp::ExitInstance() { return 0; }
