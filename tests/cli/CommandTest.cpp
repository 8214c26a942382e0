// The built kygraph program as an engineer runs it: exit statuses and error lines, states
// against hand-checked values, the state under a pixel, and rendered files (PNG against
// reviewed images, SVG and PDF as documents). The example scenes' reviewed images live in
// tests/golden-cli; KY_UPDATE_GOLDEN=1 rewrites them (look at them before committing).
#include "CliTestSupport.h"
#include "HostLanguage.h"

#include "Scene.h"
#include "SceneApplier.h"

#include <kygraph/ImageWnd.h>
#include <kygraph/KyGChart.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/wait.h>

using clitest::RunKygraph;

namespace {

constexpr int kChannelTolerance = 64;
constexpr int kAllowedUnmatched = 16;

bool UpdatingGoldens()
{
    const char* update = std::getenv("KY_UPDATE_GOLDEN");
    return update && std::string(update) == "1";
}

nlohmann::ordered_json StateJson(const std::vector<std::string>& args)
{
    const clitest::Run r = RunKygraph(args, clitest::ScratchDir("state-json"));
    EXPECT_EQ(r.status, 0) << r.err;
    return nlohmann::ordered_json::parse(r.out, nullptr, false);
}

}  // namespace

TEST(CommandLine, EachBadInputGivesOneLineAndItsStatus)
{
    const std::filesystem::path dir = clitest::ScratchDir("bad-input");
    clitest::WriteText(dir / "bad.json", R"({"points": [{"name": "B", "tdb": 25, "rh": 160}]})");
    clitest::WriteText(dir / "refused.json", R"({"points": [{"tdb": 25, "twb": 20}, {"tdb": 25, "tdp": 30}]})");
    clitest::WriteText(dir / "outside.json", R"({"points": [{"name": "P", "tdb": 80, "rh": 5}]})");
    clitest::WriteText(dir / "french.json", R"({"lang": "fr"})");
    clitest::WriteText(dir / "coil.json", R"({"processes": [{"steps": [
        {"type": "cooling_dehumidify", "from": {"tdb": 26, "rh": 55}, "adp": 20, "bf": 0.1}]}]})");
    CKyStaPnt refused;
    refused.SetBy_TdbandTdp(25, 30);
    const struct {
        std::vector<std::string> args;
        int status;
        std::string err;
    } cases[] = {
        {{}, 2, "no command given; use one of render, state, locate, serve"},
        {{"frobnicate"}, 2, "unknown command \"frobnicate\"; use one of render, state, locate, serve"},
        {{"render", "a.json", "b.json"}, 2, "The following argument was not expected: b.json"},
        {{"render", "--size", "0x800"}, 2, "--size: expected WxH with sides 1..8192, got \"0x800\""},
        {{"render", "--size", "1000x-8"}, 2, "--size: expected WxH with sides 1..8192, got \"1000x-8\""},
        {{"render", "--size", "9000x800"}, 2, "--size: expected WxH with sides 1..8192, got \"9000x800\""},
        {{"render", "-o", "chart.gif"}, 2, "--output: cannot tell the format of \"chart.gif\"; use .png, .svg or .pdf"},
        {{"render", "--antialias", "maybe"}, 2, "--antialias: maybe not in {on,off}"},
        {{"render", "-o", "x.pdf", "--paper", "A5"}, 2, "--paper: unknown paper \"A5\"; use A4, A3 or A2"},
        {{"render", "-o", "x.png", "--paper", "A4"}, 2, "--paper: applies to .svg and .pdf output, without --size"},
        {{"render", "missing.json"}, 2, "missing.json: cannot open the file: No such file or directory"},
        {{"render", "bad.json"}, 2, "bad.json:/points/0/rh: 160 is out of range 0..100"},
        {{"render", "refused.json"}, 2, "refused.json:/points/1: " + refused.GetLastErrorString().ToUtf8()},
        {{"render", "outside.json", "-o", "x.png"}, 1, "outside.json:/points/0: 指定点不在焓湿图的有效范围之内。"},
        {{"render", "-o", "no/such/dir/x.png"}, 1,
         "cannot create a file in no/such/dir: No such file or directory"},
        {{"state", "--tdb", "25"}, 2, "a state needs exactly two of tdb, twb, tdp, rh, d, h, pv; 1 given"},
        {{"state", "--tdb", "25", "--rh", "150"}, 2, "--rh: 150 is out of range 0..100"},
        {{"state", "--tdb", "nan", "--rh", "60"}, 2, "--tdb: expected a decimal number, got \"nan\""},
        {{"state", "--tdb", "abc", "--rh", "60"}, 2, "--tdb: expected a decimal number, got \"abc\""},
        {{"state", "--tdb", "0x10", "--rh", "60"}, 2, "--tdb: expected a decimal number, got \"0x10\""},
        {{"state", "--tdb", "25", "--rh", "100.0000001"}, 2, "--rh: 100.0000001 is out of range 0..100"},
        {{"state", "--tdb", "200", "--twb", "199"}, 2, "no state of moist air has tdb 200 °C and twb 199 °C"},
        {{"locate", "0x10", "5"}, 2, "x: expected a decimal number, got \"0x10\""},
        {{"state", "--tdb", "25", "--tdp", "30"}, 2, refused.GetLastErrorString().ToUtf8()},
        {{"state", "--d", "10", "--pv", "1500"}, 2,
         "the pair d+pv is not supported; use one of tdb+rh, tdb+twb, tdb+tdp, tdb+pv, d+tdb, h+tdb, h+d, d+rh, h+rh"},
        {{"state", "--tdb", "25", "--rh", "60", "--pressure", "20000"}, 2, "--pressure: 20000 is out of range 50000..110000"},
        {{"state", "--tdb", "25", "--rh", "60", "--formulation", "iso"}, 2, "--formulation: iso not in {chart,ashrae,realgas}"},
        {{"state", "--tdb", "25", "--rh", "60", "--altitude", "-600"}, 2, "--altitude: -600 is out of range -500..11000 m"},
        {{"state", "--tdb", "25", "--rh", "60", "--altitude", "6000"}, 2,
         "--altitude: 6000 m gives 47181 Pa, below the lowest pressure the model takes (50000 Pa)"},
        {{"render", "--altitude", "12000"}, 2, "--altitude: out of range -500..11000 m"},
        {{"render", "coil.json", "--report", "r.pdf"}, 2,
         "coil.json:/processes/0/steps/0/adp: the apparatus dew point 20 °C is not below the entering dew point 16.27 °C: the "
         "coil would not dehumidify"},
        {{"locate", "20", "20"}, 1, "pixel (20, 20): 指定点不在焓湿图的有效范围之内。"},
        {{"locate", "20", "20", "--lang", "en"}, 1, "pixel (20, 20): The point is outside the valid range of the chart."},
        {{"render", "--lang", "fr", "-o", "x.png"}, 2, "--lang: no texts in the language \"fr\"; use en or zh"},
        {{"render", "french.json", "-o", "x.png"}, 2, "french.json:/lang: \"fr\" is not one of zh, en"},
        {{"render", "--size", "0x800", "--lang", "zh"}, 2, "--size: 应为 宽x高，边长 1..8192，得到 \"0x800\""},
        {{"locate", "1000", "5", "--lang", "zh"}, 2, "像素 (1000, 5) 位于客户区之外：1000x800"},
        {{"locate", "1000", "5"}, 2, "pixel (1000, 5) lies outside the 1000x800 client area"},
        {{"locate", "--size", "200x100", "-1", "5"}, 2, "pixel (-1, 5) lies outside the 200x100 client area"},
        {{"locate", "5"}, 2, "y is required"},
    };
    for (const auto& c : cases) {
        const clitest::Run r = RunKygraph(c.args, dir);
        std::string args;
        for (const std::string& a : c.args) args += " " + a;
        EXPECT_EQ(r.status, c.status) << "kygraph" << args;
        EXPECT_EQ(r.err, "kygraph: " + c.err + "\n") << "kygraph" << args;
        EXPECT_EQ(r.out, "") << "kygraph" << args;
    }
    // No failed run left an image or a temporary file behind.
    std::vector<std::string> left;
    for (const auto& e : std::filesystem::directory_iterator(dir)) left.push_back(e.path().filename().string());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{"bad.json", "coil.json", "french.json", "outside.json", "refused.json"}));
    // A relative humidity of 0..1 in a scene is read as percent, and said so.
    clitest::WriteText(dir / "fraction.json", R"({"points": [{"name": "F", "tdb": 25, "rh": 0.55}]})");
    const clitest::Run r = RunKygraph({"locate", "300", "300", "--scene", "fraction.json"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "kygraph: fraction.json:/points/0/rh: 0.55 is read as 0.55 %; relative humidity is in percent (55 for 55 %)\n");
}

