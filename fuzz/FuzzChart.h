// Set-up shared by the targets that draw the chart.
#pragma once

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

namespace fuzz {

// For LLVMFuzzerInitialize: builds the chart singleton at the default settings (it fixes its
// enthalpy angle then, and a host builds it before changing them) and draws it once, so that
// loading the fonts is not charged to the first input's second.
inline void PrepareChart()
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    CImageWnd wnd(200, 150);
    chart->AttachDarwWnd(&wnd);
    chart->UptateDrawWnd(1);
    chart->AttachDarwWnd(nullptr);
}

}  // namespace fuzz
