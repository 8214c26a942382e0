#include <kygraph/KyGLegend.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGDataSet.h>
#include <kygraph/KyGZone.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Saturate.h>

#include "internal/KyGPlotMap.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kGrid = 6.0;  // pixels between the samples that tell free space from used

// Counts over a grid with O(1) sums over any block of it.
struct GridSums {
    int cols = 0, rows = 0;
    std::vector<int> sums;  // (cols + 1) x (rows + 1), sums[r][c] = cells above and left
    void Build(const std::vector<unsigned char>& cells, int c, int r)
    {
        cols = c;
        rows = r;
        sums.assign(static_cast<size_t>(c + 1) * (r + 1), 0);
        for (int y = 0; y < r; ++y)
            for (int x = 0; x < c; ++x)
                At(x + 1, y + 1) = cells[static_cast<size_t>(y) * c + x] + At(x, y + 1) + At(x + 1, y) - At(x, y);
    }
    int& At(int x, int y) { return sums[static_cast<size_t>(y) * (cols + 1) + x]; }
    int Sum(int x0, int y0, int x1, int y1) { return At(x1, y1) - At(x0, y1) - At(x1, y0) + At(x0, y0); }
};

}  // namespace

CKyGLegend::CKyGLegend(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGLegend::toString() const { return CString(L"CKyGLegend"); }

void CKyGLegend::AddZone(const CKyGZone& zone)
{
    Entry e;
    e.text = zone.GetName();
    e.swatch = Fill;
    e.color = zone.GetColor();
    AddEntry(e);
}

void CKyGLegend::AddDataSet(const CKyGDataSet& data)
{
    Entry e;
    e.text = data.GetName();
    e.swatch = DataSet;
    AddEntry(e);
}

void CKyGLegend::AddProcess(const CString& name)
{
    Entry e;
    e.text = name;
    e.swatch = Process;
    AddEntry(e);
}

CPoint CKyGLegend::Place(CDC* pDC, CSize box)
{
    CKyGChart* chart = GetChart();
    const CPoint tl = chart->GetChartOrigin(), br(chart->GetMaxTAndMaxDPnt().x, chart->GetMinTAndMinDPnt().y);
    const int cols = Ky::TruncToInt((br.x - tl.x) / kGrid) + 1;
    const int rows = Ky::TruncToInt((br.y - tl.y) / kGrid) + 1;
    const int bw = Ky::TruncToInt(std::ceil(box.cx / kGrid)) + 1, bh = Ky::TruncToInt(std::ceil(box.cy / kGrid)) + 1;
    const CPoint fallback(std::max(tl.x, br.x - box.cx - 4), tl.y + 4);
    if (cols < bw || rows < bh || pDC == nullptr) return fallback;

    // A sample is used when a state lies there (lines and labels will crowd it) or, on a
    // raster surface, when something is already drawn there. States lie above the saturation
    // curve, so one saturated state per column of samples tells them apart.
    KyGPlotMap map;
    const bool mapped = map.Init(*chart, Settings());
    const COLORREF paper = pDC->GetPixel(0, 0);
    // A surface that cannot be read (vectors) shows nothing of what is drawn: the box then also
    // keeps clear of the enthalpy ruler that runs along the saturation curve.
    const double margin = paper == 0xFFFFFFFF ? 45.0 * Frame().Scale() : kGrid;
    std::vector<unsigned char> states(static_cast<size_t>(cols) * rows), ink(states.size());
    for (int c = 0; c < cols; ++c) {
        const double x = tl.x + c * kGrid;
        double h = 0, d = 0, ySat = -1e300;
        CKyStaPnt sat;
        if (mapped && map.Unmap(x, tl.y, h, d) && sat.SetBy_DandRH(std::max(d, 0.0), 1.0))
            ySat = map.Map(sat.GetH(), sat.GetD()).y;
        for (int r = 0; r < rows; ++r) {
            const CPoint p(Ky::TruncToInt(x), Ky::TruncToInt(tl.y + r * kGrid));
            // A margin keeps the box off the curve and its labels.
            states[static_cast<size_t>(r) * cols + c] = p.y <= ySat + margin ? 1 : 0;
            const COLORREF px = pDC->GetPixel(p.x, p.y);
            ink[static_cast<size_t>(r) * cols + c] = px != 0xFFFFFFFF && px != paper ? 1 : 0;
        }
    }
    GridSums s, k;
    s.Build(states, cols, rows);
    k.Build(ink, cols, rows);
    // Scanned from the top right, where the empty side of the saturation curve begins: the
    // first block with the least in it wins, a state counting for more than a drawn pixel
    // (a box too large for the empty side overlaps as few states as it can).
    long long best = -1;
    CPoint where = fallback;
    for (int r = 0; r + bh <= rows; ++r) {
        for (int c = cols - bw; c >= 0; --c) {
            const long long used = 8LL * s.Sum(c, r, c + bw, r + bh) + k.Sum(c, r, c + bw, r + bh);
            if (best < 0 || used < best) {
                best = used;
                where = CPoint(Ky::TruncToInt(tl.x + c * kGrid), Ky::TruncToInt(tl.y + r * kGrid));
                if (used == 0) return where;
            }
        }
    }
    return where;
}

int CKyGLegend::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGOverlaySetting& ov = Settings().m_OverlaySetting;
    const CStyledPen text = Pen(pDC, ov.m_LegendStyle);
    const double k = text.Scale();

    std::vector<Entry> rows;
    if (m_bFamilies) {
        for (const CKyGBackground::Shown& f : CKyGBackground::ShownFamilies()) {
            Entry e;
            e.text = LoadText(f.text);
            e.color = f.style->crColor;
            e.penStyle = f.style->nPenStyle;
            e.penWidth = f.style->nWidth;
            rows.push_back(e);
        }
    }
    rows.insert(rows.end(), m_Entries.begin(), m_Entries.end());
    if (rows.empty()) {
        m_strLastError.LoadString(IDS_LEGEND_EMPTY);
        return 0;
    }

    const int th = std::max(1, static_cast<int>(text.Measure(L"Ag").cy));
    const int pad = std::max(2, Ky::TruncToInt(5 * k));
    const int swatch = Ky::TruncToInt(24 * k);
    const int rowH = th + std::max(1, Ky::TruncToInt(3 * k));
    int textW = 0;
    for (const Entry& e : rows) textW = std::max(textW, static_cast<int>(text.Measure(e.text).cx));
    const CSize box(pad * 3 + swatch + textW, pad * 2 + rowH * static_cast<int>(rows.size()));
    const CPoint at = m_bFixed ? m_ptFixed : Place(pDC, box);
    m_rcPlaced = CRect(at.x, at.y, Ky::SatAdd(at.x, box.cx), Ky::SatAdd(at.y, box.cy));

    if (pDC != nullptr) pDC->FillSolidRect(&m_rcPlaced, RGB(255, 255, 255));
    CVoArray<CPoint> border;
    border.Add(CPoint(m_rcPlaced.left, m_rcPlaced.top));
    border.Add(CPoint(m_rcPlaced.right, m_rcPlaced.top));
    border.Add(CPoint(m_rcPlaced.right, m_rcPlaced.bottom));
    border.Add(CPoint(m_rcPlaced.left, m_rcPlaced.bottom));
    border.Add(CPoint(m_rcPlaced.left, m_rcPlaced.top));
    text.PolyLine(border);

    const tagKyLineStyle process = Settings().m_StyleSetting.m_ProcessStyle;
    const tagKyPntStyle data = ov.m_DataStyle;
    for (size_t i = 0; i < rows.size(); ++i) {
        const Entry& e = rows[i];
        const int top = at.y + pad + rowH * static_cast<int>(i);
        const int mid = top + th / 2;
        const int x0 = at.x + pad, x1 = x0 + swatch;
        switch (e.swatch) {
        case Line:
            DrawLine(pDC, CPoint(x0, mid), CPoint(x1, mid), e.penStyle, e.penWidth, e.color);
            break;
        case Process:
            DrawLine(pDC, CPoint(x0, mid), CPoint(x1, mid), process.nPenStyle, process.nWidth, process.crColor);
            break;
        case Fill: {
            CVoArray<CPoint> quad;
            quad.Add(CPoint(x0, top + 1));
            quad.Add(CPoint(x1, top + 1));
            quad.Add(CPoint(x1, top + th - 1));
            quad.Add(CPoint(x0, top + th - 1));
            DrawPolygonAlpha(pDC, quad, e.color, std::clamp(ov.m_nZoneAlpha, 0, 255));
            quad.Add(quad[0]);
            DrawPolyLine(pDC, quad, PS_SOLID, 1, e.color);
            break;
        }
        case DataSet: {
            const double size = data.dSize * k;
            for (int j = 1; j <= 3; ++j)
                DrawEllipse(pDC, CPoint(x0 + swatch * j / 4, mid + (j == 2 ? -2 : 2)), size, size, PS_SOLID, 1,
                            data.crColor, 1);
            break;
        }
        }
        text.Text(CPoint(x1 + pad, top), 0.0, e.text);
    }
    return 1;
}