TEST(CommandLine, HelpOfEachCommandShowsAnExampleAndVersionNamesTheLibrary)
{
    const std::filesystem::path dir = clitest::ScratchDir("help");
    for (const char* cmd : {"render", "state", "locate"}) {
        const clitest::Run r = RunKygraph({cmd, "--help"}, dir);
        EXPECT_EQ(r.status, 0);
        EXPECT_NE(r.out.find(std::string("kygraph ") + cmd + " "), std::string::npos) << r.out;
        EXPECT_NE(r.out.find("Example"), std::string::npos) << r.out;
    }
    const clitest::Run v = RunKygraph({"--version"}, dir);
    EXPECT_EQ(v.status, 0);
    EXPECT_EQ(v.out, "kygraph (KyGraph 1.0.0)\n");
}

TEST(StateCommand, LoadsNoDrawingLibrary)
{
    // kygraph answers states with the model linked in; only other commands load the chart.
    const std::filesystem::path dir = clitest::ScratchDir("state-libs");
    ASSERT_EQ(std::system(("ldd " + clitest::Quote(clitest::kBinary) + " >" + clitest::Quote((dir / "ldd").string())).c_str()), 0);
    const std::string libs = clitest::ReadText(dir / "ldd");
    for (const char* drawing : {"libKy", "libWidgetry", "libcairo", "libpango", "libssl"})
        EXPECT_EQ(libs.find(drawing), std::string::npos) << drawing << " in\n" << libs;
}

