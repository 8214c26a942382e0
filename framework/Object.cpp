#include <kygraph/Object.h>

CObject::~CObject() = default;
