// Shared set-up of the furniture tests: a recording window attached to the chart singleton,
// one element drawn alone onto its surface, and a cursor that checks the recorded primitives
// one after another. Expected geometry is computed here from the state model and the chart's
// mapping, never from the elements' own helpers.
#pragma once

#include "chart/ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>

#include <memory>
#include <ostream>
#include <vector>

inline std::ostream& operator<<(std::ostream& os, const CPoint& p) { return os << '(' << p.x << ", " << p.y << ')'; }

class Furniture : public ChartFixture {
protected:
    void TearDown() override
    {
        CKyChart::InstanceGloble()->ResetDefaults();
        ChartFixture::TearDown();
    }

    // A recording window of cx x cy with a fresh surface; the draw scale becomes the fit:
    // 1 for 580 x 500, 2 for 1120 x 960, 1.652... for 1000 x 800.
    void Attach(int cx, int cy)
    {
        chart->AttachDarwWnd(nullptr);
        wnd = std::make_unique<CImageWnd>(cx, cy);
        wnd->EnableRecording(true);
        chart->AttachDarwWnd(wnd.get());
        chart->UptateDrawWnd(1);
    }

    // Draws elem alone; Records() then holds exactly its primitives.
    int DrawAlone(CKyGDrawBase& elem)
    {
        chart->GetChartDC()->ClearRecords();
        return chart->Draw(&elem);
    }
    const std::vector<CDrawRecord>& Records() const { return chart->GetChartDC()->GetRecords(); }

    CSize Extent(int height, const CString& text) const
    {
        return CKyGDrawBase::GetTextExtent(chart->GetChartDC(), height, text);
    }
    // The chart pixel of a state, or a failed test.
    CPoint Pixel(const CKyStaPnt& p) const
    {
        CPoint px;
        EXPECT_EQ(chart->Convert(p, px), 1) << "state at " << p.GetTdb() << " degC, " << p.GetD() << " g/kg";
        return px;
    }

    // Walks the recorded primitives in drawing order.
    class Walk {
    public:
        explicit Walk(const std::vector<CDrawRecord>& records) : m_records(records) {}

        void Line(CPoint from, CPoint to)
        {
            const CDrawRecord* r = Next(CDrawRecord::Line);
            if (!r) return;
            EXPECT_EQ(r->pts.at(0), from) << "line " << m_index - 1;
            EXPECT_EQ(r->pts.at(1), to) << "line " << m_index - 1;
        }
        void Text(CPoint at, const CString& text, int fontHeight = -1, int escapement = -1)
        {
            const CDrawRecord* r = Next(CDrawRecord::Text);
            if (!r) return;
            EXPECT_EQ(r->text, text) << "text " << m_index - 1 << " '" << r->text.ToUtf8() << "'";
            EXPECT_EQ(r->pts.at(0), at) << "text '" << text.ToUtf8() << "'";
            if (fontHeight >= 0) {
                EXPECT_EQ(r->fontHeight, fontHeight) << text.ToUtf8();
            }
            if (escapement >= 0) {
                EXPECT_EQ(r->escapement, escapement) << text.ToUtf8();
            }
        }
        // An arc on the rectangle (left, top, right, bottom) from start to end.
        void Arc(CRect rect, CPoint start, CPoint end)
        {
            const CDrawRecord* r = Next(CDrawRecord::Arc);
            if (!r) return;
            EXPECT_EQ(r->pts, (std::vector<CPoint>{CPoint(rect.left, rect.top), CPoint(rect.right, rect.bottom),
                                                   start, end}))
                << "arc " << m_index - 1;
        }
        void End() const { EXPECT_EQ(m_index, m_records.size()) << "more primitives than expected"; }
        size_t Index() const { return m_index; }

    private:
        const CDrawRecord* Next(CDrawRecord::Kind kind)
        {
            if (m_index >= m_records.size()) {
                ADD_FAILURE() << "missing primitive " << m_index;
                return nullptr;
            }
            const CDrawRecord* r = &m_records[m_index++];
            EXPECT_EQ(r->kind, kind) << "primitive " << m_index - 1;
            return r->kind == kind ? r : nullptr;
        }
        const std::vector<CDrawRecord>& m_records;
        size_t m_index = 0;
    };

    std::unique_ptr<CImageWnd> wnd;
};
