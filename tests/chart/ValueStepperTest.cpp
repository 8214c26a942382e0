// The value sequences the line families are drawn at and the rulers' ticks: one stepping loop
// with two ends (one past the maximum, or clamped to it) and its guards.
#include <kygraph/KyGValueStepper.h>

#include <gtest/gtest.h>

#include <limits>

namespace {
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kCap = CKyGValueStepper::kMaxValues;

std::vector<double> Values(const std::vector<CKyGValueStepper::Step>& steps)
{
    std::vector<double> out;
    for (const auto& s : steps) out.push_back(s.value);
    return out;
}
}  // namespace

TEST(ValueStepper, FamiliesGoOnePastTheMaximumWithLabelsOnMultiplesOfFive)
{
    const auto steps = CKyGValueStepper::Stepped(0.0, 50.0, 1.0);
    ASSERT_EQ(steps.size(), 52u);
    for (int i = 0; i <= 51; ++i) {
        EXPECT_EQ(steps[i].value, i);
        EXPECT_EQ(steps[i].label, i % 5 == 0 ? 1 : 0) << i;
    }
}

TEST(ValueStepper, SequencesSnapOntoTheGrid)
{
    const struct {
        bool ticks;
        double first, max, step;
        std::vector<double> expected;
        double perUnit = 1.0;
    } cases[] = {
        {false, -12.5, 5.0, 5.0, {-12.5, -5.0, 0.0, 5.0, 10.0}},  // fmod keeps the sign: -10 skipped
        {false, -20.5, -18.0, 1.0, {-20.5, -19.0, -18.0, -17.0}},
        {true, -8.5, -5.0, 1.0, {-7.0, -6.0, -5.0}},             // the first value left out
        {true, 0.25, 2.2, 0.5, {0.5, 1.0, 1.5, 2.0, 2.2}},       // the last clamped to the end
        {true, 3.0, 3.0, 1.0, {}},
        {true, 0.063, 1.2, 0.5, {0.5, 1.0, 1.2}, 10.0},  // in tenths: on the grid, where plain falls short
    };
    for (const auto& c : cases) {
        const auto got = c.ticks ? CKyGValueStepper::Ticks(c.first, c.max, c.step, kCap, c.perUnit)
                                 : Values(CKyGValueStepper::Stepped(c.first, c.max, c.step));
        EXPECT_EQ(got, c.expected) << c.first << " " << c.step;
    }
    EXPECT_EQ(CKyGValueStepper::FirstMultiple(-27.3, 2.0), -26.0);
    EXPECT_EQ(CKyGValueStepper::FirstMultiple(0.8, 0.01), 0.8);
}

TEST(ValueStepper, NonBinaryIntervalsDoNotStall)
{
    // From 0.5 with 0.1, v + step - fmod(v, step) gives 0.5 again: the sequence must go on.
    for (double step : {0.1, 0.2, 0.3, 0.05, 1.1, 2.2, 0.001}) {
        const auto s = CKyGValueStepper::Stepped(0.0, 1.0, step);
        for (size_t i = 1; i < s.size(); ++i) ASSERT_GT(s[i].value, s[i - 1].value) << step;
        EXPECT_GT(s.back().value, 1.0 - 1e-9) << step;
        EXPECT_LE(s.back().value, 1.0 + step * 1.0001) << step;
        const auto t = CKyGValueStepper::Ticks(0.0, 1.0, step, kCap);
        ASSERT_FALSE(t.empty()) << step;
        EXPECT_EQ(t.back(), 1.0) << step;
    }
}

TEST(ValueStepper, DegenerateSettingsEndTheSequenceAtItsCap)
{
    for (double step : {0.0, -1.0, kNaN, kInf}) {  // the first value only, no ticks
        EXPECT_EQ(CKyGValueStepper::Stepped(0.0, 50.0, step).size(), 1u) << step;
        EXPECT_TRUE(CKyGValueStepper::Ticks(0.0, 50.0, step, kCap).empty()) << step;
    }
    EXPECT_EQ(CKyGValueStepper::Stepped(50.0, 0.0, 5.0).size(), 1u);
    const double cases[][3] = {{0, kNaN, 5},  {kNaN, 50, 5},      {-kInf, 50, 5}, {kInf, kInf, 5},
                               {0, kInf, 5},  {0, 1e300, 1e-300}, {1e20, 1e21, 1}, {-1e308, 1e308, 1e307}};
    for (const auto& c : cases) {
        EXPECT_LE(CKyGValueStepper::Stepped(c[0], c[1], c[2]).size(), size_t{kCap});
        EXPECT_LE(CKyGValueStepper::Ticks(c[0], c[1], c[2], kCap).size(), size_t{kCap});
    }
    // A cap is a number of values, exactly.
    for (int cap : {1, 200, kCap}) {
        EXPECT_EQ(CKyGValueStepper::Stepped(0.0, 1e6, 1.0, cap).size(), size_t(cap)) << cap;
        EXPECT_EQ(CKyGValueStepper::Ticks(0.0, 1e6, 1.0, cap).size(), size_t(cap)) << cap;
    }
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
        EXPECT_LE(v.size(), size_t{kCap}) << interval;
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
