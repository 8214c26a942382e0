// CPoint: a pixel position (y grows downwards), zero-initialised. Arithmetic saturates at the
// int range instead of overflowing, so host-supplied extreme pixels stay defined.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/Saturate.h>
#include <kygraph/Size.h>
#include <kygraph/WinTypes.h>

class KYFW_API CPoint : public POINT {
public:
    CPoint() : POINT{0, 0} {}
    CPoint(int x0, int y0) : POINT{x0, y0} {}
    CPoint(POINT p) : POINT(p) {}

    void Offset(int dx, int dy) { x = Ky::SatAdd(x, dx); y = Ky::SatAdd(y, dy); }
    void Offset(const SIZE& s) { Offset(s.cx, s.cy); }
    void SetPoint(int x0, int y0) { x = x0; y = y0; }

    bool operator==(const POINT& o) const { return x == o.x && y == o.y; }
    bool operator!=(const POINT& o) const { return !(*this == o); }
    CPoint operator+(const SIZE& s) const { return CPoint(Ky::SatAdd(x, s.cx), Ky::SatAdd(y, s.cy)); }
    CPoint operator-(const SIZE& s) const { return CPoint(Ky::SatSub(x, s.cx), Ky::SatSub(y, s.cy)); }
    CSize operator-(const POINT& p) const { return CSize(Ky::SatSub(x, p.x), Ky::SatSub(y, p.y)); }
    CPoint operator+(const POINT& p) const { return CPoint(Ky::SatAdd(x, p.x), Ky::SatAdd(y, p.y)); }
    CPoint operator-() const { return CPoint(Ky::SatSub(0, x), Ky::SatSub(0, y)); }
    CPoint& operator+=(const SIZE& s) { return *this = *this + s; }
    CPoint& operator-=(const SIZE& s) { return *this = *this - s; }
};
