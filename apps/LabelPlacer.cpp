#include "LabelPlacer.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace {
constexpr long long kTextCost = 1;
constexpr long long kHardCost = 1'000'000;
constexpr long long kOutsideCost = 1'000'000'000;
// How far out leaders go, in steps of the label's height, and in how many directions.
constexpr int kLeaderRings = 8;
constexpr int kLeaderDirections = 16;

CPoint Clamp(CPoint p, const RECT& r)
{
    return CPoint(std::clamp<int>(p.x, r.left, std::max(r.left, r.right)), std::clamp<int>(p.y, r.top, std::max(r.top, r.bottom)));
}
}  // namespace

void LabelPlacer::AddDot(CPoint p, int r)
{
    r = std::max(r, 1);
    m_hard.push_back(RECT{p.x - r, p.y - r, p.x + r + 1, p.y + r + 1});
}

bool LabelPlacer::Overlap(const RECT& a, const RECT& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

RECT LabelPlacer::BoxAt(CPoint p, int gap, CSize s, Side side)
{
    int x = p.x - s.cx / 2, y = p.y - s.cy / 2;
    switch (side) {
    case Left: x = p.x - gap - s.cx; break;
    case Top: y = p.y - gap - s.cy; break;
    case Right: x = p.x + gap; break;
    case Bottom: y = p.y + gap; break;
    case TopLeft: x = p.x - gap - s.cx; y = p.y - gap - s.cy; break;
    case TopRight: x = p.x + gap; y = p.y - gap - s.cy; break;
    case BottomRight: x = p.x + gap; y = p.y + gap; break;
    case BottomLeft: x = p.x - gap - s.cx; y = p.y + gap; break;
    default: break;
    }
    return RECT{x, y, x + s.cx, y + s.cy};
}

long long LabelPlacer::Cost(const RECT& box) const
{
    long long cost = 0;
    if (box.left < m_bounds.left || box.top < m_bounds.top || box.right > m_bounds.right || box.bottom > m_bounds.bottom)
        cost += kOutsideCost;
    for (const RECT& r : m_hard)
        if (Overlap(box, r)) cost += kHardCost;
    for (const RECT& r : m_soft)
        if (Overlap(box, r)) cost += kTextCost;
    return cost;
}

LabelPlacer::Placement LabelPlacer::Place(CPoint p, int dotRadius, CSize size, Side preferred)
{
    const int gap = std::max(dotRadius, 0) + 2;
    Placement best;
    long long bestCost = LLONG_MAX;
    auto consider = [&](const RECT& box, bool leader) {
        const long long cost = Cost(box);
        if (cost < bestCost) {
            bestCost = cost;
            best.box = box;
            best.leader = leader;
        }
        return cost == 0;
    };

    // The sides next to the dot: the preferred one, then clockwise.
    static const Side kOrder[kSideCount] = {Left, TopLeft, Top, TopRight, Right, BottomRight, Bottom, BottomLeft};
    const int start = static_cast<int>(std::find(kOrder, kOrder + kSideCount, preferred) - kOrder) % kSideCount;
    bool done = false;
    for (int i = 0; i < kSideCount && !done; ++i) done = consider(BoxAt(p, gap, size, kOrder[(start + i) % kSideCount]), false);

    // Further out, the label's centre on rings around the dot, joined to it by a leader.
    const int step = std::max<int>(size.cy, 4);
    for (int ring = 1; ring <= kLeaderRings && !done; ++ring) {
        const double reach = gap + ring * step + std::max(size.cx, size.cy) / 2.0;
        for (int k = 0; k < kLeaderDirections && !done; ++k) {
            const double a = -M_PI / 2 + 2 * M_PI * k / kLeaderDirections;  // from straight up
            const CPoint c(static_cast<int>(std::lround(p.x + reach * std::cos(a))),
                           static_cast<int>(std::lround(p.y + reach * std::sin(a))));
            done = consider(RECT{c.x - size.cx / 2, c.y - size.cy / 2, c.x - size.cx / 2 + size.cx, c.y - size.cy / 2 + size.cy}, true);
        }
    }

    best.clear = bestCost == 0;
    if (best.leader) {
        best.to = Clamp(p, best.box);
        const double dx = best.to.x - p.x, dy = best.to.y - p.y, len = std::hypot(dx, dy);
        best.from = len > 0 ? CPoint(static_cast<int>(std::lround(p.x + dx * dotRadius / len)),
                                     static_cast<int>(std::lround(p.y + dy * dotRadius / len)))
                            : p;
    }
    m_hard.push_back(best.box);
    return best;
}
