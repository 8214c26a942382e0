// CImageWnd: an off-screen window. Its client area is a surface of the window's kind that the
// window and every DC taken from it share; a resize re-targets the DCs still out.
#include <kygraph/ImageWnd.h>

#include <kygraph/DC.h>

#include "internal/KyDCBackend.h"
#include "internal/KyPngWriter.h"
#include "internal/KySurface.h"
#include "internal/KySvgWriter.h"

#include <cairo-pdf.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

struct CImageWnd::Impl {
    SurfaceKind kind = Raster;
    COLORREF background = RGB(255, 255, 255);
    bool antialias = true;
    bool recording = false;
    KySurface* surface = nullptr;
    // Paper, in points (0: the document is the client area at one point per pixel).
    double pageW = 0, pageH = 0, margin = 0;
    std::vector<std::unique_ptr<CDC>> dcs;  // handed out by GetDC and not yet released

    KySurface* NewSurface(int cx, int cy) const
    {
        KySurface* s = Ky::CreateSurface(kind == Raster ? KySurface::Raster : KySurface::Vector, cx, cy, background);
        if (s && pageW > 0 && cx > 0 && cy > 0) s->penScale = kPenPoints / Fit(*s);
        return s;
    }
    // Points per pixel of the client area on the page.
    double Fit(const KySurface& s) const
    {
        return std::min((pageW - 2 * margin) / s.width, (pageH - 2 * margin) / s.height);
    }
    // A pixel of pen width on paper, in points: hairlines that still print.
    static constexpr double kPenPoints = 0.5;
    static constexpr double kPointsPerMm = 72.0 / 25.4;
};

namespace {

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length)
{
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

// Replays a vector window's drawing onto a PDF surface, scaled by fit and moved by (ox, oy),
// and finishes the document.
bool WriteVector(cairo_surface_t* doc, const KySurface* content, double fit = 1, double ox = 0, double oy = 0)
{
    if (cairo_surface_status(doc) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(doc);
        return false;
    }
    if (content->cs) {
        cairo_t* cr = cairo_create(doc);
        cairo_translate(cr, ox, oy);
        cairo_scale(cr, fit, fit);
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
    std::string bytes;
    if (!KyPngWriter::Encode(Ky::ImageOf(s), bytes)) return 0;
    FILE* f = std::fopen(path, "wb");
    if (!f) return 0;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && written ? 1 : 0;
}

COLORREF CImageWnd::GetPixel(int x, int y) const
{
    return Ky::SurfacePixel(m_hWnd ? m_impl->surface : nullptr, x, y);
}

int CImageWnd::SaveVector(const char* path)
{
    const KySurface* s = m_hWnd ? m_impl->surface : nullptr;
    if (!path || !*path || !s || m_impl->kind == Raster) return 0;
    const std::string bytes = Encode();
    if (bytes.empty()) return 0;
    FILE* f = std::fopen(path, "wb");
    if (!f) return 0;
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && ok ? 1 : 0;
}

BOOL CImageWnd::SetPaper(double widthMm, double heightMm, double marginMm)
{
    Impl& m = *m_impl;
    if (!m_hWnd || m.kind == Raster) return FALSE;
    if (!(widthMm > 0 && heightMm > 0 && marginMm >= 0) || !std::isfinite(widthMm) || !std::isfinite(heightMm) ||
        !(2 * marginMm < std::min(widthMm, heightMm)) || std::max(widthMm, heightMm) > 10000)
        return FALSE;
    m.pageW = widthMm * Impl::kPointsPerMm;
    m.pageH = heightMm * Impl::kPointsPerMm;
    m.margin = marginMm * Impl::kPointsPerMm;
    if (m.surface && m.surface->width > 0 && m.surface->height > 0)
        m.surface->penScale = Impl::kPenPoints / m.Fit(*m.surface);
    return TRUE;
}

std::string CImageWnd::Encode()
{
    std::string out;
    const KySurface* s = m_hWnd ? m_impl->surface : nullptr;
    if (!s) return out;
    bool ok = false;
    if (m_impl->kind == Raster) {
        ok = s->cs && KyPngWriter::Encode(Ky::ImageOf(s), out);
    } else if (m_impl->kind == Svg) {
        KySvgWriter::Page page;
        if (m_impl->pageW > 0) {
            // The viewBox keeps the pixels; the page's size and the margin frame them.
            const auto mm = [](double pt) {
                char buf[32];
                std::snprintf(buf, sizeof buf, "%.1fmm", pt / Impl::kPointsPerMm);
                return std::string(buf);
            };
            page.width = mm(m_impl->pageW);
            page.height = mm(m_impl->pageH);
            page.margin = m_impl->margin / m_impl->Fit(*s);
        }
        out = KySvgWriter::Write(*s, page);
        ok = !out.empty();
    } else {
        const Impl& m = *m_impl;
        const bool paper = m.pageW > 0 && s->width > 0 && s->height > 0;
        const double fit = paper ? m.Fit(*s) : 1.0;
        cairo_surface_t* doc = cairo_pdf_surface_create_for_stream(AppendBytes, &out, paper ? m.pageW : s->width,
                                                                   paper ? m.pageH : s->height);
        ok = WriteVector(doc, s, fit, paper ? (m.pageW - s->width * fit) / 2 : 0,
                         paper ? (m.pageH - s->height * fit) / 2 : 0);
    }
    if (!ok) out.clear();
    return out;
}
