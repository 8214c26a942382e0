#include "KySvgWriter.h"

#include "KyGdiGeometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <tuple>
#include <utility>

namespace {

bool SamePen(const KyPen& a, const KyPen& b) { return a.style == b.style && a.width == b.width && a.color == b.color; }

bool SameFont(const KyVectorItem& a, const KyVectorItem& b)
{
    return a.family == b.family && a.em == b.em && a.weight == b.weight && a.italic == b.italic &&
           a.textColor == b.textColor;
}

}  // namespace

std::string KySvgWriter::Write(const KySurface& s, const Page& page)
{
    std::string out;
    if (s.kind != KySurface::Vector || s.width <= 0 || s.height <= 0) return out;
    out.reserve(64 * 1024 + s.items.size() * 48);
    KySvgWriter w(out);
    w.m_penScale = s.penScale;
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"";
    if (page.width.empty()) w.Int(s.width), out += "px"; else out += page.width;
    out += "\" height=\"";
    if (page.height.empty()) w.Int(s.height), out += "px"; else out += page.height;
    const double m = std::isfinite(page.margin) && page.margin > 0 ? page.margin : 0.0;
    out += "\" viewBox=\"";
    w.Num(-m);
    out += ' ';
    w.Num(-m);
    out += ' ';
    w.Num(s.width + 2 * m);
    out += ' ';
    w.Num(s.height + 2 * m);
    out += "\" xml:space=\"preserve\">\n";
    for (const KyVectorItem& item : s.items) w.Item(item);
    w.Close();
    for (; w.m_depth > 0; --w.m_depth) w.m_out += "</g>\n";
    out += "</svg>\n";
    return out;
}

void KySvgWriter::Item(const KyVectorItem& item)
{
    switch (item.kind) {
    case KyVectorItem::Polyline:
    case KyVectorItem::Arc:
        if (item.pen.style == PS_NULL) return;
        OpenStroke(item.pen);
        Path(item);
        return;
    case KyVectorItem::Ellipse:
        Close();
        m_out += "<ellipse cx=\"";
        Num(item.arc.cx);
        m_out += "\" cy=\"";
        Num(item.arc.cy);
        m_out += "\" rx=\"";
        Num(item.arc.rx);
        m_out += "\" ry=\"";
        Num(item.arc.ry);
        m_out += "\" fill=\"";
        if (item.brush.null) m_out += "none"; else Color(item.brush.color);
        if (item.pen.style != PS_NULL) {
            m_out += "\" stroke=\"";
            Color(item.pen.color);
            m_out += "\" stroke-width=\"";
            Num(item.pen.width * m_penScale);
        }
        m_out += "\"/>\n";
        return;
    case KyVectorItem::FillRect:
        Close();
        m_out += "<rect x=\"";
        Int(item.rect.left);
        m_out += "\" y=\"";
        Int(item.rect.top);
        m_out += "\" width=\"";
        Int(static_cast<long long>(item.rect.right) - item.rect.left);
        m_out += "\" height=\"";
        Int(static_cast<long long>(item.rect.bottom) - item.rect.top);
        m_out += "\" fill=\"";
        Color(item.brush.color);
        m_out += "\"/>\n";
        return;
    case KyVectorItem::GroupBegin:
        // One element of the chart (its class name), so a reader can find and restyle it.
        Close();
        m_out += "<g class=\"";
        Escaped(item.utf8);
        m_out += "\">\n";
        ++m_depth;
        return;
    case KyVectorItem::GroupEnd:
        Close();
        if (m_depth == 0) return;  // its start was covered by a fill of the whole surface
        m_out += "</g>\n";
        --m_depth;
        return;
    case KyVectorItem::Polygon:
        // A translucent area (a zone, a density cell): corners at pixel centres, as drawn.
        Close();
        m_out += "<path d=\"";
        for (size_t i = 0; i < item.pts.size(); ++i) {
            m_out += i ? " L" : "M";
            Num(item.pts[i].x + 0.5);
            m_out += ' ';
            Num(item.pts[i].y + 0.5);
        }
        m_out += " Z\" fill-rule=\"evenodd\" fill=\"";
        Color(item.brush.color);
        if (item.alpha < 1.0) {
            m_out += "\" fill-opacity=\"";
            Num(item.alpha);
        }
        m_out += "\"/>\n";
        return;
    case KyVectorItem::Text:
        if (item.utf8.empty()) return;
        OpenText(item);
        Label(item);
        return;
    }
}

void KySvgWriter::OpenStroke(const KyPen& pen)
{
    if (m_group == Stroke && SamePen(pen, m_pen)) return;
    Close();
    m_group = Stroke;
    m_pen = pen;
    // GDI's points are pixel centres; an even-width pen runs along pixel edges.
    m_shift = pen.width % 2 ? 0.5 : 0.0;
    m_out += "<path fill=\"none\" stroke=\"";
    Color(pen.color);
    m_out += "\" stroke-width=\"";
    Num(pen.width * m_penScale);
    if (pen.width > 1) m_out += "\" stroke-linecap=\"round\" stroke-linejoin=\"round";
    int count = 0;
    const int* dashes = Ky::CosmeticDashes(pen.style, count);
    if (count > 0) {
        m_out += "\" stroke-dasharray=\"";
        for (int i = 0; i < count; ++i) {
            if (i) m_out += ' ';
            Num(dashes[i] * m_penScale);
        }
    }
    m_out += "\" d=\"";
}

