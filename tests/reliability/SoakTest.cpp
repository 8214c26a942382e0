// Soak: thousands of full redraws with random, seeded window sizes and settings (hostile ones
// among them), each followed by the host's own state points, processes and ratio lines and by
// repaints. Nothing may leak (the sanitizer build checks at exit) and resident memory must level
// off once the caches below the DC are warm.
//
// KY_SOAK_REDRAWS=n sets the number of full redraws: 10000 by default, 3000 in the
// AddressSanitizer build, where every allocation is tracked and 10000 would take too long for
// CI. KY_SOAK_SEED=n draws another sequence; a failure names the seed and the redraw.
#include "chart/ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyAS.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGSameAS.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyProcess.h>

#if defined(_WIN32)
#include <psapi.h>
#else
#include <malloc.h>
#include <unistd.h>
#endif

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

// GCC and clang say in different ways that AddressSanitizer is on.
#if defined(__SANITIZE_ADDRESS__)
#define KY_SOAK_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KY_SOAK_SANITIZED 1
#endif
#endif
#ifdef KY_SOAK_SANITIZED
constexpr int kDefaultRedraws = 3000;
constexpr bool kSanitized = true;
#else
constexpr int kDefaultRedraws = 10000;
constexpr bool kSanitized = false;
#endif
constexpr int kWarmUp = 500;
constexpr double kAllowedGrowthMiB = 8.0;

int EnvInt(const char* name, int fallback)
{
    const char* v = std::getenv(name);
    return v && *v ? std::atoi(v) : fallback;
}

