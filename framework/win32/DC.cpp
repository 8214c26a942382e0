// CDC on Windows: a real HDC, with GDI itself as the state machine. Each primitive checks the
// DC, records itself when asked (reading the state it is drawn in back from GDI), and calls
// GDI. Coordinates GDI cannot take are clipped first, so no input reaches GDI outside the
// 27-bit space it supports.
#include <kygraph/DC.h>

#include <kygraph/Bitmap.h>
#include <kygraph/Brush.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// GDI keeps coordinates within 27 bits; beyond, drawing is undefined.
constexpr LONG kGdiLimit = (1 << 27) - 1;

bool InGdiRange(LONG v) { return v >= -kGdiLimit && v <= kGdiLimit; }
bool InGdiRange(const POINT& p) { return InGdiRange(p.x) && InGdiRange(p.y); }

// Clips the segment a-b to GDI's coordinate square (Liang-Barsky); false when nothing is left.
bool ClipToGdi(POINT& a, POINT& b)
{
    const double x0 = a.x, y0 = a.y, dx = double(b.x) - a.x, dy = double(b.y) - a.y;
    double t0 = 0, t1 = 1;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {x0 + kGdiLimit, kGdiLimit - x0, y0 + kGdiLimit, kGdiLimit - y0};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0) return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0) t0 = std::max(t0, t);
        else t1 = std::min(t1, t);
    }
    if (t0 > t1) return false;
    auto at = [&](double t) { return POINT{LONG(std::lround(x0 + t * dx)), LONG(std::lround(y0 + t * dy))}; };
    const POINT na = at(t0), nb = at(t1);
    a = na;
    b = nb;
    return true;
}

}  // namespace

struct CDC::State {
    bool owned = false;  // made by CreateCompatibleDC: DeleteDC deletes it
    bool antialias = true;
    bool recording = false;
    std::vector<CDrawRecord> records;
};

CDC::CDC() : m_state(std::make_unique<State>()) {}

CDC::~CDC() { DeleteDC(); }

HDC CDC::GetSafeHdc() const { return m_hDC; }

BOOL CDC::Attach(HDC hDC)
{
    if (!hDC || m_hDC) return FALSE;
    m_hDC = hDC;
    m_state->owned = false;
    return TRUE;
}

HDC CDC::Detach()
{
    HDC h = m_hDC;
    m_hDC = nullptr;
    m_state->owned = false;
    return h;
}

BOOL CDC::CreateCompatibleDC(CDC* pDC)
{
    if (pDC && !pDC->m_hDC) return FALSE;
    HDC h = ::CreateCompatibleDC(pDC ? pDC->m_hDC : nullptr);
    if (!h) return FALSE;
    DeleteDC();
    m_hDC = h;
    m_state->owned = true;
    if (pDC) {
        m_state->antialias = pDC->GetAntialias();
        m_state->recording = pDC->IsRecording();
    }
    return TRUE;
}

BOOL CDC::DeleteDC()
{
    if (!m_hDC) return FALSE;
    if (m_state->owned) ::DeleteDC(m_hDC);
    m_hDC = nullptr;
    m_state->owned = false;
    return TRUE;
}

CGdiObject* CDC::SelectObject(CGdiObject* pObject)
{
    if (!m_hDC || !pObject || !pObject->m_hObject) return nullptr;
    return CGdiObject::FromHandle(::SelectObject(m_hDC, pObject->m_hObject));
}

CPen* CDC::SelectObject(CPen* pPen) { return static_cast<CPen*>(SelectObject(static_cast<CGdiObject*>(pPen))); }
CBrush* CDC::SelectObject(CBrush* pBrush) { return static_cast<CBrush*>(SelectObject(static_cast<CGdiObject*>(pBrush))); }
CFont* CDC::SelectObject(CFont* pFont) { return static_cast<CFont*>(SelectObject(static_cast<CGdiObject*>(pFont))); }
CBitmap* CDC::SelectObject(CBitmap* pBitmap)
{
    return static_cast<CBitmap*>(SelectObject(static_cast<CGdiObject*>(pBitmap)));
}

CGdiObject* CDC::SelectStockObject(int index) { return SelectObject(CGdiObject::GetStockObject(index)); }

