// SceneExtrasApplier: hands the optional overlays of a scene to the chart: the settings of the
// wet-bulb and volume line families, the zones, the data sets read from their CSV files, and
// the legend. Problems that leave the chart drawable (a zone that encloses nothing, a data file
// that cannot be used, rows that are not states, states off the chart) are notes, not errors:
// the host reports them and draws the chart all the same.
#pragma once

#include "Scene.h"

#include <kygraph/KyGDataSet.h>
#include <kygraph/KyGZone.h>

#include <string>
#include <vector>

class CKyGChart;
class CKyGChartSetting;
class HostLayout;

class SceneExtrasApplier {
public:
    struct Note {
        std::string pointer;  // "/zones/1", "/data/0"
        std::string message;
        bool unusable = false;  // something asked for is not drawn at all
    };

    // Builds zones and data sets (data files are read here) and sets the line families into
    // settings. False with errors for what the scene itself gets wrong (an unknown preset or
    // mode, a lower limit above the upper); nothing is changed then.
    bool Apply(const Scene& scene, CKyGChartSetting& settings, std::vector<SceneError>& errors);
    // The line families, the data sets and then the zones (translucent, so the data shows
    // through), under the host's points.
    // With hostLabels the zones' names are left to CollectLabels.
    void DrawUnder(CKyGChart& chart, bool hostLabels = false);
    // The zones' names as labels of a HostLayout, at the points the last DrawUnder found.
    void CollectLabels(HostLayout& layout) const;
    // The legend, when the scene asks for one; last, so that it finds free space.
    // placed, when given, gets the legend's box (empty when none was drawn).
    void DrawLegend(CKyGChart& chart, RECT* placed = nullptr);
    // Notes of the last Apply and of the draws since.
    const std::vector<Note>& Notes() const { return m_notes; }

private:
    struct Data {
        std::string pointer;
        std::string file;
        CKyGDataSet element;
    };
    struct Zone {
        std::string pointer;
        CKyGZone element;
    };
    SceneLegend m_legend;
    std::vector<Zone> m_zones;
    std::vector<Data> m_data;
    std::vector<std::string> m_processNames;
    std::vector<Note> m_notes;
    std::vector<Note> m_applyNotes;
};
