#include "KyGdiGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Ky {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

struct NormRect {
    std::int64_t l, t, r, b;
};

NormRect Normalise(const RECT& rc)
{
    NormRect n{rc.left, rc.top, rc.right, rc.bottom};
    if (n.l > n.r) std::swap(n.l, n.r);
    if (n.t > n.b) std::swap(n.t, n.b);
    return n;
}

}  // namespace

bool EllipseFromRect(const RECT& rect, KyEllipseArc& out)
{
    NormRect n = Normalise(rect);
    if (n.r == n.l || n.b == n.t) return false;
    out.cx = static_cast<double>(n.l + n.r) / 2.0;
    out.cy = static_cast<double>(n.t + n.b) / 2.0;
    out.rx = std::max(0.0, static_cast<double>(n.r - n.l - 1) / 2.0);
    out.ry = std::max(0.0, static_cast<double>(n.b - n.t - 1) / 2.0);
    out.start = 0.0;
    out.sweep = kTwoPi;
    return true;
}

bool ArcFromRadials(const RECT& rect, POINT start, POINT end, bool clockwise, KyEllipseArc& out)
{
    if (!EllipseFromRect(rect, out)) return false;
    NormRect n = Normalise(rect);
    // Radials in doubled integer coordinates, y up, so the centre is exact and the direction
    // test below is exact too.
    auto radial = [&n](POINT p, std::int64_t& dx, std::int64_t& dy) {
        dx = 2 * static_cast<std::int64_t>(p.x) - (n.l + n.r);
        dy = (n.t + n.b) - 2 * static_cast<std::int64_t>(p.y);
        if (dx == 0 && dy == 0) dx = 1;
    };
    std::int64_t x0, y0, x1, y1;
    radial(start, x0, y0);
    radial(end, x1, y1);
    const __int128 cross = static_cast<__int128>(x0) * y1 - static_cast<__int128>(y0) * x1;
    const __int128 dot = static_cast<__int128>(x0) * x1 + static_cast<__int128>(y0) * y1;

    // Where a radial meets the ellipse, as the parametric angle: scale by the other axis.
    const double w = static_cast<double>(n.r - n.l), h = static_cast<double>(n.b - n.t);
    auto param = [w, h](std::int64_t dx, std::int64_t dy) {
        return std::atan2(static_cast<double>(dy) * w, static_cast<double>(dx) * h);
    };
    const double t0 = param(x0, y0), t1 = param(x1, y1);

    double ccw;  // counter-clockwise sweep in (0, 2*pi]
    if (cross == 0 && dot > 0) {
        ccw = kTwoPi;
    } else {
        ccw = std::fmod(t1 - t0 + 2.0 * kTwoPi, kTwoPi);
        // Rounding near coincident radials must not flip a sliver into a whole turn or back:
        // the exact sign of the cross product says on which side the end radial lies.
        if (cross > 0 && ccw > std::numbers::pi) ccw = 0.0;
        if (cross < 0 && ccw < std::numbers::pi) ccw = kTwoPi;
        if (cross == 0) ccw = std::numbers::pi;
    }
    out.start = t0;
    out.sweep = clockwise ? -(cross == 0 && dot > 0 ? kTwoPi : kTwoPi - ccw) : ccw;
    return true;
}

const int* CosmeticDashes(int style, int& count)
{
    static const int kDash[] = {18, 6};
    static const int kDot[] = {3, 3};
    static const int kDashDot[] = {9, 6, 3, 6};
    static const int kDashDotDot[] = {9, 3, 3, 3, 3, 3};
    switch (style) {
    case PS_DASH: count = 2; return kDash;
    case PS_DOT: count = 2; return kDot;
    case PS_DASHDOT: count = 4; return kDashDot;
    case PS_DASHDOTDOT: count = 6; return kDashDotDot;
    default: count = 0; return nullptr;
    }
}

