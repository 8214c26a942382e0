// Heat-moisture-ratio line: the line as given, the label anchor of each kind of ratio, extreme
// host pixels, and the screen angle of a ratio measured on the chart.
#include "OverlayTestSupport.h"

#include <kygraph/KyAS.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGSameAS.h>
#include <kygraph/KyGStaPnt.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

constexpr COLORREF kRatioBlue = RGB(0, 41, 165);
constexpr double kHalfPi = 1.5707963267948966;

CKyAS Ratio(CKyAS::_EnKyASType type, double value = 0.0)
{
    CKyAS as;
    EXPECT_TRUE(type == CKyAS::AS_FINITE ? as.SetValue(value) : as.SetType(type));
    return as;
}

class RatioLine : public Overlay {
protected:
    int DrawLine(const CKyAS& value, CPoint start, CPoint end, int dim = 1)
    {
        dc()->ClearRecords();
        CKyGSameAS line;
        line.SetValue(value);
        line.SetStartPoint(start);
        line.SetEndPoint(end);
        line.SetDimEnable(dim);
        return chart->Draw(&line);
    }
};

TEST_F(RatioLine, LineAsGivenAndLabelAnchorPerKind)
{
    // Where each kind anchors its label before the shift: up by the text height (finite),
    // left by half of it (the two infinite kinds, tilted by one degree, not ninety).
    struct Case {
        CKyAS::_EnKyASType kind;
        CPoint start, end;
        CPoint base;
        bool up;
        int tenths;
        const wchar_t* text;
    };
    const CPoint lo(300, 400), hi(500, 200), left(300, 300), right(500, 300);
    const Case cases[] = {
        {CKyAS::AS_FINITE, lo, hi, hi, true, 0, L"ε=5000"},
        {CKyAS::AS_FINITE, hi, lo, hi, true, 0, L"ε=5000"},
        {CKyAS::AS_FINITE, left, right, right, true, 0, L"ε=5000"},  // equal y: the end point
        {CKyAS::AS_POSITIVE_INF, lo, hi, hi, false, 10, L"ε=∞"},
        {CKyAS::AS_POSITIVE_INF, left, right, right, false, 10, L"ε=∞"},
        {CKyAS::AS_NEGATIVE_INF, lo, hi, lo, false, -10, L"ε=-∞"},
        {CKyAS::AS_NEGATIVE_INF, hi, lo, lo, false, -10, L"ε=-∞"},
        {CKyAS::AS_NEGATIVE_INF, left, right, left, false, -10, L"ε=-∞"},  // equal y: the start point
    };
    for (double k : {1.0, 2.0}) {
        set->m_dDrawScale = k;
        const int height = static_cast<int>(7 * k);
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << "kind " << c.kind << " start " << c.start.x << "," << c.start.y
                                            << " scale " << k);
            ASSERT_EQ(DrawLine(Ratio(c.kind, 5000.0), c.start, c.end), 1);
            ASSERT_EQ(dc()->GetRecords().size(), 2u);
            const CDrawRecord& line = dc()->GetRecords()[0];
            ASSERT_EQ(line.kind, CDrawRecord::Line);
            EXPECT_EQ(line.pts, (std::vector<CPoint>{c.start, c.end}));
            EXPECT_EQ(line.penColor, kRatioBlue);
            EXPECT_EQ(line.penWidth, 2);

            const CDrawRecord& label = dc()->GetRecords()[1];
            ASSERT_EQ(label.kind, CDrawRecord::Text);
            EXPECT_EQ(label.text, c.text);
            EXPECT_EQ(label.fontHeight, height);
            EXPECT_EQ(label.escapement, c.tenths);
            EXPECT_EQ(label.textColor, kRatioBlue);
            const int cy = CKyGDrawBase::GetTextExtent(dc(), height, CString(c.text)).cy;
            ASSERT_GT(cy, 0);
            const CPoint expected = c.up ? CPoint(c.base.x, c.base.y - cy)
                                         : CPoint(static_cast<int>(c.base.x - cy / 2.0), c.base.y);
            EXPECT_EQ(label.pts[0], expected);
        }
    }
}

