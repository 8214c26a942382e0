#include "KyDCBackend.h"

#include "KyCairoBackend.h"
#include "KySurface.h"

KyDCBackend::~KyDCBackend() { Ky::ReleaseSurface(m_target); }

void KyDCBackend::SetTarget(KySurface* surface)
{
    if (surface == m_target) return;
    Ky::RefSurface(surface);
    Ky::ReleaseSurface(m_target);
    m_target = surface;
    OnTargetChanged();
}

namespace Ky {
std::unique_ptr<KyDCBackend> CreateRasterBackend() { return std::make_unique<KyCairoBackend>(KyDCBackend::Raster); }
std::unique_ptr<KyDCBackend> CreateVectorBackend() { return std::make_unique<KyCairoBackend>(KyDCBackend::Vector); }
}  // namespace Ky
