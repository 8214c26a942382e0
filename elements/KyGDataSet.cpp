#include <kygraph/KyGDataSet.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Saturate.h>

#include "internal/KyGPlotMap.h"

#include <algorithm>
#include <cmath>

namespace {

// Density cells are never smaller than this, so a tiny setting cannot ask for a grid the size
// of the screen in bytes per pixel.
constexpr double kMinCell = 2.0;

}  // namespace

CKyGDataSet::CKyGDataSet(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGDataSet::toString() const { return CString(L"CKyGDataSet"); }

int CKyGDataSet::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    m_nSkipped = 0;
    m_nMaxPerCell = 0;
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGChartSetting* set = &Settings();
    const CKyGOverlaySetting& ov = set->m_OverlaySetting;
    const tagKyPntStyle style = ov.m_DataStyle;
    const double k = Frame().Scale();
    KyGPlotMap map;
    if (!map.Init(*chart, *set)) {
        m_nSkipped = GetCount();
        m_strLastError.LoadString(IDS_OUT_OF_DRAW_RANGE);
        return 0;
    }

    m_DrawnMode = m_Mode;
    if (m_DrawnMode == Auto) m_DrawnMode = GetCount() > ov.m_nDensityThreshold ? Density : Points;

    int drawn = 0;
    if (m_DrawnMode == Points) {
        const double size = style.dSize * k;
        for (const auto& [h, d] : m_Points) {
            const KyGPixel p = map.Map(h, d);
            if (!map.Inside(p)) {
                ++m_nSkipped;
                continue;
            }
            DrawEllipse(pDC, KyGPlotMap::Round(p), size, size, PS_SOLID, 1, style.crColor, 1);
            ++drawn;
        }
    } else {
        double cell = ov.m_dDensityCell * k;
        if (!(cell >= kMinCell)) cell = kMinCell;
        const double left = map.Left(), top = map.Top();
        const int cols = std::max(1, Ky::TruncToInt(std::ceil((map.Right() - left + 1.0) / cell)));
        const int rows = std::max(1, Ky::TruncToInt(std::ceil((map.Bottom() - top + 1.0) / cell)));
        std::vector<int> counts(static_cast<size_t>(cols) * static_cast<size_t>(rows), 0);
        for (const auto& [h, d] : m_Points) {
            const KyGPixel p = map.Map(h, d);
            if (!map.Inside(p)) {
                ++m_nSkipped;
                continue;
            }
            const int c = std::min(cols - 1, static_cast<int>((p.x - left) / cell));
            const int r = std::min(rows - 1, static_cast<int>((p.y - top) / cell));
            const int n = ++counts[static_cast<size_t>(r) * cols + c];
            m_nMaxPerCell = std::max(m_nMaxPerCell, n);
            ++drawn;
        }
        // Opacity grows with the logarithm of the count, so a lone hour still shows beside a
        // cell of hundreds.
        const double top_ = std::log1p(static_cast<double>(m_nMaxPerCell));
        CVoArray<CPoint> quad;
        for (int r = 0; r < rows; ++r) {
            for (int c = 0; c < cols; ++c) {
                const int n = counts[static_cast<size_t>(r) * cols + c];
                if (n == 0) continue;
                const int x0 = Ky::TruncToInt(left + c * cell), y0 = Ky::TruncToInt(top + r * cell);
                const int x1 = Ky::TruncToInt(std::min(left + (c + 1) * cell, map.Right()));
                const int y1 = Ky::TruncToInt(std::min(top + (r + 1) * cell, map.Bottom()));
                quad.RemoveAll();
                quad.Add(CPoint(x0, y0));
                quad.Add(CPoint(x1, y0));
                quad.Add(CPoint(x1, y1));
                quad.Add(CPoint(x0, y1));
                const int alpha = 40 + Ky::TruncToInt(150.0 * std::log1p(static_cast<double>(n)) / top_);
                DrawPolygonAlpha(pDC, quad, style.crColor, alpha);
            }
        }
    }
    if (drawn == 0) {
        m_strLastError.LoadString(IDS_DATA_NONE_INSIDE);
        return 0;
    }
    return 1;
}
