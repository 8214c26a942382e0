// CKyMap: the state model's own map type, a CMap (block size 10, the framework's default)
// with its own class identity. Iteration follows insertion order, as CMap's does.
#pragma once

#include <kygraph/Map.h>

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CKyMap : public CMap<KEY, ARG_KEY, VALUE, ARG_VALUE> {
public:
    explicit CKyMap(int blockSize = 10) : CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>(blockSize) {}

    const char* GetRuntimeClassName() const override { return "CKyMap"; }
};
