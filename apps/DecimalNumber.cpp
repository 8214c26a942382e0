#include "DecimalNumber.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace {

// from_chars refuses a leading plus, which people type; it reads no other prefix.
std::string_view WithoutPlus(std::string_view text)
{
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    return text;
}

// Digits, sign, point and exponent only: from_chars would also read "inf" and "nan".
bool DecimalCharacters(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
}

}  // namespace

bool DecimalNumber::Parse(std::string_view text, double& value)
{
    if (!DecimalCharacters(text)) return false;
    text = WithoutPlus(text);
    double v = 0.0;
    const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v, std::chars_format::general);
    if (ec != std::errc() || ptr != text.data() + text.size() || !std::isfinite(v)) return false;
    value = v;
    return true;
}

bool DecimalNumber::ParseInt(std::string_view text, long long& value)
{
    if (!DecimalCharacters(text)) return false;
    text = WithoutPlus(text);
    long long v = 0;
    const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || ptr != text.data() + text.size()) return false;
    value = v;
    return true;
}

std::string DecimalNumber::Text(double v)
{
    if (std::isnan(v)) return "nan";
    char buf[32];
    const auto [ptr, ec] = std::to_chars(buf, buf + sizeof buf, v);
    return ec == std::errc() ? std::string(buf, ptr) : std::string("?");
}
