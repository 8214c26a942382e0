// CImageWnd: an off-screen window. Its client area is a surface of the window's kind that the
// window and every DC taken from it share; a resize re-targets the DCs still out.
#include <kygraph/ImageWnd.h>

#include <kygraph/DC.h>

#include "internal/KyDCBackend.h"
#include "internal/KySurface.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <algorithm>
#include <vector>

struct CImageWnd::Impl {
    SurfaceKind kind = Raster;
    COLORREF background = RGB(255, 255, 255);
    bool antialias = true;
    bool recording = false;
    KySurface* surface = nullptr;
    std::vector<std::unique_ptr<CDC>> dcs;  // handed out by GetDC and not yet released

    KySurface* NewSurface(int cx, int cy) const
    {
        return Ky::CreateSurface(kind == Raster ? KySurface::Raster : KySurface::Vector, cx, cy, background);
    }
};

namespace {

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length)
{
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

// Replays a vector window's drawing onto an SVG or PDF surface and finishes the document.
bool WriteVector(cairo_surface_t* doc, const KySurface* content)
{
    if (cairo_surface_status(doc) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(doc);
        return false;
    }
    if (content->cs) {
        cairo_t* cr = cairo_create(doc);
        cairo_set_source_surface(cr, content->cs, 0, 0);
        cairo_paint(cr);
        cairo_destroy(cr);
    }
    cairo_surface_finish(doc);
    const bool ok = cairo_surface_status(doc) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(doc);
    return ok;
}

}  // namespace

CImageWnd::CImageWnd(int cx, int cy, COLORREF background, SurfaceKind kind) : m_impl(std::make_unique<Impl>())
{
    m_impl->kind = (kind == Svg || kind == Pdf) ? kind : Raster;
    m_impl->background = background & 0x00FFFFFF;
    // A size the surface cannot take leaves an object that is not a window.
    m_impl->surface = m_impl->NewSurface(cx, cy);
    if (m_impl->surface) RegisterHandle();
}

CImageWnd::~CImageWnd() { DestroyWindow(); }

void CImageWnd::GetClientRect(LPRECT rect) const
{
    if (!rect) return;
    const KySurface* s = m_hWnd ? m_impl->surface : nullptr;
    *rect = RECT{0, 0, s ? s->width : 0, s ? s->height : 0};
}

CDC* CImageWnd::GetDC()
{
    if (!m_hWnd || !m_impl->surface) return nullptr;
    auto dc = std::make_unique<CDC>();
    dc->AttachBackend(m_impl->kind == Raster ? Ky::CreateRasterBackend() : Ky::CreateVectorBackend());
    dc->Backend()->SetTarget(m_impl->surface);
    dc->SetBkColor(m_impl->background);
    dc->SetAntialias(m_impl->antialias);
    dc->EnableRecording(m_impl->recording);
    m_impl->dcs.push_back(std::move(dc));
    return m_impl->dcs.back().get();
}

int CImageWnd::ReleaseDC(CDC* pDC)
{
    auto& dcs = m_impl->dcs;
    auto it = std::find_if(dcs.begin(), dcs.end(), [pDC](const std::unique_ptr<CDC>& d) { return d.get() == pDC; });
    if (!pDC || it == dcs.end()) return 0;
    dcs.erase(it);
    return 1;
}

BOOL CImageWnd::DestroyWindow()
{
    if (!m_hWnd) return FALSE;
    // DCs still out become deleted DCs; their objects live until released or until the
    // window object goes, so a late call on them is harmless.
    for (auto& dc : m_impl->dcs) dc->DeleteDC();
    Ky::ReleaseSurface(m_impl->surface);
    m_impl->surface = nullptr;
    UnregisterHandle();
    return TRUE;
}

BOOL CImageWnd::SetClientSize(int cx, int cy)
{
    if (!m_hWnd) return FALSE;
    KySurface* s = m_impl->NewSurface(cx, cy);
    if (!s) return FALSE;
    Ky::ReleaseSurface(m_impl->surface);
    m_impl->surface = s;
    for (auto& dc : m_impl->dcs)
        if (dc->Backend()) dc->Backend()->SetTarget(s);
    return TRUE;
}

COLORREF CImageWnd::GetBackground() const { return m_impl->background; }

void CImageWnd::SetAntialias(bool on) { m_impl->antialias = on; }

void CImageWnd::EnableRecording(bool on) { m_impl->recording = on; }

int CImageWnd::SavePng(const char* path)
{
    const KySurface* s = m_hWnd ? m_impl->surface : nullptr;
    if (!path || !*path || !s || !s->cs || m_impl->kind != Raster) return 0;
    cairo_surface_flush(s->cs);
    return cairo_surface_write_to_png(s->cs, path) == CAIRO_STATUS_SUCCESS ? 1 : 0;
}

COLORREF CImageWnd::GetPixel(int x, int y) const
{
    return Ky::SurfacePixel(m_hWnd ? m_impl->surface : nullptr, x, y);
}

int CImageWnd::SaveVector(const char* path)
{
    const KySurface* s = m_hWnd ? m_impl->surface : nullptr;
    if (!path || !*path || !s || m_impl->kind == Raster) return 0;
    cairo_surface_t* doc = m_impl->kind == Svg ? cairo_svg_surface_create(path, s->width, s->height)
                                               : cairo_pdf_surface_create(path, s->width, s->height);
    return WriteVector(doc, s) ? 1 : 0;
}

std::string CImageWnd::Encode()
{
    std::string out;
    const KySurface* s = m_hWnd ? m_impl->surface : nullptr;
    if (!s) return out;
    bool ok = false;
    if (m_impl->kind == Raster) {
        if (s->cs) {
            cairo_surface_flush(s->cs);
            ok = cairo_surface_write_to_png_stream(s->cs, AppendBytes, &out) == CAIRO_STATUS_SUCCESS;
        }
    } else {
        cairo_surface_t* doc = m_impl->kind == Svg
                                   ? cairo_svg_surface_create_for_stream(AppendBytes, &out, s->width, s->height)
                                   : cairo_pdf_surface_create_for_stream(AppendBytes, &out, s->width, s->height);
        ok = WriteVector(doc, s);
    }
    if (!ok) out.clear();
    return out;
}