TEST(StateCommand, AgreesWithHandCheckedValues)
{
    // h = 1.01 t + 0.001 d (2500 + 1.84 t), exact for a state set by t and d.
    nlohmann::ordered_json s = StateJson({"state", "--tdb", "20", "--d", "10", "--json"});
    EXPECT_NEAR(s["h"].get<double>(), 45.568, 1e-9);
    // The ASHRAE 2017 relations: h = 1.006 t + 0.001 d (2501 + 1.86 t).
    s = StateJson({"state", "--tdb", "20", "--d", "10", "--formulation", "ashrae", "--json"});
    EXPECT_NEAR(s["h"].get<double>(), 45.502, 1e-9);
    // d = 622 pv / (B - pv) at the pressure given.
    s = StateJson({"state", "--tdb", "20", "--pv", "1000", "--altitude", "2000", "--json"});
    EXPECT_NEAR(s["d"].get<double>(), 622.0 * 1000 / (79495.124 - 1000), 1e-6);  // the standard atmosphere at 2 000 m
    s = StateJson({"state", "--tdb", "20", "--pv", "1000", "--pressure", "84000", "--json"});
    EXPECT_NEAR(s["d"].get<double>(), 622.0 * 1000 / 83000, 1e-9);
    // 25 °C, 60 %: pws(25 °C) = 3169.9 Pa (ASHRAE 2017 table 3), pv = 1901.9 Pa, d = 11.898 g/kg,
    // h = 55.54 kJ/kg; relative humidity comes back in percent.
    s = StateJson({"state", "--tdb", "25", "--rh", "60", "--json"});
    EXPECT_NEAR(s["ps"].get<double>(), 3169.9, 3.0);
    EXPECT_NEAR(s["pv"].get<double>(), 1901.9, 2.0);
    EXPECT_NEAR(s["d"].get<double>(), 11.898, 0.015);
    EXPECT_NEAR(s["h"].get<double>(), 55.54, 0.05);
    EXPECT_DOUBLE_EQ(s["rh"].get<double>(), 60.0);
    // Saturated air: wet bulb and dew point equal the dry bulb.
    s = StateJson({"state", "--tdb=-5", "--rh", "100", "--json"});
    EXPECT_NEAR(s["twb"].get<double>(), -5.0, 0.01);
    EXPECT_NEAR(s["tdp"].get<double>(), -5.0, 0.01);
    std::vector<std::string> keys;
    for (const auto& [k, v] : s.items()) keys.push_back(k);
    EXPECT_EQ(keys, (std::vector<std::string>{"tdb", "twb", "tdp", "rh", "d", "h", "pv", "ps", "v", "rho"}));
}

