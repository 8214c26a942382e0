// CString: formatting, loading and UTF-8 conversion.
#include <kygraph/String.h>

#include <kygraph/ResourceModule.h>

#include <cstdarg>
#include <cwchar>
#include <vector>

namespace {

// vswprintf reports -1 both for a too-small buffer and for a bad format, so the buffer
// grows up to a bound and then gives up rather than looping.
std::wstring FormatV(const wchar_t* fmt, va_list args)
{
    if (!fmt) return std::wstring();
    size_t cap = 256;
    constexpr size_t kMaxCap = 1u << 24;
    while (cap <= kMaxCap) {
        std::vector<wchar_t> buf(cap);
        va_list copy;
        va_copy(copy, args);
        int n = std::vswprintf(buf.data(), cap, fmt, copy);
        va_end(copy);
        if (n >= 0 && static_cast<size_t>(n) < cap) return std::wstring(buf.data(), static_cast<size_t>(n));
        cap *= 4;
    }
    return std::wstring();
}

void AppendUtf8(std::string& out, char32_t c)
{
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

void AppendWide(std::wstring& out, char32_t c)
{
    if constexpr (sizeof(wchar_t) == 2) {
        if (c >= 0x10000) {
            c -= 0x10000;
            out += static_cast<wchar_t>(0xD800 + (c >> 10));
            out += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
            return;
        }
    }
    out += static_cast<wchar_t>(c);
}

}  // namespace

CString::CString(const wchar_t* s, int n)
{
    if (s && n > 0) m_str.assign(s, static_cast<size_t>(n));
}

CString::CString(const char* utf8) : m_str(FromUtf8(utf8 ? utf8 : "").m_str) {}

CString::CString(wchar_t ch, int repeat)
{
    if (repeat > 0) m_str.assign(static_cast<size_t>(repeat), ch);
}

CString CString::Left(int n) const
{
    if (n <= 0) return CString();
    return CString(m_str.substr(0, static_cast<size_t>(n)));
}

CString CString::Right(int n) const
{
    if (n <= 0) return CString();
    if (n >= GetLength()) return *this;
    return CString(m_str.substr(m_str.size() - static_cast<size_t>(n)));
}

CString CString::Mid(int first, int n) const
{
    if (first < 0) first = 0;
    if (first >= GetLength()) return CString();
    if (n < 0) return CString(m_str.substr(static_cast<size_t>(first)));
    return CString(m_str.substr(static_cast<size_t>(first), static_cast<size_t>(n)));
}

int CString::Find(const wchar_t* sub, int start) const
{
    if (!sub || start < 0 || start > GetLength()) return -1;
    size_t p = m_str.find(sub, static_cast<size_t>(start));
    return p == std::wstring::npos ? -1 : static_cast<int>(p);
}

int CString::Find(wchar_t ch, int start) const
{
    if (start < 0 || start > GetLength()) return -1;
    size_t p = m_str.find(ch, static_cast<size_t>(start));
    return p == std::wstring::npos ? -1 : static_cast<int>(p);
}

int CString::Replace(const wchar_t* from, const wchar_t* to)
{
    if (!from || !*from) return 0;
    std::wstring f(from), t(to ? to : L"");
    int count = 0;
    for (size_t p = m_str.find(f); p != std::wstring::npos; p = m_str.find(f, p + t.size())) {
        m_str.replace(p, f.size(), t);
        ++count;
    }
    return count;
}

CString& CString::Trim()
{
    const wchar_t* ws = L" \t\r\n";
    size_t b = m_str.find_first_not_of(ws);
    if (b == std::wstring::npos) { m_str.clear(); return *this; }
    size_t e = m_str.find_last_not_of(ws);
    m_str = m_str.substr(b, e - b + 1);
    return *this;
}

void CString::Format(const wchar_t* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    m_str = FormatV(fmt, args);
    va_end(args);
}

void CString::AppendFormat(const wchar_t* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    m_str += FormatV(fmt, args);
    va_end(args);
}

BOOL CString::LoadString(UINT id)
{
    return CResourceModule::Current().Load(id, *this);
}

std::string CString::ToUtf8() const
{
    std::string out;
    out.reserve(m_str.size());
    for (size_t i = 0; i < m_str.size(); ++i) {
        char32_t c = static_cast<char32_t>(m_str[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (c >= 0xD800 && c <= 0xDBFF && i + 1 < m_str.size()) {
                char32_t lo = static_cast<char32_t>(m_str[i + 1]);
                if (lo >= 0xDC00 && lo <= 0xDFFF) {
                    c = 0x10000 + ((c - 0xD800) << 10) + (lo - 0xDC00);
                    ++i;
                }
            }
        }
        AppendUtf8(out, c);
    }
    return out;
}

CString CString::FromUtf8(const std::string& s)
{
    std::wstring out;
    out.reserve(s.size());
    size_t i = 0;
    while (i < s.size()) {
        unsigned char b = static_cast<unsigned char>(s[i]);
        int extra = b < 0x80 ? 0 : (b >> 5) == 6 ? 1 : (b >> 4) == 14 ? 2 : (b >> 3) == 30 ? 3 : -1;
        if (extra < 0 || i + static_cast<size_t>(extra) >= s.size() + (extra == 0 ? 1 : 0)) {
            AppendWide(out, 0xFFFD);
            ++i;
            continue;
        }
        char32_t c = extra == 0 ? b : extra == 1 ? (b & 0x1F) : extra == 2 ? (b & 0x0F) : (b & 0x07);
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            unsigned char cb = static_cast<unsigned char>(s[i + static_cast<size_t>(k)]);
            if ((cb & 0xC0) != 0x80) { ok = false; break; }
            c = (c << 6) | (cb & 0x3F);
        }
        if (!ok) {
            AppendWide(out, 0xFFFD);
            ++i;
            continue;
        }
        AppendWide(out, c);
        i += static_cast<size_t>(extra) + 1;
    }
    return CString(out);
}
