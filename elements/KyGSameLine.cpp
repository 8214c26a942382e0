#include <kygraph/KyGSameLine.h>

#include <kygraph/Saturate.h>

CKyGSameLine::CKyGSameLine(CKyGChart* pChart, double initialValue) : CKyGDrawBase(pChart), m_dValue(initialValue) {}

// The process path's name on purpose: no family of constant-value lines reports its own.
CString CKyGSameLine::toString() const { return CString(L"CKyGProcess"); }

int CKyGSameLine::FailWith(const CKyObject& source)
{
    m_strLastError = source.GetLastErrorString();
    return 0;
}

CPoint CKyGSameLine::CutAtTopEdge(int baseX, int fromY, CPoint to, int topY)
{
    // In doubles, so that differences of extreme pixels cannot overflow.
    const double dy1 = static_cast<double>(fromY) - topY;
    const double dy2 = static_cast<double>(topY) - to.y;
    const double dx = static_cast<double>(to.x) - baseX;
    const double span = dy2 + dy1;
    if (span == 0.0) return to;
    return CPoint(Ky::TruncToInt(baseX + dy1 * dx / span), topY);
}
