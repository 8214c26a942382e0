// PaperSize: the paper a chart is printed on (ISO A4, A3, A2, portrait or landscape), and
// the pixel size the chart is drawn at for it: four pixels to the point, so that curves made
// of whole pixels are smooth at printing resolutions and labels, which grow with the chart,
// come out at a readable size on any of the papers.
#pragma once

#include <string>
#include <vector>

class PaperSize {
public:
    static constexpr double kMarginMm = 10.0;
    static constexpr double kPixelsPerPoint = 4.0;

    // The paper called name (A4, A3 or A2, any case); false with a message naming the input
    // when there is none of that name (hosts put their option's name before it).
    static bool Find(const std::string& name, bool landscape, PaperSize& out, std::string& error);
    // The names Find accepts, for messages and menus.
    static std::vector<std::string> Names();

    double WidthMm() const { return m_widthMm; }
    double HeightMm() const { return m_heightMm; }
    // The chart's pixel size filling the paper within its margin.
    int ChartWidth() const;
    int ChartHeight() const;

private:
    double m_widthMm = 210, m_heightMm = 297;
};
