// The scene format in-process: what the reader accepts and writes back, the exact error line
// for each kind of bad document, and what the applier hands to the chart and the model.
#include "CliTestSupport.h"

#include "SceneApplier.h"
#include "SceneReader.h"
#include "SceneWriter.h"
#include "SettingsSchema.h"

#include <kygraph/DC.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/KyAS.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyProcess.h>

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace {

// Every error line a text gives, joined by newlines, as the program prints them after "kygraph: ".
std::string ReadErrors(const std::string& text)
{
    Scene scene;
    std::vector<SceneError> errors;
    EXPECT_FALSE(SceneReader::Parse(text, scene, errors)) << text;
    std::string out;
    for (const SceneError& e : errors) out += (out.empty() ? "" : "\n") + e.Format("scene");
    return out;
}

Scene Read(const std::string& text)
{
    Scene scene;
    std::vector<SceneError> errors;
    EXPECT_TRUE(SceneReader::Parse(text, scene, errors)) << (errors.empty() ? text : errors[0].Format("scene"));
    return scene;
}

std::string ApplyErrors(SceneApplier& applier, const std::string& text)
{
    std::vector<SceneError> errors;
    EXPECT_FALSE(applier.Apply(Read(text), errors)) << text;
    std::string out;
    for (const SceneError& e : errors) out += (out.empty() ? "" : "\n") + e.Format("scene");
    return out;
}

// Every key of the format given once, none at its default.
const char* const kEverything = R"({
  "comment": "every key",
  "size": {"width": 640, "height": 480},
  "antialias": false,
  "pressure": 90000.5,
  "formulation": "ashrae",
  "range": {"tmin": -20, "tmax": 50, "dmin": 0.5, "dmax": 30},
  "intervals": {"d": 2, "h": 10, "t": 2.5, "rh": 20},
  "display": {"protractor": false, "isotherms": false, "d_lines": false, "h_lines": false,
              "rh_curves": false, "title": false},
  "winter": true,
  "design": {"city": "兰州", "summer": {"outdoor": {"tdb": 31, "twb": 20}, "indoor": {"tdb": 26, "rh": 55}},
             "winter": {"outdoor": {"tdb": -11, "rh": 50}, "indoor": {"tdb": 18, "rh": 40}}},
  "margins": {"left": 11, "right": 12, "bottom": 13, "top": 14},
  "lengths": {"t": 5, "d": 12},
  "styles": {"d_lines": {"color": "#102030", "pen": "dash", "width": 3, "text_height": 9, "spare": 1.5},
             "h_lines": {"pen": "dot"}, "isotherms": {"pen": "dashdot"}, "rh_curves": {"pen": "dashdotdot"},
             "ratio_lines": {"pen": "null"}, "processes": {"pen": "solid", "color": "#ABCDEF"},
             "protractor": {"width": 0}, "frame": {"text_height": 12}, "spare": {"spare": -2},
             "points": {"color": "#0000ff", "size": 7.5, "text_height": 11}},
  "points": [{"name": "A", "tdb": 25, "rh": 60, "label": "right"}, {"tdb": 20, "tdp": 5, "label": "none"},
             {"h": 50, "d": 10}, {"tdb": 30, "pv": 2000, "label": "bottom"}, {"d": 8, "rh": 70, "label": "left"},
             {"h": 40, "rh": 80, "label": "top"}, {"h": 45, "tdb": 22}, {"tdb": 28, "twb": 20}, {"d": 6, "tdb": 15}],
  "processes": [{"states": [{"name": "W", "tdb": 31, "twb": 20}],
                 "steps": [{"type": "mixing", "name": "m", "a": "W", "mass_a": 1, "b": "A", "mass_b": 2.5, "result": "C"},
                           {"type": "sensible", "from": "C", "tdb": 35, "result": "H"},
                           {"type": "cooling_dehumidify", "from": "H", "to": {"name": "L", "tdb": 14, "rh": 90}},
                           {"type": "adiabatic_humidify", "from": "W", "rh": 85, "result": "E"},
                           {"type": "steam_humidify", "from": "C", "d": 14, "t_steam": 110, "result": "S"},
                           {"type": "ratio", "from": "A", "ratio": "-inf", "h": 55, "result": "R"},
                           {"type": "path", "name": "p", "points": ["W", {"tdb": 22, "rh": 50}]}]},
                {"flow": {"m3h": 5000},
                 "steps": [{"type": "mixing", "a": "W", "b": "A", "fraction": 0.25, "result": "C2"},
                           {"type": "ratio", "from": "A", "ratio": 8000, "dt0": 6, "result": "O2"},
                           {"type": "ratio", "from": "A", "ratio": 8000, "tdb": "O2", "result": "O3"},
                           {"type": "cooling_dehumidify", "from": "C2", "rh": 95, "d": "O2", "result": "L2"},
                           {"type": "cooling_dehumidify", "from": "C2", "adp": 9, "bf": 0.1, "result": "L3"},
                           {"type": "sensible", "from": "L2", "tdb": "O2"},
                           {"type": "steam_humidify", "from": "C2", "rh": 80, "result": "S2"},
                           {"type": "adiabatic_humidify", "from": "W", "d": 16, "result": "E2"}]}],
  "ratio_lines": [{"from": "A", "to": "W", "label": false}, {"from": "A", "ratio": 5000, "d": 14},
                  {"from": "A", "ratio": "inf", "rh": 30}, {"from": "A", "ratio": -3000, "h": 70}]
})";

