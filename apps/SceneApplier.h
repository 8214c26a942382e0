// SceneApplier: hands a Scene to the chart. Apply sets the state model's pressure and
// formulation and every setting of the settings singleton (a setting the scene leaves out
// gets the library's default, whatever was set before), and resolves the scene's states,
// processes and ratio lines with the state model; DrawOverlays then draws them onto the
// chart's surface through CKyGChart::Draw.
//
// The chart computes its enthalpy angle once, when the chart singleton is built, from the
// settings and the pressure of that moment: a host applies its scene before the first
// CKyGChart::GetKyGChart() call.
#pragma once

#include "ProcessLoads.h"
#include "Scene.h"
#include "SceneExtrasApplier.h"

#include <kygraph/KyAS.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGStaPnt.h>
#include <kygraph/KyStaPnt.h>

#include <map>
#include <string>
#include <vector>

class CKyGChart;
class HostLayout;

class SceneApplier {
public:
    // True when the whole scene was applied. Otherwise false with every problem found (a
    // range or design condition the model refuses, an unsupported pair, a name used twice or
    // not defined before its use, a process the model refuses), and the settings, pressure,
    // formulation and overlays are left exactly as they were before the call.
    bool Apply(const Scene& scene, std::vector<SceneError>& errors);

    // Puts the settings of the last successful Apply back into the settings singleton (a fit to
    // a window changes the draw scale). The pressure and formulation are left as they are: only
    // Apply changes them, so a host may read the model on other threads meanwhile.
    void Reapply() const;
    // The settings as the last successful Apply left them (the defaults before any), for a
    // host that maps pixels with a chart of its own (CKyGChart(CKyGChartSetting&)).
    const CKyGChartSetting& Applied() const { return m_applied; }

    // Draws the ratio lines, the processes and the state points of the last successful Apply,
    // in that order, through chart.Draw. True when every one was drawn; otherwise false with
    // one error (the chart's or the element's text) for each that was not, the others drawn.
    // With hostLabels the markers, processes and ratio lines are drawn without their labels,
    // which CollectLabels hands to a HostLayout instead.
    bool DrawOverlays(CKyGChart& chart, std::vector<SceneError>& errors, bool hostLabels = false);

    // True unless the last applied scene asks for the chart's own label placement.
    bool HostLabels() const { return m_hostLabels; }
    // The dots and labels of the overlays, in pixels of chart as it is drawn now.
    void CollectLabels(CKyGChart& chart, HostLayout& layout) const;

    // The builder steps of the last successful Apply's processes, in scene order, and every
    // named state in the order the scene defines them (the report lists both).
    const std::vector<ProcessLoads::Step>& Steps() const { return m_steps; }
    const std::vector<CKyStaPnt>& NamedStates() const { return m_named; }
    // With hostLabels, DrawOverlays leaves out what lies under the overlays (the extra line
    // families, data sets and zones) and the legend: the host draws them with these before
    // it places its labels.
    void DrawUnder(CKyGChart& chart) { m_extras.DrawUnder(chart, true); }
    void DrawLegend(CKyGChart& chart, RECT* placed = nullptr) { m_extras.DrawLegend(chart, placed); }
    // Zones, data sets, extra line families and legend: what they could not draw.
    const std::vector<SceneExtrasApplier::Note>& Notes() const { return m_extras.Notes(); }

private:
    struct Marker {
        std::string pointer;
        CKyGStaPnt element;
    };
    struct Process {
        std::string pointer;
        CKyGProcess element;
    };
    struct RatioLine {
        std::string pointer;
        CKyStaPnt from;
        CKyStaPnt to;
        CKyAS ratio;
        int label = 1;
    };

    // Resolves everything into the members below; errors for what the model refuses.
    void ApplySettings(const Scene& scene, std::vector<SceneError>& errors);
    void CheckDesign(std::vector<SceneError>& errors) const;
    void BuildOverlays(const Scene& scene, std::vector<SceneError>& errors);
    void BuildProcess(const SceneProcess& process, const std::string& ptr, std::vector<SceneError>& errors);

    bool ResolveState(const SceneState& s, const std::string& ptr, CKyStaPnt& out, std::vector<SceneError>& errors);
    bool ResolveRef(const SceneStateRef& r, const std::string& ptr, CKyStaPnt& out, std::vector<SceneError>& errors);
    // Makes name refer to pnt from now on; an error when the name is taken.
    void Define(const std::string& name, const CKyStaPnt& pnt, const std::string& ptr, std::vector<SceneError>& errors);

    // The settings as the library builds them; their constructor is open to derived classes.
    struct DefaultSettings : CKyGChartSetting {
        DefaultSettings() = default;
    };

    DefaultSettings m_defaults;
    DefaultSettings m_applied;

    std::map<std::string, CKyStaPnt> m_names;  // named states of the scene being applied
    std::vector<CKyStaPnt> m_named;
    std::vector<ProcessLoads::Step> m_steps;
    std::vector<Marker> m_markers;
    std::vector<Process> m_processes;
    std::vector<RatioLine> m_ratioLines;
    bool m_hostLabels = true;
    SceneExtrasApplier m_extras;
};