// Resident memory in MiB, after handing freed heap pages back: what is counted is what the
// process still holds, not what the allocator keeps for reuse.
double ResidentMiB()
{
#if defined(_WIN32)
    PROCESS_MEMORY_COUNTERS pmc{};
    pmc.cb = sizeof pmc;
    K32GetProcessMemoryInfo(GetCurrentProcess(), &pmc, sizeof pmc);
    return static_cast<double>(pmc.WorkingSetSize) / (1024.0 * 1024.0);
#else
    malloc_trim(0);
    long pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
#endif
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

class Soak : public ChartFixture {
protected:
    void TearDown() override
    {
        CKyChart::InstanceGloble()->ResetDefaults();
        ChartFixture::TearDown();
    }

    bool Chance(double p) { return std::bernoulli_distribution(p)(rng); }
    double Uniform(double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); }
    int Between(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
    template <typename T, size_t N>
    T Pick(const T (&values)[N])
    {
        return values[Between(0, static_cast<int>(N) - 1)];
    }

    // Mostly sane values, now and then one no host should send.
    double Interval(std::initializer_list<double> sane)
    {
        static const double hostile[] = {0.0, -5.0, kNaN, kInf, 1e300, 1e-300};
        if (Chance(0.03)) return Pick(hostile);
        return *(sane.begin() + Between(0, static_cast<int>(sane.size()) - 1));
    }

    void RandomStyle(tagKyLineStyle& s)
    {
        static const int widths[] = {0, 1, 1, 2, 3, 5, -3, 40};
        static const int heights[] = {0, 5, 7, 7, 10, 14, 30, -7};
        s.crColor = static_cast<COLORREF>(Between(0, 0xFFFFFF));
        s.nPenStyle = Between(-1, 7);
        s.nWidth = Pick(widths);
        s.nTextHeight = Pick(heights);
    }

    // Each setting changes only now and then, so most redraws are ordinary ones.
    void RandomSettings()
    {
        CKyGDrawHstSetting& hst = set->m_DrawHstSetting;
        if (Chance(0.3)) hst.m_dDInterval = Interval({1, 2, 2.5, 5, 10});
        if (Chance(0.3)) hst.m_dTInterval = Interval({1, 2, 5, 10});
        if (Chance(0.3)) hst.m_dHInterval = Interval({2, 5, 10, 20});
        if (Chance(0.3)) hst.m_dRHInterval = Interval({5, 10, 20, 25});
        for (int* sw : {&hst.m_bShowASChart, &hst.m_bShowSameT, &hst.m_bShowSameD, &hst.m_bShowSameH,
                        &hst.m_bShowSameRH, &hst.m_bShowTitle, &hst.m_bWinter})
            if (Chance(0.2)) *sw = Pick({0, 1, 1, 7, -1});

        CKyGRangeSetting& range = set->m_RangeSetting;
        if (Chance(0.2)) {
            const double minT = Uniform(-40, 10), minD = Uniform(0, 10);
            range.SetMinT(minT), range.SetMaxT(Uniform(minT + 10, 90));
            range.SetMinD(minD), range.SetMaxD(Uniform(minD + 5, 100));
        } else if (Chance(0.02)) {
            static const double temps[] = {-150, -30, 20, 65, 95, kNaN};
            static const double ds[] = {-5, 0, 20, 50, 500, kNaN};
            range.SetMinT(Pick(temps)), range.SetMaxT(Pick(temps));
            range.SetMinD(Pick(ds)), range.SetMaxD(Pick(ds));
        }

        if (Chance(0.2)) {
            tagKyLineStyle* lines[] = {
                &set->m_StyleSetting.m_SameDStyle,   &set->m_StyleSetting.m_SameHStyle,
                &set->m_StyleSetting.m_SameTStyle,   &set->m_StyleSetting.m_SameRHStyle,
                &set->m_StyleSetting.m_SameASStyle,  &set->m_StyleSetting.m_ProcessStyle,
                &set->m_StyleSetting.m_ASChartStyle, &set->m_StyleSetting.m_FrameStyle};
            RandomStyle(*Pick(lines));
        }
        if (Chance(0.1)) {
            static const double sizes[] = {0, 3, 5, 9, -2, kNaN};
            tagKyPntStyle& p = set->m_StyleSetting.m_StaPntStyle;
            p.dSize = Pick(sizes);
            p.nTextHeight = Pick({0, 7, 12, -4});
        }
        if (Chance(0.05)) {
            set->m_dLeftMargin = Uniform(0, 80), set->m_dRightMargin = Uniform(0, 80);
            set->m_dBottomMargin = Uniform(0, 80), set->m_dTopMargin = Uniform(0, 80);
            set->m_dTLength = Uniform(2, 8), set->m_dDLength = Uniform(5, 20);
        } else if (Chance(0.01)) {
            set->m_dLeftMargin = Pick({-300.0, kNaN, 1e300});
            set->m_dTLength = Pick({0.0, -4.0, kInf});
        }
        if (Chance(0.05)) {
            hst.m_dSummerOutTdb = Uniform(-20, 50), hst.m_dSummerOutTwb = Uniform(-20, 40);
            hst.m_dWinterOutRH = Pick({37.0, 0.0, 150.0, kNaN});
        }
        if (Chance(0.05)) CKyChart::InstanceGloble()->SetGlobleB(Uniform(70000, 110000));
    }

    // Mostly windows up to 800 x 600; every 97th one larger, now and then an empty or tiny one.
    void RandomWindowSize(int i, int& cx, int& cy)
    {
        if (i % 97 == 0) {
            cx = Between(801, 1600), cy = Between(601, 1200);
        } else if (Chance(0.02)) {
            cx = Between(0, 40), cy = Between(0, 40);
        } else {
            cx = Between(200, 800), cy = Between(150, 600);
        }
    }

    // What a host draws over the chart: named points inside the range, one process through
    // them, ratio lines between them, and once in a while a point off the chart.
    void DrawOverlays()
    {
        const CKyGRangeSetting& range = set->m_RangeSetting;
        std::vector<CKyStaPnt> points;
        const int n = Between(0, 6);
        for (int k = 0; k < n; ++k) {
            CKyStaPnt p;
            const bool off = Chance(0.05);
            if (!p.SetBy_TdbandRH(off ? range.GetMaxT() + 10 : Uniform(range.GetMinT(), range.GetMaxT()),
                                  Uniform(0.05, 1.0)))
                continue;
            p.SetName(CString(std::to_wstring(k).c_str()));
            points.push_back(p);
        }
        for (const CKyStaPnt& p : points) {
            CKyGStaPnt marker;
            marker.SetValue(p);
            marker.SetDimEnable(Between(0, 1));
            marker.SetDimPosition(static_cast<CKyGStaPnt::DimPosition>(Between(-1, 4)));
            chart->Draw(&marker);
        }
        if (points.size() >= 2) {
            CKyStaPntArray path;
            for (CKyStaPnt& p : points) path.Add(p);
            CKyProcess process;
            CKyStaPnt mix;
            process.AddPath(CString(L"path"), path);
            process.AddMixing(CString(L"mix"), points[0], Uniform(0.1, 3), points[1], Uniform(0.1, 3), &mix);
            CKyGProcess element;
            element.SetValue(process);
            chart->Draw(&element);
        }
        for (size_t k = 1; k < points.size(); ++k) {
            CPoint a, b;
            if (!chart->Convert(points[k - 1], a) || !chart->Convert(points[k], b)) continue;
            CKyAS ratio;
            if (Chance(0.2))
                ratio.SetType(Chance(0.5) ? CKyAS::AS_POSITIVE_INF : CKyAS::AS_NEGATIVE_INF);
            else
                ratio.SetValue(Uniform(-20000, 20000));
            CKyGSameAS line;
            line.SetValue(ratio);
            line.SetDimEnable(Between(0, 1));
            line.SetStartPoint(a);
            line.SetEndPoint(b);
            chart->Draw(&line);
        }
    }

    std::mt19937 rng;
};

TEST_F(Soak, RandomRedrawsWithOverlaysNeitherLeakNorGrow)
{
    const int redraws = EnvInt("KY_SOAK_REDRAWS", kDefaultRedraws);
    const unsigned seed = static_cast<unsigned>(EnvInt("KY_SOAK_SEED", 20240611));
    rng.seed(seed);
    auto wnd = std::make_unique<CImageWnd>(800, 600);
    double warmMiB = 0.0;
    const auto start = std::chrono::steady_clock::now();

    for (int i = 0; i < redraws; ++i) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", redraw " << i);
        TearDown();
        SetUp();
        RandomSettings();

        int cx = 0, cy = 0;
        RandomWindowSize(i, cx, cy);
        if (Chance(0.05)) {
            wnd = std::make_unique<CImageWnd>(cx, cy, RGB(Between(0, 255), 255, 255));
        } else {
            ASSERT_TRUE(wnd->SetClientSize(cx, cy));
        }
        const bool destroyed = Chance(0.01) && wnd->DestroyWindow();
        chart->AttachDarwWnd(wnd.get());
        if (Chance(0.2)) set->m_dDrawScale = Chance(0.1) ? Pick({0.0, -1.0, kNaN, kInf, 50.0}) : Uniform(0.5, 3);

        const bool drawable = !destroyed && cx > 0 && cy > 0;
        ASSERT_EQ(chart->UptateDrawWnd(1) != 0, drawable) << cx << " x " << cy;
        DrawOverlays();
        EXPECT_EQ(chart->UptateDrawWnd(0) != 0, drawable);
        if (!destroyed && Chance(0.1)) {
            // A repaint after a resize without a full redraw copies what the surface holds.
            ASSERT_TRUE(wnd->SetClientSize(Between(0, 800), Between(0, 600)));
            chart->UptateDrawWnd(0);
        }
        if (destroyed) wnd = std::make_unique<CImageWnd>(800, 600);
        if (i + 1 == kWarmUp) warmMiB = ResidentMiB();
    }

    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double endMiB = ResidentMiB();
    std::printf("soak: %d redraws (seed %u) in %.1f s; resident %.1f MiB after %d, %.1f MiB at the end\n", redraws,
                seed, seconds, warmMiB, kWarmUp, endMiB);
    // The sanitizer's quarantine holds freed memory on purpose; there LeakSanitizer checks at exit.
    if (!kSanitized && redraws > kWarmUp) {
        EXPECT_LE(endMiB - warmMiB, kAllowedGrowthMiB);
    }
}

}  // namespace