TEST(StateCommand, RelativeHumidityIsPercentAndAMissingDewPointIsNone)
{
    const std::filesystem::path dir = clitest::ScratchDir("state-units");
    clitest::Run r = RunKygraph({"state", "--tdb", "20", "--rh", "0.55", "--json"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "kygraph: note: --rh 0.55 is read as 0.55 %; relative humidity is in percent (--rh 55 for 55 %)\n");
    EXPECT_NEAR(nlohmann::json::parse(r.out)["rh"].get<double>(), 0.55, 1e-9);
    r = RunKygraph({"state", "--tdb", "20", "--d", "0", "--json"}, dir);
    EXPECT_TRUE(nlohmann::json::parse(r.out)["tdp"].is_null()) << r.out;
    r = RunKygraph({"state", "--tdb", "20", "--d", "0"}, dir);
    EXPECT_NE(r.out.find("tdp          none"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("nan"), std::string::npos) << r.out;
}

TEST(RenderCommand, ReportIsAPdfOfTheChartAndItsTables)
{
    const std::filesystem::path dir = clitest::ScratchDir("report");
    const clitest::Run r = RunKygraph({"render", clitest::kExamples + "/summer-ahu.json", "--report", "r.pdf"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string pdf = clitest::ReadText(dir / "r.pdf");
    EXPECT_EQ(pdf.rfind("%PDF-", 0), 0u);
    EXPECT_GT(pdf.size(), 20000u);  // the chart image and the tables' fonts
    EXPECT_FALSE(std::filesystem::exists(dir / "chart.png"));  // only the report without -o
}

TEST(StateCommand, TablePrintsEveryPropertyWithItsUnit)
{
    const std::pair<const char*, const char*> formulations[] = {
        {"chart", "chart"}, {"ashrae", "ASHRAE 2017"}, {"realgas", "real-gas (Hyland-Wexler 1983)"}};
    for (const auto& [formulation, heading] : formulations) {
        const clitest::Run r = RunKygraph({"state", "--h", "50", "--rh", "50", "--formulation", formulation},
                                          clitest::ScratchDir("state-table"));
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out.rfind("moist air at 101325 Pa, " + std::string(heading) + " formulation\n", 0), 0u) << r.out;
        for (const char* row : {"tdb", "°C", "twb", "tdp", "rh", "%\n", "g/kg", "h           50.00 kJ/kg", "pv", "ps",
                                "Pa", "m³/kg", "kg/m³"})
            EXPECT_NE(r.out.find(row), std::string::npos) << row << " in\n" << r.out;
    }
}

TEST(LocateCommand, IndoorDesignPixelGivesTheIndoorState)
{
    // The pixel the chart draws the default indoor point (25 °C, 60 %) at, 1000 x 800.
    SceneApplier applier;
    std::vector<SceneError> errors;
    ASSERT_TRUE(applier.Apply(Scene(), errors));
    CImageWnd wnd(1000, 800);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    CKyStaPnt indoor;
    indoor.SetBy_TdbandRH(25, 0.6);
    CPoint px;
    ASSERT_TRUE(chart->Convert(indoor, px));
    // The mapping's resolution there: what one pixel to the right and one up change.
    CKyStaPnt at, right, up;
    ASSERT_TRUE(chart->Convert(px, at) && chart->Convert(CPoint(px.x + 1, px.y), right) &&
                chart->Convert(CPoint(px.x, px.y - 1), up));
    chart->AttachDarwWnd(nullptr);
    const double tStep = std::max(std::abs(right.GetTdb() - at.GetTdb()), std::abs(up.GetTdb() - at.GetTdb()));
    const double rhStep = std::max(std::abs(right.GetRH() - at.GetRH()), std::abs(up.GetRH() - at.GetRH())) * 100;

    const nlohmann::ordered_json s = StateJson(
        {"locate", "--size", "1000x800", std::to_string(px.x), std::to_string(px.y), "--json"});
    EXPECT_NEAR(s["tdb"].get<double>(), 25.0, tStep);
    EXPECT_NEAR(s["rh"].get<double>(), 60.0, rhStep);
    EXPECT_LT(tStep, 0.5);
    EXPECT_LT(rhStep, 2.0);
}

TEST(RenderCommand, ExampleScenesMatchTheirReviewedImages)
{
    const std::filesystem::path dir = clitest::ScratchDir("examples");
    const std::string goldens = std::string(KY_SOURCE_DIR) + "/tests/golden-cli/";
    int scenes = 0;
    for (const auto& entry : std::filesystem::directory_iterator(clitest::kExamples)) {
        const std::string name = entry.path().stem().string();
        const std::string png = (dir / (name + ".png")).string();
        const clitest::Run r = RunKygraph({"render", entry.path().string(), "-o", png}, dir);
        ASSERT_EQ(r.status, 0) << name << ": " << r.err;
        EXPECT_EQ(r.err, "");
        ++scenes;
        if (UpdatingGoldens()) {
            std::filesystem::copy_file(png, goldens + name + ".png", std::filesystem::copy_options::overwrite_existing);
            continue;
        }
        const imagetest::Pixels actual = imagetest::LoadPng(png), expected = imagetest::LoadPng(goldens + name + ".png");
        ASSERT_GT(expected.w, 0) << "no reviewed image for " << name;
        ASSERT_EQ(actual.w, expected.w) << name;
        ASSERT_EQ(actual.h, expected.h) << name;
        EXPECT_LE(imagetest::Compare(actual, expected, kChannelTolerance).unmatched, kAllowedUnmatched)
            << name << " differs from its reviewed image; rendered: " << png;
    }
    EXPECT_EQ(scenes, 5);
}

TEST(RenderCommand, DefaultChartIsTheLibrarysOwnDrawing)
{
    // What a host draws with the default settings (the library's reviewed image), by the
    // program without a scene and with the default example scene.
    const std::filesystem::path dir = clitest::ScratchDir("default");
    const imagetest::Pixels library = imagetest::LoadPng(std::string(KY_SOURCE_DIR) + "/tests/golden/default_1000x800.png");
    ASSERT_EQ(library.w, 1000);
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"render"}, {"render", clitest::kExamples + "/default.json", "-o", "chart.png"}}) {
        std::filesystem::remove(dir / "chart.png");
        const clitest::Run r = RunKygraph(args, dir);
        ASSERT_EQ(r.status, 0) << r.err;
        const imagetest::Pixels drawn = imagetest::LoadPng((dir / "chart.png").string());
        ASSERT_EQ(drawn.w, library.w);
        ASSERT_EQ(drawn.h, library.h);
        EXPECT_LE(imagetest::Compare(drawn, library, kChannelTolerance).unmatched, kAllowedUnmatched);
    }
}