void CosmeticLineRuns(POINT a, POINT b, int width, int height, const int* dashes, int dashCount,
                      std::int64_t& styleIndex, std::vector<RECT>& out)
{
    const std::int64_t dx = static_cast<std::int64_t>(b.x) - a.x;
    const std::int64_t dy = static_cast<std::int64_t>(b.y) - a.y;
    const std::int64_t adx = dx < 0 ? -dx : dx, ady = dy < 0 ? -dy : dy;
    const bool xMajor = adx >= ady;
    const std::int64_t steps = xMajor ? adx : ady;  // pixels painted: the last one is left out
    const std::int64_t baseIndex = styleIndex;
    styleIndex += steps;
    if (steps == 0 || width <= 0 || height <= 0) return;

    // Work along the major axis; the minor coordinate is the line's, rounded half away from
    // the start.
    const std::int64_t major0 = xMajor ? a.x : a.y, minor0 = xMajor ? a.y : a.x;
    const int majorStep = (xMajor ? dx : dy) < 0 ? -1 : 1;
    const int minorStep = (xMajor ? dy : dx) < 0 ? -1 : 1;
    const std::int64_t amaj = steps, amin = xMajor ? ady : adx;
    const std::int64_t majorLimit = xMajor ? width : height, minorLimit = xMajor ? height : width;

    // Only the steps whose major coordinate lies on the surface are visited, so even a line
    // billions of pixels long costs at most one surface side.
    std::int64_t lo, hi;
    if (majorStep > 0) {
        lo = -major0;
        hi = majorLimit - 1 - major0;
    } else {
        lo = major0 - (majorLimit - 1);
        hi = major0;
    }
    lo = std::max<std::int64_t>(lo, 0);
    hi = std::min<std::int64_t>(hi, steps - 1);
    if (lo > hi) return;

    std::int64_t period = 0;
    for (int k = 0; k < dashCount; ++k) period += dashes[k];
    auto on = [&](std::int64_t i) {
        if (period <= 0) return true;
        std::int64_t p = (baseIndex + i) % period;
        for (int k = 0; k < dashCount; ++k) {
            if (p < dashes[k]) return (k % 2) == 0;
            p -= dashes[k];
        }
        return false;
    };

    const __int128 den = 2 * static_cast<__int128>(amaj);
    __int128 num = 2 * static_cast<__int128>(lo) * amin + amaj;
    std::int64_t q = static_cast<std::int64_t>(num / den);
    std::int64_t rem = static_cast<std::int64_t>(num % den);
    const std::int64_t den64 = static_cast<std::int64_t>(den), inc = 2 * amin;

    bool inRun = false;
    std::int64_t runMajor = 0, runMinor = 0, runLen = 0;
    auto flush = [&]() {
        if (!inRun) return;
        std::int64_t first = majorStep > 0 ? runMajor : runMajor - (runLen - 1);
        RECT r;
        if (xMajor)
            r = RECT{static_cast<LONG>(first), static_cast<LONG>(runMinor), static_cast<LONG>(first + runLen),
                     static_cast<LONG>(runMinor + 1)};
        else
            r = RECT{static_cast<LONG>(runMinor), static_cast<LONG>(first), static_cast<LONG>(runMinor + 1),
                     static_cast<LONG>(first + runLen)};
        out.push_back(r);
        inRun = false;
    };
    for (std::int64_t i = lo; i <= hi; ++i) {
        const std::int64_t major = major0 + majorStep * i;
        const std::int64_t minor = minor0 + minorStep * q;
        if (minor >= 0 && minor < minorLimit && on(i)) {
            if (inRun && minor == runMinor) {
                ++runLen;
            } else {
                flush();
                inRun = true;
                runMajor = major;
                runMinor = minor;
                runLen = 1;
            }
        } else {
            flush();
        }
        rem += inc;
        if (rem >= den64) {
            rem -= den64;
            ++q;
        }
    }
    flush();
}

bool ClipSegment(PointD& a, PointD& b, const RectD& r, double* t0Out, double* t1Out)
{
    double t0 = 0.0, t1 = 1.0;
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - r.left, r.right - a.x, a.y - r.top, r.bottom - a.y};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0) return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0) {
            if (t > t1) return false;
            t0 = std::max(t0, t);
        } else {
            if (t < t0) return false;
            t1 = std::min(t1, t);
        }
    }
    if (!(t0 <= t1)) return false;  // also rejects NaN
    const PointD a0 = a;
    a = PointD{a0.x + t0 * dx, a0.y + t0 * dy};
    b = PointD{a0.x + t1 * dx, a0.y + t1 * dy};
    if (t0Out) *t0Out = t0;
    if (t1Out) *t1Out = t1;
    return true;
}