namespace {

// What a record keeps of the DC's state, read back from GDI.
CDrawRecord RecordOf(HDC dc, CDrawRecord::Kind kind)
{
    CDrawRecord r;
    r.kind = kind;
    LOGPEN lp{};
    if (::GetObjectW(::GetCurrentObject(dc, OBJ_PEN), sizeof lp, &lp) == sizeof lp) {
        r.penStyle = static_cast<int>(lp.lopnStyle);
        r.penWidth = static_cast<int>(lp.lopnWidth.x);
        r.penColor = lp.lopnColor;
    }
    LOGBRUSH lb{};
    if (::GetObjectW(::GetCurrentObject(dc, OBJ_BRUSH), sizeof lb, &lb) == sizeof lb) {
        r.brushNull = lb.lbStyle == BS_NULL;
        r.brushColor = r.brushNull ? 0 : lb.lbColor;
    }
    LOGFONTW lf{};
    if (::GetObjectW(::GetCurrentObject(dc, OBJ_FONT), sizeof lf, &lf) == sizeof lf) {
        r.fontHeight = static_cast<int>(lf.lfHeight);
        r.escapement = static_cast<int>(lf.lfEscapement);
    }
    r.textColor = ::GetTextColor(dc);
    r.bkColor = ::GetBkColor(dc);
    r.bkMode = ::GetBkMode(dc);
    return r;
}

}  // namespace

CPoint CDC::MoveTo(int x, int y)
{
    POINT prev{0, 0};
    if (m_hDC) ::MoveToEx(m_hDC, x, y, &prev);
    return CPoint(prev);
}

CPoint CDC::GetCurrentPosition() const
{
    POINT pt{0, 0};
    if (m_hDC) ::GetCurrentPositionEx(m_hDC, &pt);
    return CPoint(pt);
}

BOOL CDC::LineTo(int x, int y)
{
    if (!m_hDC) return FALSE;
    const POINT from = GetCurrentPosition(), to{x, y};
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::Line);
        r.pts = {CPoint(from), CPoint(to)};
        m_state->records.push_back(std::move(r));
    }
    if (InGdiRange(from) && InGdiRange(to)) return ::LineTo(m_hDC, x, y);
    POINT a = from, b = to;
    if (ClipToGdi(a, b)) {
        ::MoveToEx(m_hDC, a.x, a.y, nullptr);
        ::LineTo(m_hDC, b.x, b.y);
    }
    // The current position ends where GDI would leave it, clipped or not.
    ::MoveToEx(m_hDC, x, y, nullptr);
    return TRUE;
}

BOOL CDC::Polyline(const POINT* pts, int count)
{
    if (!m_hDC || !pts || count < 2) return FALSE;
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::Polyline);
        r.pts.assign(pts, pts + count);
        m_state->records.push_back(std::move(r));
    }
    if (std::all_of(pts, pts + count, [](const POINT& p) { return InGdiRange(p); }))
        return ::Polyline(m_hDC, pts, count);
    for (int i = 1; i < count; ++i) {
        POINT a = pts[i - 1], b = pts[i];
        if (ClipToGdi(a, b)) {
            const POINT seg[2] = {a, b};
            ::Polyline(m_hDC, seg, 2);
        }
    }
    return TRUE;
}

BOOL CDC::Arc(LPCRECT rect, POINT start, POINT end)
{
    if (!m_hDC || !rect) return FALSE;
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::Arc);
        r.pts = {CPoint(rect->left, rect->top), CPoint(rect->right, rect->bottom), CPoint(start), CPoint(end)};
        m_state->records.push_back(std::move(r));
    }
    // An ellipse beyond GDI's coordinates cannot be drawn; GDI would fail it too.
    if (!InGdiRange(rect->left) || !InGdiRange(rect->top) || !InGdiRange(rect->right) || !InGdiRange(rect->bottom))
        return FALSE;
    return ::Arc(m_hDC, rect->left, rect->top, rect->right, rect->bottom, start.x, start.y, end.x, end.y);
}

BOOL CDC::Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4)
{
    const RECT rc{x1, y1, x2, y2};
    return Arc(&rc, POINT{x3, y3}, POINT{x4, y4});
}

int CDC::SetArcDirection(int direction) { return m_hDC ? ::SetArcDirection(m_hDC, direction) : 0; }

int CDC::GetArcDirection() const { return m_hDC ? ::GetArcDirection(m_hDC) : 0; }

