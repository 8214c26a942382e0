#include "HostLayout.h"

#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Saturate.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

RECT Normalized(CPoint a, CPoint b)
{
    return RECT{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

// Counts of what lies in each cell of a coarse grid over the chart, summed so that any
// rectangle's count is four look-ups: the free-space search tries every place of the block.
class CellCounts {
public:
    static constexpr int kCell = 4;
    static constexpr long kMaxCells = 4096;
    CellCounts(const RECT& area) : m_area(area)
    {
        // A frame far larger than any window (odd margins) is searched over its first cells only.
        m_nx = std::clamp<long>((static_cast<long>(area.right) - area.left) / kCell + 1, 1, kMaxCells);
        m_ny = std::clamp<long>((static_cast<long>(area.bottom) - area.top) / kCell + 1, 1, kMaxCells);
        m_count.assign(static_cast<size_t>(m_nx * m_ny), 0);
    }
    void Mark(const RECT& r)
    {
        const long x0 = Col(r.left), x1 = Col(r.right - 1), y0 = Row(r.top), y1 = Row(r.bottom - 1);
        for (long y = y0; y <= y1; ++y)
            for (long x = x0; x <= x1; ++x) ++m_count[static_cast<size_t>(y * m_nx + x)];
    }
    void MarkSegment(CPoint a, CPoint b)
    {
        const double len = std::hypot(double(b.x) - a.x, double(b.y) - a.y);
        const int steps = static_cast<int>(std::min(len / 2.0, 100000.0)) + 1;
        long last = -1;
        for (int i = 0; i <= steps; ++i) {
            const double t = double(i) / steps;
            const long x = Col(static_cast<int>(a.x + (b.x - a.x) * t)), y = Row(static_cast<int>(a.y + (b.y - a.y) * t));
            const long cell = y * m_nx + x;
            if (cell != last) ++m_count[static_cast<size_t>(cell)];
            last = cell;
        }
    }
    void Sum()
    {
        m_sum.assign(static_cast<size_t>((m_nx + 1) * (m_ny + 1)), 0);
        for (long y = 0; y < m_ny; ++y)
            for (long x = 0; x < m_nx; ++x)
                m_sum[Idx(x + 1, y + 1)] = m_count[static_cast<size_t>(y * m_nx + x)] + m_sum[Idx(x, y + 1)] +
                                           m_sum[Idx(x + 1, y)] - m_sum[Idx(x, y)];
    }
    // The count over cells [x0, x1) x [y0, y1).
    long long In(long x0, long y0, long x1, long y1) const
    {
        return m_sum[Idx(x1, y1)] - m_sum[Idx(x0, y1)] - m_sum[Idx(x1, y0)] + m_sum[Idx(x0, y0)];
    }
    long Cols() const { return m_nx; }
    long Rows() const { return m_ny; }

private:
    long Col(int x) const { return std::clamp<long>((static_cast<long>(x) - m_area.left) / kCell, 0, m_nx - 1); }
    long Row(int y) const { return std::clamp<long>((static_cast<long>(y) - m_area.top) / kCell, 0, m_ny - 1); }
    size_t Idx(long x, long y) const { return static_cast<size_t>(y * (m_nx + 1) + x); }
    RECT m_area;
    long m_nx = 1, m_ny = 1;
    std::vector<int> m_count;
    std::vector<long long> m_sum;
};

}  // namespace

RECT HostLayout::TextBox(CDC* pDC, const CDrawRecord& t)
{
    const CPoint p = t.pts.empty() ? CPoint() : t.pts.front();
    const CSize e = GetTextExtent(pDC, std::abs(t.fontHeight), t.text);
    // The cell turns about its reference point, counter-clockwise by the escapement.
    const double a = t.escapement / 10.0 * M_PI / 180.0, c = std::cos(a), s = std::sin(a);
    const double xs[4] = {0.0, double(e.cx), double(e.cx), 0.0}, ys[4] = {0.0, 0.0, double(e.cy), double(e.cy)};
    double x0 = 1e18, y0 = 1e18, x1 = -1e18, y1 = -1e18;
    for (int i = 0; i < 4; ++i) {
        const double x = p.x + xs[i] * c + ys[i] * s, y = p.y - xs[i] * s + ys[i] * c;
        x0 = std::min(x0, x), x1 = std::max(x1, x), y0 = std::min(y0, y), y1 = std::max(y1, y);
    }
    return RECT{Ky::TruncToInt(std::floor(x0)), Ky::TruncToInt(std::floor(y0)), Ky::TruncToInt(std::ceil(x1)),
                Ky::TruncToInt(std::ceil(y1))};
}

HostLayout::Block HostLayout::MeasureBlock(CDC* pDC, double scale)
{
    CResourceModule::Scope scope(KyGraphModule());
    const CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    Block b;
    b.rows[0].LoadString(IDS_FORMULA_KCAL);
    b.rows[1].LoadString(IDS_FORMULA_KJ);
    CString format;
    format.LoadString(IDS_PRESSURE_FORMAT);
    const double pressure = CKyChart::InstanceGloble()->GetGlobleB();
    b.rows[2].Format(format.GetString(), pressure, pressure * 0.0075);
    b.rows[3].LoadString(IDS_CHART_TITLE);
    const CSize row = GetTextExtent(pDC, Ky::TruncToInt(set->m_StyleSetting.m_FrameStyle.nTextHeight * set->GetDrawScale() * scale), b.rows[0]);
    b.w = row.cx;
    b.h = row.cy;
    return b;
}

void HostLayout::ReadChart(CKyGChart& chart)
{
    CDC* dc = chart.GetChartDC();
    m_client = Normalized(chart.GetOrigin(), chart.GetChartMaxPoint());
    const CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    m_hasTitle = set->m_DrawHstSetting.m_bShowTitle != 0;
    const Block block = MeasureBlock(dc);
    if (m_hasTitle) {
        // Where the chart stands its block: centred on the plot's bottom edge, eight rows high.
        const CPoint A = chart.GetChartOrigin(), B = chart.GetMinTAndMinDPnt(), E = chart.GetMaxTAndMaxDPnt();
        const int x0 = Ky::SatSub(Ky::SatAdd(B.x, (E - A).cx / 2), block.w / 2);
        m_title = RECT{x0, Ky::ClampToInt(std::int64_t{B.y} - 8LL * block.h), Ky::SatAdd(x0, block.w), B.y};
    }
    m_texts.clear();
    m_lines.clear();
    if (!dc) return;
    for (const CDrawRecord& r : dc->GetRecords()) {
        if (r.kind == CDrawRecord::Text) {
            if (m_hasTitle && std::find(block.rows, block.rows + 4, r.text) != block.rows + 4) continue;
            m_texts.push_back(TextBox(dc, r));
        } else if (r.kind == CDrawRecord::Line || r.kind == CDrawRecord::Polyline) {
            m_lines.push_back(r.pts);
        }
    }
}

void HostLayout::ReadMore(CKyGChart& chart, size_t from)
{
    CDC* dc = chart.GetChartDC();
    if (!dc) return;
    const auto& records = dc->GetRecords();
    for (size_t i = from; i < records.size(); ++i)
        if (records[i].kind == CDrawRecord::Text) m_texts.push_back(TextBox(dc, records[i]));
}

bool HostLayout::Place(CDC* pDC)
{
    LabelPlacer placer(m_client);
    for (const RECT& t : m_texts) placer.AddText(t);
    for (const Dot& d : m_dots) placer.AddDot(d.p, d.r);
    bool covered = false;
    if (m_hasTitle) {
        for (const RECT& t : m_texts) covered = covered || LabelPlacer::Overlap(t, m_title);
        for (const RECT& d : placer.Obstacles()) covered = covered || LabelPlacer::Overlap(d, m_title);
        if (!covered) placer.AddText(m_title);
    }
    m_placed.clear();
    for (const Label& l : m_labels) {
        const CSize size = GetTextExtent(pDC, Ky::TruncToInt(l.height), l.text);
        m_placed.push_back(placer.Place(l.dot, l.dotRadius, size, l.side));
        if (m_hasTitle) covered = covered || LabelPlacer::Overlap(m_placed.back().box, m_title);
    }
    m_titleMoved = m_hasTitle && covered;
    return m_titleMoved;
}

void HostLayout::MoveTitle(CDC* pDC, const HostLayout& titleless)
{
    const RECT was = m_title;
    // The chart as redrawn without its block.
    m_client = titleless.m_client;
    m_texts = titleless.m_texts;
    m_lines = titleless.m_lines;
    m_titleScale = 1.0;
    if (!m_titleMoved) return;

    const RECT area = m_client;
    CellCounts ink(area), taken(area);
    for (const auto& line : m_lines)
        for (size_t i = 1; i < line.size(); ++i) ink.MarkSegment(line[i - 1], line[i]);
    for (const RECT& t : m_texts) taken.Mark(t);
    for (const Dot& d : m_dots) taken.Mark(RECT{d.p.x - d.r, d.p.y - d.r, d.p.x + d.r + 1, d.p.y + d.r + 1});
    for (const LabelPlacer::Placement& p : m_placed) taken.Mark(p.box);
    ink.Sum();
    taken.Sum();

    // Every place of the block inside the frame, one cell apart: nothing taken first, then
    // the fewest lines crossed, then the nearest to where the chart stands it. Where the whole
    // block fits nowhere free (large labels on a crowded chart), its font is made smaller, down
    // to 60 %, before it is let cover anything.
    const int k = CellCounts::kCell;
    const long wx = (static_cast<long>(was.left) - area.left) / k, wy = (static_cast<long>(was.top) - area.top) / k;
    for (double scale : {1.0, 0.9, 0.8, 0.7, 0.6}) {
        const Block b = MeasureBlock(pDC, scale);
        const long w = scale == 1.0 ? static_cast<long>(was.right) - was.left : b.w;
        const long h = scale == 1.0 ? static_cast<long>(was.bottom) - was.top : 8L * b.h;
        const long bw = (w + k - 1) / k + 1, bh = (h + k - 1) / k + 1;
        double best = 1e300;
        long bx = wx, by = wy;
        for (long y = 1; y + bh < taken.Rows(); ++y)
            for (long x = 1; x + bw < taken.Cols(); ++x) {
                const double cost = taken.In(x, y, x + bw, y + bh) * 1e9 + ink.In(x, y, x + bw, y + bh) * 10.0 +
                                    std::hypot(double(x - wx), double(y - wy));
                if (cost < best) best = cost, bx = x, by = y;
            }
        if (best >= 1e9 && scale > 0.6) continue;
        m_titleScale = scale;
        m_title.left = Ky::ClampToInt(std::int64_t{area.left} + bx * k + k / 2);
        m_title.top = Ky::ClampToInt(std::int64_t{area.top} + by * k + k / 2);
        m_title.right = Ky::ClampToInt(std::int64_t{m_title.left} + w);
        m_title.bottom = Ky::ClampToInt(std::int64_t{m_title.top} + h);
        return;
    }
}

int HostLayout::Draw(CDC* pDC)
{
    for (size_t i = 0; i < m_labels.size() && i < m_placed.size(); ++i) {
        const Label& l = m_labels[i];
        const LabelPlacer::Placement& p = m_placed[i];
        if (p.leader) DrawLine(pDC, p.from, p.to, PS_SOLID, 1, l.color);
        DrawTextW(pDC, CPoint(p.box.left, p.box.top), l.height, 0.0, l.color, l.text);
    }
    if (m_titleMoved) {
        // The chart's block, row for row, where it covers nothing.
        const CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
        const tagKyLineStyle& style = set->m_StyleSetting.m_FrameStyle;
        const double height = style.nTextHeight * set->GetDrawScale() * m_titleScale;
        const Block b = MeasureBlock(pDC, m_titleScale);
        const int x0 = m_title.left, x1 = m_title.right, y0 = m_title.bottom;
        auto row = [&](int n) { return Ky::ClampToInt(std::int64_t{y0} - std::int64_t{n} * b.h); };
        DrawLine(pDC, CPoint(x0, y0), CPoint(x1, y0), style.nPenStyle, style.nWidth, style.crColor);
        DrawTextW(pDC, CPoint(x0, row(2)), height, 0.0, style.crColor, b.rows[0]);
        DrawTextW(pDC, CPoint(x0, row(3)), height, 0.0, style.crColor, b.rows[1]);
        DrawTextW(pDC, CPoint(x0, row(5)), height, 0.0, style.crColor, b.rows[2]);
        const int tw = GetTextExtent(pDC, Ky::TruncToInt(height), b.rows[3]).cx;
        DrawTextW(pDC, CPoint(x0 + (b.w - tw) / 2, row(7)), height, 0.0, style.crColor, b.rows[3]);
        DrawLine(pDC, CPoint(x0, row(8)), CPoint(x1, row(8)), style.nPenStyle, style.nWidth, style.crColor);
    }
    return 1;
}
