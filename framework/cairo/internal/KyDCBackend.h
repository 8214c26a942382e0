// KyDCBackend: what a device context hands its drawing to. CDC keeps the whole GDI state
// machine and resolves every primitive to plain geometry with a resolved pen, brush and font
// before it calls a backend; a backend only rasterises (or records as vectors) what it is
// given, onto its target surface.
#pragma once

#include <kygraph/Font.h>
#include <kygraph/WinTypes.h>

#include <memory>
#include <string>

struct KySurface;

// A pen as drawn: style is one of PS_SOLID..PS_NULL (unknown styles and styled pens wider
// than one pixel already turned into PS_SOLID), width at least 1.
struct KyPen {
    int style = PS_SOLID;
    int width = 1;
    COLORREF color = 0;
};

struct KyBrush {
    bool null = false;
    COLORREF color = RGB(255, 255, 255);
};

// Part of an ellipse in continuous pixel space (pixel (i, j) covers [i, i+1) x [j, j+1)):
// centre, radii (>= 0) and parametric angles in radians, counter-clockwise as seen on screen.
// sweep is signed: negative runs clockwise; +-2*pi is the whole ellipse.
struct KyEllipseArc {
    double cx = 0, cy = 0, rx = 0, ry = 0;
    double start = 0, sweep = 0;
};

struct KyTextRun {
    const LOGFONTW* font = nullptr;
    std::string utf8;
    int x = 0, y = 0;        // reference point: top-left corner of the cell
    int escapement = 0;      // tenths of a degree, counter-clockwise, in [0, 3600)
    COLORREF textColor = 0;
    COLORREF bkColor = RGB(255, 255, 255);
    bool opaque = true;      // fill the (turned) cell with bkColor first
};

class KyDCBackend {
public:
    enum Kind { Raster, Vector };

    virtual ~KyDCBackend();

    virtual Kind GetKind() const = 0;
    // A backend of the same kind with no target, for a compatible memory DC.
    virtual std::unique_ptr<KyDCBackend> CreateCompatible() const = 0;

    // The surface drawn on (a reference is held); null when there is none.
    void SetTarget(KySurface* surface);
    KySurface* Target() const { return m_target; }

    // Each returns false when it could not draw; drawing that falls outside the target (or
    // onto an empty target) is a success. aliased asks for GDI's hard edges on raster targets.
    //
    // Connected segments through n points; in aliased mode (and for every one-pixel line on a
    // raster target) the last pixel of the last segment is left unpainted, as GDI does.
    virtual bool Polyline(const POINT* pts, int n, const KyPen& pen, bool aliased) = 0;
    virtual bool Arc(const KyEllipseArc& arc, const KyPen& pen, bool aliased) = 0;
    virtual bool Ellipse(const KyEllipseArc& ellipse, const KyPen& pen, const KyBrush& brush, bool aliased) = 0;
    // Fills [left, right) x [top, bottom) (a normalised rectangle).
    virtual bool FillRect(const RECT& rect, COLORREF color) = 0;
    // Fills the closed polygon (even-odd rule) with color at opacity alpha (0..1).
    virtual bool FillPolygon(const POINT* pts, int n, COLORREF color, double alpha, bool aliased) = 0;
    virtual bool Text(const KyTextRun& run, bool aliased) = 0;
    // The start (begin, with the part's name) or the end of a named part of the drawing;
    // only a vector surface keeps it.
    virtual void Group(const std::string& name, bool begin) { (void)name, (void)begin; }
    // Copies the w x h block of src at (xs, ys) to (x, y); arguments already clipped to both
    // surfaces.
    virtual bool Blit(int x, int y, int w, int h, KySurface* src, int xs, int ys) = 0;

protected:
    KyDCBackend() = default;
    // Called after the target changed, so a backend can drop what it built for the old one.
    virtual void OnTargetChanged() {}

private:
    KySurface* m_target = nullptr;
};

namespace Ky {
// The two backends: Cairo+Pango on ARGB32 image surfaces, and on recording surfaces whose
// contents are written out as SVG or PDF.
std::unique_ptr<KyDCBackend> CreateRasterBackend();
std::unique_ptr<KyDCBackend> CreateVectorBackend();
}  // namespace Ky
