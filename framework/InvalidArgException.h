// CInvalidArgException: what the framework throws for an index outside an array.
#pragma once

#include <kygraph/KyExport.h>

#include <stdexcept>

class KYFW_API CInvalidArgException : public std::out_of_range {
public:
    CInvalidArgException() : std::out_of_range("invalid argument: index out of range") {}
    // Out of line, so the class's type information lives in the framework's library alone.
    ~CInvalidArgException() override;
};