// Starts from the library's defaults whatever an earlier test in the process applied.
class SceneApplierTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::vector<SceneError> errors;
        ASSERT_TRUE(applier.Apply(Scene(), errors));
    }
    SceneApplier applier;
};

}  // namespace

TEST(SceneRoundTrip, WrittenScenesReadBackEqual)
{
    std::vector<std::string> texts = {kEverything, "{}"};
    for (const auto& entry : std::filesystem::directory_iterator(clitest::kExamples))
        texts.push_back(clitest::ReadText(entry.path()));
    ASSERT_GE(texts.size(), 6u) << "the four example scenes";
    for (const std::string& text : texts) {
        const Scene first = Read(text);
        const std::string written = SceneWriter::Write(first);
        EXPECT_EQ(Read(written), first) << written;
        EXPECT_EQ(SceneWriter::Write(Read(written)), written);
    }
}

TEST(SceneRoundTrip, KeepsWhatTheFileSays)
{
    const Scene s = Read(kEverything);
    EXPECT_EQ(s.width, 640);
    EXPECT_EQ(s.formulation, Ky::FORMULATION_ASHRAE2017);
    EXPECT_EQ(s.styles.lines[Processes].color, RGB(0xAB, 0xCD, 0xEF));
    EXPECT_EQ(s.styles.lines[RatioLines].pen, PS_NULL);
    EXPECT_EQ(s.points[1].label, SceneLabel::None);
    EXPECT_EQ(s.points[0].state.input.Get(StateInput::RH), 60.0);  // percent, as written
    EXPECT_EQ(s.processes[0].steps[5].ratio, -HUGE_VAL);
    const std::string written = SceneWriter::Write(s);
    EXPECT_NE(written.find("\"ratio\": \"-inf\""), std::string::npos);
    EXPECT_NE(written.find("\"color\": \"#abcdef\""), std::string::npos);
    EXPECT_EQ(written.find("comment"), std::string::npos);
    EXPECT_EQ(SceneWriter::Write(Scene()), "{}\n");
}

// The settings table of docs/scene.md is the schema's own, so the two cannot drift apart.
TEST(SettingsSchema, DocumentedTableIsTheSchemas)
{
    const std::string doc = clitest::ReadText(std::string(KY_SOURCE_DIR) + "/docs/scene.md");
    const std::string begin = "<!-- generated from SettingsSchema -->\n", end = "<!-- end of generated table -->";
    const size_t a = doc.find(begin), b = doc.find(end);
    ASSERT_TRUE(a != std::string::npos && b > a) << "docs/scene.md has no generated settings table";
    EXPECT_EQ(doc.substr(a + begin.size(), b - a - begin.size()), SettingsSchema::MarkdownTable())
        << "docs/scene.md's table is to be replaced by the schema's, printed above \"As Text\"";
}

