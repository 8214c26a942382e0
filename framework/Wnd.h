// CWnd: the host window as the chart sees it: a handle that is or is not a window, a client
// rectangle, a DC and a background colour. Windows register themselves while they exist so
// that IsWindow can answer for a pointer without touching a destroyed object.
#pragma once

#include <kygraph/Object.h>
#include <kygraph/Rect.h>
#include <kygraph/WinTypes.h>

#include <memory>
#include <vector>

class CDC;

class KYFW_API CWnd : public CObject {
public:
    CWnd();
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    HWND GetSafeHwnd() const { return m_hWnd; }
    HWND m_hWnd = nullptr;

#if defined(_WIN32)
    // Wraps a window the host made; the object never destroys it unless DestroyWindow is
    // called. FALSE for a handle that is not a window or when one is attached already.
    BOOL Attach(HWND hWnd);
    // Lets go of the window without destroying it.
    HWND Detach();
#endif

    virtual void GetClientRect(LPRECT rect) const;
    // A DC on the window's client area (its background colour already set), or null when the
    // object is not a window. Give it back with ReleaseDC.
    virtual CDC* GetDC();
    virtual int ReleaseDC(CDC* pDC);
    virtual BOOL DestroyWindow();

    // TRUE when pWnd points to a live window. Safe for dangling pointers: it only compares
    // the address with the registry of live windows.
    static BOOL IsWindowPtr(const CWnd* pWnd);

protected:
    // Windows call these when their handle comes into and goes out of existence.
    void RegisterHandle();
    void UnregisterHandle();

#if defined(_WIN32)
private:
    std::vector<std::unique_ptr<CDC>> m_dcs;  // handed out by GetDC, not yet released
#endif
};

#if !defined(_WIN32)
// TRUE when h is the handle of a live window (User32's own on Windows).
KYFW_API BOOL IsWindow(HWND h);
#endif
