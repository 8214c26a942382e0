// KyGPlotMap: the chart's own (h, d) -> pixel mapping taken as the affine map it is, from three
// answers of CKyGChart::GetPoint at the corners of the range, so that overlays can place states
// in doubles, also beyond the edges where GetPoint refuses, and cut what they draw to the plot
// area themselves. Private to the elements; not installed.
#pragma once

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/Saturate.h>
#include <kygraph/VoArray.h>

#include <algorithm>
#include <cmath>
#include <vector>

struct KyGPixel {
    double x, y;
};

class KyGPlotMap {
public:
    // false when the chart gives no mapping for the corners (no window yet, a broken range).
    bool Init(const CKyGChart& chart, const CKyGChartSetting& set)
    {
        const CKyGRangeSetting& r = set.m_RangeSetting;
        const double h0 = r.GetMinDMinTH(), d0 = r.GetMinDMinTD();
        const double h1 = r.GetMinDMaxTH(), d1 = r.GetMinDMaxTD();
        const double h2 = r.GetMaxDMaxTH(), d2 = r.GetMaxDMaxTD();
        CPoint p0, p1, p2;
        if (!chart.GetPoint(h0, d0, p0) || !chart.GetPoint(h1, d1, p1) || !chart.GetPoint(h2, d2, p2)) return false;
        // Solve pixel = base + a * (h - h0) + b * (d - d0) from the three corners.
        const double dh1 = h1 - h0, dd1 = d1 - d0, dh2 = h2 - h0, dd2 = d2 - d0;
        const double det = dh1 * dd2 - dh2 * dd1;
        if (!std::isfinite(det) || std::fabs(det) < 1e-12) return false;
        const double x1 = p1.x - p0.x, y1 = p1.y - p0.y, x2 = p2.x - p0.x, y2 = p2.y - p0.y;
        m_ax = (x1 * dd2 - x2 * dd1) / det;
        m_bx = (x2 * dh1 - x1 * dh2) / det;
        m_ay = (y1 * dd2 - y2 * dd1) / det;
        m_by = (y2 * dh1 - y1 * dh2) / det;
        m_h0 = h0;
        m_d0 = d0;
        m_x0 = p0.x;
        m_y0 = p0.y;
        const CPoint tl = chart.GetChartOrigin(), bl = chart.GetMinTAndMinDPnt(), tr = chart.GetMaxTAndMaxDPnt();
        m_left = tl.x;
        m_top = tl.y;
        m_right = tr.x;
        m_bottom = bl.y;
        return m_left < m_right && m_top < m_bottom;
    }

