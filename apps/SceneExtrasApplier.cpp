#include "SceneExtrasApplier.h"

#include "HostLayout.h"

#include "StateCsv.h"

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGLegend.h>
#include <kygraph/KyGLineFamilies.h>

#include <filesystem>
#include <sstream>

namespace {

bool PresetOf(const std::string& key, CKyGZone::Preset& out)
{
    for (int i = 0; i < CKyGZone::kPresetCount; ++i) {
        const auto p = static_cast<CKyGZone::Preset>(i);
        if (key == CKyGZone::PresetKey(p)) {
            out = p;
            return true;
        }
    }
    return false;
}

std::string PresetKeys()
{
    std::string s;
    for (int i = 0; i < CKyGZone::kPresetCount; ++i)
        s += std::string(i ? ", " : "") + CKyGZone::PresetKey(static_cast<CKyGZone::Preset>(i));
    return s;
}

}  // namespace

bool SceneExtrasApplier::Apply(const Scene& scene, CKyGChartSetting& settings, std::vector<SceneError>& errors)
{
    const SceneExtras& x = scene.extras;
    const size_t before = errors.size();
    std::vector<Zone> zones;
    std::vector<Data> data;
    std::vector<Note> notes;

    for (size_t i = 0; i < x.zones.size(); ++i) {
        const SceneZone& z = x.zones[i];
        const std::string ptr = JsonPointer("/zones", i);
        CKyGZone zone;
        if (z.preset) {
            CKyGZone::Preset p{};
            if (!PresetOf(*z.preset, p)) {
                errors.push_back({JsonPointer(ptr, "preset"), 0, 0,
                                  "unknown preset \"" + SceneError::Quoted(*z.preset) + "\"; use one of " + PresetKeys()});
                continue;
            }
            zone = CKyGZone::FromPreset(p);
        } else {
            zone.SetName(CString::FromUtf8("zone " + std::to_string(i + 1)));
        }
        if (z.name) zone.SetName(CString::FromUtf8(*z.name));
        if (z.color) zone.SetColor(*z.color);
        for (int q = 0; q < SceneZone::kQuantityCount; ++q) {
            const SceneZoneBound& b = z.bounds[q];
            if (!b.min && !b.max) continue;
            const auto k = static_cast<CKyGZone::Quantity>(q);
            // Relative humidity is in percent in scenes, a fraction in the chart.
            const double scale = q == SceneZone::RH ? 0.01 : 1.0;
            const double lo = b.min ? *b.min * scale : zone.GetLow(k), hi = b.max ? *b.max * scale : zone.GetHigh(k);
            if (!zone.SetBounds(k, lo, hi))
                errors.push_back({JsonPointer(ptr, SceneZone::Key(static_cast<SceneZone::Quantity>(q))), 0, 0,
                                  "the lower limit is above the upper one"});
        }
        if (zone.Outline().empty())
            notes.push_back({ptr, "the zone's limits enclose no state of moist air; it is not drawn", true});
        zones.push_back({ptr, zone});
    }

    for (size_t i = 0; i < x.data.size(); ++i) {
        const SceneData& d = x.data[i];
        const std::string ptr = JsonPointer("/data", i);
        CKyGDataSet set;
        const std::string mode = d.mode.value_or("auto");
        if (mode == "points") set.SetMode(CKyGDataSet::Points);
        else if (mode == "density") set.SetMode(CKyGDataSet::Density);
        else if (mode != "auto") {
            errors.push_back({JsonPointer(ptr, "mode"), 0, 0, "unknown mode \"" + SceneError::Quoted(mode) + "\"; use auto, points or density"});
            continue;
        }
        set.SetName(CString::FromUtf8(d.name.value_or(std::filesystem::path(d.file).stem().string())));
        StateCsv::Table table;
        std::string error;
        bool ok;
        if (d.csv) {
            std::istringstream in(*d.csv);
            ok = StateCsv::Parse(in, table, error);
        } else {
            ok = StateCsv::ReadFile(d.file, table, error);
        }
        if (!ok) {
            notes.push_back({ptr, d.file + ": " + error + "; the data set is not drawn", true});
            continue;
        }
        if (const std::string s = StateCsv::RejectedSummary(table); !s.empty()) notes.push_back({ptr, d.file + ": " + s});
        set.Reserve(table.hd.size());
        for (const auto& [h, dd] : table.hd) set.AddHD(h, dd);
        data.push_back({ptr, d.file, set});
    }
    if (errors.size() != before) return false;

    CKyGOverlaySetting& ov = settings.m_OverlaySetting;
    const CKyGOverlaySetting defaults;
    ov.m_bShowSameTwb = x.wetBulbLines.show.value_or(false);
    ov.m_dTwbInterval = x.wetBulbLines.interval.value_or(defaults.m_dTwbInterval);
    ov.m_bDimSameTwb = x.wetBulbLines.labels.value_or(true);
    ov.m_bShowSameV = x.volumeLines.show.value_or(false);
    ov.m_dVInterval = x.volumeLines.interval.value_or(defaults.m_dVInterval);
    ov.m_bDimSameV = x.volumeLines.labels.value_or(true);

    m_zones = std::move(zones);
    m_data = std::move(data);
    m_legend = x.legend;
    m_processNames.clear();
    for (size_t i = 0; i < scene.processes.size(); ++i) {
        const auto& steps = scene.processes[i].steps;
        m_processNames.push_back(!steps.empty() && steps[0].name ? *steps[0].name : "process " + std::to_string(i + 1));
    }
    m_applyNotes = std::move(notes);
    m_notes = m_applyNotes;
    return true;
}

