// KyCairoBackend: draws what CDC hands it with Cairo (shapes) and Pango (text) onto any Cairo
// surface. The raster and vector backends differ only in the surfaces they make and in
// whether GDI's aliased one-pixel lines apply. Two Cairo traps shape this code: errors are
// sticky (a context that failed once draws nothing more, so it is re-created), and
// coordinates are 24.8 fixed point (far-away geometry is clipped in double first).
#pragma once

#include "KyDCBackend.h"
#include "KyPixelLine.h"
#include "KyVectorItem.h"

#include <cairo.h>

class KyCairoBackend : public KyDCBackend {
public:
    ~KyCairoBackend() override;

    Kind GetKind() const override { return m_kind; }
    std::unique_ptr<KyDCBackend> CreateCompatible() const override;

    bool Polyline(const POINT* pts, int n, const KyPen& pen, bool aliased) override;
    bool Arc(const KyEllipseArc& arc, const KyPen& pen, bool aliased) override;
    bool Ellipse(const KyEllipseArc& ellipse, const KyPen& pen, const KyBrush& brush, bool aliased) override;
    bool FillRect(const RECT& rect, COLORREF color) override;
    bool FillPolygon(const POINT* pts, int n, COLORREF color, double alpha, bool aliased) override;
    void Group(const std::string& name, bool begin) override;
    bool Text(const KyTextRun& run, bool aliased) override;
    bool Blit(int x, int y, int w, int h, KySurface* src, int xs, int ys) override;

    explicit KyCairoBackend(Kind kind) : m_kind(kind) {}

protected:
    void OnTargetChanged() override;

private:
    // The context on the target, fresh if the last one failed; null when there is nothing to
    // draw on (no target, an empty one, or a surface in error).
    cairo_t* Context();
    bool Aliased(bool aliased) const { return aliased && m_kind == Raster; }
    // The target's pixels, for drawing straight into them: raster image targets only, flushed.
    // Called after Context(), which has made them the target's own.
    bool Pixels(Ky::PixelBuffer& buf);
    // Strokes the current path with pen (dash, width, caps) and clears it.
    void StrokeWith(cairo_t* cr, const KyPen& pen, bool aliased, double dashOffset);
    void StrokeArc(cairo_t* cr, const KyEllipseArc& arc, const KyPen& pen, bool aliased);
    // Whether the surface, widened by margin, is all the geometry must be clipped to.
    double Width() const;
    double Height() const;
    // Vector targets: keeps the primitive in the target's display list.
    void Keep(KyVectorItem&& item);
    // Vector targets: the target's pen scale; 1 on raster ones.
    double PenScale() const;

    Kind m_kind;
    cairo_t* m_cr = nullptr;
};