TEST(SceneReader, ReportsEachProblemWithItsPlace)
{
    const std::string deep = std::string(70, '[') + std::string(70, ']');
    std::string deepPointer = "/comment";
    for (int i = 0; i < 62; ++i) deepPointer += "/0";
    const struct {
        std::string text;
        std::string errors;
    } cases[] = {
        {"", "scene:1:1: malformed JSON: syntax error while parsing value - unexpected end of input; expected '[', "
             "'{', or a literal"},
        {"{\"points\": [{\"name\": \"A\", \"tdb\": 25 \"rh\": 60}]}",
         "scene:1:37: malformed JSON: syntax error while parsing object - unexpected string literal; expected '}'"},
        {"{\n  \"pressure\": 1e400\n}", "scene:2:15: malformed JSON: number overflow parsing '1e400'"},
        {"{} {}", "scene:1:4: malformed JSON: syntax error while parsing value - unexpected '{'; expected end of input"},
        {"{\"comment\": " + deep + "}", "scene:" + deepPointer + ": the document nests deeper than 64 levels"},
        {"[1, 2]", "scene: expected an object, found an array"},
        {"{\"winter\": true, \"winter\": 1}",
         "scene:/winter: the key \"winter\" is given more than once\nscene:/winter: expected true or false, found a number"},
        {"{\"size\": {\"width\": 0, \"heigth\": 800}}",
         "scene:/size/heigth: unknown key \"heigth\" (did you mean \"height\"?)\nscene:/size/width: 0 is out of range 1..8192"},
        {"{\"size\": {\"width\": 640.5, \"height\": 1e9}}",
         "scene:/size/width: expected an integer, found 640.5\nscene:/size/height: 1e+09 is out of range 1..8192"},
        {"{\"pressure\": \"high\", \"formulation\": \"iso\"}",
         "scene:/pressure: expected a number, found a string\nscene:/formulation: \"iso\" is not one of chart, ashrae, realgas"},
        {"{\"pressure\": 40000}", "scene:/pressure: 40000 is out of range 50000..110000"},
        {"{\"range\": {\"tmin\": -90}, \"intervals\": {\"d\": 0}, \"lengths\": \"big\"}",
         "scene:/range/tmin: -90 is out of range -80..90\nscene:/intervals/d: 0 is out of range 0.1..1000\n"
         "scene:/lengths: expected an object, found a string"},
        {"{\"styles\": {\"isotherm\": {}, \"frame\": {\"color\": \"red\", \"pen\": \"dashed\"}}}",
         "scene:/styles/isotherm: unknown key \"isotherm\" (did you mean \"isotherms\"?)\n"
         "scene:/styles/frame/color: \"red\" is not a colour of the form \"#rrggbb\"\n"
         "scene:/styles/frame/pen: \"dashed\" is not one of solid, dash, dot, dashdot, dashdotdot, null"},
        {"{\"points\": [{\"name\": \"B\", \"tdb\": 25, \"rh\": 160, \"label\": \"up\"}, 7]}",
         "scene:/points/0/rh: 160 is out of range 0..100\n"
         "scene:/points/0/label: \"up\" is not one of left, top, right, bottom, none\n"
         "scene:/points/1: expected an object, found a number"},
        {"{\"design\": {\"summer\": {\"outdoor\": {\"tdb\": 30, \"rh\": 40}}}}",
         "scene:/design/summer/outdoor/rh: unknown key \"rh\""},
        {"{\"processes\": [{\"steps\": [{\"type\": \"mix\"}, {\"type\": \"sensible\", \"from\": \"W\", \"to\": \"X\"}, "
         "{\"type\": \"path\", \"points\": []}, {\"name\": \"x\"}]}]}",
         "scene:/processes/0/steps/0/type: \"mix\" is not one of mixing, sensible, cooling_dehumidify, "
         "adiabatic_humidify, steam_humidify, ratio, path\n"
         "scene:/processes/0/steps/1/to: unknown key \"to\"\n"
         "scene:/processes/0/steps/1: missing key \"tdb\"\n"
         "scene:/processes/0/steps/2/points: a path needs at least one state\n"
         "scene:/processes/0/steps/3: missing key \"type\""},
        {"{\"processes\": [{\"steps\": [{\"type\": \"ratio\", \"from\": 5, \"ratio\": \"big\"}]}]}",
         "scene:/processes/0/steps/0: a ratio needs exactly one end condition of d, h, rh, tdb, dt0; 0 given\n"
         "scene:/processes/0/steps/0/ratio: \"big\" is not a ratio: give a number of kJ/kg, \"inf\" or \"-inf\"\n"
         "scene:/processes/0/steps/0/from: expected the name of a state or a state object, found a number"},
        {R"({"altitude": 12000, "processes": [{"flow": {"m3h": 1, "kgs": 1}, "steps": [
              {"type": "mixing", "a": "W", "b": "N", "fraction": 1.3},
              {"type": "mixing", "a": "W", "b": "N", "fraction": 0.3, "mass_a": 1},
              {"type": "cooling_dehumidify", "from": "C", "rh": 95},
              {"type": "steam_humidify", "from": "C", "rh": 40, "d": 9}]}]})",
         "scene:/altitude: 12000 is out of range -500..11000\n"
         "scene:/processes/0/flow: a flow needs exactly one of \"m3h\" (m³/h), \"kgs\" (kg/s)\n"
         "scene:/processes/0/steps/0/fraction: 1.3 is out of range 0..1\n"
         "scene:/processes/0/steps/1: a mixing needs either \"fraction\" (the share of a) or both \"mass_a\" and \"mass_b\"\n"
         "scene:/processes/0/steps/2: a cooling coil needs \"to\" (a state), or \"rh\" with one of \"tdb\", \"d\", or \"adp\" with \"bf\"\n"
         "scene:/processes/0/steps/3: a humidifier needs exactly one end condition of rh, d"},
        {R"({"altitude": 8000, "pressure": 90000})",
         "scene:/altitude: give either \"altitude\" or \"pressure\", not both\n"
         "scene:/altitude: altitude 8000 m gives 35600 Pa, below the lowest pressure the model takes (50000 Pa)"},
        {"{\"ratio_lines\": [{\"from\": \"N\", \"to\": \"W\", \"d\": 10}, {\"from\": \"N\"}]}",
         "scene:/ratio_lines/0: give either \"to\" or a \"ratio\" with one of d, h, rh, not both\n"
         "scene:/ratio_lines/1: missing key \"to\" or \"ratio\""},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadErrors(c.text), c.errors) << c.text;
}

