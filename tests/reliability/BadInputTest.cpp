// Calls a host makes with no window, a window that is gone or empty, or before the first
// redraw: each ends in the plain 0 it owes (an attach always gives 1), runs no element and
// leaves the chart's last error alone, while the pixel mapping keeps working.
#include "chart/ChartTestSupport.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyAS.h>
#include <kygraph/KyGASChart.h>
#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGSameAS.h>
#include <kygraph/KyGSameD.h>
#include <kygraph/KyGSameH.h>
#include <kygraph/KyGSameRH.h>
#include <kygraph/KyGSameT.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyProcess.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

const wchar_t* const kOutOfRange = L"指定点不在焓湿图的有效范围之内。";
const wchar_t* const kUntouched = L"left by the test";

std::string Utf8(const CString& s) { return s.ToUtf8(); }

CKyStaPnt State(double tdb, double rh)
{
    CKyStaPnt p;
    EXPECT_TRUE(p.SetBy_TdbandRH(tdb, rh));
    return p;
}

// One element of every class, each with a value it draws on a healthy surface.
std::vector<std::pair<const char*, std::unique_ptr<CKyGDrawBase>>> EveryElement()
{
    std::vector<std::pair<const char*, std::unique_ptr<CKyGDrawBase>>> out;
    auto line = [&](const char* name, auto elem, double value) {
        elem->SetValue(value);
        out.emplace_back(name, std::move(elem));
    };
    out.emplace_back("frame", std::make_unique<CKyGChartFrame>());
    out.emplace_back("d ruler", std::make_unique<CKyGDRuler>());
    out.emplace_back("h ruler", std::make_unique<CKyGHRuler>());
    line("isotherm", std::make_unique<CKyGSameT>(), 25.0);
    line("constant d", std::make_unique<CKyGSameD>(), 15.0);
    line("constant h", std::make_unique<CKyGSameH>(), 50.0);
    line("rh curve", std::make_unique<CKyGSameRH>(), 0.5);
    out.emplace_back("protractor", std::make_unique<CKyGASChart>());

    auto marker = std::make_unique<CKyGStaPnt>();
    marker->SetValue(State(25.0, 0.5));
    out.emplace_back("marker", std::move(marker));

    CKyStaPntArray path;
    for (CKyStaPnt p : {State(30.0, 0.4), State(18.0, 0.9)}) path.Add(p);
    CKyProcess process;
    EXPECT_TRUE(process.AddPath(CString(L"p"), path));
    auto processElem = std::make_unique<CKyGProcess>();
    processElem->SetValue(process);
    out.emplace_back("process", std::move(processElem));

    auto ratio = std::make_unique<CKyGSameAS>();
    CKyAS as;
    EXPECT_TRUE(as.SetValue(5000.0));
    ratio->SetValue(as);
    ratio->SetStartPoint(CPoint(300, 400));
    ratio->SetEndPoint(CPoint(400, 300));
    out.emplace_back("ratio line", std::move(ratio));
    return out;
}

class BadInput : public ChartFixture {
protected:
    void AttachAndRedraw(CImageWnd& w) { chart->AttachDarwWnd(&w), chart->UptateDrawWnd(1); }
    // Handing over something that is not a live window gives 1 and leaves the fit alone.
    void AttachNonWindow(CWnd* w)
    {
        const CPoint origin = chart->GetOrigin();
        const double initScale = chart->GetInitScale(), drawScale = set->GetDrawScale();
        EXPECT_EQ(chart->AttachDarwWnd(w), 1);
        EXPECT_EQ(chart->GetOrigin(), origin);
        EXPECT_EQ(chart->GetInitScale(), initScale);
        EXPECT_EQ(set->GetDrawScale(), drawScale);
    }

    CImageWnd healthy{800, 600};
    std::unique_ptr<CImageWnd> spare;
};

TEST_F(BadInput, EveryCallOnAMissingGoneOrEmptyWindowEndsInZero)
{
    struct Row {
        const char* name;
        std::function<void()> arrange;
        int redraw, repaint, drawAll, draw;  // results of UptateDrawWnd(1)/(0), DrawAllChart, Draw
    };
    auto emptyWindow = [&](int cx, int cy) {
        return [&, cx, cy] {
            spare = std::make_unique<CImageWnd>(cx, cy);
            AttachAndRedraw(*spare);  // leaves no surface behind
        };
    };
    const Row rows[] = {
        {"healthy window (control)", [&] { AttachAndRedraw(healthy); }, 1, 1, 1, 1},
        {"no window", [&] { AttachAndRedraw(healthy), AttachNonWindow(nullptr); }, 0, 0, 0, 0},
        {"never a window", [&] {
             AttachAndRedraw(healthy);
             spare = std::make_unique<CImageWnd>(-1, 600);
             AttachNonWindow(spare.get());
         }, 0, 0, 0, 0},
        {"destroyed window", [&] {
             spare = std::make_unique<CImageWnd>(800, 600);
             AttachAndRedraw(*spare);
             ASSERT_TRUE(spare->DestroyWindow());
             AttachNonWindow(spare.get());
         }, 0, 0, 0, 0},
        {"window gone out of scope while attached", [&] {
             // Safe by design: the chart only compares the pointer with those of live windows.
             CWnd* gone = nullptr;
             {
                 CImageWnd scoped(800, 600);
                 AttachAndRedraw(scoped);
                 gone = &scoped;
             }
             AttachNonWindow(gone);
         }, 0, 0, 0, 0},
        {"window attached before its first redraw", [&] {
             emptyWindow(0, 0)();
             chart->AttachDarwWnd(&healthy);
         }, 1, 0, 1, 0},
        {"0 x 0 window", emptyWindow(0, 0), 0, 0, 1, 0},
        {"0 x 600 window", emptyWindow(0, 600), 0, 0, 1, 0},
        {"800 x 0 window", emptyWindow(800, 0), 0, 0, 1, 0},
    };

    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TearDown();
        SetUp();
        row.arrange();
        chart->SetLastErrorString(kUntouched);

        // Elements first: a redraw below would give a surface to a row that has none.
        for (auto& [name, elem] : EveryElement()) {
            EXPECT_EQ(chart->Draw(elem.get()), row.draw) << name;
            if (row.draw == 0) {
                EXPECT_EQ(Utf8(elem->GetLastErrorString()), "") << name << " ran";
            }
        }
        EXPECT_EQ(chart->Draw(nullptr), 0);
        EXPECT_EQ(chart->UptateDrawWnd(0) != 0, row.repaint != 0);
        EXPECT_EQ(chart->DrawAllChart(), row.drawAll);
        // Healthy drawing maps points that may lie off the chart; no failure here writes it.
        if (row.draw == 0) {
            EXPECT_EQ(Utf8(chart->GetLastErrorString()), Utf8(kUntouched));
        }
        EXPECT_EQ(chart->UptateDrawWnd(1) != 0, row.redraw != 0);

        // The mapping needs no window: a state inside the range goes to a pixel and back,
        // one outside it fails with entry 103.
        CPoint px;
        CKyStaPnt back;
        ASSERT_EQ(chart->Convert(State(20.0, 0.5), px), 1);
        EXPECT_EQ(chart->Convert(px, back), 1);
        EXPECT_NEAR(back.GetTdb(), 20.0, 0.5);
        EXPECT_EQ(chart->Convert(State(70.0, 0.1), px), 0);
        EXPECT_EQ(Utf8(chart->GetLastErrorString()), Utf8(kOutOfRange));
    }
}

}  // namespace
