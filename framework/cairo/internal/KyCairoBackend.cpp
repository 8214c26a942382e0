#include "KyCairoBackend.h"

#include <kygraph/Saturate.h>

#include "KyGdiGeometry.h"
#include "KyPixelLine.h"
#include "KySurface.h"
#include "KyTextEngine.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

using Ky::PointD;
using Ky::RectD;

namespace {

// Pixel (i, j) covers [i, i+1) x [j, j+1): GDI's integer points are pixel centres.
constexpr double kCentre = 0.5;

PointD ArcPoint(const KyEllipseArc& a, double t) { return PointD{a.cx + a.rx * std::cos(t), a.cy - a.ry * std::sin(t)}; }

// The arc as cubic Beziers, at most a quarter turn each; no scaling, so a zero radius gives a
// flat path instead of a singular matrix (which would put the context into a sticky error).
void AppendBezierArc(cairo_t* cr, const KyEllipseArc& a)
{
    const double sweep = std::clamp(a.sweep, -2.0 * std::numbers::pi, 2.0 * std::numbers::pi);
    const int n = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / (std::numbers::pi / 2) - 1e-9)));
    const double step = sweep / n;
    const double k = 4.0 / 3.0 * std::tan(step / 4.0);
    PointD p = ArcPoint(a, a.start);
    cairo_move_to(cr, p.x, p.y);
    for (int i = 0; i < n; ++i) {
        const double t0 = a.start + step * i, t1 = t0 + step;
        const PointD q = ArcPoint(a, t1);
        const double d0x = -a.rx * std::sin(t0), d0y = -a.ry * std::cos(t0);
        const double d1x = -a.rx * std::sin(t1), d1y = -a.ry * std::cos(t1);
        cairo_curve_to(cr, p.x + k * d0x, p.y + k * d0y, q.x - k * d1x, q.y - k * d1y, q.x, q.y);
        p = q;
    }
}

bool PointIsSafe(const POINT& p) { return Ky::IsSafe(p.x) && Ky::IsSafe(p.y); }

// Where a pen's centre line runs relative to GDI's integer point: an odd width is centred on
// the pixel's centre and an even one on its edge, so that a pen of whole pixels covers whole
// pixels (a 2-pixel pen at row y paints rows y-1 and y in full) instead of smearing over one
// more in half tones.
double PenCentre(int width) { return width % 2 ? kCentre : 0.0; }
}  // namespace

KyCairoBackend::~KyCairoBackend()
{
    if (m_cr) cairo_destroy(m_cr);
}

std::unique_ptr<KyDCBackend> KyCairoBackend::CreateCompatible() const { return std::make_unique<KyCairoBackend>(m_kind); }

void KyCairoBackend::OnTargetChanged()
{
    if (m_cr) cairo_destroy(m_cr);
    m_cr = nullptr;
}

cairo_t* KyCairoBackend::Context()
{
    KySurface* t = Target();
    if (!t || !t->cs || cairo_surface_status(t->cs) != CAIRO_STATUS_SUCCESS) return nullptr;
    // Whoever asks for the context draws: pixels lent to another surface are copied first,
    // and a context made on the pixels before they were lent or taken back is stale.
    if (m_kind == Raster && !Ky::OwnPixels(t, true)) return nullptr;
    if (m_cr && (cairo_status(m_cr) != CAIRO_STATUS_SUCCESS || cairo_get_target(m_cr) != t->cs)) {
        cairo_destroy(m_cr);
        m_cr = nullptr;
    }
    if (!m_cr) m_cr = cairo_create(t->cs);
    return cairo_status(m_cr) == CAIRO_STATUS_SUCCESS ? m_cr : nullptr;
}

void KyCairoBackend::Keep(KyVectorItem&& item)
{
    KySurface* t = Target();
    if (m_kind != Vector || !t || !t->cs) return;
    // Whatever a fill of the whole surface covers can never show.
    if (item.kind == KyVectorItem::FillRect && item.rect.left <= 0 && item.rect.top <= 0 &&
        item.rect.right >= t->width && item.rect.bottom >= t->height)
        t->items.clear();
    t->items.push_back(std::move(item));
}

