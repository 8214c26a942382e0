// tagKyPntStyle: how state-point markers and their labels look.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/WinTypes.h>

struct KYGRAPH_API tagKyPntStyle {
    tagKyPntStyle();
    tagKyPntStyle(const tagKyPntStyle& other) = default;
    tagKyPntStyle& operator=(const tagKyPntStyle& other);

    COLORREF crColor;  // colour of the marker and its label; default RGB(0, 255, 0)
    double dSize;      // marker size at draw scale 1; default 5.0
    int nTextHeight;   // label font height at draw scale 1; default 7
};
