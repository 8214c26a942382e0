// CDC: the GDI state machine, once for every backend. Each primitive checks the DC, records
// itself when asked, resolves the selected pen, brush and font to what is drawn, and hands
// plain geometry to the backend.
#include <kygraph/DC.h>

#include <kygraph/Bitmap.h>
#include <kygraph/Brush.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>

#include "internal/KyDCBackend.h"
#include "internal/KyGdiGeometry.h"
#include "internal/KySurface.h"
#include "internal/KyTextEngine.h"

#include <algorithm>

namespace {

constexpr COLORREF kInvalidColor = 0xFFFFFFFF;
// Wider pens are drawn this wide: enough for any surface, small enough that the pen's margin
// keeps clipped geometry within Cairo's fixed-point range.
constexpr int kMaxPenWidth = 65535;

std::string TextToUtf8(const wchar_t* text, int count)
{
    std::wstring w(text, static_cast<size_t>(count));
    // GDI shows a NUL as a glyph; Pango would take it as the end of the text.
    std::replace(w.begin(), w.end(), L'\0', L' ');
    return CString(w).ToUtf8();
}

}  // namespace

struct CDC::State {
    std::unique_ptr<KyDCBackend> backend;
    bool memory = false;  // draws only into a selected bitmap

    // What SelectObject hands back; never dereferenced, since callers may have destroyed a
    // previously selected object. The descriptions are copied at selection instead.
    CPen* pen = nullptr;
    CBrush* brush = nullptr;
    CFont* font = nullptr;
    CBitmap* bitmap = nullptr;
    int penStyle = PS_SOLID;
    int penWidth = 1;
    COLORREF penColor = 0;
    KyBrush brushSpec;
    LOGFONTW logFont{};

    COLORREF textColor = RGB(0, 0, 0);
    COLORREF bkColor = RGB(255, 255, 255);
    int bkMode = OPAQUE;
    UINT textAlign = TA_TOP | TA_LEFT;
    CPoint pos;
    int arcDirection = AD_COUNTERCLOCKWISE;

    bool antialias = true;
    bool recording = false;
    std::vector<CDrawRecord> records;

    // A fresh DC: black pen, white brush, system font, stock bitmap.
    void ResetGdiState()
    {
        auto* stockPen = static_cast<CPen*>(CGdiObject::GetStockObject(BLACK_PEN));
        auto* stockBrush = static_cast<CBrush*>(CGdiObject::GetStockObject(WHITE_BRUSH));
        auto* stockFont = static_cast<CFont*>(CGdiObject::GetStockObject(SYSTEM_FONT));
        pen = stockPen;
        penStyle = stockPen->GetStyle();
        penWidth = stockPen->GetWidth();
        penColor = stockPen->GetColor();
        brush = stockBrush;
        brushSpec = KyBrush{stockBrush->IsNull(), stockBrush->GetColor()};
        font = stockFont;
        logFont = stockFont->LogFont();
        bitmap = CBitmap::GetStockBitmap();
        textColor = RGB(0, 0, 0);
        bkColor = RGB(255, 255, 255);
        bkMode = OPAQUE;
        textAlign = TA_TOP | TA_LEFT;
        pos = CPoint();
        arcDirection = AD_COUNTERCLOCKWISE;
    }

    KyPen Pen() const
    {
        KyPen p;
        p.style = (penStyle >= PS_SOLID && penStyle <= PS_NULL) ? penStyle : PS_SOLID;
        p.width = std::clamp(penWidth, 1, kMaxPenWidth);
        // GDI draws a styled pen wider than one pixel solid.
        if (p.width > 1 && p.style != PS_NULL) p.style = PS_SOLID;
        p.color = penColor;
        return p;
    }

    CDrawRecord Record(CDrawRecord::Kind kind) const
    {
        CDrawRecord r;
        r.kind = kind;
        r.penStyle = penStyle;
        r.penWidth = penWidth;
        r.penColor = penColor;
        r.brushNull = brushSpec.null;
        r.brushColor = brushSpec.color;
        r.textColor = textColor;
        r.bkColor = bkColor;
        r.bkMode = bkMode;
        return r;
    }
};

CDC::CDC() : m_state(std::make_unique<State>()) { m_state->ResetGdiState(); }

CDC::~CDC() = default;

HDC CDC::GetSafeHdc() const { return m_hDC; }

void CDC::AttachBackend(std::unique_ptr<KyDCBackend> backend)
{
    m_state->backend = std::move(backend);
    m_state->memory = false;
    m_state->ResetGdiState();
    m_hDC = m_state->backend ? reinterpret_cast<HDC>(this) : nullptr;
}

