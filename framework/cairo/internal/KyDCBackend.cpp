#include "KyDCBackend.h"

#include "KyCairoBackend.h"
#include "KySurface.h"

KyDCBackend::~KyDCBackend() { Ky::ReleaseSurface(m_target); }

void KyDCBackend::SetTarget(KySurface* surface)
{
    if (surface == m_target) return;
    KySurface* old = m_target;
    m_target = Ky::RefSurface(surface);
    // The backend lets go of its drawing state on the old surface before the surface goes,
    // so that the surface is released by its last holder and its image can be reused.
    OnTargetChanged();
    Ky::ReleaseSurface(old);
}

namespace Ky {
std::unique_ptr<KyDCBackend> CreateRasterBackend() { return std::make_unique<KyCairoBackend>(KyDCBackend::Raster); }
std::unique_ptr<KyDCBackend> CreateVectorBackend() { return std::make_unique<KyCairoBackend>(KyDCBackend::Vector); }
}  // namespace Ky
