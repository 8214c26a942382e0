#include <kygraph/KyLineStyle.h>

tagKyLineStyle::tagKyLineStyle()
    : crColor(RGB(192, 192, 192)), nPenStyle(PS_SOLID), nWidth(1), nTextHeight(7), dSpare(0.0)
{
}

tagKyLineStyle& tagKyLineStyle::operator=(const tagKyLineStyle& other) = default;
