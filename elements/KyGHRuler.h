// CKyGHRuler: the enthalpy ruler set off from the saturation curve along the enthalpy
// direction: kJ/kg on its inner side (every tenth tick drawn on to the curve) and kcal/kg on
// its outer side.
#pragma once

#include <kygraph/KyGDrawBase.h>

class KYGRAPH_API CKyGHRuler : public CKyGDrawBase {
public:
    CKyGHRuler(CKyGChart* pChart = nullptr);
    CKyGHRuler(const CKyGHRuler& other) = default;
    CKyGHRuler& operator=(const CKyGHRuler& other) = default;
    ~CKyGHRuler() override = default;

    CString toString() const override;
    // Lets go of the saturated states kept from earlier redraws (each is kept with the pressure
    // and formulation it was solved at, so this never changes a drawing; it frees the memory).
    static void ForgetKept();

protected:
    // 0 when the saturation points cannot be set or placed, or the enthalpy span is empty.
    int Draw(CDC* pDC) override;
};