    KyGPixel Map(double h, double d) const
    {
        return KyGPixel{m_x0 + m_ax * (h - m_h0) + m_bx * (d - m_d0), m_y0 + m_ay * (h - m_h0) + m_by * (d - m_d0)};
    }
    // The (h, d) at a pixel: the inverse of Map. false when the map cannot be inverted.
    bool Unmap(double x, double y, double& h, double& d) const
    {
        const double det = m_ax * m_by - m_bx * m_ay;
        if (!std::isfinite(det) || std::fabs(det) < 1e-15) return false;
        const double dx = x - m_x0, dy = y - m_y0;
        h = m_h0 + (dx * m_by - dy * m_bx) / det;
        d = m_d0 + (dy * m_ax - dx * m_ay) / det;
        return true;
    }
    bool Inside(const KyGPixel& p) const { return p.x >= m_left && p.x <= m_right && p.y >= m_top && p.y <= m_bottom; }
    static CPoint Round(const KyGPixel& p)
    {
        return CPoint(Ky::TruncToInt(std::floor(p.x + 0.5)), Ky::TruncToInt(std::floor(p.y + 0.5)));
    }
    static bool Finite(const KyGPixel& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

    double Left() const { return m_left; }
    double Top() const { return m_top; }
    double Right() const { return m_right; }
    double Bottom() const { return m_bottom; }

    // The closed polygon cut to the plot area (Sutherland-Hodgman, one edge at a time).
    std::vector<KyGPixel> ClipPolygon(std::vector<KyGPixel> poly) const
    {
        auto cut = [&poly](auto inside, auto cross) {
            std::vector<KyGPixel> out;
            out.reserve(poly.size() + 4);
            for (size_t i = 0; i < poly.size(); ++i) {
                const KyGPixel& a = poly[(i + poly.size() - 1) % poly.size()];
                const KyGPixel& c = poly[i];
                if (inside(c)) {
                    if (!inside(a)) out.push_back(cross(a, c));
                    out.push_back(c);
                } else if (inside(a)) {
                    out.push_back(cross(a, c));
                }
            }
            poly.swap(out);
        };
        auto atX = [](double x) {
            return [x](const KyGPixel& a, const KyGPixel& c) { return KyGPixel{x, a.y + (c.y - a.y) * (x - a.x) / (c.x - a.x)}; };
        };
        auto atY = [](double y) {
            return [y](const KyGPixel& a, const KyGPixel& c) { return KyGPixel{a.x + (c.x - a.x) * (y - a.y) / (c.y - a.y), y}; };
        };
        const double l = m_left, r = m_right, t = m_top, b = m_bottom;
        cut([l](const KyGPixel& p) { return p.x >= l; }, atX(l));
        cut([r](const KyGPixel& p) { return p.x <= r; }, atX(r));
        cut([t](const KyGPixel& p) { return p.y >= t; }, atY(t));
        cut([b](const KyGPixel& p) { return p.y <= b; }, atY(b));
        return poly;
    }

    // The open polyline cut to the plot area: the pieces that lie inside, each with at least
    // two points (Liang-Barsky per segment, pieces joined where segments meet).
    std::vector<CVoArray<CPoint>> ClipPolyline(const std::vector<KyGPixel>& line) const
    {
        std::vector<CVoArray<CPoint>> pieces;
        bool open = false;
        for (size_t i = 0; i + 1 < line.size(); ++i) {
            KyGPixel a = line[i], b = line[i + 1];
            if (!Finite(a) || !Finite(b)) {
                open = false;
                continue;
            }
            const bool whole = Inside(a) && Inside(b);
            if (!whole && !ClipSegment(a, b)) {
                open = false;
                continue;
            }
            if (!open) {
                pieces.emplace_back();
                pieces.back().Add(Round(a));
                open = true;
            }
            pieces.back().Add(Round(b));
            // A segment cut at its far end leaves the area: the next one starts a new piece.
            if (!Inside(line[i + 1])) open = false;
        }
        return pieces;
    }

private:
    bool ClipSegment(KyGPixel& a, KyGPixel& b) const
    {
        const double dx = b.x - a.x, dy = b.y - a.y;
        double t0 = 0.0, t1 = 1.0;
        const double p[4] = {-dx, dx, -dy, dy};
        const double q[4] = {a.x - m_left, m_right - a.x, a.y - m_top, m_bottom - a.y};
        for (int i = 0; i < 4; ++i) {
            if (p[i] == 0.0) {
                if (q[i] < 0.0) return false;
                continue;
            }
            const double t = q[i] / p[i];
            if (p[i] < 0.0) t0 = std::max(t0, t);
            else t1 = std::min(t1, t);
        }
        if (!(t0 <= t1)) return false;
        const KyGPixel s{a.x + t0 * dx, a.y + t0 * dy}, e{a.x + t1 * dx, a.y + t1 * dy};
        a = s;
        b = e;
        return true;
    }

    double m_ax = 0, m_bx = 0, m_ay = 0, m_by = 0;
    double m_h0 = 0, m_d0 = 0, m_x0 = 0, m_y0 = 0;
    double m_left = 0, m_top = 0, m_right = 0, m_bottom = 0;
};