KyDCBackend* CDC::Backend() const { return m_state->backend.get(); }

BOOL CDC::CreateCompatibleDC(CDC* pDC)
{
    std::unique_ptr<KyDCBackend> backend;
    bool antialias = true, recording = false;
    if (!pDC) {
        backend = Ky::CreateRasterBackend();
    } else {
        if (!pDC->Backend()) return FALSE;
        backend = pDC->Backend()->CreateCompatible();
        antialias = pDC->GetAntialias();
        recording = pDC->IsRecording();
    }
    DeleteDC();
    AttachBackend(std::move(backend));
    m_state->memory = true;
    m_state->antialias = antialias;
    m_state->recording = recording;
    return TRUE;
}

BOOL CDC::DeleteDC()
{
    if (!m_state->backend) return FALSE;
    AttachBackend(nullptr);
    return TRUE;
}

CGdiObject* CDC::SelectObject(CGdiObject* pObject)
{
    if (!pObject) return nullptr;
    switch (pObject->GetKind()) {
    case CGdiObject::KindPen: return SelectObject(static_cast<CPen*>(pObject));
    case CGdiObject::KindBrush: return SelectObject(static_cast<CBrush*>(pObject));
    case CGdiObject::KindFont: return SelectObject(static_cast<CFont*>(pObject));
    case CGdiObject::KindBitmap: return SelectObject(static_cast<CBitmap*>(pObject));
    }
    return nullptr;
}

CPen* CDC::SelectObject(CPen* pPen)
{
    State& s = *m_state;
    if (!s.backend || !pPen || !pPen->GetSafeHandle()) return nullptr;
    CPen* prev = s.pen;
    s.pen = pPen;
    s.penStyle = pPen->GetStyle();
    s.penWidth = pPen->GetWidth();
    s.penColor = pPen->GetColor() & 0x00FFFFFF;
    return prev;
}

CBrush* CDC::SelectObject(CBrush* pBrush)
{
    State& s = *m_state;
    if (!s.backend || !pBrush || !pBrush->GetSafeHandle()) return nullptr;
    CBrush* prev = s.brush;
    s.brush = pBrush;
    s.brushSpec = KyBrush{pBrush->IsNull(), pBrush->GetColor() & 0x00FFFFFF};
    return prev;
}

CFont* CDC::SelectObject(CFont* pFont)
{
    State& s = *m_state;
    if (!s.backend || !pFont || !pFont->GetSafeHandle()) return nullptr;
    CFont* prev = s.font;
    s.font = pFont;
    s.logFont = pFont->LogFont();
    return prev;
}

CBitmap* CDC::SelectObject(CBitmap* pBitmap)
{
    State& s = *m_state;
    // Only memory DCs take bitmaps, as in GDI.
    if (!s.backend || !s.memory || !pBitmap || !pBitmap->GetSafeHandle()) return nullptr;
    CBitmap* prev = s.bitmap;
    s.bitmap = pBitmap;
    s.backend->SetTarget(pBitmap->Surface());
    return prev;
}

CGdiObject* CDC::SelectStockObject(int index) { return SelectObject(CGdiObject::GetStockObject(index)); }

CPoint CDC::MoveTo(int x, int y)
{
    if (!m_state->backend) return CPoint();
    CPoint prev = m_state->pos;
    m_state->pos = CPoint(x, y);
    return prev;
}

CPoint CDC::GetCurrentPosition() const { return m_state->pos; }

BOOL CDC::LineTo(int x, int y)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target()) return FALSE;
    const POINT pts[2] = {s.pos, POINT{x, y}};
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::Line);
        r.pts = {CPoint(pts[0]), CPoint(pts[1])};
        s.records.push_back(std::move(r));
    }
    const bool ok = s.backend->Polyline(pts, 2, s.Pen(), !s.antialias);
    s.pos = CPoint(x, y);
    return ok ? TRUE : FALSE;
}

BOOL CDC::Polyline(const POINT* pts, int count)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target() || !pts || count < 2) return FALSE;
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::Polyline);
        r.pts.assign(pts, pts + count);
        s.records.push_back(std::move(r));
    }
    return s.backend->Polyline(pts, count, s.Pen(), !s.antialias) ? TRUE : FALSE;
}

BOOL CDC::Arc(LPCRECT rect, POINT start, POINT end)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target() || !rect) return FALSE;
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::Arc);
        r.pts = {CPoint(rect->left, rect->top), CPoint(rect->right, rect->bottom), CPoint(start), CPoint(end)};
        s.records.push_back(std::move(r));
    }
    KyEllipseArc arc;
    if (!Ky::ArcFromRadials(*rect, start, end, s.arcDirection == AD_CLOCKWISE, arc)) return TRUE;
    return s.backend->Arc(arc, s.Pen(), !s.antialias) ? TRUE : FALSE;
}

