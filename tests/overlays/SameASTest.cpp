// Heat-moisture-ratio line: label anchor per kind of ratio, the screen angle of a ratio, and
// extreme input.
#include "OverlayTestSupport.h"

#include <kygraph/KyAS.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGSameAS.h>

#include <climits>
#include <limits>

namespace {

CKyAS Ratio(CKyAS::_EnKyASType type)
{
    CKyAS as;
    EXPECT_TRUE(type == CKyAS::AS_FINITE ? as.SetValue(5000.0) : as.SetType(type));
    return as;
}

class RatioLine : public Overlay {
protected:
    const CDrawRecord* DrawLabel(CKyAS::_EnKyASType kind, CPoint start, CPoint end)
    {
        line.SetValue(Ratio(kind));
        line.SetStartPoint(start);
        line.SetEndPoint(end);
        EXPECT_EQ(DrawOne(&line), 1);
        const auto& records = dc()->GetRecords();
        return records.size() == 2 && records[1].kind == CDrawRecord::Text ? &records[1] : nullptr;
    }
    CKyGSameAS line;
};

TEST_F(RatioLine, EachKindAnchorsItsLabelAtItsEndPoint)
{
    // Finite: the upper end, raised by the text height. +inf: the upper end, -inf: the lower
    // one, each moved left by half the text height and tilted by one degree (radians taken
    // as degrees). Equal y picks the end point, except for -inf.
    const CPoint lo(300, 400), hi(500, 200), left(300, 300), right(500, 300);
    struct Case {
        CKyAS::_EnKyASType kind;
        CPoint start, end, base;
        int tenths;
    } const cases[] = {
        {CKyAS::AS_FINITE, lo, hi, hi, 0},          {CKyAS::AS_FINITE, left, right, right, 0},
        {CKyAS::AS_POSITIVE_INF, hi, lo, hi, 10},   {CKyAS::AS_POSITIVE_INF, left, right, right, 10},
        {CKyAS::AS_NEGATIVE_INF, lo, hi, lo, -10},  {CKyAS::AS_NEGATIVE_INF, left, right, left, -10},
    };
    for (double k : {1.0, 2.0})
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << "kind " << c.kind << " end " << c.end.x << " scale " << k);
            set->m_dDrawScale = k;
            const CDrawRecord* label = DrawLabel(c.kind, c.start, c.end);
            ASSERT_NE(label, nullptr);
            EXPECT_EQ(dc()->GetRecords()[0].pts, (std::vector<CPoint>{c.start, c.end}));
            EXPECT_EQ(label->escapement, c.tenths);
            EXPECT_EQ(label->fontHeight, static_cast<int>(7 * k));
            const int cy = CKyGDrawBase::GetTextExtent(dc(), label->fontHeight, label->text).cy;
            ASSERT_GT(cy, 0);
            EXPECT_EQ(label->pts[0], c.tenths == 0 ? CPoint(c.base.x, c.base.y - cy)
                                                   : CPoint(static_cast<int>(c.base.x - cy / 2.0), c.base.y));
        }
}

TEST_F(RatioLine, AngleOfARatioMeasuredOnTheChart)
{
    set->m_dDrawScale = 10.0;  // keeps the one-pixel truncation of the measured step small
    const CPoint pt = PixelOf(State(20.0, 50.0));
    EXPECT_NEAR(line.CalculateAng(pt, 0.0), -chart->GetHAngle(), 0.02);  // constant h falls to the right

    double previous = line.CalculateAng(pt, 0.0);
    for (double ratio : {1000.0, 5000.0, 20000.0, 100000.0}) {
        const double angle = line.CalculateAng(pt, ratio);
        EXPECT_GT(angle, previous) << ratio;
        EXPECT_LE(angle, 1.5707963267948966) << ratio;
        previous = angle;
    }
    EXPECT_GT(previous, 1.5);

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const CPoint outside(chart->GetMinTAndMinDPnt().x - 5, pt.y);
    for (auto [at, ratio] : {std::pair{outside, 0.0}, {CPoint(INT_MIN, INT_MIN), 0.0}, {CPoint(INT_MAX, INT_MIN), 0.0},
                             {pt, nan}, {pt, 1e300}})
        EXPECT_EQ(line.CalculateAng(at, ratio), 0.0) << at.x << "," << at.y;
}

TEST_F(RatioLine, ExtremeInputNeitherCrashesNorHangs)
{
    // Host pixels at the ends of the int range saturate the label's anchor.
    const CPoint a(INT_MIN, INT_MAX), b(INT_MAX, INT_MIN);
    EXPECT_EQ(DrawLabel(CKyAS::AS_FINITE, a, b)->pts[0], CPoint(INT_MAX, INT_MIN));
    EXPECT_EQ(DrawLabel(CKyAS::AS_NEGATIVE_INF, a, b)->pts[0], CPoint(INT_MIN, INT_MAX));

    // Absurd draw scales and styles for the ratio label and a process's markers.
    CKyStaPntArray path;
    for (CKyStaPnt p : {State(-20.0, 50.0, L"A"), State(60.0, 5.0, L"B")}) path.Add(p);
    CKyProcess process;
    ASSERT_TRUE(process.AddPath(CString(L"p"), path));
    CKyGProcess element;
    element.SetValue(process);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double scale : {1e9, 1e300, nan})
        for (double size : {nan, -1e300, 1e300}) {
            set->m_dDrawScale = scale;
            set->m_StyleSetting.m_StaPntStyle.dSize = size;
            set->m_StyleSetting.m_StaPntStyle.nTextHeight = set->m_StyleSetting.m_SameASStyle.nTextHeight =
                size > 0 ? INT_MAX : INT_MIN;
            EXPECT_GE(DrawOne(&element), 0);
            DrawLabel(CKyAS::AS_POSITIVE_INF, CPoint(INT_MAX, 0), CPoint(INT_MIN, 1));
        }
}

}  // namespace
