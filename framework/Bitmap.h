// CBitmap: a drawing surface selected into a memory DC. Created compatible with a DC: on
// Windows a GDI bitmap of the DC's format; on Linux a raster DC gives an ARGB32 pixel
// surface, a vector DC (SVG/PDF) a recording surface whose block transfer to the vector DC
// stays vector.
#pragma once

#include <kygraph/GdiObject.h>
#include <kygraph/Size.h>

class CDC;
struct KySurface;  // defined by the backends

class KYFW_API CBitmap : public CGdiObject {
public:
    CBitmap() = default;
    ~CBitmap() override;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    Kind GetKind() const override { return KindBitmap; }
    // FALSE (and empty) for a null or invalid DC, a size <= 0, a side above 32767 pixels, or
    // when the surface cannot be allocated.
    BOOL CreateCompatibleBitmap(CDC* pDC, int cx, int cy);
    BOOL DeleteObject() override;
    CSize GetSize() const;

#if !defined(_WIN32)
    KySurface* Surface() const { return m_pSurface; }

    // What a fresh memory DC holds: a bitmap without pixels, so drawing does nothing.
    static CBitmap* GetStockBitmap();

private:
    struct StockTag {};
    explicit CBitmap(StockTag);

    KySurface* m_pSurface = nullptr;
#endif
};
