// The one place where KyArithm sets an error text, so that one breakpoint finds them all.
#pragma once

#include <kygraph/KyObject.h>

#include <initializer_list>
#include <string>

namespace Ky::Detail {

// fmt (wide printf style, used as it is) with its arguments; at most 511 characters.
CString Format(const wchar_t* fmt, ...);

// Formats the text (wide printf style) into obj's last error with the given kind and
// returns false, so that a refusing function can end with `return Fail(...)`.
bool Fail(CKyObject& obj, Ky::_ErrorStatus status, const wchar_t* fmt, ...);

// fmt (used as it is: the caller localizes it) with each "%g" replaced by the next of values
// written with as few digits as read back to the same double (20, 0.5, 1.0000000020000001), so
// that a message never shows a value and the limit it breaks as the same number; "%%" is "%".
// Missing values read as 0.
std::wstring WithNumbers(const wchar_t* fmt, std::initializer_list<double> values);

}  // namespace Ky::Detail
