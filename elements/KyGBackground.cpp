#include <kygraph/KyGBackground.h>

#include <kygraph/KyGASChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>
#include <kygraph/KyGSameD.h>
#include <kygraph/KyGSameH.h>
#include <kygraph/KyGSameRH.h>
#include <kygraph/KyGSameT.h>
#include <kygraph/KyGSameTwb.h>
#include <kygraph/KyGSameV.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyGValueStepper.h>
#include <kygraph/KyStaPnt.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using Set = CKyGChartSetting;
using Step = CKyGValueStepper::Step;
using Steps = std::vector<Step>;

// A wet-bulb or volume line costs hundreds of state-model calls; more lines than this would
// take seconds and fill the chart solid, so such a family ends here whatever its interval.
constexpr int kMaxOverlayLines = 200;

// One line family: when it is drawn, at which values, by which element, in which style, and
// whether each line is labelled.
struct FamilyRow {
    CKyGBackground::Family family;
    bool (*on)(const Set&);
    Steps (*values)(const Set&);
    std::unique_ptr<CKyGSameLine> (*element)();
    const tagKyLineStyle& (*style)(const Set&);
    int (*label)(const Set&, const Step&);
};

template <class Element>
std::unique_ptr<CKyGSameLine> Make()
{
    return std::make_unique<Element>();
}

int OnMultiplesOfFive(const Set&, const Step& s) { return s.label; }

double LowestT(const Set& s) { return std::min(s.m_RangeSetting.GetMinT(), s.m_RangeSetting.GetMaxT()); }
double HighestT(const Set& s) { return std::max(s.m_RangeSetting.GetMinT(), s.m_RangeSetting.GetMaxT()); }

Steps VolumeSteps(const Set& s)
{
    const CKyGRangeSetting& range = s.m_RangeSetting;
    CKyStaPnt lo, hi;
    if (!lo.SetBy_DandTdb(std::max(0.0, std::min(range.GetMinD(), range.GetMaxD())), LowestT(s)) ||
        !hi.SetBy_TdbandRH(HighestT(s), 1.0))
        return {};
    const double step = s.m_OverlaySetting.m_dVInterval;
    return CKyGValueStepper::Stepped(CKyGValueStepper::FirstMultiple(lo.GetV(), step), hi.GetV(), step,
                                     kMaxOverlayLines);
}

constexpr FamilyRow kFamilies[] = {
    {CKyGBackground::SameD, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameD != 0; },
     [](const Set& s) {
         return CKyGValueStepper::Stepped(s.m_RangeSetting.GetMinD(), s.m_RangeSetting.GetMaxD(),
                                          s.m_DrawHstSetting.m_dDInterval);
     },
     Make<CKyGSameD>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameDStyle; },
     OnMultiplesOfFive},
    {CKyGBackground::SameRH, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameRH != 0; },
     [](const Set& s) {
         Steps steps;
         for (double phi : CKyGValueStepper::RelativeHumidities(s.m_DrawHstSetting.m_dRHInterval))
             steps.push_back({phi, 1});
         return steps;
     },
     Make<CKyGSameRH>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameRHStyle; },
     [](const Set&, const Step&) { return 1; }},  // every curve keeps its label
    {CKyGBackground::SameT, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameT != 0; },
     [](const Set& s) {
         return CKyGValueStepper::Stepped(s.m_RangeSetting.GetMinT(), s.m_RangeSetting.GetMaxT(),
                                          s.m_DrawHstSetting.m_dTInterval);
     },
     Make<CKyGSameT>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameTStyle; },
     OnMultiplesOfFive},
    // The enthalpy span is the singleton's range, whichever settings switch the family on.
    {CKyGBackground::SameH, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameH != 0; },
     [](const Set& s) {
         return CKyGValueStepper::Stepped(CKyGSameH::GetMinValue(), CKyGSameH::GetMaxValue(),
                                          s.m_DrawHstSetting.m_dHInterval);
     },
     Make<CKyGSameH>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameHStyle; },
     [](const Set&, const Step&) { return 0; }},  // read on the enthalpy ruler instead
    // Wet bulbs reach below the lowest dry bulb at the dry edge of the chart.
    {CKyGBackground::SameTwb, [](const Set& s) { return s.m_OverlaySetting.m_bShowSameTwb != 0; },
     [](const Set& s) {
         const double step = s.m_OverlaySetting.m_dTwbInterval;
         return CKyGValueStepper::Stepped(CKyGValueStepper::FirstMultiple(LowestT(s) - 15.0, step), HighestT(s),
                                          step, kMaxOverlayLines);
     },
     Make<CKyGSameTwb>, [](const Set& s) -> const tagKyLineStyle& { return s.m_OverlaySetting.m_SameTwbStyle; },
     [](const Set& s, const Step&) { return s.m_OverlaySetting.m_bDimSameTwb; }},
    {CKyGBackground::SameV, [](const Set& s) { return s.m_OverlaySetting.m_bShowSameV != 0; }, VolumeSteps,
     Make<CKyGSameV>, [](const Set& s) -> const tagKyLineStyle& { return s.m_OverlaySetting.m_SameVStyle; },
     [](const Set& s, const Step&) { return s.m_OverlaySetting.m_bDimSameV; }},
};

constexpr bool RowsInFamilyOrder()
{
    for (int i = 0; i < CKyGBackground::FamilyCount; ++i)
        if (kFamilies[i].family != i) return false;
    return std::size(kFamilies) == CKyGBackground::FamilyCount;
}
static_assert(RowsInFamilyOrder(), "one row per family, in the enum's order");

// Draws the families first..last of the table through chart, one element per family whose
// value changes between lines; the number of lines handed to chart.
int DrawFamilies(CKyGChart& chart, const Set& set, CKyGBackground::Family first, CKyGBackground::Family last)
{
    int lines = 0;
    for (int i = first; i <= last; ++i) {
        const FamilyRow& row = kFamilies[i];
        if (!row.on(set)) continue;
        const std::unique_ptr<CKyGSameLine> element = row.element();
        for (const Step& step : row.values(set)) {
            element->SetValue(step.value);
            element->SetDimEnable(row.label(set, step));
            chart.Draw(element.get());  // a value the element refuses is left out
            ++lines;
        }
    }
    return lines;
}

}  // namespace

const tagKyLineStyle& CKyGBackground::Style(Family family)
{
    return kFamilies[family].style(*CKyGChartSetting::GetKyGChartSetting());
}

void CKyGBackground::DrawBase(CKyGChart& chart, const CKyGChartSetting& set)
{
    CKyGChartFrame frame;
    frame.SetTitleEnable(set.m_DrawHstSetting.m_bShowTitle);
    chart.Draw(&frame);
    CKyGDRuler dRuler;
    chart.Draw(&dRuler);
    CKyGHRuler hRuler;
    chart.Draw(&hRuler);
    if (set.m_DrawHstSetting.m_bShowASChart) {
        CKyGASChart protractor;
        chart.Draw(&protractor);
    }
    DrawFamilies(chart, set, SameD, SameH);
}

int CKyGBackground::DrawOverlay(CKyGChart& chart)
{
    return DrawFamilies(chart, *CKyGChartSetting::GetKyGChartSetting(), SameTwb, SameV);
}

void CKyGBackground::DrawReferencePoint(CKyGChart& chart, const CKyStaPnt& point, bool labelRight)
{
    CKyGStaPnt marker;
    marker.SetValue(point);
    marker.SetDimEnable(1);
    marker.SetDimPosition(labelRight ? CKyGStaPnt::DimRight : CKyGStaPnt::DimLeft);
    chart.Draw(&marker);
}
