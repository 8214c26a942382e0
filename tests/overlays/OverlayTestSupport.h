// Overlay tests draw one element onto a finished chart surface that records its primitives.
#pragma once

#include "chart/ChartTestSupport.h"

#include <kygraph/DrawRecord.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGDrawBase.h>

#include <cstdlib>
#include <vector>

class Overlay : public ChartFixture {
protected:
    void SetUp() override
    {
        ChartFixture::SetUp();
        wnd.EnableRecording(true);
        chart->AttachDarwWnd(&wnd);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
        set->m_dDrawScale = 1.0;
    }
    CDC* dc() { return chart->GetChartDC(); }
    int DrawOne(CKyGDrawBase* elem)
    {
        dc()->ClearRecords();
        return chart->Draw(elem);
    }
    std::vector<CDrawRecord> Records(CDrawRecord::Kind kind)
    {
        std::vector<CDrawRecord> out;
        for (const CDrawRecord& r : dc()->GetRecords())
            if (r.kind == kind) out.push_back(r);
        return out;
    }
    static CKyStaPnt State(double tdb, double rhPercent, const wchar_t* name = L"")
    {
        CKyStaPnt p;
        EXPECT_TRUE(p.SetBy_TdbandRH(tdb, rhPercent / 100.0));
        p.SetName(CString(name));
        return p;
    }
    CPoint PixelOf(const CKyStaPnt& p)
    {
        CPoint pt;
        EXPECT_EQ(chart->Convert(p, pt), 1);
        return pt;
    }
    // The side of the marker label `name` around the dot at p: a DimPosition, Centre when the
    // label's corner sits on the dot, -1 otherwise. The gap is 3 px per unit of draw scale.
    static constexpr int Centre = 99;
    int SideOf(const wchar_t* name, CPoint p)
    {
        const double k = set->GetDrawScale();
        const CSize e = CKyGDrawBase::GetTextExtent(dc(), static_cast<int>(7 * k), CString(name));
        const int g = static_cast<int>(3 * k);
        for (const CDrawRecord& t : Records(CDrawRecord::Text)) {
            if (t.text != name) continue;
            const CPoint a = t.pts.at(0);
            const bool midX = std::abs(2 * a.x + e.cx - 2 * p.x) <= 1;
            const bool midY = std::abs(2 * a.y + e.cy - 2 * p.y) <= 1;
            if (a == p) return Centre;
            if (midY && a.x + e.cx == p.x - g) return 0;
            if (midX && a.y + e.cy == p.y - g) return 1;
            if (midY && a.x == p.x + g) return 2;
            if (midX && a.y == p.y + g) return 3;
        }
        return -1;
    }

    CImageWnd wnd{1000, 800};
};