void SceneExtrasApplier::DrawUnder(CKyGChart& chart, bool hostLabels)
{
    m_notes = m_applyNotes;
    CKyGLineFamilies families;
    chart.Draw(&families);
    for (Data& d : m_data) {
        const bool drawn = chart.Draw(&d.element) != 0;
        if (!drawn)
            m_notes.push_back({d.pointer, d.file + ": " + d.element.GetLastErrorString().ToUtf8(), true});
        else if (d.element.GetSkipped() > 0)
            m_notes.push_back({d.pointer, d.file + ": " + std::to_string(d.element.GetSkipped()) + " of " +
                                              std::to_string(d.element.GetCount()) +
                                              " states lie outside the chart and are not drawn"});
    }
    for (Zone& z : m_zones) {
        const int named = z.element.GetDimEnable();
        if (hostLabels) z.element.SetDimEnable(0);
        // A zone already noted as empty is not noted again.
        if (!chart.Draw(&z.element) && !z.element.Outline().empty())
            m_notes.push_back({z.pointer, z.element.GetLastErrorString().ToUtf8(), true});
        z.element.SetDimEnable(named);
    }
}

void SceneExtrasApplier::CollectLabels(HostLayout& layout) const
{
    const CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    const double height = set->m_OverlaySetting.m_ZoneStyle.nTextHeight * set->GetDrawScale();
    for (const Zone& z : m_zones) {
        CPoint at;
        if (!z.element.GetDimEnable() || z.element.GetName().IsEmpty() || !z.element.GetNamePoint(at)) continue;
        layout.AddLabel({at, 0, z.element.GetName(), height, z.element.GetColor(), LabelPlacer::Top});
    }
}

void SceneExtrasApplier::DrawLegend(CKyGChart& chart, RECT* placed)
{
    if (placed) *placed = RECT{};
    if (!m_legend.show.value_or(false)) return;
    CKyGLegend legend;
    legend.SetFamilies(m_legend.families.value_or(true));
    if (m_legend.x && m_legend.y) legend.SetPosition(CPoint(*m_legend.x, *m_legend.y));
    for (const Zone& z : m_zones) legend.AddZone(z.element);
    for (const Data& d : m_data) legend.AddDataSet(d.element);
    for (const std::string& p : m_processNames) legend.AddProcess(CString::FromUtf8(p));
    if (!chart.Draw(&legend)) m_notes.push_back({"/legend", legend.GetLastErrorString().ToUtf8()});
    else if (placed) *placed = legend.GetPlacedRect();
}