TEST(RenderCommand, VectorFilesAreWholeDocuments)
{
    const std::filesystem::path dir = clitest::ScratchDir("vector");
    const std::string scene = clitest::kExamples + "/summer-ahu.json";
    ASSERT_EQ(RunKygraph({"render", scene, "-o", "chart.svg"}, dir).status, 0);
    const std::string svg = clitest::ReadText(dir / "chart.svg");
    EXPECT_EQ(std::system(("xmllint --noout " + clitest::Quote((dir / "chart.svg").string())).c_str()), 0);
    // Pixel units, so a browser shows it at its size; labels are text in the chart's face.
    EXPECT_NE(svg.find("width=\"1200px\" height=\"900px\" viewBox=\"0 0 1200 900\""), std::string::npos);
    EXPECT_NE(svg.find("font-family=\"Noto Sans CJK SC"), std::string::npos);
    for (const char* label : {">湿空气焓湿图</text>", ">大气压 101325Pa/760mmHg</text>", ">100%</text>"})
        EXPECT_NE(svg.find(label), std::string::npos) << label;
    EXPECT_EQ(svg.find("<image"), std::string::npos);
    EXPECT_LT(svg.size(), 200u * 1024);
}

// A page of the paper asked for, with every label as text that can be searched.
TEST(RenderCommand, PaperPagesHoldTheChartAsText)
{
    const std::filesystem::path dir = clitest::ScratchDir("paper");
    const struct {
        std::vector<std::string> paper;
        const char* pageSize;
    } cases[] = {
        {{}, "1000 x 800 pts"},
        {{"--paper", "A4"}, "595.276 x 841.89 pts (A4)"},
        {{"--paper", "a3", "--landscape"}, "1190.55 x 841.89 pts (A3)"},
        {{"--paper", "A2"}, "1190.55 x 1683.78 pts (A2)"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args{"render", "-o", "chart.PDF"};
        args.insert(args.end(), c.paper.begin(), c.paper.end());
        ASSERT_EQ(RunKygraph(args, dir).status, 0) << c.pageSize;
        const std::string pdf = clitest::Quote((dir / "chart.PDF").string());
        const std::string info = clitest::Quote((dir / "info.txt").string());
        ASSERT_EQ(std::system(("pdfinfo " + pdf + " > " + info).c_str()), 0);
        const std::string infoText = clitest::ReadText(dir / "info.txt");
        EXPECT_NE(infoText.find("Pages:           1\n"), std::string::npos) << c.pageSize;
        EXPECT_NE(infoText.find(c.pageSize), std::string::npos) << infoText;
        ASSERT_EQ(std::system(("pdftotext " + pdf + " " + info).c_str()), 0);
        const std::string text = clitest::ReadText(dir / "info.txt");
        for (const char* label : {"湿空气焓湿图", "大气压 101325Pa/760mmHg", "100%", "室外点", "水蒸汽分压力"})
            EXPECT_NE(text.find(label), std::string::npos) << c.pageSize << ": " << label;
    }
}

TEST(RenderCommand, FailedRunLeavesTheOldFileAsItWas)
{
    const std::filesystem::path dir = clitest::ScratchDir("atomic");
    clitest::WriteText(dir / "chart.png", "old");
    clitest::WriteText(dir / "outside.json", R"({"points": [{"tdb": 20, "rh": 50}, {"tdb": 90, "rh": 1}]})");
    EXPECT_EQ(RunKygraph({"render", "outside.json", "-o", "chart.png"}, dir).status, 1);
    EXPECT_EQ(RunKygraph({"render", "--size", "0x0", "-o", "chart.png"}, dir).status, 2);
    EXPECT_EQ(clitest::ReadText(dir / "chart.png"), "old");
    // A successful run replaces it whole, with the mode of a new file.
    EXPECT_EQ(RunKygraph({"render", "--size", "300x200", "--antialias", "off"}, dir).status, 0);
    EXPECT_EQ(imagetest::LoadPng((dir / "chart.png").string()).w, 300);
    clitest::WriteText(dir / "new.txt", "");
    EXPECT_EQ(std::filesystem::status(dir / "chart.png").permissions(),
              std::filesystem::status(dir / "new.txt").permissions());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir), std::filesystem::directory_iterator()), 3);
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAFailure)
{
    for (const char* args : {"state --tdb 25 --rh 50", "locate 500 400", "--help", "render --help"}) {
        const std::string cmd = clitest::Quote(clitest::kBinary) + " " + args + " >/dev/full 2>/dev/null";
        const int raw = std::system(cmd.c_str());
        EXPECT_TRUE(WIFEXITED(raw) && WEXITSTATUS(raw) == 1) << args << ": " << raw;
    }
}

