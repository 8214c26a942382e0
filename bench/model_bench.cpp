// Speed of the state model: every setter and getter on states spread over the chart's range
// (-30..65 °C, 10..100 % RH), cycled so that neither the branch predictor nor a cache of
// the last answer can flatter the figures. The chart sets about 6,000 states per redraw.
#include <kygraph/KyChart.h>
#include <kygraph/KyStaPnt.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

struct Sample {
    double tdb, rh, twb, tdp, d, h, pv;
};

// The samples of one formulation, computed with it, so that every pair is a state of its own.
std::vector<Sample> MakeSamples(Ky::_Formulation f)
{
    CKyChart::InstanceGloble()->SetFormulation(f);
    std::vector<Sample> v;
    for (int i = 0; i < 256; ++i) {
        const double t = -30.0 + 95.0 * ((i * 37) % 256) / 255.0;
        const double rh = 0.1 + 0.9 * ((i * 101) % 256) / 255.0;
        CKyStaPnt p;
        if (!p.SetBy_TdbandRH(t, rh)) continue;
        v.push_back({t, rh, p.GetTwb(), p.GetTdp(), p.GetD(), p.GetH(), p.GetPv()});
    }
    CKyChart::InstanceGloble()->ResetDefaults();
    return v;
}

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = MakeSamples(Ky::FORMULATION_CHART);
    return samples;
}

const std::vector<Sample>& RealGasSamples()
{
    static const std::vector<Sample> samples = MakeSamples(Ky::FORMULATION_REALGAS);
    return samples;
}

void SetterOf(benchmark::State& state, const std::vector<Sample>& s, bool (CKyStaPnt::*set)(double, double),
              double Sample::*a, double Sample::*b)
{
    CKyStaPnt p;
    size_t i = 0;
    for (auto _ : state) {
        const Sample& x = s[i];
        i = i + 1 == s.size() ? 0 : i + 1;
        benchmark::DoNotOptimize((p.*set)(x.*a, x.*b));
    }
}

void Setter(benchmark::State& state, bool (CKyStaPnt::*set)(double, double), double Sample::*a, double Sample::*b)
{
    SetterOf(state, Samples(), set, a, b);
}

// The real-gas formulation: the same setters on its own states.
void SetterRealGas(benchmark::State& state, bool (CKyStaPnt::*set)(double, double), double Sample::*a,
                   double Sample::*b)
{
    const std::vector<Sample>& s = RealGasSamples();
    CKyChart::InstanceGloble()->SetFormulation(Ky::FORMULATION_REALGAS);
    SetterOf(state, s, set, a, b);
    CKyChart::InstanceGloble()->ResetDefaults();
}

void Getter(benchmark::State& state, double (CKyStaPnt::*get)() const)
{
    std::vector<CKyStaPnt> points(Samples().size());
    for (size_t i = 0; i < points.size(); ++i) points[i].SetBy_TdbandRH(Samples()[i].tdb, Samples()[i].rh);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize((points[i].*get)());
        i = i + 1 == points.size() ? 0 : i + 1;
    }
}

using S = Sample;
BENCHMARK_CAPTURE(Setter, SetBy_TdbandRH, &CKyStaPnt::SetBy_TdbandRH, &S::tdb, &S::rh);
BENCHMARK_CAPTURE(Setter, SetBy_TdbandTwb, &CKyStaPnt::SetBy_TdbandTwb, &S::tdb, &S::twb);
BENCHMARK_CAPTURE(Setter, SetBy_HandD, &CKyStaPnt::SetBy_HandD, &S::h, &S::d);
BENCHMARK_CAPTURE(Setter, SetBy_HandTdb, &CKyStaPnt::SetBy_HandTdb, &S::h, &S::tdb);
BENCHMARK_CAPTURE(Setter, SetBy_DandTdb, &CKyStaPnt::SetBy_DandTdb, &S::d, &S::tdb);
BENCHMARK_CAPTURE(Setter, SetBy_DandRH, &CKyStaPnt::SetBy_DandRH, &S::d, &S::rh);
BENCHMARK_CAPTURE(Setter, SetBy_HandRH, &CKyStaPnt::SetBy_HandRH, &S::h, &S::rh);
BENCHMARK_CAPTURE(Setter, SetBy_TdbandTdp, &CKyStaPnt::SetBy_TdbandTdp, &S::tdb, &S::tdp);
BENCHMARK_CAPTURE(Setter, SetBy_TdbandPv, &CKyStaPnt::SetBy_TdbandPv, &S::tdb, &S::pv);

