// CSV tables of states as `kygraph render --data` and the viewer's import read them, and the
// scene keys of the overlays.
#include "CliTestSupport.h"

#include "SceneApplier.h"
#include "SceneReader.h"
#include "SceneWriter.h"
#include "StateCsv.h"

#include <gtest/gtest.h>

#include <sstream>

using clitest::RunKygraph;

TEST(StateCsv, HeadersRowsAndRefusals)
{
    const struct {
        const char* text;
        size_t maxRows;
        const char* columns;  // null: the file is refused
        size_t states, rejected;
        std::vector<size_t> lines;
        const char* error;  // part of the refusal
    } cases[] = {
        {"time,tdb,rh\n2023-01-01T00:00,25,60\n2023-01-01T01:00,24,62\n", 100, "tdb+rh", 2, 0, {}, ""},
        // Units, a byte-order mark, semicolons, a comment and a blank line.
        {"\xEF\xBB\xBF# station 1\nDate;T (°C);RH (%)\n1;25;60\n\n2;30;40\n", 100, "tdb+rh", 2, 0, {}, ""},
        {"t,d\n20,8\n", 100, "tdb+d", 1, 0, {}, ""},
        {"h\td\tremark\n50\t10\tok\n", 100, "h+d", 1, 0, {}, ""},
        // Text, a missing cell, supersaturation, a number out of its range, an inf.
        {"tdb,rh\n25,60\nx,60\n25\n20,100\n25,150\n25,inf\n30,50\n", 100, "tdb+rh", 3, 4, {3, 4, 6, 7}, ""},
        {"a,b\n1,2\n", 100, nullptr, 0, 0, {}, "no recognisable header"},
        {"tdb,twb\n", 100, "tdb+twb", 0, 0, {}, ""},
        {"d,pv\n1,2\n", 100, nullptr, 0, 0, {}, "names no pair"},
        {"", 100, nullptr, 0, 0, {}, "no header"},
        {"tdb,rh\n1,2\n3,4\n5,6\n", 2, nullptr, 0, 0, {}, "more than 2 rows"},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.text);
        StateCsv::Table t;
        std::string error;
        const bool ok = StateCsv::Parse(in, t, error, c.maxRows);
        ASSERT_EQ(ok, c.columns != nullptr) << c.text << " -> " << error;
        if (!ok) {
            EXPECT_NE(error.find(c.error), std::string::npos) << error;
            EXPECT_TRUE(t.hd.empty());
            continue;
        }
        EXPECT_EQ(t.columns, c.columns) << c.text;
        EXPECT_EQ(t.hd.size(), c.states) << c.text;
        EXPECT_EQ(t.rejected, c.rejected) << c.text;
        EXPECT_EQ(t.rejectedLines, c.lines) << c.text;
    }
    // The summary names at most the first few lines and says more follow.
    std::string many = "tdb,rh\n";
    for (int i = 0; i < 8; ++i) many += "x,1\n";
    std::istringstream in(many);
    StateCsv::Table t;
    std::string error;
    ASSERT_TRUE(StateCsv::Parse(in, t, error));
    EXPECT_EQ(StateCsv::RejectedSummary(t), "8 of 8 rows are not states (lines 2, 3, 4, 5, 6, ...) and are not drawn");
}

TEST(RenderCommand, DataFilesAreDrawnAndTheirProblemsToldOnceWithTheChartStillWritten)
{
    const std::filesystem::path dir = clitest::ScratchDir("data");
    clitest::WriteText(dir / "year.csv", "time,tdb,rh\n0,25,60\n1,x,60\n2,20,50\n3,25,160\n4,80,5\n");
    clitest::WriteText(dir / "plain.csv", "1,2\n3,4\n");
    clitest::WriteText(dir / "empty-zone.json", R"({"zones": [{"tdb": [30, 40], "rh": [80, 100], "d": [0, 2]}]})");
    const struct {
        std::vector<std::string> args;
        int status;
        std::string err;
    } cases[] = {
        // One row not a state, one not a number, one state above the chart.
        {{"render", "--data", "year.csv", "-o", "a.png"}, 0,
         "kygraph: year.csv: 2 of 5 rows are not states (lines 3, 5) and are not drawn\n"
         "kygraph: year.csv: 1 of 3 states lie outside the chart and are not drawn\n"},
        {{"render", "--data", "plain.csv", "-o", "b.png"}, 1,
         "kygraph: plain.csv: no recognisable header: \"1,2\" names no pair of state columns (tdb+rh, tdb+twb, "
         "tdb+tdp, tdb+pv, d+tdb, h+tdb, h+d, d+rh, h+rh); the data set is not drawn\n"},
        {{"render", "empty-zone.json", "-o", "c.png"}, 1,
         "kygraph: empty-zone.json:/zones/0: the zone's limits enclose no state of moist air; it is not drawn\n"},
    };
    for (const auto& c : cases) {
        const clitest::Run r = RunKygraph(c.args, dir);
        EXPECT_EQ(r.status, c.status) << c.args[2];
        EXPECT_EQ(r.err, c.err) << c.args[2];
        EXPECT_TRUE(std::filesystem::exists(dir / c.args.back())) << c.args[2];
    }
}