BOOL CDC::Ellipse(int x1, int y1, int x2, int y2)
{
    if (!m_hDC) return FALSE;
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::Ellipse);
        r.pts = {CPoint(x1, y1), CPoint(x2, y2)};
        m_state->records.push_back(std::move(r));
    }
    if (!InGdiRange(x1) || !InGdiRange(y1) || !InGdiRange(x2) || !InGdiRange(y2)) return FALSE;
    return ::Ellipse(m_hDC, x1, y1, x2, y2);
}

BOOL CDC::Ellipse(LPCRECT rect) { return rect ? Ellipse(rect->left, rect->top, rect->right, rect->bottom) : FALSE; }

// GDI draws no documents with parts.
void CDC::BeginGroup(const CString&) {}
void CDC::EndGroup() {}

BOOL CDC::FillPolygonAlpha(const POINT* pts, int count, COLORREF color, BYTE alpha)
{
    if (!m_hDC || !pts || count < 3) return FALSE;
    color &= 0x00FFFFFF;
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::FillPolygon);
        r.pts.assign(pts, pts + count);
        r.brushNull = false;
        r.brushColor = color;
        r.alpha = alpha;
        m_state->records.push_back(std::move(r));
    }
    // GDI has no translucent brush: the covered block is copied aside, the polygon filled
    // opaque on the copy, and the copy blended back at constant opacity. Outside the polygon
    // the copy equals the original, so only the inside changes.
    RECT box{};
    if (::GetClipBox(m_hDC, &box) == ERROR) return FALSE;
    LONG l = kGdiLimit, t = kGdiLimit, r = -kGdiLimit, b = -kGdiLimit;
    for (int i = 0; i < count; ++i) {
        l = std::min(l, std::clamp(pts[i].x, -kGdiLimit, kGdiLimit));
        t = std::min(t, std::clamp(pts[i].y, -kGdiLimit, kGdiLimit));
        r = std::max(r, std::clamp(pts[i].x, -kGdiLimit, kGdiLimit));
        b = std::max(b, std::clamp(pts[i].y, -kGdiLimit, kGdiLimit));
    }
    l = std::max(l, box.left);
    t = std::max(t, box.top);
    r = std::min(r + 1, box.right);
    b = std::min(b + 1, box.bottom);
    if (l >= r || t >= b) return TRUE;
    const int w = r - l, h = b - t;
    HDC tmp = ::CreateCompatibleDC(m_hDC);
    HBITMAP bmp = tmp ? ::CreateCompatibleBitmap(m_hDC, w, h) : nullptr;
    BOOL ok = FALSE;
    if (bmp) {
        HGDIOBJ oldBmp = ::SelectObject(tmp, bmp);
        ::BitBlt(tmp, 0, 0, w, h, m_hDC, l, t, SRCCOPY);
        std::vector<POINT> moved(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i)
            moved[i] = POINT{std::clamp(pts[i].x, -kGdiLimit, kGdiLimit) - l, std::clamp(pts[i].y, -kGdiLimit, kGdiLimit) - t};
        HBRUSH brush = ::CreateSolidBrush(color);
        HGDIOBJ oldBrush = ::SelectObject(tmp, brush);
        HGDIOBJ oldPen = ::SelectObject(tmp, ::GetStockObject(NULL_PEN));
        ::SetPolyFillMode(tmp, ALTERNATE);
        ::Polygon(tmp, moved.data(), count);
        ::SelectObject(tmp, oldPen);
        ::SelectObject(tmp, oldBrush);
        ::DeleteObject(brush);
        const BLENDFUNCTION blend{AC_SRC_OVER, 0, alpha, 0};
        ok = ::GdiAlphaBlend(m_hDC, l, t, w, h, tmp, 0, 0, w, h, blend);
        ::SelectObject(tmp, oldBmp);
        ::DeleteObject(bmp);
    }
    if (tmp) ::DeleteDC(tmp);
    return ok;
}

BOOL CDC::TextOut(int x, int y, const CString& text) { return TextOut(x, y, text.GetString(), text.GetLength()); }

BOOL CDC::TextOut(int x, int y, const wchar_t* text, int count)
{
    if (!m_hDC || !text || count < 0) return FALSE;
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::Text);
        r.pts = {CPoint(x, y)};
        r.text = CString(text, count);
        m_state->records.push_back(std::move(r));
    }
    if (!InGdiRange(x) || !InGdiRange(y)) return FALSE;
    return ::TextOutW(m_hDC, x, y, text, count);
}

CSize CDC::GetTextExtent(const CString& text) const { return GetTextExtent(text.GetString(), text.GetLength()); }

