// The host's labels and title block as kygraph render and the viewer draw them: no label covers
// another or a dot, and the title block covers no text, in the example scenes and in ranges
// where the chart's own block stands on the rulers.
#include "HostLayout.h"
#include "LabelPlacer.h"
#include "SceneApplier.h"
#include "SceneReader.h"
#include "SceneRenderer.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGraphModule.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

std::string Describe(const RECT& r)
{
    return "(" + std::to_string(r.left) + "," + std::to_string(r.top) + ")-(" + std::to_string(r.right) + "," +
           std::to_string(r.bottom) + ")";
}

bool IsBlockRow(const CString& text)
{
    CResourceModule::Scope scope(KyGraphModule());
    for (UINT id : {IDS_CHART_TITLE, IDS_FORMULA_KJ, IDS_FORMULA_KCAL}) {
        CString row;
        row.LoadString(id);
        if (row == text) return true;
    }
    return text.Find(L"Pa/") >= 0;  // the pressure row
}

}  // namespace

TEST(HostLayout, NoLabelCoversALabelOrDotAndTheTitleBlockCoversNoText)
{
    std::vector<std::pair<std::string, std::string>> scenes;
    for (const auto& e : std::filesystem::directory_iterator(std::string(KY_SOURCE_DIR) + "/examples/scenes")) {
        std::ifstream in(e.path());
        std::stringstream ss;
        ss << in.rdbuf();
        scenes.emplace_back(e.path().stem().string(), ss.str());
    }
    // Ranges and pressures where the chart's own block stands on a ruler or the pressure text.
    const std::string process = R"("processes": [{"states": [{"name": "O", "tdb": 26, "rh": 50}, {"name": "L", "tdb": 14, "rh": 95}, {"name": "R", "tdb": 18, "d": 9.5}],
        "steps": [{"type": "path", "points": ["O", "L", "R"]}]}], "points": [{"name": "室内点", "tdb": 25.5, "rh": 52}])";
    scenes.emplace_back("-15..45", R"({"range": {"tmin": -15, "tmax": 45}, )" + process + "}");
    scenes.emplace_back("0 min", R"({"range": {"tmin": 0, "tmax": 45}, )" + process + "}");
    scenes.emplace_back("2000 m", R"({"pressure": 79500, )" + process + "}");
    scenes.emplace_back("2000 m en", R"({"pressure": 79500, "lang": "en", )" + process + "}");

    for (const auto& [name, text] : scenes) {
        Scene scene;
        std::vector<SceneError> errors;
        ASSERT_TRUE(SceneReader::Parse(text, scene, errors)) << name;
        SceneApplier applier;
        ASSERT_TRUE(applier.Apply(scene, errors)) << name;
        KyGraphSetLanguage(scene.lang.value_or(KyGraphLanguage::Chinese));
        CImageWnd wnd(scene.width.value_or(Scene::kDefaultWidth), scene.height.value_or(Scene::kDefaultHeight));
        ASSERT_EQ(SceneRenderer::Draw(applier, wnd, wnd, errors), SceneRenderer::Done) << name;
        CDC* dc = CKyGChart::GetKyGChart()->GetChartDC();
        const std::vector<CDrawRecord>& records = dc->GetRecords();

        // The host draws its labels (and a moved block) after every dot; the dots are ellipses.
        size_t lastDot = 0;
        std::vector<RECT> dots, labels, block, texts;
        for (size_t i = 0; i < records.size(); ++i)
            if (records[i].kind == CDrawRecord::Ellipse) {
                lastDot = i;
                dots.push_back(RECT{records[i].pts[0].x, records[i].pts[0].y, records[i].pts[1].x, records[i].pts[1].y});
            }
        ASSERT_FALSE(dots.empty()) << name;
        for (size_t i = 0; i < records.size(); ++i) {
            if (records[i].kind != CDrawRecord::Text || records[i].text.IsEmpty()) continue;
            const RECT box = HostLayout::TextBox(dc, records[i]);
            // An English chart has no Chinese text of its own (a name the scene gives may be).
            if (scene.lang == KyGraphLanguage::English && i <= lastDot) {
                for (wchar_t c : std::wstring(records[i].text.GetString())) {
                    EXPECT_FALSE(c >= 0x2E80 && c <= 0x9FFF) << name << ": \"" << records[i].text.ToUtf8() << "\"";
                }
            }
            if (IsBlockRow(records[i].text)) block.push_back(box);
            else if (i > lastDot) labels.push_back(box);
            else texts.push_back(box);
        }
        EXPECT_FALSE(labels.empty()) << name;
        EXPECT_EQ(block.size(), 4u) << name;
        for (size_t i = 0; i < labels.size(); ++i) {
            for (size_t j = i + 1; j < labels.size(); ++j)
                EXPECT_FALSE(LabelPlacer::Overlap(labels[i], labels[j]))
                    << name << ": label " << Describe(labels[i]) << " covers label " << Describe(labels[j]);
            for (const RECT& d : dots)
                EXPECT_FALSE(LabelPlacer::Overlap(labels[i], d)) << name << ": label " << Describe(labels[i]) << " covers a dot";
        }
        for (const RECT& b : block) {
            for (const RECT& t : texts) EXPECT_FALSE(LabelPlacer::Overlap(b, t)) << name << ": the title block covers the text at " << Describe(t);
            for (const RECT& l : labels) EXPECT_FALSE(LabelPlacer::Overlap(b, l)) << name << ": the title block covers a label";
        }
        CKyGChart::GetKyGChart()->AttachDarwWnd(nullptr);
    }
    KyGraphSetLanguage(KyGraphLanguage::Chinese);
}

TEST(LabelPlacer, TakesTheFirstFreeSideThenALeaderAndStaysInItsBounds)
{
    const CSize size(20, 10);
    LabelPlacer placer(RECT{0, 0, 200, 200});
    placer.AddDot(CPoint(100, 100), 3);
    // The preferred side when free; with it taken, the next one clockwise.
    const LabelPlacer::Placement a = placer.Place(CPoint(100, 100), 3, size, LabelPlacer::Top);
    EXPECT_EQ(a.box.bottom, 95);
    EXPECT_FALSE(a.leader);
    const LabelPlacer::Placement b = placer.Place(CPoint(100, 100), 3, size, LabelPlacer::Top);
    EXPECT_EQ(b.box.left, 105);
    EXPECT_FALSE(LabelPlacer::Overlap(a.box, b.box));
    // Every side of a crowded dot taken: a leader away from it, still clear of the others.
    std::vector<RECT> boxes{a.box, b.box};
    for (int i = 0; i < 8; ++i) boxes.push_back(placer.Place(CPoint(100, 100), 3, size, LabelPlacer::Top).box);
    EXPECT_TRUE(placer.Place(CPoint(100, 100), 3, size, LabelPlacer::Top).leader);
    for (size_t i = 0; i < boxes.size(); ++i)
        for (size_t j = i + 1; j < boxes.size(); ++j) EXPECT_FALSE(LabelPlacer::Overlap(boxes[i], boxes[j])) << i << " " << j;
    // A dot in the corner puts its label inside the bounds.
    const RECT c = placer.Place(CPoint(2, 2), 3, size, LabelPlacer::Top).box;
    EXPECT_GE(c.left, 0);
    EXPECT_GE(c.top, 0);
}