TEST_F(SceneApplierTest, EverySettingReachesTheChartAndTheModel)
{
    std::vector<SceneError> errors;
    ASSERT_TRUE(applier.Apply(Read(kEverything), errors)) << errors[0].Format("scene");
    const CKyGChartSetting& set = *CKyGChartSetting::GetKyGChartSetting();
    EXPECT_EQ(CKyChart::InstanceGloble()->GetGlobleB(), 90000.5);
    EXPECT_EQ(set.m_DrawHstSetting.m_dPressure, 90000.5);
    EXPECT_EQ(CKyChart::InstanceGloble()->GetFormulation(), Ky::FORMULATION_ASHRAE2017);
    const CKyGRangeSetting& r = set.m_RangeSetting;
    EXPECT_EQ(std::vector<double>({r.GetMinT(), r.GetMaxT(), r.GetMinD(), r.GetMaxD()}),
              std::vector<double>({-20, 50, 0.5, 30}));
    // The corner points were computed at the scene's pressure and formulation.
    EXPECT_EQ(r.GetMaxDMaxTStaPnt().GetB(), 90000.5);
    EXPECT_EQ(r.GetMaxDMaxTStaPnt().GetFormulation(), Ky::FORMULATION_ASHRAE2017);
    const CKyGDrawHstSetting& h = set.m_DrawHstSetting;
    EXPECT_EQ(std::vector<double>({h.m_dDInterval, h.m_dHInterval, h.m_dTInterval, h.m_dRHInterval}),
              std::vector<double>({2, 10, 2.5, 20}));
    EXPECT_EQ(std::vector<int>({h.m_bShowASChart, h.m_bShowSameT, h.m_bShowSameD, h.m_bShowSameH, h.m_bShowSameRH,
                                h.m_bShowTitle, h.m_bWinter}),
              std::vector<int>({0, 0, 0, 0, 0, 0, 1}));
    EXPECT_EQ(h.m_strCity, CString(L"兰州"));
    EXPECT_EQ(std::vector<double>({h.m_dSummerOutTdb, h.m_dSummerOutTwb, h.m_dSummerInTdb, h.m_dSummerInRH,
                                   h.m_dWinterOutTdb, h.m_dWinterOutRH, h.m_dWinterInTdb, h.m_dWinterInRH}),
              std::vector<double>({31, 20, 26, 55, -11, 50, 18, 40}));
    EXPECT_EQ(std::vector<double>({set.m_dLeftMargin, set.m_dRightMargin, set.m_dBottomMargin, set.m_dTopMargin,
                                   set.m_dTLength, set.m_dDLength}),
              std::vector<double>({11, 12, 13, 14, 5, 12}));
    const CKyGStyleSetting& st = set.m_StyleSetting;
    EXPECT_EQ(st.m_SameDStyle.crColor, RGB(0x10, 0x20, 0x30));
    EXPECT_EQ(std::vector<int>({st.m_SameDStyle.nPenStyle, st.m_SameDStyle.nWidth, st.m_SameDStyle.nTextHeight}),
              std::vector<int>({PS_DASH, 3, 9}));
    EXPECT_EQ(st.m_SameDStyle.dSpare, 1.5);
    EXPECT_EQ(std::vector<int>({st.m_SameHStyle.nPenStyle, st.m_SameTStyle.nPenStyle, st.m_SameRHStyle.nPenStyle,
                                st.m_SameASStyle.nPenStyle, st.m_ProcessStyle.nPenStyle}),
              std::vector<int>({PS_DOT, PS_DASHDOT, PS_DASHDOTDOT, PS_NULL, PS_SOLID}));
    EXPECT_EQ(st.m_ProcessStyle.crColor, RGB(0xAB, 0xCD, 0xEF));
    EXPECT_EQ(st.m_ASChartStyle.nWidth, 0);
    EXPECT_EQ(st.m_FrameStyle.nTextHeight, 12);
    EXPECT_EQ(st.m_SpareStyle.dSpare, -2.0);
    EXPECT_EQ(st.m_StaPntStyle.crColor, RGB(0, 0, 255));
    EXPECT_EQ(st.m_StaPntStyle.dSize, 7.5);
    EXPECT_EQ(st.m_StaPntStyle.nTextHeight, 11);
}

