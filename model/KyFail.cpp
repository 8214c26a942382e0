#include "internal/KyFail.h"

#include <kygraph/KyMessages.h>

#include <cstdarg>
#include <cwchar>

namespace Ky::Detail {

bool Fail(CKyObject& obj, Ky::_ErrorStatus status, const wchar_t* fmt, ...)
{
    // Every message is a sentence with a few numbers: 512 characters is ample, and vswprintf
    // truncates rather than overflows if a message ever grows.
    wchar_t buf[512];
    va_list args;
    va_start(args, fmt);
    const int n = std::vswprintf(buf, sizeof buf / sizeof buf[0], CKyMessages::Localize(fmt), args);
    va_end(args);
    if (n < 0) buf[sizeof buf / sizeof buf[0] - 1] = L'\0';
    obj.SetError(CString(buf), status);
    return false;
}

std::wstring WithNumbers(const wchar_t* fmt, std::initializer_list<double> values)
{
    std::wstring out;
    auto next = values.begin();
    for (const wchar_t* p = CKyMessages::Localize(fmt); *p; ++p) {
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
        wchar_t buf[40];
        // The shortest of %.6g .. %.17g that reads back as v: 17 digits always do.
        for (int digits = 6; digits <= 17; ++digits) {
            std::swprintf(buf, sizeof buf / sizeof buf[0], L"%.*g", digits, v);
            if (!(std::wcstod(buf, nullptr) != v)) break;  // NaN prints once as "nan"
        }
        out += buf;
    }
    return out;
}

}  // namespace Ky::Detail
