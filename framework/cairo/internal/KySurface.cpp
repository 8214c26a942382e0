#include "KySurface.h"

namespace Ky {

void SetSourceColor(cairo_t* cr, COLORREF c)
{
    cairo_set_source_rgb(cr, GetRValue(c) / 255.0, GetGValue(c) / 255.0, GetBValue(c) / 255.0);
}

KySurface* CreateSurface(KySurface::Kind kind, int cx, int cy, COLORREF fill)
{
    if (cx < 0 || cy < 0 || cx > kMaxSurfaceSide || cy > kMaxSurfaceSide) return nullptr;
    cairo_surface_t* cs = nullptr;
    if (cx > 0 && cy > 0) {
        if (kind == KySurface::Raster) {
            cs = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cx, cy);
        } else {
            cairo_rectangle_t extents{0, 0, static_cast<double>(cx), static_cast<double>(cy)};
            cs = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents);
        }
        if (cairo_surface_status(cs) != CAIRO_STATUS_SUCCESS) {
            cairo_surface_destroy(cs);
            return nullptr;
        }
        cairo_t* cr = cairo_create(cs);
        SetSourceColor(cr, fill);
        cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
        cairo_paint(cr);
        bool ok = cairo_status(cr) == CAIRO_STATUS_SUCCESS;
        cairo_destroy(cr);
        if (!ok) {
            cairo_surface_destroy(cs);
            return nullptr;
        }
    }
    auto* s = new KySurface;
    s->kind = kind;
    s->width = cx;
    s->height = cy;
    s->cs = cs;
    return s;
}

KySurface* RefSurface(KySurface* s)
{
    if (s) s->refs.fetch_add(1, std::memory_order_relaxed);
    return s;
}

void ReleaseSurface(KySurface* s)
{
    if (!s || s->refs.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    if (s->cs) {
        // cairo 1.16's SVG output keeps a reference to every recording surface it replayed
        // and never drops it; finishing frees the recorded drawing all the same (surfaces
        // that recorded a copy of this one keep their copy).
        if (s->kind == KySurface::Vector) cairo_surface_finish(s->cs);
        cairo_surface_destroy(s->cs);
    }
    delete s;
}

COLORREF SurfacePixel(const KySurface* s, int x, int y)
{
    if (!s || !s->cs || s->kind != KySurface::Raster) return 0xFFFFFFFF;
    if (x < 0 || y < 0 || x >= s->width || y >= s->height) return 0xFFFFFFFF;
    cairo_surface_flush(s->cs);
    const unsigned char* data = cairo_image_surface_get_data(s->cs);
    if (!data) return 0xFFFFFFFF;
    const int stride = cairo_image_surface_get_stride(s->cs);
    std::uint32_t px = *reinterpret_cast<const std::uint32_t*>(data + static_cast<long>(y) * stride + x * 4);
    unsigned a = px >> 24;
    if (a == 0) return RGB(0, 0, 0);
    // Pixels are premultiplied; undo it so a half-covered pixel reads as its own colour.
    auto un = [a](unsigned v) { return static_cast<BYTE>(a == 255 ? v : (v * 255 + a / 2) / a); };
    return RGB(un((px >> 16) & 0xFF), un((px >> 8) & 0xFF), un(px & 0xFF));
}

}  // namespace Ky
