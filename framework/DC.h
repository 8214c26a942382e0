// CDC: the device context. On Windows it wraps a real HDC and GDI itself keeps the state. On
// Linux it owns the GDI state machine once for every backend (selected pen, brush, font and
// bitmap, text and background colours, background mode, text alignment, current position,
// arc direction) and hands each primitive, with that state, to a thin backend: Cairo raster
// (ARGB32) or Cairo SVG/PDF. On both, a DC can also record every primitive it draws.
//
// Failure semantics follow GDI: a null or deleted DC, or a memory DC with no bitmap selected,
// draws nothing and returns 0; nothing throws and no coordinate, size or angle (NaN, huge,
// negative) leads to undefined behaviour.
#pragma once

#include <kygraph/DrawRecord.h>
#include <kygraph/Object.h>
#include <kygraph/Point.h>
#include <kygraph/Rect.h>
#include <kygraph/Size.h>
#include <kygraph/String.h>
#include <kygraph/WinTypes.h>

#include <memory>
#include <vector>

class CGdiObject;
class CPen;
class CBrush;
class CFont;
class CBitmap;
class KyDCBackend;  // framework-internal

class KYFW_API CDC : public CObject {
public:
    CDC();
    ~CDC() override;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    // Non-null while the DC exists.
    HDC GetSafeHdc() const;
    HDC m_hDC = nullptr;

    // A memory DC of the same kind as pDC (raster, vector or recording); with a null pDC a
    // raster memory DC. Any DC this object held is deleted first.
    BOOL CreateCompatibleDC(CDC* pDC);
    BOOL DeleteDC();

    // Selecting returns the previously selected object of the same kind (a stock object on a
    // fresh DC), or null when the DC or the object is invalid.
    CGdiObject* SelectObject(CGdiObject* pObject);
    CPen* SelectObject(CPen* pPen);
    CBrush* SelectObject(CBrush* pBrush);
    CFont* SelectObject(CFont* pFont);
    CBitmap* SelectObject(CBitmap* pBitmap);
    CGdiObject* SelectStockObject(int index);

    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT pt) { return MoveTo(pt.x, pt.y); }
    CPoint GetCurrentPosition() const;
    // Draws from the current position to (x, y), leaving the last pixel unpainted.
    BOOL LineTo(int x, int y);
    BOOL LineTo(POINT pt) { return LineTo(pt.x, pt.y); }
    // Fewer than two points draw nothing and return FALSE.
    BOOL Polyline(const POINT* pts, int count);
    // The ellipse inscribed in the rectangle, from the radial through start to the radial
    // through end in the current arc direction; coincident radials draw the whole ellipse.
    BOOL Arc(LPCRECT rect, POINT start, POINT end);
    BOOL Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    int SetArcDirection(int direction);
    int GetArcDirection() const;
    // Outlined with the pen, filled with the selected brush (corners in either order).
    BOOL Ellipse(int x1, int y1, int x2, int y2);
    BOOL Ellipse(LPCRECT rect);
    // Fills the polygon through the points (closed, alternate fill rule, no outline) with color
    // at opacity alpha/255 over what is already drawn. Fewer than three points draw nothing and
    // return FALSE. Neither the selected pen nor the brush is used or changed.
    BOOL FillPolygonAlpha(const POINT* pts, int count, COLORREF color, BYTE alpha);
    // Marks what is drawn until EndGroup as one named part of the drawing: an SVG document
    // keeps it as one group (class name); rasters and GDI have no use for it.
    void BeginGroup(const CString& name);
    void EndGroup();

    BOOL TextOut(int x, int y, const CString& text);
    BOOL TextOut(int x, int y, const wchar_t* text, int count);
    // Size of the text's cell in the selected font; (0, 0) for a null or deleted DC.
    CSize GetTextExtent(const CString& text) const;
    CSize GetTextExtent(const wchar_t* text, int count) const;

    COLORREF SetTextColor(COLORREF color);
    COLORREF GetTextColor() const;
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const;
    int SetBkMode(int mode);
    int GetBkMode() const;
    UINT SetTextAlign(UINT flags);
    UINT GetTextAlign() const;

    // Fills with the colour and leaves it as the background colour.
    void FillSolidRect(LPCRECT rect, COLORREF color);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF color);

    // Copies exactly w x h pixels (SRCCOPY only) from pSrc at (xSrc, ySrc) to (x, y).
    BOOL BitBlt(int x, int y, int w, int h, CDC* pSrc, int xSrc, int ySrc, DWORD rop);

    // The pixel at (x, y) of a raster DC's selected surface; 0xFFFFFFFF when there is none.
    COLORREF GetPixel(int x, int y) const;
    // TECHNOLOGY (DT_RASDISPLAY for pixels, DT_METAFILE for a vector document), HORZRES and
    // VERTRES (the size of what it draws on); 0 for other indexes or a DC without a surface.
    int GetDeviceCaps(int index) const;

    // Anti-aliased drawing (the default) or GDI's hard edges; inherited by compatible DCs.
    // GDI draws hard edges whatever this says.
    void SetAntialias(bool on);
    bool GetAntialias() const;

    // Recording: every primitive this DC draws is appended to its record list as well as
    // drawn. A DC made compatible with a recording DC records too.
    void EnableRecording(bool on);
    bool IsRecording() const;
    const std::vector<CDrawRecord>& GetRecords() const;
    void ClearRecords();

#if defined(_WIN32)
    // Wraps an existing DC without owning it (DeleteDC and the destructor leave it alone);
    // FALSE for a null handle or when this object already holds one.
    BOOL Attach(HDC hDC);
    // Gives the wrapped handle back and leaves this object empty.
    HDC Detach();
#else
    // Framework-internal: binds this DC to a backend (used by windows and CreateCompatibleDC).
    void AttachBackend(std::unique_ptr<KyDCBackend> backend);
    KyDCBackend* Backend() const;
#endif

private:
    struct State;
    std::unique_ptr<State> m_state;
};
