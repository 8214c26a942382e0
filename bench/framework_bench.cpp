// Cost of the framework's drawing primitives on a 1000 x 800 raster surface, used the way
// the chart uses them (a memory DC with a bitmap; text creates and releases its font per call).
#include <kygraph/Bitmap.h>
#include <kygraph/DC.h>
#include <kygraph/Font.h>
#include <kygraph/Pen.h>

#include <benchmark/benchmark.h>

namespace {

class Surface {
public:
    explicit Surface(bool antialias = true)
    {
        m_dc.CreateCompatibleDC(nullptr);
        m_bmp.CreateCompatibleBitmap(&m_dc, 1000, 800);
        m_dc.SelectObject(&m_bmp);
        m_dc.FillSolidRect(0, 0, 1000, 800, RGB(255, 255, 255));
        m_dc.SetAntialias(antialias);
    }
    CDC& dc() { return m_dc; }

private:
    CDC m_dc;
    CBitmap m_bmp;
};

void BM_LineTo(benchmark::State& state)
{
    Surface s(state.range(0) != 0);
    CPen pen(static_cast<int>(state.range(1)), 1, RGB(200, 0, 0));
    s.dc().SelectObject(&pen);
    int i = 0;
    for (auto _ : state) {
        const int x = (i * 37) % 900, y = (i * 53) % 700;
        s.dc().MoveTo(x, y);
        benchmark::DoNotOptimize(s.dc().LineTo(x + 150, y + 90));
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
// Arguments: antialiased, pen style.
BENCHMARK(BM_LineTo)->ArgNames({"aa", "style"})->Args({1, PS_SOLID})->Args({0, PS_SOLID})->Args({1, PS_DASH})->Args({0, PS_DASH});

void BM_Polyline100(benchmark::State& state)
{
    Surface s(state.range(0) != 0);
    CPen pen(PS_SOLID, 1, RGB(0, 0, 200));
    s.dc().SelectObject(&pen);
    POINT pts[100];
    for (int k = 0; k < 100; ++k) pts[k] = POINT{50 + k * 9, 400 - (k * k) % 300};
    for (auto _ : state) benchmark::DoNotOptimize(s.dc().Polyline(pts, 100));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Polyline100)->ArgName("aa")->Arg(1)->Arg(0);

void BM_Arc(benchmark::State& state)
{
    Surface s;
    CPen pen(PS_SOLID, 1, RGB(0, 120, 0));
    s.dc().SelectObject(&pen);
    for (auto _ : state) benchmark::DoNotOptimize(s.dc().Arc(400, 300, 600, 500, 500, 600, 700, 400));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Arc);

void BM_EllipseMarker(benchmark::State& state)
{
    Surface s;
    CPen pen(PS_SOLID, 1, RGB(0, 0, 0));
    s.dc().SelectObject(&pen);
    for (auto _ : state) benchmark::DoNotOptimize(s.dc().Ellipse(495, 395, 505, 405));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EllipseMarker);

// As the chart's text primitive does it: a font per call, selected, drawn, released.
void BM_TextOut(benchmark::State& state)
{
    Surface s;
    const CString texts[] = {CString("25.5"), CString("湿空气焓湿图")};
    const CString& text = texts[state.range(0)];
    const int escapement = static_cast<int>(state.range(1));
    int i = 0;
    for (auto _ : state) {
        LOGFONT lf{};
        lf.lfHeight = 14;
        lf.lfWeight = FW_NORMAL;
        lf.lfEscapement = lf.lfOrientation = escapement;
        CFont font;
        font.CreateFontIndirect(&lf);
        CFont* old = s.dc().SelectObject(&font);
        benchmark::DoNotOptimize(s.dc().TextOut(100 + (i * 37) % 800, 100 + (i * 53) % 600, text));
        s.dc().SelectObject(old);
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
// Arguments: 0 digits / 1 Chinese, escapement in tenths of a degree.
BENCHMARK(BM_TextOut)->ArgNames({"zh", "esc"})->Args({0, 0})->Args({1, 0})->Args({0, 450})->Args({1, 450});

void BM_GetTextExtent(benchmark::State& state)
{
    Surface s;
    LOGFONT lf{};
    lf.lfHeight = 14;
    CFont font;
    font.CreateFontIndirect(&lf);
    s.dc().SelectObject(&font);
    const CString text = state.range(0) ? CString("湿空气焓湿图") : CString("25.5");
    for (auto _ : state) benchmark::DoNotOptimize(s.dc().GetTextExtent(text));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetTextExtent)->ArgName("zh")->Arg(0)->Arg(1);

// A label the cache has not seen: shaping cost (distinct numbers each call).
void BM_TextOutUncached(benchmark::State& state)
{
    Surface s;
    LOGFONT lf{};
    lf.lfHeight = 14;
    CFont font;
    font.CreateFontIndirect(&lf);
    s.dc().SelectObject(&font);
    int i = 0;
    for (auto _ : state) {
        CString text;
        text.Format(L"%d.%d", 100000 + i, i % 10);
        benchmark::DoNotOptimize(s.dc().TextOut(100 + (i * 37) % 800, 100 + (i * 53) % 600, text));
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_TextOutUncached);

}  // namespace
