// What can break only in an installed package: the umbrella header compiles on its own, the
// string table loads across the installed libraries, the version matches the package, and a
// redraw reaches the window's pixels. Exit status 0 when all hold.
#include <kygraph/KyGraph.h>

#include <cstdio>
#include <cstring>

namespace {

int failures = 0;

void Check(bool ok, const char* what)
{
    if (!ok) {
        std::fprintf(stderr, "consumer_check: %s\n", what);
        ++failures;
    }
}

}  // namespace

int main()
{
    Check(std::strcmp(KyGraphVersion().version, KYGRAPH_EXPECTED_VERSION) == 0, "library version differs from the package's");

    CImageWnd wnd(400, 300);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    Check(chart->UptateDrawWnd(1) != 0, "redraw failed");
    int inked = 0;
    for (int y = 0; y < 300; y += 3)
        for (int x = 0; x < 400; x += 3) inked += wnd.GetPixel(x, y) != RGB(255, 255, 255);
    Check(inked > 100, "the window shows no chart");

    Check(chart->IsValid(CPoint(0, 0)) == 0, "the window's corner maps to a state");
    Check(chart->GetLastErrorString() == L"指定点不在焓湿图的有效范围之内。", "string-table entry 103 did not load");

    CKyStaPnt hot;
    hot.SetBy_TdbandRH(90.0, 0.05);
    CKyProcess process;
    CKyStaPntArray path;
    path.Add(hot);
    process.AddPath(CString(L"p"), path);
    CKyGProcess element;
    element.SetValue(process);
    Check(chart->Draw(&element) == 0, "a process off the chart was drawn");
    Check(element.GetLastErrorString() == L"处理过程状态点中点无效。", "string-table entry 114 did not load");

    Check(StringUtils::DblToStr(2.5, 1) == L"2.5", "number formatting");
    if (failures == 0) std::printf("consumer_check: installed package OK\n");
    return failures == 0 ? 0 : 1;
}
