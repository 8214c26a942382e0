// CRect: a rectangle by its left, top, right and bottom edges, zero-initialised. Not
// normalised on construction: GDI callers may hand over inverted rectangles.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/Point.h>
#include <kygraph/Saturate.h>
#include <kygraph/Size.h>
#include <kygraph/WinTypes.h>

#include <utility>

class KYFW_API CRect : public RECT {
public:
    CRect() : RECT{0, 0, 0, 0} {}
    CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
    CRect(const RECT& r) : RECT(r) {}
    CRect(POINT topLeft, SIZE size)
        : RECT{topLeft.x, topLeft.y, Ky::SatAdd(topLeft.x, size.cx), Ky::SatAdd(topLeft.y, size.cy)} {}
    CRect(POINT topLeft, POINT bottomRight) : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    int Width() const { return Ky::SatSub(right, left); }
    int Height() const { return Ky::SatSub(bottom, top); }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const
    {
        return CPoint(Ky::ClampToInt((static_cast<long long>(left) + right) / 2),
                      Ky::ClampToInt((static_cast<long long>(top) + bottom) / 2));
    }
    bool IsRectEmpty() const { return right <= left || bottom <= top; }
    bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    bool PtInRect(POINT p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    void SetRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void NormalizeRect()
    {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    void OffsetRect(int dx, int dy)
    {
        left = Ky::SatAdd(left, dx); right = Ky::SatAdd(right, dx);
        top = Ky::SatAdd(top, dy); bottom = Ky::SatAdd(bottom, dy);
    }
    void InflateRect(int dx, int dy)
    {
        left = Ky::SatSub(left, dx); right = Ky::SatAdd(right, dx);
        top = Ky::SatSub(top, dy); bottom = Ky::SatAdd(bottom, dy);
    }

    bool operator==(const RECT& o) const
    {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const RECT& o) const { return !(*this == o); }
    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
};