BOOL CDC::Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4)
{
    const RECT rc{x1, y1, x2, y2};
    return Arc(&rc, POINT{x3, y3}, POINT{x4, y4});
}

int CDC::SetArcDirection(int direction)
{
    if (!m_state->backend || (direction != AD_COUNTERCLOCKWISE && direction != AD_CLOCKWISE)) return 0;
    const int prev = m_state->arcDirection;
    m_state->arcDirection = direction;
    return prev;
}

int CDC::GetArcDirection() const { return m_state->backend ? m_state->arcDirection : 0; }

BOOL CDC::Ellipse(int x1, int y1, int x2, int y2)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target()) return FALSE;
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::Ellipse);
        r.pts = {CPoint(x1, y1), CPoint(x2, y2)};
        s.records.push_back(std::move(r));
    }
    KyEllipseArc e;
    if (!Ky::EllipseFromRect(RECT{x1, y1, x2, y2}, e)) return TRUE;
    return s.backend->Ellipse(e, s.Pen(), s.brushSpec, !s.antialias) ? TRUE : FALSE;
}

BOOL CDC::Ellipse(LPCRECT rect) { return rect ? Ellipse(rect->left, rect->top, rect->right, rect->bottom) : FALSE; }

void CDC::BeginGroup(const CString& name)
{
    if (m_state->backend) m_state->backend->Group(name.ToUtf8(), true);
}

void CDC::EndGroup()
{
    if (m_state->backend) m_state->backend->Group(std::string(), false);
}

BOOL CDC::FillPolygonAlpha(const POINT* pts, int count, COLORREF color, BYTE alpha)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target() || !pts || count < 3) return FALSE;
    color &= 0x00FFFFFF;
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::FillPolygon);
        r.pts.assign(pts, pts + count);
        r.brushNull = false;
        r.brushColor = color;
        r.alpha = alpha;
        s.records.push_back(std::move(r));
    }
    return s.backend->FillPolygon(pts, count, color, alpha / 255.0, !s.antialias) ? TRUE : FALSE;
}

BOOL CDC::TextOut(int x, int y, const CString& text) { return TextOut(x, y, text.GetString(), text.GetLength()); }

BOOL CDC::TextOut(int x, int y, const wchar_t* text, int count)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target() || !text || count < 0 || count > KyTextEngine::kMaxTextLength)
        return FALSE;
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::Text);
        r.pts = {CPoint(x, y)};
        r.text = CString(text, count);
        r.fontHeight = s.logFont.lfHeight;
        r.escapement = s.logFont.lfEscapement;
        s.records.push_back(std::move(r));
    }
    KyTextRun run;
    run.font = &s.logFont;
    run.utf8 = TextToUtf8(text, count);
    run.x = x;
    run.y = y;
    // Any escapement is a turn: reduce it so no later arithmetic can overflow.
    int esc = s.logFont.lfEscapement % 3600;
    run.escapement = esc < 0 ? esc + 3600 : esc;
    run.textColor = s.textColor;
    run.bkColor = s.bkColor;
    run.opaque = s.bkMode == OPAQUE;
    return s.backend->Text(run, !s.antialias) ? TRUE : FALSE;
}

CSize CDC::GetTextExtent(const CString& text) const { return GetTextExtent(text.GetString(), text.GetLength()); }

CSize CDC::GetTextExtent(const wchar_t* text, int count) const
{
    const State& s = *m_state;
    if (!s.backend || !text || count < 0 || count > KyTextEngine::kMaxTextLength) return CSize();
    KyTextEngine& engine = KyTextEngine::Instance();
    auto lock = engine.Lock();
    KyTextEngine::Font font;
    if (!engine.Resolve(s.logFont, font)) return CSize();
    // An empty text has no width but the font's height, as in GDI.
    if (count == 0) return CSize(0, font.extentHeight);
    const KyTextEngine::Layout* layout = engine.GetLayout(font, TextToUtf8(text, count));
    return layout ? engine.Extent(font, *layout) : CSize();
}

COLORREF CDC::SetTextColor(COLORREF color)
{
    if (!m_state->backend) return kInvalidColor;
    const COLORREF prev = m_state->textColor;
    m_state->textColor = color & 0x00FFFFFF;
    return prev;
}

COLORREF CDC::GetTextColor() const { return m_state->backend ? m_state->textColor : kInvalidColor; }