double KyCairoBackend::PenScale() const { return m_kind == Vector && Target() ? Target()->penScale : 1.0; }

double KyCairoBackend::Width() const { return Target() ? Target()->width : 0; }
double KyCairoBackend::Height() const { return Target() ? Target()->height : 0; }

// An empty target takes every drawing and shows none of it.
#define KY_CONTEXT_OR_RETURN(cr)                          \
    if (!Target()) return false;                          \
    cairo_t* cr = Context();                              \
    if (!cr) return Target()->cs == nullptr;

bool KyCairoBackend::Pixels(Ky::PixelBuffer& buf)
{
    KySurface* t = Target();
    if (m_kind != Raster || !t || !t->cs || cairo_surface_get_type(t->cs) != CAIRO_SURFACE_TYPE_IMAGE) return false;
    cairo_surface_flush(t->cs);
    buf = Ky::PixelBuffer{cairo_image_surface_get_data(t->cs), cairo_image_surface_get_stride(t->cs), t->width, t->height};
    return buf.data != nullptr;
}

void KyCairoBackend::StrokeWith(cairo_t* cr, const KyPen& pen, bool aliased, double dashOffset)
{
    cairo_set_antialias(cr, Aliased(aliased) ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
    const double k = PenScale();
    cairo_set_line_width(cr, pen.width * k);
    cairo_set_line_cap(cr, pen.width > 1 ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cr, pen.width > 1 ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_MITER);
    int count = 0;
    const int* dashes = Ky::CosmeticDashes(pen.style, count);
    double d[6];
    for (int i = 0; i < count; ++i) d[i] = dashes[i] * k;
    cairo_set_dash(cr, d, count, dashOffset * k);
    Ky::SetSourceColor(cr, pen.color);
    cairo_stroke(cr);
}

bool KyCairoBackend::Polyline(const POINT* pts, int n, const KyPen& pen, bool aliased)
{
    if (!pts || n < 2) return false;
    if (pen.style == PS_NULL) return Target() != nullptr;
    KY_CONTEXT_OR_RETURN(cr)
    if (m_kind == Vector) {
        KyVectorItem item;
        item.kind = KyVectorItem::Polyline;
        item.pts.assign(pts, pts + n);
        item.pen = pen;
        Keep(std::move(item));
    }
    Ky::PixelBuffer buf{};
    if (pen.width <= 1 && Pixels(buf)) {
        int count = 0;
        const int* dashes = Ky::CosmeticDashes(pen.style, count);
        std::int64_t styleIndex = 0;
        Ky::LineInk ink(pen.color);
        for (int i = 0; i + 1 < n; ++i) Ky::PixelLine(buf, pts[i], pts[i + 1], ink, !aliased, dashes, count, styleIndex);
        cairo_surface_mark_dirty(Target()->cs);
        return true;
    }
    cairo_save(cr);
    const double centre = PenCentre(pen.width);
    if (pen.width > 1 && Ky::StrokeCoversSurface(pts, n, pen.width, centre, Width(), Height())) {
        // Wider pens have round ends and joins, so the stroke paints every pixel. Cairo would
        // still build it whole, at a cost that grows with the pen: a 65535-pixel pen took
        // milliseconds a line.
        Ky::SetSourceColor(cr, pen.color);
        cairo_paint(cr);
    } else if (std::all_of(pts, pts + n, PointIsSafe)) {
        cairo_new_path(cr);
        cairo_move_to(cr, pts[0].x + centre, pts[0].y + centre);
        for (int i = 1; i < n; ++i) cairo_line_to(cr, pts[i].x + centre, pts[i].y + centre);
        StrokeWith(cr, pen, aliased, 0.0);
    } else {
        // Far-away points: each segment is clipped to the surface (widened by the pen) and
        // stroked on its own, the dash pattern resuming where the unclipped line would be.
        const double m = pen.width / 2.0 + 2.0;
        const RectD clip{-m, -m, Width() + m, Height() + m};
        double along = 0.0;
        for (int i = 0; i + 1 < n; ++i) {
            PointD a{pts[i].x + centre, pts[i].y + centre}, b{pts[i + 1].x + centre, pts[i + 1].y + centre};
            const double len = std::hypot(b.x - a.x, b.y - a.y);
            double t0 = 0.0;
            if (Ky::ClipSegment(a, b, clip, &t0)) {
                cairo_new_path(cr);
                cairo_move_to(cr, a.x, a.y);
                cairo_line_to(cr, b.x, b.y);
                StrokeWith(cr, pen, aliased, std::fmod(along + t0 * len, 1e6));
            }
            along = std::fmod(along + len, 1e6);  // 1e6 is a multiple of every dash period
        }
    }
    cairo_restore(cr);
    return true;
}

void KyCairoBackend::StrokeArc(cairo_t* cr, const KyEllipseArc& arc, const KyPen& pen, bool aliased)
{
    if (Ky::ArcIsSafe(arc)) {
        cairo_new_path(cr);
        AppendBezierArc(cr, arc);
        if (std::fabs(arc.sweep) >= 2.0 * std::numbers::pi) cairo_close_path(cr);
        StrokeWith(cr, pen, aliased, 0.0);
        return;
    }
    // A huge ellipse: flatten it and keep only what passes near the surface, unless none does
    // (flattening one takes up to 600000 points).
    const double m = pen.width / 2.0 + 2.0;
    if (Ky::SurfaceAgainstEllipse(arc, Width(), Height(), m) != Ky::EllipseSide::Near) return;
    std::vector<PointD> pts;
    Ky::FlattenArc(arc, pts);
    const RectD clip{-m, -m, Width() + m, Height() + m};
    bool open = false;
    for (size_t i = 0; i + 1 < pts.size(); ++i) {
        PointD a = pts[i], b = pts[i + 1];
        double t0 = 0.0, t1 = 1.0;
        if (!Ky::ClipSegment(a, b, clip, &t0, &t1)) {
            if (open) StrokeWith(cr, pen, aliased, 0.0);
            open = false;
            continue;
        }
        if (!open || t0 > 0.0) {
            if (open) StrokeWith(cr, pen, aliased, 0.0);
            cairo_new_path(cr);
            cairo_move_to(cr, a.x, a.y);
            open = true;
        }
        cairo_line_to(cr, b.x, b.y);
        if (t1 < 1.0) {
            StrokeWith(cr, pen, aliased, 0.0);
            open = false;
        }
    }
    if (open) StrokeWith(cr, pen, aliased, 0.0);
}

bool KyCairoBackend::Arc(const KyEllipseArc& arc, const KyPen& pen, bool aliased)
{
    if (pen.style == PS_NULL) return Target() != nullptr;
    KY_CONTEXT_OR_RETURN(cr)
    if (m_kind == Vector) {
        KyVectorItem item;
        item.kind = KyVectorItem::Arc;
        item.arc = arc;
        item.pen = pen;
        Keep(std::move(item));
    }
    cairo_save(cr);
    StrokeArc(cr, arc, pen, aliased);
    cairo_restore(cr);
    return true;
}

bool KyCairoBackend::Ellipse(const KyEllipseArc& e, const KyPen& pen, const KyBrush& brush, bool aliased)
{
    KY_CONTEXT_OR_RETURN(cr)
    if (m_kind == Vector) {
        KyVectorItem item;
        item.kind = KyVectorItem::Ellipse;
        item.arc = e;
        item.pen = pen;
        item.brush = brush;
        Keep(std::move(item));
    }
    cairo_save(cr);
    if (!brush.null) {
        cairo_new_path(cr);
        const Ky::EllipseSide side =
            Ky::ArcIsSafe(e) ? Ky::EllipseSide::Near : Ky::SurfaceAgainstEllipse(e, Width(), Height(), 2.0);
        if (side == Ky::EllipseSide::Inside) {
            cairo_rectangle(cr, 0.0, 0.0, Width(), Height());
        } else if (side == Ky::EllipseSide::Outside) {
            // nothing of it reaches the surface: the empty path fills nothing
        } else if (Ky::ArcIsSafe(e)) {
            AppendBezierArc(cr, e);
            cairo_close_path(cr);
        } else {
            std::vector<PointD> poly;
            Ky::FlattenArc(e, poly);
            Ky::ClipPolygon(poly, RectD{-2.0, -2.0, Width() + 2.0, Height() + 2.0});
            for (size_t i = 0; i < poly.size(); ++i)
                (i == 0 ? cairo_move_to : cairo_line_to)(cr, poly[i].x, poly[i].y);
            cairo_close_path(cr);
        }
        cairo_set_antialias(cr, Aliased(aliased) ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
        Ky::SetSourceColor(cr, brush.color);
        cairo_fill(cr);
    }
    if (pen.style != PS_NULL) StrokeArc(cr, e, pen, aliased);
    cairo_restore(cr);
    return true;
}

bool KyCairoBackend::FillRect(const RECT& rc, COLORREF color)
{
    // A fill of every pixel needs none of the pixels shared before it, only memory of its own.
    if (KySurface* s = Target(); m_kind == Raster && s && rc.left <= 0 && rc.top <= 0 && rc.right >= s->width &&
                                  rc.bottom >= s->height && !Ky::OwnPixels(s, false))
        return false;
    KY_CONTEXT_OR_RETURN(cr)
    const double l = std::max<double>(rc.left, 0.0), t = std::max<double>(rc.top, 0.0);
    const double r = std::min<double>(rc.right, Width()), b = std::min<double>(rc.bottom, Height());
    if (!(l < r && t < b)) return true;
    if (m_kind == Vector) {
        KyVectorItem item;
        item.kind = KyVectorItem::FillRect;
        item.rect = RECT{static_cast<LONG>(l), static_cast<LONG>(t), static_cast<LONG>(r), static_cast<LONG>(b)};
        item.brush.color = color;
        Keep(std::move(item));
    }
    Ky::PixelBuffer buf{};
    if (Pixels(buf)) {
        // A chart's whole-surface clear is the largest fill there is: straight into memory.
        Ky::PixelFill(buf, RECT{static_cast<LONG>(l), static_cast<LONG>(t), static_cast<LONG>(r), static_cast<LONG>(b)}, color);
        cairo_surface_mark_dirty(Target()->cs);
        return true;
    }
    cairo_save(cr);
    cairo_new_path(cr);
    cairo_rectangle(cr, l, t, r - l, b - t);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    Ky::SetSourceColor(cr, color);
    cairo_fill(cr);
    cairo_restore(cr);
    return true;
}

void KyCairoBackend::Group(const std::string& name, bool begin)
{
    if (m_kind != Vector) return;
    KyVectorItem item;
    item.kind = begin ? KyVectorItem::GroupBegin : KyVectorItem::GroupEnd;
    item.utf8 = name;
    Keep(std::move(item));
}

bool KyCairoBackend::FillPolygon(const POINT* pts, int n, COLORREF color, double alpha, bool aliased)
{
    if (!pts || n < 3) return false;
    KY_CONTEXT_OR_RETURN(cr)
    // Cut in doubles: what remains lies within Cairo's fixed-point range whatever the input.
    std::vector<PointD> poly;
    for (int i = 0; i < n; ++i) poly.push_back(PointD{double(pts[i].x), double(pts[i].y)});
    Ky::ClipPolygon(poly, RectD{-2.0, -2.0, Width() + 2.0, Height() + 2.0});
    if (poly.size() < 3) return true;
    if (m_kind == Vector) {
        KyVectorItem item;
        item.kind = KyVectorItem::Polygon;
        for (const PointD& p : poly) item.pts.push_back(POINT{static_cast<LONG>(std::lround(p.x)), static_cast<LONG>(std::lround(p.y))});
        item.brush.color = color;
        item.alpha = std::clamp(alpha, 0.0, 1.0);
        Keep(std::move(item));
    }
    cairo_save(cr);
    cairo_new_path(cr);
    cairo_move_to(cr, poly[0].x + kCentre, poly[0].y + kCentre);
    for (size_t i = 1; i < poly.size(); ++i) cairo_line_to(cr, poly[i].x + kCentre, poly[i].y + kCentre);
    cairo_close_path(cr);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_set_antialias(cr, Aliased(aliased) ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
    cairo_set_source_rgba(cr, GetRValue(color) / 255.0, GetGValue(color) / 255.0, GetBValue(color) / 255.0,
                          std::clamp(alpha, 0.0, 1.0));
    cairo_fill(cr);
    cairo_restore(cr);
    return true;
}

bool KyCairoBackend::Text(const KyTextRun& run, bool aliased)
{
    if (!Target() || !run.font) return false;
    KyTextEngine& engine = KyTextEngine::Instance();
    auto lock = engine.Lock();
    KyTextEngine::Font font;
    if (!engine.Resolve(*run.font, font)) return false;
    if (run.utf8.empty()) return true;
    const KyTextEngine::Layout* layout = engine.GetLayout(font, run.utf8, Aliased(aliased));
    if (!layout) return false;
    const CSize ext = engine.Extent(font, *layout);

    // The turned cell: local x runs along the text, local y down the cell.
    const double angle = run.escapement * std::numbers::pi / 1800.0;
    const double c = std::cos(angle), s = std::sin(angle);
    const double w = std::max<double>(ext.cx, layout->width * font.scale), h = font.cell;
    double minX = run.x, maxX = run.x, minY = run.y, maxY = run.y;
    for (const PointD& p : {PointD{w, 0}, PointD{0, h}, PointD{w, h}}) {
        const double x = run.x + p.x * c + p.y * s, y = run.y - p.x * s + p.y * c;
        minX = std::min(minX, x), maxX = std::max(maxX, x), minY = std::min(minY, y), maxY = std::max(maxY, y);
    }
    // Skipping text that misses the surface is what keeps far-away labels cheap.
    if (maxX < 0 || maxY < 0 || minX > Width() || minY > Height()) return true;
    if (!Ky::IsSafe(minX) || !Ky::IsSafe(maxX) || !Ky::IsSafe(minY) || !Ky::IsSafe(maxY)) return false;

    cairo_t* cr = Context();
    if (!cr) return Target()->cs == nullptr;
    if (m_kind == Vector) {
        KyVectorItem item;
        item.kind = KyVectorItem::Text;
        item.utf8 = run.utf8;
        item.x = run.x;
        item.y = run.y;
        item.escapement = run.escapement;
        item.textColor = run.textColor;
        item.bkColor = run.bkColor;
        item.opaque = run.opaque;
        item.family = engine.FamilyOf(font);
        item.weight = run.font->lfWeight <= 0 ? FW_NORMAL : std::clamp<int>(run.font->lfWeight, 100, 1000);
        item.italic = run.font->lfItalic != 0;
        item.em = static_cast<double>(font.layoutSize) / PANGO_SCALE * font.scale;
        item.cell = font.cell;
        item.ascent = font.ascent;
        item.width = ext.cx;
        Keep(std::move(item));
    }
    Ky::PixelBuffer buf{};
    // An upright cell of whole pixels: its pixels are set rather than Cairo filling a path.
    const bool wholeCell = run.escapement == 0 && font.cell == std::floor(font.cell) && font.cell < 1e6;
    if (run.opaque && wholeCell && Pixels(buf)) {
        Ky::PixelFill(buf,
                      RECT{run.x, run.y, Ky::SatAdd(run.x, static_cast<int>(ext.cx)), Ky::SatAdd(run.y, static_cast<int>(font.cell))},
                      run.bkColor);
        cairo_surface_mark_dirty(Target()->cs);
    }
    cairo_save(cr);
    cairo_translate(cr, run.x, run.y);
    cairo_rotate(cr, -angle);  // Cairo turns clockwise on screen, escapement counter-clockwise
    if (run.opaque && !buf.data) {
        cairo_new_path(cr);
        cairo_rectangle(cr, 0, 0, ext.cx, font.cell);
        cairo_set_antialias(cr, Aliased(aliased) ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
        Ky::SetSourceColor(cr, run.bkColor);
        cairo_fill(cr);
    }
    // The cell's top is the baseline less the selected font's ascent, whatever fallback
    // fonts the line used.
    cairo_translate(cr, 0, font.ascent - layout->baseline * font.scale);
    cairo_scale(cr, font.scale, font.scale);
    cairo_move_to(cr, 0, 0);
    Ky::SetSourceColor(cr, run.textColor);
    // Only text beyond the largest shaped size is scaled up and filled as outlines. Every
    // other size is off 1 by no more than its rounding to Pango units, and draws from the
    // glyph cache.
    const bool beyondLayout = font.layoutSize >= std::lround(KyTextEngine::kMaxLayoutEm * PANGO_SCALE);
    if (beyondLayout && font.scale > 1.0) {
        cairo_new_path(cr);
        cairo_move_to(cr, 0, 0);
        pango_cairo_layout_path(cr, layout->layout);
        cairo_set_antialias(cr, Aliased(aliased) ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
        cairo_fill(cr);
    } else {
        pango_cairo_show_layout(cr, layout->layout);
    }
    cairo_restore(cr);
    return true;
}

bool KyCairoBackend::Blit(int x, int y, int w, int h, KySurface* src, int xs, int ys)
{
    if (!src) return false;
    if (KySurface* t = Target(); m_kind == Raster && t && x == 0 && y == 0 && xs == 0 && ys == 0 && w == t->width &&
                                  h == t->height) {
        // The whole of one surface onto the whole of another: shared, not copied. The context
        // goes first, so that the pixels this surface gives up are free to be reused.
        if (m_cr) cairo_destroy(m_cr);
        m_cr = nullptr;
        if (Ky::SharePixels(t, src)) return true;
    }
    KY_CONTEXT_OR_RETURN(cr)
    if (!src->cs || w <= 0 || h <= 0) return true;
    if (m_kind == Vector && src->kind == KySurface::Vector) {
        // The block's drawing joins this surface's list, moved to where it lands.
        const std::vector<KyVectorItem> from = src->items;  // a copy: src may be the target
        const int dx = Ky::SatSub(x, xs), dy = Ky::SatSub(y, ys);
        for (KyVectorItem item : from) {
            for (POINT& p : item.pts) p.x = Ky::SatAdd(p.x, dx), p.y = Ky::SatAdd(p.y, dy);
            item.arc.cx += dx, item.arc.cy += dy;
            const RECT& r = item.rect;
            item.rect = RECT{std::max(Ky::SatAdd(r.left, dx), x), std::max(Ky::SatAdd(r.top, dy), y),
                             std::min(Ky::SatAdd(r.right, dx), Ky::SatAdd(x, w)),
                             std::min(Ky::SatAdd(r.bottom, dy), Ky::SatAdd(y, h))};
            item.x = Ky::SatAdd(item.x, dx), item.y = Ky::SatAdd(item.y, dy);
            Keep(std::move(item));
        }
    }
    cairo_save(cr);
    cairo_surface_t* from = Ky::ImageOf(src);
    double ox = static_cast<double>(x) - xs, oy = static_cast<double>(y) - ys;
    cairo_surface_t* copy = nullptr;
    if (src == Target()) {
        // A copy within one surface goes through a snapshot of the source block.
        copy = cairo_surface_create_similar(src->cs, CAIRO_CONTENT_COLOR_ALPHA, w, h);
        cairo_t* c2 = cairo_create(copy);
        cairo_set_source_surface(c2, from, -xs, -ys);
        cairo_set_operator(c2, CAIRO_OPERATOR_SOURCE);
        cairo_paint(c2);
        cairo_destroy(c2);
        from = copy;
        ox = x;
        oy = y;
    }
    cairo_set_source_surface(cr, from, ox, oy);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
    // Raster to raster copies the pixels as they are; a vector target takes the source over
    // what is there, which keeps the SVG/PDF output free of image fallbacks.
    cairo_set_operator(cr, m_kind == Raster && src->kind == KySurface::Raster ? CAIRO_OPERATOR_SOURCE
                                                                               : CAIRO_OPERATOR_OVER);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_new_path(cr);
    cairo_rectangle(cr, x, y, w, h);
    cairo_fill(cr);
    cairo_restore(cr);
    if (copy) cairo_surface_destroy(copy);
    return true;
}
