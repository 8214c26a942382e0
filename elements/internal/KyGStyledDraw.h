// KyGStyledDraw: the base primitives bound to one line-style record and draw scale, so an
// element draws "in its style" the same way everywhere: lines with the record's pen, texts at
// nTextHeight x scale in the record's colour, measured at trunc(nTextHeight x scale).
// Private to the elements; not installed.
#pragma once

#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyLineStyle.h>
#include <kygraph/Saturate.h>

struct KyGStyledDraw {
    CDC* pDC;
    const tagKyLineStyle& style;
    double scale;

    void Line(CPoint from, CPoint to) const
    {
        CKyGDrawBase::DrawLine(pDC, from, to, style.nPenStyle, style.nWidth, style.crColor);
    }
    void Arc(RECT bounds, CPoint start, CPoint end) const
    {
        CKyGDrawBase::DrawArc(pDC, &bounds, start, end, style.nPenStyle, style.nWidth, style.crColor);
    }
    void Text(CPoint at, double angle, const CString& text) const
    {
        CKyGDrawBase::DrawTextW(pDC, at, style.nTextHeight * scale, angle, style.crColor, text);
    }
    CSize Measure(const CString& text) const
    {
        return CKyGDrawBase::GetTextExtent(pDC, Ky::TruncToInt(style.nTextHeight * scale), text);
    }
};

// A string-table entry of the current module; empty when it has none.
inline CString KyGLoadString(UINT id)
{
    CString s;
    s.LoadString(id);
    return s;
}