COLORREF CDC::SetBkColor(COLORREF color)
{
    if (!m_state->backend) return kInvalidColor;
    const COLORREF prev = m_state->bkColor;
    m_state->bkColor = color & 0x00FFFFFF;
    return prev;
}

COLORREF CDC::GetBkColor() const { return m_state->backend ? m_state->bkColor : kInvalidColor; }

int CDC::SetBkMode(int mode)
{
    if (!m_state->backend || (mode != OPAQUE && mode != TRANSPARENT)) return 0;
    const int prev = m_state->bkMode;
    m_state->bkMode = mode;
    return prev;
}

int CDC::GetBkMode() const { return m_state->backend ? m_state->bkMode : 0; }

UINT CDC::SetTextAlign(UINT flags)
{
    if (!m_state->backend) return 0xFFFFFFFF;  // GDI_ERROR
    const UINT prev = m_state->textAlign;
    m_state->textAlign = flags;
    return prev;
}

UINT CDC::GetTextAlign() const { return m_state->backend ? m_state->textAlign : 0xFFFFFFFF; }

void CDC::FillSolidRect(LPCRECT rect, COLORREF color)
{
    if (rect) FillSolidRect(rect->left, rect->top, Ky::SatSub(rect->right, rect->left),
                            Ky::SatSub(rect->bottom, rect->top), color);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF color)
{
    State& s = *m_state;
    if (!s.backend) return;
    s.bkColor = color & 0x00FFFFFF;
    if (!s.backend->Target()) return;
    RECT rc{x, y, Ky::SatAdd(x, cx), Ky::SatAdd(y, cy)};
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::FillRect);
        r.pts = {CPoint(rc.left, rc.top), CPoint(rc.right, rc.bottom)};
        s.records.push_back(std::move(r));
    }
    if (rc.left > rc.right) std::swap(rc.left, rc.right);
    if (rc.top > rc.bottom) std::swap(rc.top, rc.bottom);
    s.backend->FillRect(rc, s.bkColor);
}

BOOL CDC::BitBlt(int x, int y, int w, int h, CDC* pSrc, int xSrc, int ySrc, DWORD rop)
{
    State& s = *m_state;
    if (!s.backend || !s.backend->Target() || !pSrc || !pSrc->Backend() || !pSrc->Backend()->Target()) return FALSE;
    if (rop != SRCCOPY || w < 0 || h < 0) return FALSE;
    if (s.recording) {
        CDrawRecord r = s.Record(CDrawRecord::BitBlt);
        r.pts = {CPoint(x, y), CPoint(w, h), CPoint(xSrc, ySrc)};
        s.records.push_back(std::move(r));
    }
    KySurface* dst = s.backend->Target();
    KySurface* src = pSrc->Backend()->Target();
    // Clip the block to both surfaces in 64 bits; what remains fits in int.
    std::int64_t dx = x, dy = y, sx = xSrc, sy = ySrc, cw = w, ch = h;
    auto clip = [](std::int64_t& a, std::int64_t& b, std::int64_t& len, std::int64_t limit) {
        if (a < 0) { b -= a; len += a; a = 0; }
        if (a + len > limit) len = limit - a;
    };
    clip(dx, sx, cw, dst->width);
    clip(dy, sy, ch, dst->height);
    clip(sx, dx, cw, src->width);
    clip(sy, dy, ch, src->height);
    if (cw <= 0 || ch <= 0) return TRUE;
    return s.backend->Blit(static_cast<int>(dx), static_cast<int>(dy), static_cast<int>(cw), static_cast<int>(ch),
                           src, static_cast<int>(sx), static_cast<int>(sy))
               ? TRUE
               : FALSE;
}

COLORREF CDC::GetPixel(int x, int y) const
{
    return m_state->backend ? Ky::SurfacePixel(m_state->backend->Target(), x, y) : kInvalidColor;
}

int CDC::GetDeviceCaps(int index) const
{
    const KyDCBackend* b = m_state->backend.get();
    const KySurface* t = b ? b->Target() : nullptr;
    if (!t) return 0;
    switch (index) {
    case TECHNOLOGY: return b->GetKind() == KyDCBackend::Raster ? DT_RASDISPLAY : DT_METAFILE;
    case HORZRES: return t->width;
    case VERTRES: return t->height;
    default: return 0;
    }
}

void CDC::SetAntialias(bool on) { m_state->antialias = on; }
bool CDC::GetAntialias() const { return m_state->antialias; }

void CDC::EnableRecording(bool on) { m_state->recording = on; }
bool CDC::IsRecording() const { return m_state->recording; }
const std::vector<CDrawRecord>& CDC::GetRecords() const { return m_state->records; }
void CDC::ClearRecords() { m_state->records.clear(); }
