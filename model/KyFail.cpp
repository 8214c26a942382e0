#include "internal/KyFail.h"

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
    const int n = std::vswprintf(buf, sizeof buf / sizeof buf[0], fmt, args);
    va_end(args);
    if (n < 0) buf[sizeof buf / sizeof buf[0] - 1] = L'\0';
    obj.SetError(CString(buf), status);
    return false;
}

}  // namespace Ky::Detail