TEST_F(RatioLine, LabelSwitchOffDrawsTheLineOnly)
{
    ASSERT_EQ(DrawLine(Ratio(CKyAS::AS_FINITE, -2000.0), CPoint(10, 10), CPoint(90, 50), 0), 1);
    ASSERT_EQ(dc()->GetRecords().size(), 1u);
    EXPECT_EQ(dc()->GetRecords()[0].kind, CDrawRecord::Line);
}

TEST_F(RatioLine, ExtremeHostPixelsSaturateTheAnchor)
{
    const CPoint a(INT_MIN, INT_MAX), b(INT_MAX, INT_MIN);
    ASSERT_EQ(DrawLine(Ratio(CKyAS::AS_FINITE, 5000.0), a, b), 1);
    EXPECT_EQ(Records(CDrawRecord::Text).at(0).pts[0], CPoint(INT_MAX, INT_MIN));
    ASSERT_EQ(DrawLine(Ratio(CKyAS::AS_NEGATIVE_INF), a, b), 1);
    EXPECT_EQ(Records(CDrawRecord::Text).at(0).pts[0], CPoint(INT_MIN, INT_MAX));
    ASSERT_EQ(DrawLine(Ratio(CKyAS::AS_POSITIVE_INF), a, b), 1);
    EXPECT_LT(Records(CDrawRecord::Text).at(0).pts[0].x, INT_MAX);
}

TEST_F(RatioLine, WithoutAWindowNothingIsDrawn)
{
    chart->AttachDarwWnd(nullptr);
    CKyGSameAS line;
    line.SetValue(Ratio(CKyAS::AS_FINITE, 5000.0));
    EXPECT_EQ(chart->Draw(&line), 0);
}

class RatioAngle : public Overlay {
protected:
    void SetUp() override
    {
        Overlay::SetUp();
        // A large scale keeps the one-pixel truncation of the measured step small.
        set->m_dDrawScale = 10.0;
        pt = PixelOf(State(20.0, 50.0));
    }
    CPoint pt;
};

TEST_F(RatioAngle, ZeroRatioFollowsTheConstantEnthalpyLines)
{
    CKyGSameAS line;
    const double angle = line.CalculateAng(pt, 0.0);
    EXPECT_LT(angle, 0.0);  // constant-h lines fall to the right
    EXPECT_NEAR(angle, -chart->GetHAngle(), 0.02);
}

TEST_F(RatioAngle, LargeRatiosApproachTheVertical)
{
    CKyGSameAS line;
    double previous = line.CalculateAng(pt, 0.0);
    for (double ratio : {1000.0, 5000.0, 20000.0, 100000.0}) {
        const double angle = line.CalculateAng(pt, ratio);
        EXPECT_GT(angle, previous) << ratio;
        EXPECT_LE(angle, kHalfPi) << ratio;
        previous = angle;
    }
    EXPECT_GT(previous, 1.5);
}

TEST_F(RatioAngle, FailuresGiveZero)
{
    CKyGSameAS line;
    const CPoint plotLeft = chart->GetMinTAndMinDPnt();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        CPoint at;
        double ratio;
    };
    const Case cases[] = {
        {CPoint(plotLeft.x - 5, pt.y), 0.0},  // left of the plot
        {CPoint(INT_MIN, INT_MIN), 5000.0}, {CPoint(INT_MAX, INT_MAX), 5000.0}, {CPoint(INT_MAX, INT_MIN), 5000.0},
        {pt, nan}, {pt, std::numeric_limits<double>::infinity()}, {pt, 1e300},
    };
    for (const Case& c : cases) EXPECT_EQ(line.CalculateAng(c.at, c.ratio), 0.0) << c.at.x << "," << c.at.y;
    EXPECT_TRUE(line.GetLastErrorString().IsEmpty());
}

TEST(OverlayNames, EachElementNamesItsClass)
{
    EXPECT_EQ(CKyGStaPnt().toString(), L"CKyGStaPnt");
    EXPECT_EQ(CKyGProcess().toString(), L"CKyGProcess");
    EXPECT_EQ(CKyGSameAS().toString(), L"CKyGSameAS");
}

}  // namespace
