#include "PaperSize.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace {

struct Sheet {
    const char* name;
    double shortMm, longMm;
};
constexpr Sheet kSheets[] = {{"A4", 210, 297}, {"A3", 297, 420}, {"A2", 420, 594}};

int Pixels(double mm)
{
    return static_cast<int>(std::floor((mm - 2 * PaperSize::kMarginMm) * 72.0 / 25.4 * PaperSize::kPixelsPerPoint));
}

}  // namespace

bool PaperSize::Find(const std::string& name, bool landscape, PaperSize& out, std::string& error)
{
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return std::toupper(c); });
    for (const Sheet& s : kSheets) {
        if (upper != s.name) continue;
        out.m_widthMm = landscape ? s.longMm : s.shortMm;
        out.m_heightMm = landscape ? s.shortMm : s.longMm;
        return true;
    }
    error = "unknown paper \"" + name + "\"; use A4, A3 or A2";
    return false;
}

std::vector<std::string> PaperSize::Names()
{
    std::vector<std::string> names;
    for (const Sheet& s : kSheets) names.emplace_back(s.name);
    return names;
}

int PaperSize::ChartWidth() const { return Pixels(m_widthMm); }
int PaperSize::ChartHeight() const { return Pixels(m_heightMm); }