TEST_F(SceneApplierTest, LeftOutSettingsReturnToTheirDefaults)
{
    const CKyGChartSetting before(*CKyGChartSetting::GetKyGChartSetting());
    std::vector<SceneError> errors;
    ASSERT_TRUE(applier.Apply(Read(kEverything), errors));
    ASSERT_TRUE(applier.Apply(Read("{}"), errors));
    const CKyGChartSetting& now = *CKyGChartSetting::GetKyGChartSetting();
    EXPECT_EQ(CKyChart::InstanceGloble()->GetGlobleB(), CKyChart::kDefaultB);
    EXPECT_EQ(CKyChart::InstanceGloble()->GetFormulation(), Ky::FORMULATION_CHART);
    EXPECT_EQ(now.m_RangeSetting.GetMaxT(), before.m_RangeSetting.GetMaxT());
    EXPECT_EQ(now.m_RangeSetting.GetMaxDMaxTStaPnt().GetH(), before.m_RangeSetting.GetMaxDMaxTStaPnt().GetH());
    EXPECT_EQ(now.m_StyleSetting.m_SameDStyle.crColor, before.m_StyleSetting.m_SameDStyle.crColor);
    EXPECT_EQ(now.m_DrawHstSetting.m_bWinter, 0);
    EXPECT_EQ(now.m_DrawHstSetting.m_strCity, before.m_DrawHstSetting.m_strCity);
    EXPECT_EQ(now.m_dDLength, before.m_dDLength);
}

