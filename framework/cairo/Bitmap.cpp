#include <kygraph/Bitmap.h>

#include <kygraph/DC.h>

#include "internal/KyDCBackend.h"
#include "internal/KySurface.h"

CBitmap::CBitmap(StockTag)
{
    m_bCreated = true;
    m_bStock = true;
}

CBitmap* CBitmap::GetStockBitmap()
{
    static CBitmap* const stock = new CBitmap(StockTag{});
    return stock;
}

CBitmap::~CBitmap() { Ky::ReleaseSurface(m_pSurface); }

BOOL CBitmap::CreateCompatibleBitmap(CDC* pDC, int cx, int cy)
{
    if (m_bStock) return FALSE;
    DeleteObject();
    if (!pDC || !pDC->GetSafeHdc() || !pDC->Backend()) return FALSE;
    if (cx <= 0 || cy <= 0 || cx > Ky::kMaxSurfaceSide || cy > Ky::kMaxSurfaceSide) return FALSE;
    const auto kind = pDC->Backend()->GetKind() == KyDCBackend::Vector ? KySurface::Vector : KySurface::Raster;
    // GDI's compatible bitmaps start black.
    m_pSurface = Ky::CreateSurface(kind, cx, cy, RGB(0, 0, 0));
    m_bCreated = m_pSurface != nullptr;
    // A chart drawn for paper keeps its line weights in the bitmaps it draws through.
    if (m_pSurface && pDC->Backend()->Target()) m_pSurface->penScale = pDC->Backend()->Target()->penScale;
    return m_bCreated ? TRUE : FALSE;
}

BOOL CBitmap::DeleteObject()
{
    if (m_bStock || !m_bCreated) return FALSE;
    // A DC that still has the bitmap selected keeps its own reference to the pixels.
    Ky::ReleaseSurface(m_pSurface);
    m_pSurface = nullptr;
    m_bCreated = false;
    return TRUE;
}

CSize CBitmap::GetSize() const { return m_pSurface ? CSize(m_pSurface->width, m_pSurface->height) : CSize(); }
