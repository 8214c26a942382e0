// HostLayout: what the hosts (kygraph render and the viewer) draw on top of the chart so that
// no text is covered: the names of points and the ε labels placed by a LabelPlacer, and the
// chart's title block moved to free space when, where the chart stands it, it would cover a
// text of the chart, a label or a dot. The chart's own drawing is read from its recorded
// primitives; the block is moved by turning the chart's own off (its "title" switch) and
// drawing the same rows here.
#pragma once

#include "LabelPlacer.h"

#include <kygraph/DrawRecord.h>
#include <kygraph/KyGDrawBase.h>

#include <vector>

class CKyGChart;

class HostLayout : public CKyGDrawBase {
public:
    struct Label {
        CPoint dot;
        int dotRadius = 0;
        CString text;
        double height = 7.0;  // cell height in pixels
        COLORREF color = 0;
        LabelPlacer::Side side = LabelPlacer::Top;
    };

    void AddDot(CPoint p, int radius) { m_dots.push_back({p, radius}); }
    void AddLabel(const Label& label) { m_labels.push_back(label); }

    // Reads the chart as it was just drawn (its DC recording): the boxes of its texts, and
    // where its title block stands (none when the block is off). Call before Place.
    void ReadChart(CKyGChart& chart);
    // Adds the texts the chart's DC recorded from record number from on (what the host drew
    // over the chart before placing labels) to those labels and the block keep clear of.
    void ReadMore(CKyGChart& chart, size_t from);
    // A box the host drew (the legend) that labels and the block keep clear of, as of a text.
    void AddCovered(const RECT& box) { m_texts.push_back(box); }
    // Places the labels; true when the chart's title block would cover a text, label or dot,
    // and so must be drawn elsewhere by this layout.
    bool Place(CDC* pDC);
    // After the chart is redrawn without its block, titleless its reading (ReadChart): finds
    // the free place for the block.
    void MoveTitle(CDC* pDC, const HostLayout& titleless);

    CString toString() const override { return CString(L"HostLayout"); }

    // The results, for tests: each label's placement in the order added, and the block.
    const std::vector<LabelPlacer::Placement>& Placements() const { return m_placed; }
    bool TitleMoved() const { return m_titleMoved; }
    const RECT& TitleBox() const { return m_title; }

    // The box a recorded text covers (its rotation's bounding box).
    static RECT TextBox(CDC* pDC, const CDrawRecord& text);

protected:
    int Draw(CDC* pDC) override;

private:
    struct Dot {
        CPoint p;
        int r;
    };
    // The block's rows, measured as the chart measures them.
    struct Block {
        CString rows[4];  // kcal formula, kJ formula, pressure, title
        int w = 0, h = 0;
    };
    // The block's rows and the extent of its widest row, its font scaled by scale.
    static Block MeasureBlock(CDC* pDC, double scale = 1.0);

    std::vector<Dot> m_dots;
    std::vector<Label> m_labels;
    std::vector<LabelPlacer::Placement> m_placed;
    std::vector<RECT> m_texts;                 // the chart's texts, the block's own excepted
    std::vector<std::vector<CPoint>> m_lines;  // the chart's lines and curves
    RECT m_client{};
    RECT m_title{};
    bool m_hasTitle = false;
    bool m_titleMoved = false;
    double m_titleScale = 1.0;  // of the block's font where it is moved to
};
