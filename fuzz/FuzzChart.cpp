// Process set-up of the targets that draw the chart, linked into each of them.
#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

// Before the first input: builds the chart singleton at the default settings (it fixes its
// enthalpy angle then, and a host builds it before changing them) and draws it once, so that
// loading the fonts is not charged to the first input's second.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    CKyGChart* chart = CKyGChart::GetKyGChart();
    CImageWnd wnd(200, 150);
    chart->AttachDarwWnd(&wnd);
    chart->UptateDrawWnd(1);
    chart->AttachDarwWnd(nullptr);
    return 0;
}
