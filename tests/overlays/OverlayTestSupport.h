// Shared set-up of the overlay tests: a recording window with a finished chart surface, so
// that one element drawn through the chart leaves exactly its own primitives.
#pragma once

#include "chart/ChartTestSupport.h"

#include <kygraph/DrawRecord.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyStaPnt.h>

#include <cstdlib>
#include <vector>

class Overlay : public ChartFixture {
protected:
    void SetUp() override
    {
        ChartFixture::SetUp();
        wnd.EnableRecording(true);
        ASSERT_EQ(chart->AttachDarwWnd(&wnd), 1);
        ASSERT_NE(chart->UptateDrawWnd(1), 0);
        set->m_dDrawScale = 1.0;
        dc()->ClearRecords();
    }

    CDC* dc() { return chart->GetChartDC(); }

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

    // A named state that maps exactly onto pixel px (found within a few pixels of it, since a
    // pixel's state can truncate back to its neighbour).
    CKyStaPnt StateAtPixel(CPoint px, const wchar_t* name)
    {
        for (int dy = 0; dy <= 2; ++dy)
            for (int dx = 0; dx <= 2; ++dx) {
                CKyStaPnt p;
                CPoint back;
                if (chart->Convert(CPoint(px.x + dx, px.y + dy), p) && chart->Convert(p, back) && back == px) {
                    p.SetName(CString(name));
                    return p;
                }
            }
        ADD_FAILURE() << "no state maps onto (" << px.x << ", " << px.y << ")";
        return CKyStaPnt();
    }

    // Side on which a marker's label lies, from where the text starts relative to the dot at p
    // with gap g (whole pixels at scales 1 and 2): a DimPosition, Centre for the label whose
    // corner sits on the dot, -1 for anything else.
    static constexpr int Centre = 99;
    static int SideOf(const CDrawRecord& text, CPoint p, int g, CSize e)
    {
        const CPoint a = text.pts.at(0);
        const bool midX = std::abs(2 * a.x + e.cx - 2 * p.x) <= 1;
        const bool midY = std::abs(2 * a.y + e.cy - 2 * p.y) <= 1;
        if (a == p) return Centre;
        if (midY && a.x + e.cx == p.x - g) return 0;  // DimLeft
        if (midX && a.y + e.cy == p.y - g) return 1;  // DimTop
        if (midY && a.x == p.x + g) return 2;         // DimRight
        if (midX && a.y == p.y + g) return 3;         // DimBottom
        return -1;
    }

    CImageWnd wnd{1000, 800};
};
