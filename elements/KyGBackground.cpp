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
#include <kygraph/KyGraphModule.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

namespace {

using Set = CKyGChartSetting;
using Step = CKyGValueStepper::Step;
using Steps = std::vector<Step>;

// A wet-bulb or volume line costs hundreds of state-model calls; more lines than this would
// take seconds and fill the chart solid, so such a family ends here whatever its interval.
constexpr int kMaxOverlayLines = 200;

enum class Layer { Redraw, Overlay };

// The element class of a family: how to make one, and whether a line is one of its kind.
struct ElementKind {
    std::unique_ptr<CKyGSameLine> (*make)();
    bool (*is)(const CKyGSameLine&);
};

template <class Element>
constexpr ElementKind Kind{[]() -> std::unique_ptr<CKyGSameLine> { return std::make_unique<Element>(); },
                           [](const CKyGSameLine& e) { return dynamic_cast<const Element*>(&e) != nullptr; }};

// One line family: when it is drawn, at which values, by which element, in which style, and
// whether each line is labelled; the redraw or the overlays draw it, and the legend names it.
struct FamilyRow {
    Layer layer;
    bool (*on)(const Set&);
    Steps (*values)(const Set&);
    ElementKind element;
    const tagKyLineStyle& (*style)(const Set&);
    int (*label)(const Set&, const Step&);
    UINT legendText;
    int legendPlace;
};

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
    {Layer::Redraw, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameD != 0; },
     [](const Set& s) {
         return CKyGValueStepper::Stepped(s.m_RangeSetting.GetMinD(), s.m_RangeSetting.GetMaxD(),
                                          s.m_DrawHstSetting.m_dDInterval);
     },
     Kind<CKyGSameD>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameDStyle; },
     OnMultiplesOfFive, IDS_LEGEND_D_LINES, 1},
    {Layer::Redraw, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameRH != 0; },
     [](const Set& s) {
         Steps steps;
         for (double phi : CKyGValueStepper::RelativeHumidities(s.m_DrawHstSetting.m_dRHInterval))
             steps.push_back({phi, 1});
         return steps;
     },
     Kind<CKyGSameRH>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameRHStyle; },
     [](const Set&, const Step&) { return 1; }, IDS_LEGEND_RH_CURVES, 3},  // every curve keeps its label
    {Layer::Redraw, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameT != 0; },
     [](const Set& s) {
         return CKyGValueStepper::Stepped(s.m_RangeSetting.GetMinT(), s.m_RangeSetting.GetMaxT(),
                                          s.m_DrawHstSetting.m_dTInterval);
     },
     Kind<CKyGSameT>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameTStyle; },
     OnMultiplesOfFive, IDS_LEGEND_ISOTHERMS, 0},
    // The enthalpy span is the singleton's range, whichever settings switch the family on.
    {Layer::Redraw, [](const Set& s) { return s.m_DrawHstSetting.m_bShowSameH != 0; },
     [](const Set& s) {
         return CKyGValueStepper::Stepped(CKyGSameH::GetMinValue(), CKyGSameH::GetMaxValue(),
                                          s.m_DrawHstSetting.m_dHInterval);
     },
     Kind<CKyGSameH>, [](const Set& s) -> const tagKyLineStyle& { return s.m_StyleSetting.m_SameHStyle; },
     [](const Set&, const Step&) { return 0; }, IDS_LEGEND_H_LINES, 2},  // labels on the ruler
    // Wet bulbs reach below the lowest dry bulb at the dry edge of the chart.
    {Layer::Overlay, [](const Set& s) { return s.m_OverlaySetting.m_bShowSameTwb != 0; },
     [](const Set& s) {
         const double step = s.m_OverlaySetting.m_dTwbInterval;
         return CKyGValueStepper::Stepped(CKyGValueStepper::FirstMultiple(LowestT(s) - 15.0, step), HighestT(s),
                                          step, kMaxOverlayLines);
     },
     Kind<CKyGSameTwb>, [](const Set& s) -> const tagKyLineStyle& { return s.m_OverlaySetting.m_SameTwbStyle; },
     [](const Set& s, const Step&) { return s.m_OverlaySetting.m_bDimSameTwb; }, IDS_LEGEND_TWB_LINES, 4},
    {Layer::Overlay, [](const Set& s) { return s.m_OverlaySetting.m_bShowSameV != 0; }, VolumeSteps,
     Kind<CKyGSameV>, [](const Set& s) -> const tagKyLineStyle& { return s.m_OverlaySetting.m_SameVStyle; },
     [](const Set& s, const Step&) { return s.m_OverlaySetting.m_bDimSameV; }, IDS_LEGEND_V_LINES, 5},
};

// Draws the families of layer through chart, one element per family whose value changes
// between lines; the number of lines handed to chart.
int DrawFamilies(CKyGChart& chart, const Set& set, Layer layer)
{
    int lines = 0;
    for (const FamilyRow& row : kFamilies) {
        if (row.layer != layer || !row.on(set)) continue;
        const std::unique_ptr<CKyGSameLine> element = row.element.make();
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

const tagKyLineStyle& CKyGBackground::Style(const CKyGSameLine& family)
{
    for (const FamilyRow& row : kFamilies)
        if (row.element.is(family)) return row.style(*CKyGChartSetting::GetKyGChartSetting());
    static const tagKyLineStyle plain;
    return plain;
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
    DrawFamilies(chart, set, Layer::Redraw);
}

int CKyGBackground::DrawOverlay(CKyGChart& chart)
{
    return DrawFamilies(chart, chart.Frame().Settings(), Layer::Overlay);
}

void CKyGBackground::DrawReferencePoint(CKyGChart& chart, const CKyStaPnt& point, bool labelRight)
{
    CKyGStaPnt marker;
    marker.SetValue(point);
    marker.SetDimEnable(1);
    marker.SetDimPosition(labelRight ? CKyGStaPnt::DimRight : CKyGStaPnt::DimLeft);
    chart.Draw(&marker);
}

std::vector<CKyGBackground::Shown> CKyGBackground::ShownFamilies()
{
    const Set& set = *CKyGChartSetting::GetKyGChartSetting();
    std::vector<Shown> shown(std::size(kFamilies), Shown{0, nullptr});
    for (const FamilyRow& row : kFamilies)
        if (row.on(set)) shown[static_cast<size_t>(row.legendPlace)] = {row.legendText, &row.style(set)};
    std::erase_if(shown, [](const Shown& s) { return s.style == nullptr; });
    return shown;
}
