#include <kygraph/KyGLineFamilies.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>

CKyGLineFamilies::CKyGLineFamilies(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGLineFamilies::toString() const { return CString(L"CKyGLineFamilies"); }

int CKyGLineFamilies::Draw(CDC* /*pDC*/)
{
    m_nLines = 0;
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    m_nLines = CKyGBackground::DrawOverlay(*chart);
    return 1;
}
