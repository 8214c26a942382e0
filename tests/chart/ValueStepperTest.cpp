// The value sequences the full redraw hands to the line families.
#include <kygraph/KyGValueStepper.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<double> Values(const std::vector<CKyGValueStepper::Step>& steps)
{
    std::vector<double> v;
    for (const auto& s : steps) v.push_back(s.value);
    return v;
}

}  // namespace

TEST(ValueStepper, WholeIntervalGoesOnePastTheMaximumWithLabelsOnMultiplesOfFive)
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
    EXPECT_EQ(steps[0].value, -12.5);
    EXPECT_EQ(steps[0].label, 0);
    EXPECT_EQ(steps[1].value, -5.0);  // -10 is skipped: fmod keeps the sign of v
    EXPECT_EQ(steps[2].value, 0.0);
    EXPECT_EQ(steps.back().value, 70.0);
    for (size_t i = 1; i < steps.size(); ++i) EXPECT_EQ(steps[i].label, 1);

    EXPECT_EQ(CKyGValueStepper::Stepped(-20.5, 0.0, 1.0)[1].value, -19.0);
    EXPECT_EQ(CKyGValueStepper::Stepped(-18.3, 0.0, 1.0)[1].value, -17.0);
}

TEST(ValueStepper, NonBinaryIntervalsDoNotStall)
{
    // From 0.5 with 0.1, v + step - fmod(v, step) gives 0.5 again: the sequence must go on.
    for (double step : {0.1, 0.2, 0.3, 0.05, 1.1, 2.2, 0.001, 0.7}) {
        const auto v = Values(CKyGValueStepper::Stepped(0.0, 1.0, step));
        for (size_t i = 1; i < v.size(); ++i) ASSERT_GT(v[i], v[i - 1]) << step;
        EXPECT_GT(v.back(), 1.0 - 1e-9) << step;
        EXPECT_LE(v.back(), 1.0 + step * 1.0001) << step;
        EXPECT_LE(static_cast<double>(v.size()), 2.0 / step + 3.0) << step;
    }
}

TEST(ValueStepper, DegenerateSettingsEndTheSequence)
{
    // A step that is not finite and positive gives the first value only.
    for (double step : {0.0, -1.0, kNaN, kInf, -kInf})
        EXPECT_EQ(CKyGValueStepper::Stepped(0.0, 50.0, step).size(), 1u) << step;

    const struct {
        double first, max, step;
    } cases[] = {
        {0.0, kNaN, 5.0},      {kNaN, 50.0, 5.0},  {-kInf, 50.0, 5.0}, {kInf, kInf, 5.0}, {0.0, kInf, 5.0},
        {0.0, 1e300, 1e-300},  {1e20, 1e21, 1.0},  {0.0, 50.0, 1e-300}, {50.0, 0.0, 5.0},  {-1e308, 1e308, 1e307},
    };
    for (const auto& c : cases) {
        const auto steps = CKyGValueStepper::Stepped(c.first, c.max, c.step);
        EXPECT_GE(steps.size(), 1u);
        EXPECT_LE(steps.size(), static_cast<size_t>(CKyGValueStepper::kMaxValues));
    }
    EXPECT_EQ(CKyGValueStepper::Stepped(50.0, 0.0, 5.0).size(), 1u);  // inverted: first value only
}

TEST(ValueStepper, RelativeHumiditySequences)
{
    const auto tens = CKyGValueStepper::RelativeHumidities(10.0);
    ASSERT_EQ(tens.size(), 11u);
    for (int i = 0; i < 10; ++i) EXPECT_NEAR(tens[i], 0.05 + 0.1 * i, 1e-12);
    EXPECT_EQ(tens.back(), 1.0);

    // Landing on 1.0 draws the saturation curve twice, as intended.
    const auto fives = CKyGValueStepper::RelativeHumidities(5.0);
    ASSERT_EQ(fives.size(), 21u);
    EXPECT_NEAR(fives[19], 1.0, 1e-9);
    EXPECT_EQ(fives[20], 1.0);

    for (double interval : {0.0, -5.0, kNaN, kInf, 1e-300, 1e-10}) {
        const auto v = CKyGValueStepper::RelativeHumidities(interval);
        EXPECT_LE(v.size(), static_cast<size_t>(CKyGValueStepper::kMaxValues)) << interval;
        EXPECT_EQ(v.front(), 0.05) << interval;
        EXPECT_EQ(v.back(), 1.0) << interval;
    }
}
