// The texts of the library's string table, once for both platforms: the Windows resource
// script and the Linux table expand this list. UTF-8.
#pragma once

#define KYGRAPH_STRINGS(X) \
    X(IDS_KYGRAPH_NAME, "KyGraph") \
    X(IDS_BLOCK_OPEN_FAILED, "焓湿图图块打开失败。") \
    X(IDS_BLOCK_XDATA_FAILED, "不能获取焓湿图图块中的扩展数据。") \
    X(IDS_POINT_OUT_OF_RANGE, "指定点不在焓湿图的有效范围之内。") \
    X(IDS_POINT_INVALID, "状态点参数不合法，无法计算。") \
    X(IDS_OUT_OF_DRAW_RANGE, "超出焓湿图绘制范围。") \
    X(IDS_CHART_TITLE, "湿空气焓湿图") \
    X(IDS_PRESSURE_FORMAT, "大气压 %.0fPa/%.0fmmHg") \
    X(IDS_FORMULA_KJ, "i=1.01t+0.001d(2500+1.84t)kJ/kg.干空气") \
    X(IDS_FORMULA_KCAL, "i=0.24t+0.001d(597.3+0.44t)kcal/kg.干空气") \
    X(IDS_DRULER_TITLE, "水蒸汽分压力") \
    X(IDS_D_AXIS_TITLE, "含湿量 d g/kg.干空气") \
    X(IDS_T_AXIS_TITLE, "温度 ℃") \
    X(IDS_ASCHART_TITLE, "热湿比") \
    X(IDS_PROCESS_POINT_INVALID, "处理过程状态点中点无效。")
