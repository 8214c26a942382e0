// CSize: a width and height in pixels, zero-initialised.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/Saturate.h>
#include <kygraph/WinTypes.h>

class KYFW_API CSize : public SIZE {
public:
    CSize() : SIZE{0, 0} {}
    CSize(int x, int y) : SIZE{x, y} {}
    CSize(SIZE s) : SIZE(s) {}

    bool operator==(const SIZE& o) const { return cx == o.cx && cy == o.cy; }
    bool operator!=(const SIZE& o) const { return !(*this == o); }
    CSize operator+(const SIZE& o) const { return CSize(Ky::SatAdd(cx, o.cx), Ky::SatAdd(cy, o.cy)); }
    CSize operator-(const SIZE& o) const { return CSize(Ky::SatSub(cx, o.cx), Ky::SatSub(cy, o.cy)); }
    CSize operator-() const { return CSize(Ky::SatSub(0, cx), Ky::SatSub(0, cy)); }
    CSize& operator+=(const SIZE& o) { return *this = *this + o; }
    CSize& operator-=(const SIZE& o) { return *this = *this - o; }
};
