#include <kygraph/KyGDrawBase.h>

#include <kygraph/Brush.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>
#include <kygraph/Saturate.h>

#include <cmath>
#include <algorithm>
#include <vector>

namespace {

// Escapement in tenths of a degree from an angle in degrees: truncated to whole degrees first
// (12.7 gives 120, intended), NaN and infinities count as 0, and the whole degrees are
// reduced modulo 360 so that the tenths always fit an int.
LONG EscapementOf(double angle)
{
    if (!std::isfinite(angle)) return 0;
    const double degrees = std::fmod(std::trunc(angle), 360.0);
    return static_cast<LONG>(Ky::TruncToInt(degrees) * 10);
}

LOGFONTW NormalFont(int height)
{
    LOGFONTW lf{};  // width 0, no italic, default face and precision
    lf.lfHeight = height;
    lf.lfWeight = FW_NORMAL;
    return lf;
}

// Selects a pen for one primitive and puts the previous one back when the primitive ends.
class ScopedPen {
public:
    ScopedPen(CDC* pDC, int style, int width, COLORREF color) : m_pDC(pDC)
    {
        if (m_pen.CreatePen(style, width, color)) m_pOld = m_pDC->SelectObject(&m_pen);
    }
    ~ScopedPen()
    {
        if (m_pOld) m_pDC->SelectObject(m_pOld);
    }
    ScopedPen(const ScopedPen&) = delete;
    ScopedPen& operator=(const ScopedPen&) = delete;

private:
    CDC* m_pDC;
    CPen m_pen;
    CPen* m_pOld = nullptr;
};

}  // namespace

CKyGDrawBase::CKyGDrawBase(CKyGChart* pChart) { SetChart(pChart); }

CKyGDrawBase::CKyGDrawBase(const CKyGDrawBase& other) : CKyObject(other), m_pChart(other.m_pChart) {}

CKyGDrawBase& CKyGDrawBase::operator=(const CKyGDrawBase& other)
{
    CKyObject::operator=(other);
    m_pChart = other.m_pChart;
    return *this;
}

CKyGDrawBase::~CKyGDrawBase() = default;

CString CKyGDrawBase::toString() const { return CString(L"CKyDrawBase"); }

void CKyGDrawBase::SetChart(CKyGChart* pChart) { m_pChart = pChart; }

CKyGChart* CKyGDrawBase::GetChart() const { return m_pChart; }

int CKyGDrawBase::DrawTextW(CDC* pDC, CPoint pt, double height, double angle, COLORREF color, CString text)
{
    if (pDC == nullptr) return 0;
    LOGFONTW lf = NormalFont(Ky::TruncToInt(height));
    lf.lfEscapement = lf.lfOrientation = EscapementOf(angle);
    CFont font;
    if (!font.CreateFontIndirect(&lf)) return 0;

    CFont* pOldFont = pDC->SelectObject(&font);
    const COLORREF oldColor = pDC->SetTextColor(color);
    const int result = pDC->TextOut(pt.x, pt.y, text);
    if (pOldFont) pDC->SelectObject(pOldFont);
    pDC->SetTextColor(oldColor);
    return result;
}

int CKyGDrawBase::DrawLine(CDC* pDC, CPoint from, CPoint to, int penStyle, int penWidth, COLORREF color)
{
    if (pDC == nullptr) return 0;
    ScopedPen pen(pDC, penStyle, penWidth, color);
    pDC->MoveTo(from);
    return pDC->LineTo(to);
}

CSize CKyGDrawBase::GetTextExtent(CDC* pDC, int height, CString text)
{
    if (pDC == nullptr) return CSize();
    const LOGFONT lf = NormalFont(height);
    CFont font;
    if (!font.CreateFontIndirect(&lf)) return CSize();
    CFont* pOldFont = pDC->SelectObject(&font);
    const CSize size = pDC->GetTextExtent(text);
    if (pOldFont) pDC->SelectObject(pOldFont);
    return size;
}

