// StringUtils: number formatting for chart labels.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/String.h>

class WIDGETRY_API StringUtils {
public:
    // The decimal text of value.
    static CString IntToStr(int value);
    // value with exactly `decimals` digits after the point (none and no point for 0), rounded
    // to nearest with a guard against binary representation error (44.99999999999999 reads
    // 45); never "-0"; NaN and infinities read "NaN", "Inf", "-Inf". decimals is clamped to
    // 0..15.
    static CString DblToStr(double value, int decimals);
};