// Inputs that would cost without bound are refused with one line naming the limit, and a
// scene with very many problems reports the first ones and a count.
TEST(CommandLine, WorkBeyondItsBoundsIsRefusedNamingTheBound)
{
    const std::filesystem::path dir = clitest::ScratchDir("bounds");
    std::string path = R"({"processes": [{"steps": [{"type": "path", "points": [)";
    for (std::size_t i = 0; i <= Scene::kMaxPathStates; ++i) path += std::string(i ? "," : "") + R"({"d": 5, "h": 40})";
    clitest::WriteText(dir / "path.json", path + "]}]}]}");
    std::string keys = "{";
    for (int i = 0; i < 25; ++i) keys += std::string(i ? "," : "") + "\"k" + std::to_string(i) + "\": 1";
    clitest::WriteText(dir / "keys.json", keys + "}");
    clitest::WriteText(dir / "long.json", "{\"" + std::string(100000, 'x') + "\": 1}");
    const struct {
        std::vector<std::string> args;
        std::string lastLine;
        std::size_t lines;
    } cases[] = {
        {{"render", "path.json"}, "path.json:/processes/0/steps/0/points: a path holds at most 2000 states; this one has 2001", 1},
        // serve reads its scene in kygraph-serve, which kygraph hands the command line over to
        {{"serve", "path.json"}, "path.json:/processes/0/steps/0/points: a path holds at most 2000 states; this one has 2001", 1},
        {{"render", "keys.json"}, "keys.json: 5 more problems not shown", SceneError::kMaxShown + 1},
        {{"render", "long.json"}, "long.json:/" + std::string(64, 'x') + "...: unknown key \"" + std::string(64, 'x') + "...\"", 1},
        {{"render", "--size", "8192x8192"}, "--size: 8192x8192 is beyond the 16777216 pixels one drawing may have", 1},
    };
    for (const auto& c : cases) {
        const clitest::Run r = clitest::RunKygraph(c.args, dir);
        EXPECT_EQ(r.status, 2) << c.args.back();
        EXPECT_EQ(static_cast<std::size_t>(std::count(r.err.begin(), r.err.end(), '\n')), c.lines) << r.err.substr(0, 300);
        const std::size_t last = r.err.rfind('\n', r.err.size() - 2);
        EXPECT_EQ(r.err.substr(last == std::string::npos ? 0 : last + 1), "kygraph: " + c.lastLine + "\n");
    }
}

TEST(HostLanguage, TheLocaleChoosesOnlyALanguageThereAreTextsFor)
{
    const struct {
        const char* locale;
        std::optional<KyGraphLanguage> language;
    } cases[] = {
        {"zh_CN.UTF-8", KyGraphLanguage::Chinese}, {"zh", KyGraphLanguage::Chinese}, {"zh_TW@hant", KyGraphLanguage::Chinese},
        {"en_GB.UTF-8", KyGraphLanguage::English}, {"en", KyGraphLanguage::English}, {"C.UTF-8", std::nullopt},
        {"POSIX", std::nullopt}, {"de_DE", std::nullopt}, {"", std::nullopt}, {"english", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(HostLanguage::FromLocale(c.locale), c.language) << c.locale;
    EXPECT_EQ(HostLanguage::FromLocale(nullptr), std::nullopt);
}
