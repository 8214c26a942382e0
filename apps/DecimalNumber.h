// DecimalNumber: how the program reads and prints the numbers people type. Reading accepts
// plain decimal only (an optional sign, digits, a point, an exponent): "0x10", "inf" and
// "nan" are refused, so a typo cannot become a different value. Printing gives the shortest
// text that reads back as the same double, so a message shows 100.0000001 and never rounds
// it to 100.
#pragma once

#include <string>
#include <string_view>

class DecimalNumber {
public:
    // The whole of text as a finite decimal number; false otherwise, value untouched.
    static bool Parse(std::string_view text, double& value);
    // The whole of text as a decimal integer; false otherwise, value untouched.
    static bool ParseInt(std::string_view text, long long& value);
    // The shortest decimal text of v that reads back as v ("nan", "inf", "-inf" as such).
    static std::string Text(double v);
};
