// The texts of the library's string table, once for both platforms: the Windows resource
// script and the Linux table expand this list. Each entry: id, Chinese text, English text.
// UTF-8. The English entries sit at id + KYGRAPH_ENGLISH_ID_OFFSET in the Windows table.
#pragma once

#define KYGRAPH_ENGLISH_ID_OFFSET 1000

#define KYGRAPH_STRINGS(X) \
    X(IDS_KYGRAPH_NAME, "KyGraph", "KyGraph") \
    X(IDS_BLOCK_OPEN_FAILED, "焓湿图图块打开失败。", "The chart block could not be opened.") \
    X(IDS_BLOCK_XDATA_FAILED, "不能获取焓湿图图块中的扩展数据。", "The chart block's extended data could not be read.") \
    X(IDS_POINT_OUT_OF_RANGE, "指定点不在焓湿图的有效范围之内。", "The point is outside the valid range of the chart.") \
    X(IDS_POINT_INVALID, "状态点参数不合法，无法计算。", "The state's parameters are not valid; it cannot be computed.") \
    X(IDS_OUT_OF_DRAW_RANGE, "超出焓湿图绘制范围。", "Beyond the drawing range of the chart.") \
    X(IDS_CHART_TITLE, "湿空气焓湿图", "Psychrometric Chart of Moist Air") \
    X(IDS_PRESSURE_FORMAT, "大气压 %.0fPa/%.0fmmHg", "Pressure %.0fPa/%.0fmmHg") \
    X(IDS_FORMULA_KJ, "i=1.01t+0.001d(2500+1.84t)kJ/kg.干空气", "h=1.01t+0.001d(2500+1.84t)kJ/kg dry air") \
    X(IDS_FORMULA_KCAL, "i=0.24t+0.001d(597.3+0.44t)kcal/kg.干空气", "h=0.24t+0.001d(597.3+0.44t)kcal/kg dry air") \
    X(IDS_DRULER_TITLE, "水蒸汽分压力", "Vapour pressure") \
    X(IDS_D_AXIS_TITLE, "含湿量 d g/kg.干空气", "Moisture content d g/kg dry air") \
    X(IDS_T_AXIS_TITLE, "温度 ℃", "Temperature ℃") \
    X(IDS_ASCHART_TITLE, "热湿比", "Heat-moisture ratio") \
    X(IDS_PROCESS_POINT_INVALID, "处理过程状态点中点无效。", "A state of the process is not valid.") \
    X(IDS_OUTDOOR_POINT, "室外点", "Outdoor") \
    X(IDS_INDOOR_POINT, "室内点", "Indoor") \
    X(IDS_HRULER_KJ, "kJ/kg.干空气", "kJ/kg dry air") \
    X(IDS_HRULER_KCAL, "kcal/kg.干空气", "kcal/kg dry air") \
    X(IDS_ZONE_EMPTY, "区域的边界不包含任何状态。", "The zone's bounds enclose no state.") \
    X(IDS_ZONE_BOUND_INVALID, "区域的边界不合法（下限大于上限或不是有限数）。", "A bound of the zone is not valid (the lower above the upper, or not a finite number).") \
    X(IDS_DATA_NONE_INSIDE, "数据集中没有位于焓湿图范围之内的状态点。", "No state of the data set lies within the chart.") \
    X(IDS_LEGEND_ISOTHERMS, "等温线", "Isotherms") \
    X(IDS_LEGEND_D_LINES, "等含湿量线", "Constant moisture content") \
    X(IDS_LEGEND_H_LINES, "等焓线", "Constant enthalpy") \
    X(IDS_LEGEND_RH_CURVES, "等相对湿度线", "Relative humidity") \
    X(IDS_LEGEND_TWB_LINES, "等湿球温度线", "Constant wet bulb") \
    X(IDS_LEGEND_V_LINES, "等比容线", "Constant specific volume") \
    X(IDS_LEGEND_EMPTY, "图例中没有任何条目。", "The legend has no entries.")
