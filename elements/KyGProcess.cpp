#include <kygraph/KyGProcess.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyGraphModule.h>

#include <cstdint>
#include <cstdlib>

namespace {

// The label side of a marker at p: clockwise from above, one step for every earlier marker
// inside the square of half-width radius around p (the bounds are inclusive). Differences
// are taken in 64 bits, so host pixels at the ends of the int range cannot overflow.
CKyGStaPnt::DimPosition CrowdedPosition(const CVoArray<CPoint>& placed, CPoint p, double radius)
{
    int position = CKyGStaPnt::DimTop;
    for (int i = 0; i < placed.GetSize(); ++i) {
        const CPoint& q = placed[i];
        const std::int64_t dx = std::llabs(static_cast<std::int64_t>(q.x) - p.x);
        const std::int64_t dy = std::llabs(static_cast<std::int64_t>(q.y) - p.y);
        if (radius >= static_cast<double>(dx) && radius >= static_cast<double>(dy)) position = (position + 1) % 4;
    }
    return static_cast<CKyGStaPnt::DimPosition>(position);
}

}  // namespace

CKyGProcess::CKyGProcess(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGProcess::toString() const { return CString(L"CKyGProcess"); }

int CKyGProcess::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    // Mapping and markers go through the singleton, not through this element's chart; intended.
    CKyGChart* chart = CKyGChart::GetKyGChart();
    const CKyGChartSetting* set = &chart->Frame().Settings();
    const tagKyLineStyle line = set->m_StyleSetting.m_ProcessStyle;
    // The first point the chart cannot place ends the draw; what was drawn stays.
    auto fail = [this] {
        m_strLastError.LoadString(IDS_PROCESS_POINT_INVALID);
        return 0;
    };

    CKyPathMap paths;
    m_Process.GetAllProcess(paths);
    POSITION pos = paths.GetStartPosition();
    for (int n = 0; pos != nullptr && n < paths.GetCount(); ++n) {
        CString name;  // not drawn
        CKyStaPntArray points;
        paths.GetNextAssoc(pos, name, points);
        CVoArray<CPoint> polyline;
        polyline.Reserve(points.GetSize());
        for (int i = 0; i < points.GetSize(); ++i) {
            CPoint pt;
            if (!chart->Convert(points[i], pt)) return fail();
            polyline.Add(pt);
        }
        DrawPolyLine(pDC, polyline, line.nPenStyle, line.nWidth, line.crColor);
    }

    const tagKyPntStyle pointStyle = set->m_StyleSetting.m_StaPntStyle;
    const double k = set->GetDrawScale();
    const double radius = pointStyle.nTextHeight * k + pointStyle.dSize * k;

    CKyStaPntArray points;
    m_Process.GetAllPnt(points);
    CVoArray<CPoint> placed;
    placed.Reserve(points.GetSize());
    for (int i = 0; i < points.GetSize(); ++i) {
        CPoint pt;
        if (!chart->Convert(points[i], pt)) return fail();
        CKyGStaPnt marker(nullptr);
        marker.SetChart(chart);
        marker.SetValue(points[i]);
        marker.SetDimPosition(CrowdedPosition(placed, pt, radius));
        chart->Draw(&marker);  // a marker the chart refuses still counts as placed
        placed.Add(pt);
    }
    return 1;
}
