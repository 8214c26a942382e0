// CObject: the root of the framework's class hierarchy.
#pragma once

#include <kygraph/KyExport.h>

class KYFW_API CObject {
public:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
    // Out of line, so the class's type information lives in the framework's library alone.
    virtual ~CObject();

    // Run-time class name, the framework's serialisation, validity-check and dump slots.
    virtual const char* GetRuntimeClassName() const { return "CObject"; }
    virtual void Serialize() {}
    virtual void AssertValid() const {}
    virtual void Dump() const {}
};
