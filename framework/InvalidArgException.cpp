#include <kygraph/InvalidArgException.h>

CInvalidArgException::~CInvalidArgException() = default;
