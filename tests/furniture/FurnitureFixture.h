// Shared set-up of the furniture tests: a recording window on the chart singleton, one element
// drawn alone, and primitives written as text so that expected and recorded drawing compare
// as lists. Expected geometry comes from the state model and the chart's mapping, never from
// the elements' own helpers.
#pragma once

#include "chart/ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/Saturate.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

inline std::string Sig(CDrawRecord::Kind kind, std::vector<CPoint> pts, const CString& text = {}, int h = 0, int e = 0)
{
    std::ostringstream os;
    os << "LPAETFB"[kind];  // the kinds in declaration order
    for (const CPoint& p : pts) os << ' ' << p.x << ',' << p.y;
    if (kind == CDrawRecord::Text) os << " '" << text.ToUtf8() << "' h" << h << " e" << e;
    return os.str();
}
inline std::string Line(CPoint a, CPoint b) { return Sig(CDrawRecord::Line, {a, b}); }
inline std::string Text(CPoint at, const CString& s, int h, int e = 0) { return Sig(CDrawRecord::Text, {at}, s, h, e); }
inline std::string Arc(CRect r, CPoint a, CPoint b)
{
    return Sig(CDrawRecord::Arc, {CPoint(r.left, r.top), CPoint(r.right, r.bottom), a, b});
}

class Furniture : public ChartFixture {
protected:
    void TearDown() override
    {
        CKyChart::InstanceGloble()->ResetDefaults();
        ChartFixture::TearDown();
    }
    // A recording window with a fresh surface; the draw scale becomes the fit: 1 for 580 x 500,
    // 2 for 1120 x 960, 1.652... for 1000 x 800.
    void Attach(int cx, int cy)
    {
        chart->AttachDarwWnd(nullptr);
        wnd = std::make_unique<CImageWnd>(cx, cy);
        wnd->EnableRecording(true);
        chart->AttachDarwWnd(wnd.get());
        chart->UptateDrawWnd(1);
        s = set->GetDrawScale();
    }
    // Draws elem alone; Records() and Drawn() then hold exactly its primitives.
    int DrawAlone(CKyGDrawBase& elem)
    {
        chart->GetChartDC()->ClearRecords();
        return chart->Draw(&elem);
    }
    const std::vector<CDrawRecord>& Records() const { return chart->GetChartDC()->GetRecords(); }
    std::vector<std::string> Drawn() const
    {
        std::vector<std::string> out;
        for (const CDrawRecord& r : Records()) out.push_back(Sig(r.kind, r.pts, r.text, r.fontHeight, r.escapement));
        return out;
    }
    CSize Extent(double height, const CString& text) const
    {
        return CKyGDrawBase::GetTextExtent(chart->GetChartDC(), Ky::TruncToInt(height), text);
    }
    CPoint Pixel(const CKyStaPnt& p) const
    {
        CPoint px;
        EXPECT_EQ(chart->Convert(p, px), 1) << p.GetTdb() << " degC, " << p.GetD() << " g/kg";
        return px;
    }

    std::unique_ptr<CImageWnd> wnd;
    double s = 1.0;  // draw scale of the attached window
};
