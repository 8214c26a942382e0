// The value sequences the full redraw hands to the line families.
#include <kygraph/KyGValueStepper.h>

#include <gtest/gtest.h>

#include <limits>

namespace {
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr size_t kCap = CKyGValueStepper::kMaxValues;
}  // namespace

TEST(ValueStepper, OnePastTheMaximumWithLabelsOnMultiplesOfFive)
{
    const auto steps = CKyGValueStepper::Stepped(0.0, 50.0, 1.0);
    ASSERT_EQ(steps.size(), 52u);
    for (int i = 0; i <= 51; ++i) {
        EXPECT_EQ(steps[i].value, i);
        EXPECT_EQ(steps[i].label, i % 5 == 0 ? 1 : 0) << i;
    }
}

TEST(ValueStepper, OffGridStartSnapsOntoTheGrid)
{
    const auto steps = CKyGValueStepper::Stepped(-12.5, 65.0, 5.0);
    ASSERT_GE(steps.size(), 3u);
    EXPECT_EQ(steps[0].label, 0);
    EXPECT_EQ(steps[1].value, -5.0);  // fmod keeps the sign of v: -10 is skipped
    EXPECT_EQ(steps[1].label, 1);
    EXPECT_EQ(steps.back().value, 70.0);
    EXPECT_EQ(CKyGValueStepper::Stepped(-20.5, 0.0, 1.0)[1].value, -19.0);
}

TEST(ValueStepper, NonBinaryIntervalsDoNotStall)
{
    // From 0.5 with 0.1, v + step - fmod(v, step) gives 0.5 again: the sequence must go on.
    for (double step : {0.1, 0.2, 0.3, 0.05, 1.1, 2.2, 0.001}) {
        const auto s = CKyGValueStepper::Stepped(0.0, 1.0, step);
        for (size_t i = 1; i < s.size(); ++i) ASSERT_GT(s[i].value, s[i - 1].value) << step;
        EXPECT_GT(s.back().value, 1.0 - 1e-9) << step;
        EXPECT_LE(s.back().value, 1.0 + step * 1.0001) << step;
    }
}

TEST(ValueStepper, DegenerateSettingsEndTheSequence)
{
    for (double step : {0.0, -1.0, kNaN, kInf})  // the first value only
        EXPECT_EQ(CKyGValueStepper::Stepped(0.0, 50.0, step).size(), 1u) << step;
    EXPECT_EQ(CKyGValueStepper::Stepped(50.0, 0.0, 5.0).size(), 1u);
    const double cases[][3] = {{0, kNaN, 5},  {kNaN, 50, 5},      {-kInf, 50, 5}, {kInf, kInf, 5},
                               {0, kInf, 5},  {0, 1e300, 1e-300}, {1e20, 1e21, 1}, {-1e308, 1e308, 1e307}};
    for (const auto& c : cases) EXPECT_LE(CKyGValueStepper::Stepped(c[0], c[1], c[2]).size(), kCap);
}

TEST(ValueStepper, RelativeHumiditySequences)
{
    const auto tens = CKyGValueStepper::RelativeHumidities(10.0);
    ASSERT_EQ(tens.size(), 11u);
    EXPECT_NEAR(tens[9], 0.95, 1e-12);
    EXPECT_EQ(tens[10], 1.0);
    const auto fives = CKyGValueStepper::RelativeHumidities(5.0);  // 100 % twice, intended
    ASSERT_EQ(fives.size(), 21u);
    EXPECT_NEAR(fives[19], 1.0, 1e-9);
    EXPECT_EQ(fives[20], 1.0);
    for (double interval : {0.0, -5.0, kNaN, kInf, 1e-300, 1e-10}) {
        const auto v = CKyGValueStepper::RelativeHumidities(interval);
        EXPECT_LE(v.size(), kCap) << interval;
        EXPECT_EQ(v.back(), 1.0) << interval;
    }
}

// Found by fuzzing: an interval of 0.0141 % made 4096 curves of up to 1500 samples each, and
// the redraw took seconds. The family now ends at kMaxCurves, after every curve of 0.4 %.
TEST(ValueStepper, FineRelativeHumidityIntervalsEndTheFamilyBeforeTheRedrawSlows)
{
    const size_t cap = CKyGValueStepper::kMaxCurves;
    for (double interval : {0.0141176, 1e-6, 0.3}) {
        const auto v = CKyGValueStepper::RelativeHumidities(interval);
        EXPECT_EQ(v.size(), cap) << interval;
        EXPECT_EQ(v.back(), 1.0) << interval;
    }
    const auto finest = CKyGValueStepper::RelativeHumidities(0.4);
    ASSERT_EQ(finest.size(), 239u);  // 5 % .. 99.8 % by 0.4 %, then 100 %
    EXPECT_NEAR(finest[237], 0.998, 1e-9);
    EXPECT_EQ(finest[238], 1.0);
}
