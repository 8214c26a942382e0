// KySvgWriter: writes a vector surface's display list as an SVG document meant for people as
// well as browsers: sized in pixels (or the paper's millimetres) with a pixel viewBox, lines
// merged into one path per run of the same pen, texts as <text> elements in their face, size,
// colour and turn over their opaque cell, so that every label can be found, selected and
// edited.
#pragma once

#include "KySurface.h"

#include <string>

class KySvgWriter {
public:
    // The document's size as written in width and height, e.g. "1000px" or "297mm"; empty
    // for the surface's size in pixels.
    struct Page {
        std::string width, height;
        double margin = 0;  // blank around the drawing, in its pixels
    };

    // The document for surface s (a vector surface); empty when s has nothing to write.
    static std::string Write(const KySurface& s, const Page& page);

private:
    explicit KySvgWriter(std::string& out) : m_out(out) {}
    void Item(const KyVectorItem& item);
    void OpenStroke(const KyPen& pen);
    void OpenText(const KyVectorItem& text);
    void Close();
    void Path(const KyVectorItem& item);
    void Label(const KyVectorItem& text);
    void Num(double v);
    void Int(long long v);
    void Color(COLORREF c);
    void Escaped(const std::string& utf8);

    enum Group { None, Stroke, Texts };
    std::string& m_out;
    double m_penScale = 1.0;
    Group m_group = None;
    KyPen m_pen;            // of the open stroke group
    const KyVectorItem* m_font = nullptr;  // of the open text group
    double m_shift = 0.0;   // what the open stroke group's points are moved by (pixel centres)
    int m_depth = 0;        // open element groups
};
