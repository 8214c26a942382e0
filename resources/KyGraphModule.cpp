#include <kygraph/KyGraphModule.h>

namespace {

const KyStringEntry kStrings[] = {
    {IDS_KYGRAPH_NAME, "KyGraph"},
    {IDS_BLOCK_OPEN_FAILED, "焓湿图图块打开失败。"},
    {IDS_BLOCK_XDATA_FAILED, "不能获取焓湿图图块中的扩展数据。"},
    {IDS_POINT_OUT_OF_RANGE, "指定点不在焓湿图的有效范围之内。"},
    {IDS_POINT_INVALID, "状态点参数不合法，无法计算。"},
    {IDS_OUT_OF_DRAW_RANGE, "超出焓湿图绘制范围。"},
    {IDS_CHART_TITLE, "湿空气焓湿图"},
    {IDS_PRESSURE_FORMAT, "大气压 %.0fPa/%.0fmmHg"},
    {IDS_FORMULA_KJ, "i=1.01t+0.001d(2500+1.84t)kJ/kg.干空气"},
    {IDS_FORMULA_KCAL, "i=0.24t+0.001d(597.3+0.44t)kcal/kg.干空气"},
    {IDS_DRULER_TITLE, "水蒸汽分压力"},
    {IDS_D_AXIS_TITLE, "含湿量 d g/kg.干空气"},
    {IDS_T_AXIS_TITLE, "温度 ℃"},
    {IDS_ASCHART_TITLE, "热湿比"},
    {IDS_PROCESS_POINT_INVALID, "处理过程状态点中点无效。"},
};

}  // namespace

const CResourceModule& KyGraphModule()
{
    static const CResourceModule module("KyGraph", kStrings, static_cast<int>(sizeof(kStrings) / sizeof(kStrings[0])));
    return module;
}

const KyVersionRecord& KyGraphVersion()
{
    static const KyVersionRecord record{"KyGraph", "1.0.0",
                                        "Psychrometric enthalpy-moisture-content chart of moist air"};
    return record;
}