void KySvgWriter::OpenText(const KyVectorItem& text)
{
    if (m_group == Texts && SameFont(text, *m_font)) return;
    Close();
    m_group = Texts;
    m_font = &text;
    m_out += "<g font-family=\"";
    Escaped(text.family);
    m_out += ", sans-serif\" font-size=\"";
    Num(text.em);
    m_out += "px\" fill=\"";
    Color(text.textColor);
    if (text.weight != 400) {
        m_out += "\" font-weight=\"";
        Int(text.weight);
    }
    if (text.italic) m_out += "\" font-style=\"italic";
    m_out += "\">\n";
}

void KySvgWriter::Close()
{
    if (m_group == Stroke) m_out += "\"/>\n";
    else if (m_group == Texts) m_out += "</g>\n";
    m_group = None;
}

void KySvgWriter::Path(const KyVectorItem& item)
{
    if (item.kind == KyVectorItem::Polyline) {
        // The first point absolute, the others as steps from the one before: short numbers.
        const POINT* p = item.pts.data();
        m_out += 'M';
        Num(p[0].x + m_shift);
        m_out += ' ';
        Num(p[0].y + m_shift);
        m_out += 'l';
        for (size_t i = 1; i < item.pts.size(); ++i) {
            if (i > 1) m_out += ' ';
            Int(static_cast<long long>(p[i].x) - p[i - 1].x);
            m_out += ' ';
            Int(static_cast<long long>(p[i].y) - p[i - 1].y);
        }
        return;
    }
    const KyEllipseArc& a = item.arc;
    const auto point = [&a](double t) {
        return std::pair<double, double>{a.cx + a.rx * std::cos(t), a.cy - a.ry * std::sin(t)};
    };
    // Counter-clockwise on screen is SVG's negative sweep; a whole turn is two halves.
    const double sweep = std::clamp(a.sweep, -2.0 * std::numbers::pi, 2.0 * std::numbers::pi);
    const int halves = std::fabs(sweep) >= 2.0 * std::numbers::pi - 1e-9 ? 2 : 1;
    auto [x, y] = point(a.start);
    m_out += 'M';
    Num(x);
    m_out += ' ';
    Num(y);
    for (int i = 1; i <= halves; ++i) {
        const double t = a.start + sweep * i / halves;
        std::tie(x, y) = point(t);
        m_out += 'A';
        Num(a.rx);
        m_out += ' ';
        Num(a.ry);
        m_out += halves == 1 && std::fabs(sweep) > std::numbers::pi ? " 0 1 " : " 0 0 ";
        m_out += sweep > 0 ? "0 " : "1 ";
        Num(x);
        m_out += ' ';
        Num(y);
    }
}

void KySvgWriter::Label(const KyVectorItem& t)
{
    // The cell turns about its top-left corner, the reference point.
    std::string turn;
    if (t.escapement != 0) {
        std::string saved;
        saved.swap(m_out);
        m_out += " transform=\"rotate(";
        Num(-t.escapement / 10.0);
        m_out += ' ';
        Int(t.x);
        m_out += ' ';
        Int(t.y);
        m_out += ")\"";
        turn.swap(m_out);
        m_out.swap(saved);
    }
    if (t.opaque) {
        m_out += "<rect x=\"";
        Int(t.x);
        m_out += "\" y=\"";
        Int(t.y);
        m_out += "\" width=\"";
        Num(t.width);
        m_out += "\" height=\"";
        Num(t.cell);
        m_out += "\" fill=\"";
        Color(t.bkColor);
        m_out += '"';
        m_out += turn;
        m_out += "/>";
    }
    m_out += "<text x=\"";
    Int(t.x);
    m_out += "\" y=\"";
    Num(t.y + t.ascent);
    // The width the chart measured, so that a reader's substitute face keeps the layout.
    m_out += "\" textLength=\"";
    Num(t.width);
    m_out += "\" lengthAdjust=\"spacingAndGlyphs\"";
    m_out += turn;
    m_out += '>';
    Escaped(t.utf8);
    m_out += "</text>\n";
}

void KySvgWriter::Num(double v)
{
    if (!std::isfinite(v)) v = 0.0;
    v = std::round(v * 100.0) / 100.0;
    if (v == 0.0) v = 0.0;  // no "-0"
    char buf[32];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    m_out.append(buf, r.ptr);
}

void KySvgWriter::Int(long long v)
{
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    m_out.append(buf, r.ptr);
}

void KySvgWriter::Color(COLORREF c)
{
    static const char hex[] = "0123456789abcdef";
    m_out += '#';
    for (BYTE b : {GetRValue(c), GetGValue(c), GetBValue(c)}) {
        m_out += hex[b >> 4];
        m_out += hex[b & 15];
    }
}

void KySvgWriter::Escaped(const std::string& utf8)
{
    for (char c : utf8) {
        switch (c) {
        case '&': m_out += "&amp;"; break;
        case '<': m_out += "&lt;"; break;
        case '>': m_out += "&gt;"; break;
        case '"': m_out += "&quot;"; break;
        default:
            // Control characters are not allowed in XML; GDI draws them as blanks anyway.
            m_out += (static_cast<unsigned char>(c) < 0x20) ? ' ' : c;
        }
    }
}