int CKyGDrawBase::DrawArc(CDC* pDC, RECT* bounds, CPoint start, CPoint end, int penStyle, int penWidth,
                          COLORREF color)
{
    if (pDC == nullptr || bounds == nullptr) return 0;
    ScopedPen pen(pDC, penStyle, penWidth, color);
    return pDC->Arc(bounds, start, end);
}

CRect CKyGDrawBase::GetRect(CPoint centre, int width, int height)
{
    // Halves truncate toward zero: an odd size gives a rectangle one pixel smaller. Intended.
    const int halfW = width / 2;
    const int halfH = height / 2;
    return CRect(Ky::SatSub(centre.x, halfW), Ky::SatSub(centre.y, halfH), Ky::SatAdd(centre.x, halfW),
                 Ky::SatAdd(centre.y, halfH));
}

int CKyGDrawBase::DrawPolyLine(CDC* pDC, const CVoArray<CPoint>& points, int penStyle, int penWidth, COLORREF color)
{
    if (pDC == nullptr) return 0;
    ScopedPen pen(pDC, penStyle, penWidth, color);
    const int count = points.GetSize();
    // One point more than needed, as the drawing has always allocated; released here.
    std::vector<POINT> buffer(static_cast<size_t>(count) + 1);
    for (int i = 0; i < count; ++i) buffer[static_cast<size_t>(i)] = points[i];
    if (count <= kPolylineChunk) return pDC->Polyline(buffer.data(), count);
    // A rasteriser strokes one long polyline in more than linear time (every segment is
    // checked against the others); pieces that share their end points draw the same line in
    // time linear in its points. Only the joins at the few shared points become caps.
    int result = 1;
    for (int first = 0; first + 1 < count; first += kPolylineChunk - 1) {
        const int n = std::min(kPolylineChunk, count - first);
        result = pDC->Polyline(buffer.data() + first, n) && result;
    }
    return result;
}

int CKyGDrawBase::DrawEllipse(CDC* pDC, CPoint centre, double width, double height, int penStyle, int penWidth,
                              COLORREF color, int fill)
{
    if (pDC == nullptr) return 0;
    ScopedPen pen(pDC, penStyle, penWidth, color);
    CBrush brush;
    brush.CreateSolidBrush(color);  // made even when unused
    CBrush* pOldBrush = fill ? pDC->SelectObject(&brush) : nullptr;

    // Bottom-right corner first, then top-left.
    const int result = pDC->Ellipse(Ky::TruncToInt(centre.x + width / 2), Ky::TruncToInt(centre.y + height / 2),
                                    Ky::TruncToInt(centre.x - width / 2), Ky::TruncToInt(centre.y - height / 2));
    if (pOldBrush) pDC->SelectObject(pOldBrush);
    return result;
}

int CKyGDrawBase::DrawPolygonAlpha(CDC* pDC, const CVoArray<CPoint>& points, COLORREF color, int alpha)
{
    if (pDC == nullptr || points.GetSize() < 3) return 0;
    std::vector<POINT> pts(static_cast<size_t>(points.GetSize()));
    for (int i = 0; i < points.GetSize(); ++i) pts[i] = points[i];
    return pDC->FillPolygonAlpha(pts.data(), points.GetSize(), color, static_cast<BYTE>(std::clamp(alpha, 0, 255)));
}

CSize CKyGDrawBase::CStyledPen::Measure(const CString& text) const
{
    return GetTextExtent(m_pDC, Ky::TruncToInt(m_style.nTextHeight * m_dScale), text);
}

CKyGPlotFrame CKyGDrawBase::Frame() const { return (m_pChart ? m_pChart : CKyGChart::GetKyGChart())->Frame(); }

const CKyGChartSetting& CKyGDrawBase::Settings() const { return Frame().Settings(); }

CKyGDrawBase::CStyledPen CKyGDrawBase::Pen(CDC* pDC, const tagKyLineStyle& style) const
{
    return CStyledPen(pDC, style, Frame().Scale());
}

CString CKyGDrawBase::LoadText(UINT id)
{
    CString s;
    s.LoadString(id);
    return s;
}
