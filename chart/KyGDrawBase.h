// CKyGDrawBase: the abstract base of every drawable chart element, and the static drawing
// primitives through which all elements draw. Each primitive creates the pen, brush or font
// it needs, selects it, draws, restores what was selected and destroys what it created, so
// elements never leave GDI state behind. It also gives every element the settings it reads and
// its pen and font of one line style at the current draw scale.
#pragma once

#include <kygraph/DC.h>
#include <kygraph/KyExport.h>
#include <kygraph/KyLineStyle.h>
#include <kygraph/KyGPlotFrame.h>
#include <kygraph/KyObject.h>
#include <kygraph/Point.h>
#include <kygraph/Rect.h>
#include <kygraph/Size.h>
#include <kygraph/String.h>
#include <kygraph/VoArray.h>

class CKyGChart;
class CKyGChartSetting;

class KYGRAPH_API CKyGDrawBase : public CKyObject {
    friend class CKyGChart;

public:
    CKyGDrawBase(CKyGChart* pChart = nullptr);
    CKyGDrawBase(const CKyGDrawBase& other);
    CKyGDrawBase& operator=(const CKyGDrawBase& other);
    ~CKyGDrawBase() override;

    // "CKyDrawBase", without the G: the name string is kept so on purpose.
    CString toString() const override;

    void SetChart(CKyGChart* pChart);
    CKyGChart* GetChart() const;

    // Text at pt (top-left of its cell with the DC's default alignment), font cell height in
    // pixels, angle in degrees counter-clockwise (truncated to whole degrees). 0 when pDC is
    // null or the font cannot be made, else the text output's result.
    static int DrawTextW(CDC* pDC, CPoint pt, double height, double angle, COLORREF color, CString text);
    // A straight line from..to with a pen of that style, width and colour.
    static int DrawLine(CDC* pDC, CPoint from, CPoint to, int penStyle, int penWidth, COLORREF color);
    // Width and height of text in a font of that height; (0, 0) when it cannot be measured.
    static CSize GetTextExtent(CDC* pDC, int height, CString text);
    // The arc of the ellipse inscribed in bounds, counter-clockwise from the radial through
    // start to the radial through end.
    static int DrawArc(CDC* pDC, RECT* bounds, CPoint start, CPoint end, int penStyle, int penWidth, COLORREF color);
    // The rectangle of that size centred on centre (halves truncated toward zero).
    static CRect GetRect(CPoint centre, int width, int height);
    // One polyline through the points; fewer than two points draw nothing and give 0. More
    // than kPolylineChunk points are drawn as pieces of that many that share their end points,
    // so the time stays linear in the points.
    static constexpr int kPolylineChunk = 1000;
    static int DrawPolyLine(CDC* pDC, const CVoArray<CPoint>& points, int penStyle, int penWidth, COLORREF color);
    // The ellipse of that width and height around centre; filled with a brush of the same
    // colour when fill is non-zero, otherwise with whatever brush the DC holds.
    static int DrawEllipse(CDC* pDC, CPoint centre, double width, double height, int penStyle, int penWidth,
                           COLORREF color, int fill);
    // The closed polygon through the points filled with color at opacity alpha (0..255,
    // clamped), over what is drawn, with no outline. Fewer than three points give 0.
    static int DrawPolygonAlpha(CDC* pDC, const CVoArray<CPoint>& points, COLORREF color, int alpha);

protected:
    // Draws the element; 1 when drawn, 0 when not (reason in the last-error text).
    virtual int Draw(CDC* pDC) = 0;

    // The primitives bound to one line style and draw scale, so an element draws "in its
    // style" the same way everywhere: lines, arcs and polylines with the style's pen, texts at
    // nTextHeight x scale in its colour, measured at trunc(nTextHeight x scale).
    class KYGRAPH_API CStyledPen {
    public:
        CStyledPen(CDC* pDC, const tagKyLineStyle& style, double scale) : m_pDC(pDC), m_style(style), m_dScale(scale) {}
        int Line(CPoint from, CPoint to) const { return DrawLine(m_pDC, from, to, Style(), Width(), Color()); }
        int Arc(RECT bounds, CPoint start, CPoint end) const
        {
            return DrawArc(m_pDC, &bounds, start, end, Style(), Width(), Color());
        }
        int PolyLine(const CVoArray<CPoint>& points) const
        {
            return DrawPolyLine(m_pDC, points, Style(), Width(), Color());
        }
        int Text(CPoint at, double angle, const CString& text) const
        {
            return DrawTextW(m_pDC, at, m_style.nTextHeight * m_dScale, angle, Color(), text);
        }
        CSize Measure(const CString& text) const;
        double Scale() const { return m_dScale; }

    private:
        int Style() const { return m_style.nPenStyle; }
        int Width() const { return m_style.nWidth; }
        COLORREF Color() const { return m_style.crColor; }

        CDC* m_pDC;
        tagKyLineStyle m_style;
        double m_dScale;
    };

    // What the element reads of its chart: the frame of the drawing it is part of (the
    // singleton chart's when it has no chart), with the settings, corners, draw scale and
    // model conditions of that drawing.
    CKyGPlotFrame Frame() const;
    const CKyGChartSetting& Settings() const;
    // A pen of style at the frame's draw scale.
    CStyledPen Pen(CDC* pDC, const tagKyLineStyle& style) const;
    // A string-table entry of the current module; empty when it has none.
    static CString LoadText(UINT id);

    CKyGChart* m_pChart = nullptr;
};
