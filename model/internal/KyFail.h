// The one place where KyArithm sets an error text, so that one breakpoint finds them all.
#pragma once

#include <kygraph/KyObject.h>

namespace Ky::Detail {

// Formats the text (wide printf style) into obj's last error with the given kind and
// returns false, so that a refusing function can end with `return Fail(...)`.
bool Fail(CKyObject& obj, Ky::_ErrorStatus status, const wchar_t* fmt, ...);

}  // namespace Ky::Detail
