// CWinApp: the framework's application object, one per module.
#pragma once

#include <kygraph/Object.h>
#include <kygraph/WinTypes.h>

class KYFW_API CWinApp : public CObject {
public:
    explicit CWinApp(const wchar_t* appName = nullptr);
    ~CWinApp() override = default;

    virtual BOOL InitInstance();
    virtual int ExitInstance();
    const wchar_t* GetAppName() const { return m_pszAppName; }

private:
    const wchar_t* m_pszAppName;
};
