#include <kygraph/Bitmap.h>

#include <kygraph/DC.h>

namespace {
// The largest side a bitmap may have, as on the other platform.
constexpr int kMaxSide = 32767;
}  // namespace

CBitmap::~CBitmap() = default;

BOOL CBitmap::CreateCompatibleBitmap(CDC* pDC, int cx, int cy)
{
    if (m_bStock) return FALSE;
    DeleteObject();
    if (!pDC || !pDC->GetSafeHdc()) return FALSE;
    if (cx <= 0 || cy <= 0 || cx > kMaxSide || cy > kMaxSide) return FALSE;
    return AttachHandle(::CreateCompatibleBitmap(pDC->GetSafeHdc(), cx, cy));
}

BOOL CBitmap::DeleteObject() { return CGdiObject::DeleteObject(); }

CSize CBitmap::GetSize() const
{
    BITMAP bm{};
    if (!m_hObject || ::GetObjectW(m_hObject, sizeof bm, &bm) != sizeof bm) return CSize();
    return CSize(bm.bmWidth, bm.bmHeight);
}