TEST_F(SceneApplierTest, RefusedSceneChangesNothing)
{
    std::vector<SceneError> errors;
    ASSERT_TRUE(applier.Apply(Read(R"({"pressure": 95000, "range": {"tmax": 40}, "points": [{"tdb": 20, "rh": 50}]})"),
                              errors));
    EXPECT_FALSE(applier.Apply(Read(R"({"pressure": 80000, "range": {"tmax": 50}, "winter": true,
                                        "points": [{"tdb": 20, "twb": 25}]})"),
                               errors));
    EXPECT_EQ(CKyChart::InstanceGloble()->GetGlobleB(), 95000.0);
    EXPECT_EQ(CKyGChartSetting::GetKyGChartSetting()->m_RangeSetting.GetMaxT(), 40.0);
    EXPECT_EQ(CKyGChartSetting::GetKyGChartSetting()->m_DrawHstSetting.m_bWinter, 0);

    // The overlays of the scene that was applied are still the ones drawn.
    CImageWnd wnd(400, 300);
    wnd.EnableRecording(true);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    chart->UptateDrawWnd(1);
    chart->GetChartDC()->ClearRecords();
    errors.clear();
    EXPECT_TRUE(applier.DrawOverlays(*chart, errors));
    chart->AttachDarwWnd(nullptr);
    int ellipses = 0;
    for (const CDrawRecord& r : chart->GetChartDC()->GetRecords()) ellipses += r.kind == CDrawRecord::Ellipse;
    EXPECT_EQ(ellipses, 1);
}