CSize CDC::GetTextExtent(const wchar_t* text, int count) const
{
    SIZE size{0, 0};
    if (!m_hDC || !text || count < 0 || !::GetTextExtentPoint32W(m_hDC, text, count, &size)) return CSize();
    return CSize(size.cx, size.cy);
}

COLORREF CDC::SetTextColor(COLORREF color) { return m_hDC ? ::SetTextColor(m_hDC, color & 0x00FFFFFF) : CLR_INVALID; }
COLORREF CDC::GetTextColor() const { return m_hDC ? ::GetTextColor(m_hDC) : CLR_INVALID; }
COLORREF CDC::SetBkColor(COLORREF color) { return m_hDC ? ::SetBkColor(m_hDC, color & 0x00FFFFFF) : CLR_INVALID; }
COLORREF CDC::GetBkColor() const { return m_hDC ? ::GetBkColor(m_hDC) : CLR_INVALID; }
int CDC::SetBkMode(int mode) { return m_hDC ? ::SetBkMode(m_hDC, mode) : 0; }
int CDC::GetBkMode() const { return m_hDC ? ::GetBkMode(m_hDC) : 0; }
UINT CDC::SetTextAlign(UINT flags) { return m_hDC ? ::SetTextAlign(m_hDC, flags) : GDI_ERROR; }
UINT CDC::GetTextAlign() const { return m_hDC ? ::GetTextAlign(m_hDC) : GDI_ERROR; }

void CDC::FillSolidRect(LPCRECT rect, COLORREF color)
{
    if (rect) FillSolidRect(rect->left, rect->top, Ky::SatSub(rect->right, rect->left),
                            Ky::SatSub(rect->bottom, rect->top), color);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF color)
{
    if (!m_hDC) return;
    RECT rc{x, y, Ky::SatAdd(x, cx), Ky::SatAdd(y, cy)};
    if (m_state->recording) {
        ::SetBkColor(m_hDC, color & 0x00FFFFFF);
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::FillRect);
        r.pts = {CPoint(rc.left, rc.top), CPoint(rc.right, rc.bottom)};
        m_state->records.push_back(std::move(r));
    }
    // The framework's solid fill: an opaque text output of nothing, which leaves the colour
    // as the DC's background colour.
    ::SetBkColor(m_hDC, color & 0x00FFFFFF);
    if (rc.left > rc.right) std::swap(rc.left, rc.right);
    if (rc.top > rc.bottom) std::swap(rc.top, rc.bottom);
    rc.left = std::clamp(rc.left, -kGdiLimit, kGdiLimit);
    rc.right = std::clamp(rc.right, -kGdiLimit, kGdiLimit);
    rc.top = std::clamp(rc.top, -kGdiLimit, kGdiLimit);
    rc.bottom = std::clamp(rc.bottom, -kGdiLimit, kGdiLimit);
    ::ExtTextOutW(m_hDC, 0, 0, ETO_OPAQUE, &rc, nullptr, 0, nullptr);
}

BOOL CDC::BitBlt(int x, int y, int w, int h, CDC* pSrc, int xSrc, int ySrc, DWORD rop)
{
    if (!m_hDC || !pSrc || !pSrc->m_hDC || rop != SRCCOPY || w < 0 || h < 0) return FALSE;
    if (m_state->recording) {
        CDrawRecord r = RecordOf(m_hDC, CDrawRecord::BitBlt);
        r.pts = {CPoint(x, y), CPoint(w, h), CPoint(xSrc, ySrc)};
        m_state->records.push_back(std::move(r));
    }
    return ::BitBlt(m_hDC, x, y, w, h, pSrc->m_hDC, xSrc, ySrc, rop);
}

COLORREF CDC::GetPixel(int x, int y) const { return m_hDC ? ::GetPixel(m_hDC, x, y) : CLR_INVALID; }

int CDC::GetDeviceCaps(int index) const { return m_hDC ? ::GetDeviceCaps(m_hDC, index) : 0; }

void CDC::SetAntialias(bool on) { m_state->antialias = on; }
bool CDC::GetAntialias() const { return m_state->antialias; }

void CDC::EnableRecording(bool on) { m_state->recording = on; }
bool CDC::IsRecording() const { return m_state->recording; }
const std::vector<CDrawRecord>& CDC::GetRecords() const { return m_state->records; }
void CDC::ClearRecords() { m_state->records.clear(); }