void ClipPolygon(std::vector<PointD>& poly, const RectD& r)
{
    std::vector<PointD> in;
    for (int edge = 0; edge < 4 && !poly.empty(); ++edge) {
        in.swap(poly);
        poly.clear();
        auto inside = [&](const PointD& p) {
            switch (edge) {
            case 0: return p.x >= r.left;
            case 1: return p.x <= r.right;
            case 2: return p.y >= r.top;
            default: return p.y <= r.bottom;
            }
        };
        auto cut = [&](const PointD& p, const PointD& q) {
            double t;
            switch (edge) {
            case 0: t = (r.left - p.x) / (q.x - p.x); break;
            case 1: t = (r.right - p.x) / (q.x - p.x); break;
            case 2: t = (r.top - p.y) / (q.y - p.y); break;
            default: t = (r.bottom - p.y) / (q.y - p.y); break;
            }
            return PointD{p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)};
        };
        for (size_t i = 0; i < in.size(); ++i) {
            const PointD& cur = in[i];
            const PointD& prev = in[(i + in.size() - 1) % in.size()];
            const bool ci = inside(cur), pi = inside(prev);
            if (ci) {
                if (!pi) poly.push_back(cut(prev, cur));
                poly.push_back(cur);
            } else if (pi) {
                poly.push_back(cut(prev, cur));
            }
        }
    }
}

void FlattenArc(const KyEllipseArc& arc, std::vector<PointD>& out)
{
    // A chord over angle d of radius R strays R*d^2/8 from the curve; keep that below 0.1 px.
    const double r = std::max({arc.rx, arc.ry, 1.0});
    const double maxStep = std::sqrt(0.8 / r);
    const double turns = std::min(std::fabs(arc.sweep), kTwoPi);
    constexpr double kMaxPoints = 600000.0;  // enough for any radius an int rectangle can give
    const int n = static_cast<int>(std::clamp(std::ceil(turns / maxStep), 4.0, kMaxPoints));
    const double step = (arc.sweep < 0 ? -turns : turns) / n;
    out.reserve(out.size() + static_cast<size_t>(n) + 1);
    for (int i = 0; i <= n; ++i) {
        const double t = arc.start + step * i;
        out.push_back(PointD{arc.cx + arc.rx * std::cos(t), arc.cy - arc.ry * std::sin(t)});
    }
}

bool ArcIsSafe(const KyEllipseArc& arc)
{
    return IsSafe(arc.cx - arc.rx) && IsSafe(arc.cx + arc.rx) && IsSafe(arc.cy - arc.ry) && IsSafe(arc.cy + arc.ry);
}

EllipseSide SurfaceAgainstEllipse(const KyEllipseArc& e, double cx, double cy, double margin)
{
    if (!(e.rx > 0.0 && e.ry > 0.0)) return EllipseSide::Near;
    // In coordinates where the ellipse is the unit circle, the surface's nearest and farthest
    // points from the centre; a distance of d there is at least d * min(rx, ry) pixels.
    const double u0 = -e.cx / e.rx, u1 = (cx - e.cx) / e.rx;
    const double v0 = -e.cy / e.ry, v1 = (cy - e.cy) / e.ry;
    const double nearU = (u0 <= 0.0 && u1 >= 0.0) ? 0.0 : std::min(std::fabs(u0), std::fabs(u1));
    const double nearV = (v0 <= 0.0 && v1 >= 0.0) ? 0.0 : std::min(std::fabs(v0), std::fabs(v1));
    const double farU = std::max(std::fabs(u0), std::fabs(u1)), farV = std::max(std::fabs(v0), std::fabs(v1));
    const double m = margin / std::min(e.rx, e.ry);
    if (std::hypot(farU, farV) <= 1.0 - m) return EllipseSide::Inside;
    if (std::hypot(nearU, nearV) >= 1.0 + m) return EllipseSide::Outside;
    return EllipseSide::Near;
}

bool StrokeCoversSurface(const POINT* pts, int n, double width, double centre, double cx, double cy)
{
    const double r = width / 2.0;
    for (int i = 0; i < n; ++i) {
        const double x = pts[i].x + centre, y = pts[i].y + centre;
        if (std::hypot(std::max(x, cx - x), std::max(y, cy - y)) <= r) return true;
    }
    return false;
}

}  // namespace Ky
