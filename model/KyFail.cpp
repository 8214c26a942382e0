#include "internal/KyFail.h"

#include <kygraph/KyMessages.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cwchar>

namespace {

// v as "%.*g" with the fewest digits from 6 to 17 that read back as v. to_chars and from_chars
// are exact and need no locale; a redraw formats thousands of these for the states it refuses.
std::to_chars_result ShortestG(char* first, char* last, double v)
{
    if (!std::isfinite(v)) return std::to_chars(first, last, v);
    // The shortest digits that read back: no fewer digits in %g form can.
    std::to_chars_result r = std::to_chars(first, last, v, std::chars_format::scientific);
    int digits = 0;
    for (const char* c = first; c != r.ptr && *c != 'e'; ++c) digits += *c >= '0' && *c <= '9';
    for (int n = std::max(digits, 6); n <= 17; ++n) {
        r = std::to_chars(first, last, v, std::chars_format::general, n);
        double back = 0.0;
        std::from_chars(first, r.ptr, back);
        if (back == v) break;
    }
    return r;
}

}  // namespace

namespace Ky::Detail {

namespace {

CString FormatV(const wchar_t* fmt, va_list args)
{
    // Every message is a sentence with a few numbers: 512 characters is ample, and vswprintf
    // truncates rather than overflows if a message ever grows.
    wchar_t buf[512];
    const int n = std::vswprintf(buf, sizeof buf / sizeof buf[0], fmt, args);
    if (n < 0) buf[sizeof buf / sizeof buf[0] - 1] = L'\0';
    return CString(buf);
}

}  // namespace

CString Format(const wchar_t* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    CString text = FormatV(fmt, args);
    va_end(args);
    return text;
}

bool Fail(CKyObject& obj, Ky::_ErrorStatus status, const wchar_t* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    CString text = FormatV(CKyMessages::Localize(fmt), args);
    va_end(args);
    obj.SetError(text, status);
    return false;
}

std::wstring WithNumbers(const wchar_t* fmt, std::initializer_list<double> values)
{
    std::wstring out;
    auto next = values.begin();
    for (const wchar_t* p = fmt; *p; ++p) {
        if (p[0] != L'%' || (p[1] != L'g' && p[1] != L'%')) {
            out += *p;
            continue;
        }
        ++p;
        if (*p == L'%') {
            out += L'%';
            continue;
        }
        const double v = next != values.end() ? *next++ : 0.0;
        char buf[40];
        const std::to_chars_result r = ShortestG(buf, buf + sizeof buf, v);
        out.append(buf, r.ptr);  // ASCII only: digits, sign, point, exponent, inf, nan
    }
    return out;
}

}  // namespace Ky::Detail
