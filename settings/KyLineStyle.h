// tagKyLineStyle: how one family of lines and its labels look.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/WinTypes.h>

struct KYGRAPH_API tagKyLineStyle {
    tagKyLineStyle();
    tagKyLineStyle(const tagKyLineStyle& other) = default;
    tagKyLineStyle& operator=(const tagKyLineStyle& other);

    COLORREF crColor;  // colour of the lines and the label text; default RGB(192, 192, 192)
    int nPenStyle;     // GDI pen style (PS_SOLID ...); default PS_SOLID
    int nWidth;        // pen width in pixels; default 1
    int nTextHeight;   // label font height at draw scale 1; default 7
    double dSpare;     // held and copied, read by nothing; default 0.0
};