TEST(SceneFormat, OverlayKeysReadBackAsWritten)
{
    const std::string text = R"({
      "zones": [{"preset": "gb50736-summer-1"}, {"name": "Z", "color": "#102030", "tdb": [20, null], "rh": [null, 70]}],
      "data": [{"file": "year.csv", "name": "year", "mode": "density"}],
      "wet_bulb_lines": {"show": true, "interval": 2},
      "volume_lines": {"show": true, "interval": 0.01, "labels": false},
      "legend": {"show": true, "x": 40, "y": 60}
    })";
    Scene scene;
    std::vector<SceneError> errors;
    ASSERT_TRUE(SceneReader::Parse(text, scene, errors)) << (errors.empty() ? "" : errors[0].message);
    ASSERT_EQ(scene.extras.zones.size(), 2u);
    EXPECT_EQ(scene.extras.zones[1].bounds[SceneZone::RH].max, 70.0);
    EXPECT_FALSE(scene.extras.zones[1].bounds[SceneZone::Tdb].max.has_value());
    Scene again;
    ASSERT_TRUE(SceneReader::Parse(SceneWriter::Write(scene), again, errors));
    EXPECT_TRUE(again == scene);

    const struct {
        const char* text;
        const char* pointer;
    } bad[] = {
        {R"({"zones": [{"tdb": [20]}]})", "/zones/0/tdb"},
        {R"({"zones": [{"name": "nothing"}]})", "/zones/0"},
        {R"({"data": [{"name": "x"}]})", "/data/0"},
        {R"({"volume_lines": {"interval": 0}})", "/volume_lines/interval"},
        {R"({"legend": {"shown": true}})", "/legend/shown"},
    };
    for (const auto& b : bad) {
        errors.clear();
        EXPECT_FALSE(SceneReader::Parse(b.text, scene, errors)) << b.text;
        ASSERT_FALSE(errors.empty()) << b.text;
        EXPECT_EQ(errors[0].pointer, b.pointer) << b.text << ": " << errors[0].message;
    }
}

TEST(SceneFormat, OverlaySettingsFollowEachSceneAndBadZonesAreErrors)
{
    SceneApplier applier;
    std::vector<SceneError> errors;
    const CKyGOverlaySetting& live = CKyGChartSetting::GetKyGChartSetting()->m_OverlaySetting;
    Scene lines;
    lines.extras.wetBulbLines.show = true;
    lines.extras.volumeLines = SceneLineFamily{true, 0.02, false};
    ASSERT_TRUE(applier.Apply(lines, errors));
    EXPECT_EQ(live.m_bShowSameTwb, 1);
    EXPECT_EQ(live.m_bShowSameV, 1);
    EXPECT_EQ(live.m_dVInterval, 0.02);
    EXPECT_EQ(live.m_bDimSameV, 0);
    // The next scene says nothing of them: they are off again.
    ASSERT_TRUE(applier.Apply(Scene{}, errors));
    EXPECT_EQ(live.m_bShowSameTwb, 0);
    EXPECT_EQ(live.m_bShowSameV, 0);

    const struct {
        SceneZone zone;
        const char* pointer;
    } bad[] = {
        {SceneZone{std::string("gb50736-autumn"), {}, {}, {}}, "/zones/0/preset"},
        {SceneZone{{}, {}, {}, {SceneZoneBound{30.0, 20.0}, {}, {}, {}, {}}}, "/zones/0/tdb"},
        {SceneZone{{}, {}, {}, {SceneZoneBound{}, SceneZoneBound{90.0, 10.0}, {}, {}, {}}}, "/zones/0/rh"},
    };
    for (const auto& b : bad) {
        Scene s = lines;
        s.extras.zones = {b.zone};
        errors.clear();
        EXPECT_FALSE(applier.Apply(s, errors));
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0].pointer, b.pointer) << errors[0].message;
        // Nothing of the refused scene took effect.
        EXPECT_EQ(live.m_bShowSameTwb, 0);
    }
}
