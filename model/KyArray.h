// CKyArray: the state model's own array type, a CArray with its own class identity so that
// containers handed across the model's interface are recognisably the model's.
#pragma once

#include <kygraph/Array.h>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CKyArray : public CArray<TYPE, ARG_TYPE> {
public:
    CKyArray() = default;

    const char* GetRuntimeClassName() const override { return "CKyArray"; }
};