BENCHMARK_CAPTURE(SetterRealGas, SetBy_TdbandRH, &CKyStaPnt::SetBy_TdbandRH, &S::tdb, &S::rh);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_TdbandTwb, &CKyStaPnt::SetBy_TdbandTwb, &S::tdb, &S::twb);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_HandD, &CKyStaPnt::SetBy_HandD, &S::h, &S::d);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_HandTdb, &CKyStaPnt::SetBy_HandTdb, &S::h, &S::tdb);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_DandTdb, &CKyStaPnt::SetBy_DandTdb, &S::d, &S::tdb);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_DandRH, &CKyStaPnt::SetBy_DandRH, &S::d, &S::rh);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_HandRH, &CKyStaPnt::SetBy_HandRH, &S::h, &S::rh);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_TdbandTdp, &CKyStaPnt::SetBy_TdbandTdp, &S::tdb, &S::tdp);
BENCHMARK_CAPTURE(SetterRealGas, SetBy_TdbandPv, &CKyStaPnt::SetBy_TdbandPv, &S::tdb, &S::pv);

BENCHMARK_CAPTURE(Getter, GetTdb, &CKyStaPnt::GetTdb);
BENCHMARK_CAPTURE(Getter, GetTwb, &CKyStaPnt::GetTwb);
BENCHMARK_CAPTURE(Getter, GetTdp, &CKyStaPnt::GetTdp);
BENCHMARK_CAPTURE(Getter, GetRH, &CKyStaPnt::GetRH);
BENCHMARK_CAPTURE(Getter, GetD, &CKyStaPnt::GetD);
BENCHMARK_CAPTURE(Getter, GetH, &CKyStaPnt::GetH);
BENCHMARK_CAPTURE(Getter, GetPv, &CKyStaPnt::GetPv);
BENCHMARK_CAPTURE(Getter, GetPs, &CKyStaPnt::GetPs);
BENCHMARK_CAPTURE(Getter, GetV, &CKyStaPnt::GetV);
BENCHMARK_CAPTURE(Getter, GetRho, &CKyStaPnt::GetRho);

// The wet bulb of real-gas states, the costliest getter of that formulation.
void GetterRealGas_GetTwb(benchmark::State& state)
{
    CKyChart::InstanceGloble()->SetFormulation(Ky::FORMULATION_REALGAS);
    const std::vector<Sample>& s = RealGasSamples();
    std::vector<CKyStaPnt> points(s.size());
    for (size_t i = 0; i < points.size(); ++i) points[i].SetBy_TdbandRH(s[i].tdb, s[i].rh);
    CKyChart::InstanceGloble()->ResetDefaults();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(points[i].GetTwb());
        i = i + 1 == points.size() ? 0 : i + 1;
    }
}
BENCHMARK(GetterRealGas_GetTwb);

// Saturation states, as the enthalpy ruler and the constant-h lines set them.
void SetBy_HandRH_Saturated(benchmark::State& state)
{
    const std::vector<Sample>& s = Samples();
    CKyStaPnt p;
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(p.SetBy_HandRH(s[i].h, 1.0));
        i = i + 1 == s.size() ? 0 : i + 1;
    }
}
BENCHMARK(SetBy_HandRH_Saturated);

}  // namespace
