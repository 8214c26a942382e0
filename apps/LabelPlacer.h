// LabelPlacer: places the host's labels so that none covers another label or a dot. Each
// label tries the sides around its dot (its preferred side first, then clockwise, corners
// included); when every side is taken it moves further out along a leader line. Texts of the
// chart underneath are avoided when a free place exists, but never at the cost of covering a
// label or a dot. Pure geometry in pixels: no drawing.
#pragma once

#include <kygraph/Point.h>
#include <kygraph/Rect.h>
#include <kygraph/Size.h>

#include <vector>

class LabelPlacer {
public:
    // Sides in clockwise order from the left, as the markers name them (left, top, right,
    // bottom), then the corners.
    enum Side { Left, Top, Right, Bottom, TopLeft, TopRight, BottomRight, BottomLeft, kSideCount };

    struct Placement {
        RECT box{};          // the label's cell
        bool leader = false; // away from its dot: join them with a line
        CPoint from, to;     // the leader: from the dot's edge to the label's nearest edge
        bool clear = true;   // covers no label, no dot and no text it was told of
    };

    // Labels are kept inside bounds where they fit.
    explicit LabelPlacer(const RECT& bounds) : m_bounds(bounds) {}

    // Something no label may cover: a dot, a label placed by someone else.
    void AddObstacle(const RECT& r) { m_hard.push_back(r); }
    // A dot of radius r around p.
    void AddDot(CPoint p, int r);
    // Something a label avoids when it can: a text of the chart.
    void AddText(const RECT& r) { m_soft.push_back(r); }

    // Places a label of size next to the dot at p whose radius is dotRadius, and keeps it as
    // an obstacle for the labels that follow.
    Placement Place(CPoint p, int dotRadius, CSize size, Side preferred);

    const std::vector<RECT>& Obstacles() const { return m_hard; }

    static bool Overlap(const RECT& a, const RECT& b);
    // The box of a label of size on side of p, gap pixels clear of p.
    static RECT BoxAt(CPoint p, int gap, CSize size, Side side);

private:
    // 0 when box is free; otherwise how bad: covering a label or dot outweighs any number of
    // texts, and leaving the bounds outweighs both.
    long long Cost(const RECT& box) const;

    RECT m_bounds;
    std::vector<RECT> m_hard;
    std::vector<RECT> m_soft;
};