TEST_F(SceneApplierTest, ReportsWhatTheModelRefusesWithItsPlace)
{
    auto pointText = [](auto set) {
        CKyStaPnt p;
        set(p);
        return p.GetLastErrorString().ToUtf8();
    };
    const std::string twbAboveTdb = pointText([](CKyStaPnt& p) { p.SetBy_TdbandTwb(25, 30); });
    const std::string corner = pointText([](CKyStaPnt& p) { p.SetBy_DandTdb(50, 10); });
    CKyStaPnt warm, cool;
    warm.SetBy_TdbandRH(25, 0.5);
    cool.SetBy_TdbandRH(20, 0.5);
    CKyAS same;
    same.SetByStates(cool, cool);

    const struct {
        std::string text;
        std::string errors;
    } cases[] = {
        {R"({"points": [{"tdb": 25, "twb": 30}]})", "scene:/points/0: " + twbAboveTdb},
        {R"({"points": [{"tdb": 25}, {"twb": 20, "rh": 50}]})",
         "scene:/points/0: a state needs exactly two of tdb, twb, tdp, rh, d, h, pv; 1 given\n"
         "scene:/points/1: the pair twb+rh is not supported; use one of tdb+rh, tdb+twb, tdb+tdp, tdb+pv, d+tdb, "
         "h+tdb, h+d, d+rh, h+rh"},
        {R"({"points": [{"name": "A", "tdb": 25, "rh": 50}],
             "processes": [{"states": [{"name": "A", "tdb": 20, "rh": 50}],
                            "steps": [{"type": "sensible", "from": "B", "tdb": 30}]}]})",
         "scene:/processes/0/states/0/name: the name \"A\" is already used by another state\n"
         "scene:/processes/0/steps/0/from: no state named \"B\" is defined before this point"},
        {R"({"ratio_lines": [{"from": "O", "ratio": 5000, "d": 10}],
             "points": [{"name": "O", "tdb": 20, "rh": 50}]})",
         ""},  // a name is known from where it is defined on, whatever the order of the keys
        {R"({"range": {"tmax": 10}})", "scene:/range: the corner d 50 g/kg, t 10 °C is not a state: " + corner},
        {R"({"range": {"tmin": 20, "tmax": 10, "dmax": 5}})", "scene:/range: tmin 20 must be below tmax 10"},
        {R"({"design": {"summer": {"outdoor": {"tdb": 25, "twb": 30}}}})",
         "scene:/design/summer/outdoor: " + twbAboveTdb},
        {R"({"processes": [{"states": [{"name": "N", "tdb": 26, "rh": 55}], "steps": [
              {"type": "cooling_dehumidify", "from": {"tdb": 20, "rh": 50}, "to": {"tdb": 25, "rh": 50}},
              {"type": "cooling_dehumidify", "from": "N", "rh": 95, "tdb": 27},
              {"type": "cooling_dehumidify", "from": "N", "adp": 18, "bf": 0.1},
              {"type": "ratio", "from": "N", "ratio": 10000, "dt0": 90},
              {"type": "ratio", "from": "N", "ratio": "inf", "dt0": 8},
              {"type": "steam_humidify", "from": "N", "rh": 40},
              {"type": "adiabatic_humidify", "from": "N", "d": 5}]}]})",
         "scene:/processes/0/steps/0/to: the coil would leave at 25 °C, not colder than it enters (20 °C)\n"
         "scene:/processes/0/steps/1/tdb: the coil would leave at 27 °C, not colder than it enters (26 °C)\n"
         "scene:/processes/0/steps/2/adp: the apparatus dew point 18 °C is not below the entering dew point 16.27 °C: the coil "
         "would not dehumidify\n"
         "scene:/processes/0/steps/3/dt0: the ratio line from 26 °C, 11.57 g/kg never reaches -64 °C inside the model\n"
         "scene:/processes/0/steps/4/dt0: the ratio line from 26 °C, 11.57 g/kg never reaches 18 °C inside the model\n"
         "scene:/processes/0/steps/5/rh: rh 40 % is not above the entering 55 %: a humidifier adds moisture\n"
         "scene:/processes/0/steps/6/d: d 5 g/kg is not above the entering 11.57 g/kg: a humidifier adds moisture"},
        {R"({"ratio_lines": [{"from": {"tdb": 20, "rh": 50}, "to": {"tdb": 20, "rh": 50}}]})",
         "scene:/ratio_lines/0: " + same.GetLastErrorString().ToUtf8()},
    };
    for (const auto& c : cases) {
        if (c.errors.empty()) {
            std::vector<SceneError> errors;
            EXPECT_TRUE(applier.Apply(Read(c.text), errors)) << c.text;
        } else {
            EXPECT_EQ(ApplyErrors(applier, c.text), c.errors) << c.text;
        }
    }
}

TEST_F(SceneApplierTest, ProcessMarkersCarryTheNamesTheSceneGives)
{
    std::vector<SceneError> errors;
    ASSERT_TRUE(applier.Apply(Read(clitest::ReadText(clitest::kExamples + "/summer-ahu.json")), errors));
    CImageWnd wnd(1200, 900);
    wnd.EnableRecording(true);
    CKyGChart* chart = CKyGChart::GetKyGChart();
    chart->AttachDarwWnd(&wnd);
    chart->UptateDrawWnd(1);
    chart->GetChartDC()->ClearRecords();
    EXPECT_TRUE(applier.DrawOverlays(*chart, errors));
    chart->AttachDarwWnd(nullptr);
    std::multiset<std::wstring> labels;
    int polylines = 0;
    for (const CDrawRecord& r : chart->GetChartDC()->GetRecords()) {
        if (r.kind == CDrawRecord::Text && r.text.GetLength() == 1) labels.insert(r.text.str());
        polylines += r.kind == CDrawRecord::Polyline;
    }
    // Each state once, the computed ones (O, C, L) by their result names; four paths.
    EXPECT_EQ(labels, (std::multiset<std::wstring>{L"W", L"C", L"N", L"L", L"O"}));
    EXPECT_EQ(polylines, 4);
}

