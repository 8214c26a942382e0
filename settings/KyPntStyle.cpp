#include <kygraph/KyPntStyle.h>

tagKyPntStyle::tagKyPntStyle() : crColor(RGB(0, 255, 0)), dSize(5.0), nTextHeight(7) {}

tagKyPntStyle& tagKyPntStyle::operator=(const tagKyPntStyle& other) = default;
