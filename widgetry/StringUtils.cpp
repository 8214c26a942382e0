#include <kygraph/StringUtils.h>

#include <charconv>
#include <cmath>
#include <string>

CString StringUtils::IntToStr(int value)
{
    return CString(std::to_wstring(value));
}

CString StringUtils::DblToStr(double value, int decimals)
{
    if (std::isnan(value)) return CString(L"NaN");
    if (std::isinf(value)) return CString(value > 0 ? L"Inf" : L"-Inf");
    if (decimals < 0) decimals = 0;
    if (decimals > 15) decimals = 15;

    // Labels are computed as sums and products (0.45 * 100 = 44.99999999999999); nudge by a
    // few ulps toward away-from-zero so such values round as the number they stand for.
    double nudged = value + std::copysign(std::fabs(value) * 4e-15, value);
    // to_chars writes what "%.*f" does in the C locale, whatever locale the host has set, and
    // at a fraction of printf's cost: the chart writes hundreds of labels a redraw.
    char buf[512];
    const auto written = std::to_chars(buf, buf + sizeof buf, nudged, std::chars_format::fixed, decimals);
    std::string s(buf, written.ec == std::errc() ? written.ptr : buf);
    if (!s.empty() && s[0] == '-' && s.find_first_not_of("-0.") == std::string::npos) s.erase(0, 1);
    return CString(s.c_str());
}