TEST_F(SceneApplierTest, BuildersMeetTheEngineersInputsAndLoadsFollowTheFlow)
{
    // The summer unit: supply O on the room's ratio line 8 K below N, 30 % fresh air, a coil
    // to 95 % at O's moisture content, reheat to O; 10 000 m³/h of supply air.
    std::vector<SceneError> errors;
    ASSERT_TRUE(applier.Apply(Read(clitest::ReadText(clitest::kExamples + "/summer-ahu.json")), errors));
    std::map<std::string, CKyStaPnt> s;
    for (const CKyStaPnt& p : applier.NamedStates()) s[p.GetName().ToUtf8()] = p;
    ASSERT_EQ(s.size(), 5u);
    const CKyStaPnt &W = s["W"], &N = s["N"], &O = s["O"], &C = s["C"], &L = s["L"];
    EXPECT_NEAR(O.GetTdb(), N.GetTdb() - 8.0, 1e-6);
    EXPECT_NEAR(1000.0 * (N.GetH() - O.GetH()) / (N.GetD() - O.GetD()), 10000.0, 1e-3);
    EXPECT_NEAR(C.GetD(), 0.3 * W.GetD() + 0.7 * N.GetD(), 1e-9);
    EXPECT_NEAR(C.GetH(), 0.3 * W.GetH() + 0.7 * N.GetH(), 1e-9);
    EXPECT_NEAR(L.GetRH(), 0.95, 1e-9);
    EXPECT_NEAR(L.GetD(), O.GetD(), 1e-9);

    const std::vector<ProcessLoads::Step>& steps = applier.Steps();
    ASSERT_EQ(steps.size(), 4u);
    const double m = 10000.0 / 3600.0 / O.GetV();
    const ProcessLoads::Row coil = ProcessLoads::Of(steps[2]), reheat = ProcessLoads::Of(steps[3]);
    EXPECT_NEAR(*coil.total, m * (L.GetH() - C.GetH()), 1e-9);
    EXPECT_NEAR(*coil.latent, m * 2500.0 * (L.GetD() - C.GetD()) / 1000.0, 1e-9);
    EXPECT_NEAR(*coil.sensible + *coil.latent, *coil.total, 1e-9);
    EXPECT_NEAR(*coil.moisture, m * (L.GetD() - C.GetD()) * 3.6, 1e-9);
    EXPECT_NEAR(*coil.ratio, 1000.0 * coil.dh / coil.dd, 1e-9);
    EXPECT_NEAR(reheat.dt, O.GetTdb() - L.GetTdb(), 1e-9);
    EXPECT_FALSE(reheat.ratio);  // constant d: ε is infinite
    EXPECT_NEAR(*reheat.shr, 1.0, 1e-12);
    EXPECT_FALSE(ProcessLoads::Of(steps[1]).total);  // a mixing exchanges no heat

    // The coil by apparatus dew point and bypass factor, at 2 000 m.
    ASSERT_TRUE(applier.Apply(Read(clitest::ReadText(clitest::kExamples + "/high-altitude.json")), errors));
    EXPECT_NEAR(CKyChart::InstanceGloble()->GetGlobleB(), 79495.12, 0.01);
    s.clear();
    for (const CKyStaPnt& p : applier.NamedStates()) s[p.GetName().ToUtf8()] = p;
    CKyStaPnt adp;
    ASSERT_TRUE(adp.SetBy_TdbandRH(10, 1.0));
    EXPECT_NEAR(s["L"].GetD(), 0.15 * s["C"].GetD() + 0.85 * adp.GetD(), 1e-9);
    EXPECT_NEAR(s["E"].GetH(), s["W"].GetH(), 1e-9);
    EXPECT_NEAR(s["E"].GetD(), 16.0, 1e-9);
    EXPECT_EQ(applier.Steps()[0].massFlow, 2.5);

    // Steam to a relative humidity.
    ASSERT_TRUE(applier.Apply(Read(clitest::ReadText(clitest::kExamples + "/winter-ahu.json")), errors));
    for (const CKyStaPnt& p : applier.NamedStates()) s[p.GetName().ToUtf8()] = p;
    EXPECT_NEAR(s["O"].GetRH(), 0.30, 1e-6);
    EXPECT_NEAR(s["H"].GetTdb(), 30.0, 1e-9);
}
