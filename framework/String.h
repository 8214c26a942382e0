// CString: the framework's wide-character string, with printf-style formatting, loading
// from the current module's string table and conversion to and from UTF-8.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/WinTypes.h>

#include <string>

class KYFW_API CString {
public:
    CString() = default;
    CString(const wchar_t* s) : m_str(s ? s : L"") {}
    CString(const wchar_t* s, int n);
    CString(const std::wstring& s) : m_str(s) {}
    // Narrow text is taken as UTF-8.
    CString(const char* utf8);
    CString(wchar_t ch, int repeat = 1);

    int GetLength() const { return static_cast<int>(m_str.size()); }
    bool IsEmpty() const { return m_str.empty(); }
    void Empty() { m_str.clear(); }
    const wchar_t* GetString() const { return m_str.c_str(); }
    operator const wchar_t*() const { return m_str.c_str(); }
    const std::wstring& str() const { return m_str; }

    // Characters by index; an index outside 0..length-1 reads as L'\0' instead of failing.
    wchar_t GetAt(int i) const { return (i >= 0 && i < GetLength()) ? m_str[static_cast<size_t>(i)] : L'\0'; }
    wchar_t operator[](int i) const { return GetAt(i); }

    CString Left(int n) const;
    CString Right(int n) const;
    CString Mid(int first, int n = -1) const;
    int Find(const wchar_t* sub, int start = 0) const;
    int Find(wchar_t ch, int start = 0) const;
    int Replace(const wchar_t* from, const wchar_t* to);
    CString& Trim();

    // printf-style formatting of wide text; %s and %ls both take wide strings as in the
    // framework's Unicode build. On a formatting error the string is left empty.
    void Format(const wchar_t* fmt, ...);
    // Appends a formatted text.
    void AppendFormat(const wchar_t* fmt, ...);

    // Loads entry id from the current module's string table; FALSE (and unchanged) if none.
    BOOL LoadString(UINT id);

    std::string ToUtf8() const;
    static CString FromUtf8(const std::string& utf8);

    CString& operator=(const wchar_t* s) { m_str = s ? s : L""; return *this; }
    CString& operator+=(const CString& s) { m_str += s.m_str; return *this; }
    CString& operator+=(const wchar_t* s) { if (s) m_str += s; return *this; }
    CString& operator+=(wchar_t ch) { m_str += ch; return *this; }

    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_str + b.m_str); }
    friend CString operator+(const CString& a, const wchar_t* b) { CString r(a); r += b; return r; }
    friend CString operator+(const wchar_t* a, const CString& b) { CString r(a); r += b; return r; }
    friend bool operator==(const CString& a, const CString& b) { return a.m_str == b.m_str; }
    friend bool operator==(const CString& a, const wchar_t* b) { return a.m_str == (b ? b : L""); }
    friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
    friend bool operator!=(const CString& a, const wchar_t* b) { return !(a == b); }
    friend bool operator<(const CString& a, const CString& b) { return a.m_str < b.m_str; }

private:
    std::wstring m_str;
};
